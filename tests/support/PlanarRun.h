#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"
#include "support/Families.h"
#include "support/Mesh.h"
#include "support/ScratchFolder.h"

namespace Meseta47::test {

/// A program without a progress interface, with a temporary folder for one test.
class QuietApp : public CWinApp {
 public:
  explicit QuietApp(unsigned processors = 0) {
    PonCarpetaTemporal(folder.Path());
    PonProcesadores(processors);
  }
  /// Those with a name, and those without that are still open.
  [[nodiscard]] std::size_t TemporaryFiles() const { return folder.Files() + folder.OpenWithoutName(); }

  ScratchFolder folder;
};

/// A program that listens to progress, writes down what it is told, and cancels at the step it was asked to.
class ListeningApp : public QuietApp, public IPorcentaje {
 public:
  struct Step {
    int level;
    unsigned long long value, total;
  };

  using QuietApp::QuietApp;

  int Porcentaje(int level, unsigned long long value, unsigned long long total, bool last) override {
    steps.push_back({level, value, total});
    lastFlags += last ? 1 : 0;
    if (onStep) onStep();
    return static_cast<int>(steps.size()) == cancelAt ? 0 : 1;
  }
  void Fase(int level, unsigned message) override { phases.emplace_back(level, message); }
  void Cierra(int level, int zero) override { closed.emplace_back(level, zero); }
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int level, CString* text, int one) override { messages.emplace_back(level, *text, one); }
  int DoMessageBox(wchar_t const* text, unsigned, unsigned) override {
    boxes.emplace_back(text);
    return 1;
  }

  [[nodiscard]] std::vector<unsigned> PhaseMessages() const {
    std::vector<unsigned> numbers;
    for (auto const& [level, message] : phases) numbers.push_back(message);
    return numbers;
  }

  std::vector<Step> steps;
  std::vector<std::pair<int, unsigned>> phases;
  std::vector<std::pair<int, int>> closed;
  std::vector<std::tuple<int, CString, int>> messages;
  std::vector<CString> boxes;
  int lastFlags = 0;
  int cancelAt = 0;  ///< number of the step, from 1, that is answered by 0
  std::function<void()> onStep;
};

/// A triangulation that shows its phases and its insides.
class OpenTriangulation : public CTriangulacion2D {
 public:
  explicit OpenTriangulation(CDataTriangulacion const& data = {}, CDataSemilla const& seed = {}, unsigned id = 7)
      : CTriangulacion2D(0, seed, data, id) {}
  OpenTriangulation(OpenTriangulation& other, unsigned id) : CTriangulacion2D(other, id) {}

  using CTriangulacion2D::BorraFicheroTemporal;
  using CTriangulacion2D::ColocaIndices;
  using CTriangulacion2D::CompruebaTrianguloNuevo;
  using CTriangulacion2D::EnlazaLista;
  using CTriangulacion2D::EstableceDivisiones;
  using CTriangulacion2D::GenerarMDT;
  using CTriangulacion2D::ImprimeLista;
  using CTriangulacion2D::Inserta;
  using CTriangulacion2D::InsertaRestoPuntos;
  using CTriangulacion2D::RegistraPuntos;
  using CTriangulacion2D::Rellena;
  using CTriangulacion2D::Salva;
  using CTriangulacion2D::TriangulaPunto;

  using CTriangulacion2D::cantidadPuntos;
  using CTriangulacion2D::datos;
  using CTriangulacion2D::dibujoCurvas;
  using CTriangulacion2D::divisiones;
  using CTriangulacion2D::duplicados;
  using CTriangulacion2D::esquinas;
  using CTriangulacion2D::ficheroTemporal;
  using CTriangulacion2D::hiloSalva;
  using CTriangulacion2D::identificador;
  using CTriangulacion2D::maximas;
  using CTriangulacion2D::paramCurvaA;
  using CTriangulacion2D::paramCurvaB;
  using CTriangulacion2D::paramPicoA;
  using CTriangulacion2D::paramPicoB;
  using CTriangulacion2D::porDos;
  using CTriangulacion2D::primerosPuntos;
  using CTriangulacion2D::reservado;
  using CTriangulacion2D::setRaiz;
  using CTriangulacion2D::setsCerrados;

  /// The filling and the linking of a plain run.
  int Link(CDibujo<int>& drawing, std::vector<CDibujo<int>*>* others = nullptr, CDibujo<int>* extra = nullptr,
           int tolerance = 0, unsigned mode = 0) {
    const int code = Rellena(drawing, others, nullptr, extra);
    if (code != kHecho) return code;
    return EnlazaLista(drawing, others, nullptr, nullptr, mode, nullptr, nullptr, nullptr, nullptr, extra, tolerance,
                       nullptr, nullptr, nullptr, nullptr, nullptr);
  }

  /// The bytes of the temporary file, which stays.
  [[nodiscard]] std::string SpilledBytes() {
    ficheroTemporal.Vuelca();
    return BytesOfTemporary(ficheroTemporal.Ruta());
  }
};

/// Records of three little-endian 32-bit numbers.
[[nodiscard]] std::vector<support::Triangle> RecordsOf(std::string const& bytes);

[[nodiscard]] CSetPuntos<int> CloudOf(std::vector<support::Point> const& points, wchar_t const* code = L"cloud");
[[nodiscard]] CDibujo<int> DrawingOf(std::vector<support::Point> const& points);

/// A linked cloud: what was spilled, its vertices named by the places of the points in the cloud, and what was counted.
struct Linked {
  int code = 0;
  std::string bytes;   ///< of the temporary file
  support::Mesh mesh;  ///< the cloud, the frame, and the triangles in terms of them
  CResumenPlano summary;
};
[[nodiscard]] Linked LinkCloud(std::vector<support::Point> const& points);
/// The same of a triangulation that has linked a cloud. Its temporary file is deleted.
[[nodiscard]] Linked Collected(OpenTriangulation& triangulation, CLinea<int> const& cloud,
                               std::vector<support::Point> points);

/// FNV-1a of 64 bits.
[[nodiscard]] std::uint64_t HashOf(std::string const& bytes);

}  // namespace Meseta47::test
