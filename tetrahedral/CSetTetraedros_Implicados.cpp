// The cavity of a new point: a breadth-first walk over the mesh to the first sphere that holds it, and growth over the
// neighbours.
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

int CSetTetraedros::Implicados(CCoor3D<int>& p, CSetCaras& caras, std::vector<CTetraedro*>& implicados,
                               unsigned& visitados, unsigned& rechazados, CTetraedro* inicial) {
  visitados = rechazados = 0;
  if (nivel == 0) {
    posiblesVecinos.clear();
  } else if (!maximas.Dentro(p, 0)) {
    return 1;
  }
  if (inicial != nullptr) inicio = inicial;
  if (inicio == nullptr || inicio->set->cerrado) return 2;
  CTetraedro* semilla = PrimeroQueContiene(p, p.num, visitados);
  if (semilla == nullptr) return 4;
  // A second stamp tells what the walk already found outside from what has not been met yet.
  const int numero = p.num;
  p.num = numero + kSegundaMarca;
  implicados.push_back(semilla);
  const bool duplicado = CreceCavidad(p, caras, implicados, rechazados);
  p.num = numero;
  return duplicado ? 3 : 0;
}

/// Breadth-first, not a directed walk: short, because it starts close to the point.
CTetraedro* CSetTetraedros::PrimeroQueContiene(CCoor3D<int> const& p, std::int32_t marca, unsigned& visitados) {
  std::vector<CTetraedro*> cola{inicio};
  for (std::size_t i = 0; i < cola.size(); ++i) {
    CTetraedro* t = cola[i];
    if (t->Borrado() || t->identificador == marca) continue;
    t->identificador = marca;
    if (t->EnEsfera(p)) return t;
    ++visitados;
    for (unsigned cara = 0; cara < 4; ++cara) {
      CTetraedro* v = t->Vecino(cara);
      if (v != nullptr && !v->Borrado() && !v->set->cerrado && v->identificador != marca) cola.push_back(v);
    }
  }
  return nullptr;
}

/// Marks the tetrahedra around the first of `implicados` whose spheres hold the point, which carries the second stamp,
/// and leaves in the list only those. True when the point falls on a vertex of one of them, which is the last then, and
/// not marked.
bool CSetTetraedros::CreceCavidad(CCoor3D<int> const& p, CSetCaras& caras, std::vector<CTetraedro*>& implicados,
                                  unsigned& rechazados) {
  const int primeraMarca = p.num - kSegundaMarca;
  std::size_t dentro = implicados.size() - 1;  // the list is worked through and filled anew in one pass
  const std::size_t semilla = dentro;
  for (std::size_t i = semilla; i < implicados.size(); ++i) {
    CTetraedro* t = implicados[i];
    if (t->set->cerrado) continue;
    if (i != semilla) {
      if (t->identificador == p.num) continue;
      if (t->identificador == primeraMarca) {
        ++rechazados;
        continue;
      }
    }
    if (t->Borrado()) continue;
    t->identificador = p.num;
    if (!t->EnEsfera(p)) {
      ++rechazados;
      continue;
    }
    implicados[dentro++] = t;
    if (t->TieneVerticeEn(p)) {
      implicados.erase(implicados.begin() + static_cast<std::ptrdiff_t>(dentro),
                       implicados.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      return true;
    }
    for (unsigned cara = 0; cara < 4; ++cara) {
      CTetraedro* v = t->Vecino(cara);
      if (v != nullptr && !v->set->cerrado && !v->Borrado()) implicados.push_back(v);
    }
    CCara suyas[4];
    t->GetCaras(suyas);
    caras.insert(caras.end(), std::begin(suyas), std::end(suyas));
    t->SetBorrado(true);
    t->set->modificado = true;
  }
  implicados.resize(dentro);
  return false;
}

}  // namespace Meseta47
