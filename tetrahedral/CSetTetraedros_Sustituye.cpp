// A part of the mesh gives way to another that fills the same room: what the removal of points comes to.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <unordered_set>
#include <vector>

#include "tetrahedral/CSetTetraedros.h"
#include "tetrahedral/CSetTetraedros_Borrador.h"

namespace Meseta47 {

bool CSetTetraedros::BuscaEsferas(CCoor3D<int> const& p, CTetraedro* desde, std::vector<CTetraedro*>& salida,
                                  unsigned& visitados, CBalance& balance) {
  if (borrador == nullptr) borrador = std::make_unique<CBorrador>();
  CTetraedro* semilla = nullptr;
  if (BuscaSemilla(p, desde, semilla, visitados, balance) != 0) return false;
  const std::int32_t marca = CEstrella::Marca(borrador->inserciones) + 1;
  semilla->identificador = marca;
  std::size_t i = salida.size();
  salida.push_back(semilla);
  for (; i < salida.size(); ++i) {
    for (unsigned cara = 0; cara < 4; ++cara) {
      CTetraedro* v = salida[i]->Vecino(cara);
      if (v == nullptr || v->identificador == marca) continue;
      v->identificador = marca;
      ++visitados;
      if (v->EnEsfera(p)) salida.push_back(v);
    }
  }
  return true;
}

std::vector<CSetTetraedros::CFaz> CSetTetraedros::Fazes(std::vector<CTetraedro*> const& tetraedros) {
  std::vector<CFaz> fazes;
  fazes.reserve(4 * tetraedros.size());
  for (CTetraedro* t : tetraedros) {
    for (unsigned cara = 0; cara < 4; ++cara) {
      unsigned const* v = CTetraedro::kVertice[cara];
      fazes.push_back({{t->Num(v[0]), t->Num(v[1]), t->Num(v[2])}, t, cara});
    }
  }
  std::sort(fazes.begin(), fazes.end());
  return fazes;
}

/// The faces of one tetrahedron alone. False when some face has three or more.
bool CSetTetraedros::Borde(std::vector<CFaz> const& fazes, std::vector<CFaz>& borde) {
  for (std::size_t i = 0, j; i < fazes.size(); i = j) {
    for (j = i + 1; j < fazes.size() && fazes[j].numeros == fazes[i].numeros;) ++j;
    if (j - i > 2) return false;
    if (j - i == 1) borde.push_back(fazes[i]);
  }
  return true;
}

void CSetTetraedros::Inunda(std::vector<CTetraedro*>& tetraedros, std::vector<CFaz> const& borde,
                            std::function<int(CTetraedro const&, unsigned)> const& numero) {
  std::unordered_set<CTetraedro const*> vistos(tetraedros.begin(), tetraedros.end());
  for (std::size_t i = 0; i < tetraedros.size(); ++i) {
    CTetraedro const& t = *tetraedros[i];
    for (unsigned cara = 0; cara < 4; ++cara) {
      unsigned const* v = CTetraedro::kVertice[cara];
      CNumeros3 suyos{numero(t, v[0]), numero(t, v[1]), numero(t, v[2])};
      std::sort(suyos.begin(), suyos.end());
      CTetraedro* vecino = t.Vecino(cara);
      if (vecino == nullptr || EstaEn(borde, suyos)) continue;
      if (vistos.insert(vecino).second) tetraedros.push_back(vecino);
    }
  }
}

bool CSetTetraedros::EstaEn(std::vector<CFaz> const& fazes, CNumeros3 const& numeros) {
  return std::binary_search(fazes.begin(), fazes.end(), CFaz{numeros, nullptr, 0});
}

void CSetTetraedros::AnadeEsfera(CFaz const& desde, std::unordered_set<CTetraedro const*>& vistos,
                                 std::vector<CTetraedro*>& salida) {
  CTetraedro* otro = desde.tetraedro->Vecino(desde.cara);
  if (otro == nullptr || !vistos.insert(otro).second) return;
  std::size_t i = salida.size();
  salida.push_back(otro);
  for (; i < salida.size(); ++i) {
    CTetraedro* t = salida[i];
    for (unsigned cara = 0; cara < 4; ++cara) {
      CTetraedro* v = t->Vecino(cara);
      if (v == nullptr || vistos.contains(v)) continue;
      const unsigned enfrente = 3 - v->CaraHacia(t->Numero());  // its vertex across from the face
      if (!t->EnEsfera(*v->puntos[enfrente])) continue;
      vistos.insert(v);
      salida.push_back(v);
    }
  }
}

bool CSetTetraedros::LlenanLoMismo(std::vector<CTetraedro*> const& unos, std::vector<CTetraedro*> const& otros) {
  std::vector<CFaz> deUnos, deOtros;
  return Borde(Fazes(unos), deUnos) && Borde(Fazes(otros), deOtros) &&
         std::equal(deUnos.begin(), deUnos.end(), deOtros.begin(), deOtros.end(),
                    [](CFaz const& a, CFaz const& b) { return a.numeros == b.numeros; });
}

//        fuera | nuevo         Across a face of the border lies the one that had the removed tetrahedron there; across
//         -----+-----          all other faces of the new ones lie others of them.
//        fuera | nuevo
void CSetTetraedros::Sustituye(std::vector<CTetraedro*> const& viejos, std::vector<CTetraedro*> const& nuevos) {
  std::vector<CFaz> fazes = Fazes(nuevos), borde;
  static_cast<void>(Borde(Fazes(viejos), borde));
  for (CFaz& f : borde) {
    CTetraedro* fuera = f.tetraedro->Vecino(f.cara);
    if (fuera != nullptr) f.cara = fuera->CaraHacia(f.tetraedro->Numero());
    f.tetraedro = fuera;
  }
  std::erase_if(borde, [](CFaz const& f) { return f.tetraedro == nullptr; });  // the frame's own faces
  posiblesVecinos.clear();
  if (borrador != nullptr) borrador->ultimoHecho = nullptr;
  for (CTetraedro* t : viejos) {
    t->SetBorrado(true);
    t->set->Borra(t, false);
  }
  for (CTetraedro* t : viejos) delete t;
  fazes.insert(fazes.end(), borde.begin(), borde.end());
  std::stable_sort(fazes.begin(), fazes.end());
  constexpr short kNoSabe = CTetraedro::DESCONOCIDO;
  for (std::size_t i = 0; !nuevos.empty() && i + 1 < fazes.size(); ++i) {
    CFaz const &una = fazes[i], &otra = fazes[i + 1];
    if (una.numeros != otra.numeros) continue;
    una.tetraedro->SetVecino(una.cara, otra.tetraedro, kNoSabe, kNoSabe, kNoSabe, false);
    otra.tetraedro->SetVecino(otra.cara, una.tetraedro, kNoSabe, kNoSabe, kNoSabe, false);
    ++i;
  }
  for (CTetraedro* t : nuevos) {
    CSetTetraedros* s = SetParaCaja(t, *this);
    s->modificado = true;
    s->AnexaALista(t);
  }
  if (inicio == nullptr && !nuevos.empty()) inicio = nuevos.back();
}

}  // namespace Meseta47
