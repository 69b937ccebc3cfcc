// The tree of sets as a drawing, for the eye.
#include "model/drawing/CDibujo.h"
#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

namespace {

CLinea<int> Anillo(CString const& codigo, CMaximas<int> const& caja) {
  CLinea<int> linea(codigo);
  const int x0 = caja.Minimo.x, y0 = caja.Minimo.y, x1 = caja.Maximo.x, y1 = caja.Maximo.y;
  linea << CCoor3D<int>(x0, y0, 0, 0);
  linea << CCoor3D<int>(x0, y1, 0, 0);
  linea << CCoor3D<int>(x1, y1, 0, 0);
  linea << CCoor3D<int>(x1, y0, 0, 0);
  linea << CCoor3D<int>(x0, y0, 0, 0);
  return linea;
}

}  // namespace

void CSetTriangulos2D::GraficoMaxMin(CDibujo<int>& dibujo, bool triangulos) const {
  dibujo.Inserta(Anillo(L"LIMITE", maximas));
  if (triangulos) {
    CString codigo;
    codigo.Format(L"%d", static_cast<int>(nivel));
    for (CTriangulo2D const* t = primero; t != nullptr; t = t->Sig()) dibujo.Inserta(Anillo(codigo, t->GetMaximas()));
  }
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].GraficoMaxMin(dibujo, true);
}

}  // namespace Meseta47
