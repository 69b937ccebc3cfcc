// A tetrahedron at the end of a run: its points exchanged for those of a point set, its faces given to a surface.
#include <algorithm>

#include "model/terrain/CTIN.h"
#include "tetrahedral/CTetraedro.h"

namespace Meseta47 {

/// The new points stand where the old ones did: nothing but the order may change.
void CTetraedro::CambiaPuntos(CSetPuntosMdt& nuevos, std::vector<int> const& mapa) {
  for (CCoor3D<int>*& punto : puntos) {
    if (punto == nullptr || punto->num <= 0 || static_cast<std::size_t>(punto->num) > mapa.size()) continue;
    CPuntoTIN* nuevo = nuevos.at(static_cast<unsigned>(mapa[static_cast<std::size_t>(punto->num) - 1] - 1));
    if (nuevo != nullptr) punto = nuevo;
  }
  OrdenaPuntos();
  ActualizaMaxMin();
}

void CTetraedro::LlevaCaras(CTIN& tin, int limite) const {
  constexpr unsigned kExtremo[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};
  bool corta[6];
  for (unsigned i = 0; i < 6; ++i) corta[i] = limite > Distancia(kExtremo[i][0], kExtremo[i][1]);
  const auto cortas = std::count(std::begin(corta), std::end(corta), true);
  if (cortas == 0 || cortas == 6) return;  // nothing of it is surface, or all of it is inside
  for (unsigned cara = 0; cara < 4; ++cara) {
    unsigned const *a = kArista[cara], *v = kVertice[cara];
    if (!corta[a[0]] || !corta[a[1]] || !corta[a[2]]) continue;
    // A corner of the frame has a number below 0 and is no point of the model.
    CTriangulo triangulo(tin.Punto(static_cast<unsigned>(Num(v[0])) - 1),
                         tin.Punto(static_cast<unsigned>(Num(v[1])) - 1),
                         tin.Punto(static_cast<unsigned>(Num(v[2])) - 1), -1, -1, -1);
    if (!triangulo.EsValido()) continue;
    triangulo.ColocaPuntos(false);
    tin.Inserta(triangulo, false, true, false);
  }
}

}  // namespace Meseta47
