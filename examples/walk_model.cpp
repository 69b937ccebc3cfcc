// A drawing made in code, triangulated with a progress object of our own, and a walk over the finished model: its
// triangles, their neighbours and the rings of its outline.
#include <cmath>
#include <cstdio>

#include "model/terrain/CTIN.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"

using namespace Meseta47;

namespace {

/// The program's application object. Constructing it is all it takes: runs find it, and report to it.
class Program : public CWinApp, public IPorcentaje {
 public:
  Program() : CWinApp(L"walk_model") {}
  unsigned long long steps = 0;

  int Porcentaje(int, unsigned long long, unsigned long long, bool) override {
    ++steps;
    return 1;  // 0 would cancel
  }
  void Fase(int, unsigned message) override { std::printf("%s\n", TextoMensaje(message).Utf8().c_str()); }
  void Cierra(int, int) override { std::printf("Done after %llu steps\n", steps); }
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int, CString* text, int) override { std::printf("%s\n", text->Utf8().c_str()); }
};

/// A hill with a square pit cut out of its points, in centimetres: 200 m by 200 m, a point every 2 m.
CDibujo<int> hillWithPit(CDataSemilla const& seed) {
  CSetPuntos<int> points(L"TERRAIN");
  for (int x = 0; x <= 20000; x += 200) {
    for (int y = 0; y <= 20000; y += 200) {
      if (x > 8000 && x < 12000 && y > 8000 && y < 12000) continue;
      const double r2 = (x - 10000.0) * (x - 10000.0) + (y - 10000.0) * (y - 10000.0);
      points << CCoor3D<int>(x, y, static_cast<int>(3000 / (1 + r2 / 25e6)), 0);
    }
  }
  CDibujo<int> drawing(seed);
  drawing.Inserta(std::move(points));
  return drawing;
}

}  // namespace

int main() {
  Program program;
  const CDataSemilla seed(2, 450000, 4480000, 0);  // two decimals: centimetres; the origin that was taken off
  CDibujo<int> drawing = hillWithPit(seed);
  CTIN model(0, 0, seed);
  CTriangulacion2D triangulation(0, seed, CDataTriangulacion(), 1);
  const CEncargo job{.dibujo = drawing, .ladoMaximo = 5.0};  // metres: longer triangles are gaps, not ground
  const int code = triangulation.Run(job, model);
  if (code != kHecho) {
    std::fprintf(stderr, "walk_model: the run answered %d\n", code);
    return 1;
  }

  double area = 0;
  unsigned long long borders = 0;
  for (std::uint32_t i = 0; i < model.Cantidad(); ++i) {
    area += model.Triangulo(i).CalculaSuperficie(seed.Precision());
    for (const std::uint32_t neighbour : model.Vecinos(i)) borders += neighbour == kSinTriangulo ? 1 : 0;
  }
  std::printf("%zu points, %llu triangles, %.1f square metres of surface, %llu sides without a neighbour\n",
              model.puntos.size(), static_cast<unsigned long long>(model.Cantidad()), area, borders);
  unsigned long long onRings = 0;
  for (std::size_t ring = 0; ring < model.Limite().size(); ++ring) {
    std::printf("%s of %zu points\n", model.EsHueco(ring) ? "hole" : "outer ring", model.Limite()[ring].size());
    onRings += model.Limite()[ring].size();
  }
  return model.Limite().size() == 2 && onRings == borders ? 0 : 1;
}
