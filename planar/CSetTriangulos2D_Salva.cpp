// What becomes of the triangles of a closed set: records in the spill file, or faces of a model.
#include <memory>
#include <utility>
#include <vector>

#include "model/terrain/CTIN.h"
#include "planar/CBordeDelMarco.h"
#include "planar/CMedidasDeTriangulos.h"
#include "planar/CSetTriangulos2D_Consume.h"
#include "platform/CFile.h"

namespace Meseta47 {

/// Takes the records of the own list and frees its triangles.
void CSetTriangulos2D::RecogeNumeros(std::vector<std::int32_t>& numeros, CBordeDelMarco* borde,
                                     CMedidasDeTriangulos* medidas) {
  numeros.reserve(numeros.size() + std::size_t{3} * cantidad);
  const auto numero = [](CCoor3D<int> const* p) { return p == nullptr ? 0 : p->num; };
  ConsumeLista([&](CTriangulo2D const& t) {
    if (borde != nullptr && CBordeDelMarco::Toca(t)) {
      borde->Anota(t);
      return;
    }
    for (CCoor3D<int> const* p : {t.p1, t.p2, t.p3}) numeros.push_back(numero(p));
    if (borde != nullptr && medidas != nullptr) medidas->Anota(*t.p1, *t.p2, *t.p3);
  });
}

bool CSetTriangulos2D::Salva(CFile* fichero, CBordeDelMarco* borde, CMedidasDeTriangulos* medidas) {
  // One block a set: 12 bytes a triangle, three point numbers in the triangle's own order, little-endian.
  std::vector<std::int32_t> numeros;
  RecogeNumeros(numeros, borde, medidas);
  bool bien = numeros.empty() || fichero->Write(numeros.data(), numeros.size() * sizeof(std::int32_t));
  const std::unique_ptr<CSetTriangulos2D[]> susHijos(std::exchange(hijos, nullptr));
  if (susHijos == nullptr) return bien;
  for (unsigned i = 0; i < 4; ++i) bien = susHijos[i].Salva(fichero, borde, medidas) && bien;
  return bien;
}

void CSetTriangulos2D::RellenaMDT(CTIN& tin, int ladoMaximo, CStdioFile* fichero) {
  const double lado2 = static_cast<double>(ladoMaximo) * ladoMaximo;
  Abiertos().clear();  // what it names is about to go
  while (primero != nullptr) {
    CTriangulo2D* t = primero;
    Borra(t);
    const bool delMarco = t->N1() < 0 || t->N2() < 0 || t->N3() < 0;
    const bool largo = t->p1->Distancia2(*t->p2, 0) > lado2 || t->p2->Distancia2(*t->p3, 0) > lado2 ||
                       t->p3->Distancia2(*t->p1, 0) > lado2;
    if (!delMarco && !largo) {
      const auto punto = [&tin](int n) { return tin.Punto(static_cast<unsigned>(n - 1)); };
      CTriangulo cara(punto(t->N1()), punto(t->N2()), punto(t->N3()), -1, -1, -1);
      if (cara.EsValido()) {
        cara.ColocaPuntos(true);
        tin.Inserta(cara, false, false, false);
      }
    }
    delete t;
  }
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].RellenaMDT(tin, ladoMaximo, fichero);
}

}  // namespace Meseta47
