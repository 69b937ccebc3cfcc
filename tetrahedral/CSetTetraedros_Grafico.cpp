// The tree of sets as a drawing, for the eye.
#include "model/drawing/CDibujo.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

namespace {

//   1 ------- 2      Corners of a box seen from above.
//   |         |
//   0 ------- 3
CCoor3D<int> Esquina(CMaximas<int> const& caja, unsigned i, int z) {
  const int x = i == 0 || i == 1 ? caja.Minimo.x : caja.Maximo.x;
  const int y = i == 1 || i == 2 ? caja.Maximo.y : caja.Minimo.y;
  return {x, y, z, 0};
}

void PonAnillo(CLinea<int>& linea, CMaximas<int> const& caja, int z) {
  for (const unsigned i : {0U, 1U, 2U, 3U, 0U}) linea << Esquina(caja, i, z);
}

}  // namespace

void CSetTetraedros::GraficoMaxMin(CDibujo<int>& dibujo, bool tetraedros) const {
  CLinea<int> linea(L"LIMITE");
  for (const int z : {maximas.Minimo.z, maximas.Maximo.z}) {
    PonAnillo(linea, maximas, z);
    dibujo.Inserta(linea);
    linea.Clear();
  }
  for (unsigned i = 0; i < 4; ++i) {
    linea << Esquina(maximas, i, maximas.Minimo.z);
    linea << Esquina(maximas, i, maximas.Maximo.z);
    dibujo.Inserta(linea);
    linea.Clear();
  }
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].GraficoMaxMin(dibujo, tetraedros);
}

}  // namespace Meseta47
