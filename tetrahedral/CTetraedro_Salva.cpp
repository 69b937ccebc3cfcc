// The spill of one tetrahedron: which of its faces may belong to the surface.
#include <algorithm>
#include <cstdlib>

#include "platform/CFile.h"
#include "tetrahedral/CTetraedro.h"

namespace Meseta47 {

namespace {

constexpr int kSaltoDeIntensidad = 10000;  // ends of an edge that differ by more belong to different things
constexpr unsigned kExtremo[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};

}  // namespace

void CTetraedro::DameDistancias(CTetraedro const* otro, short& a, short& b, short& c) const {
  for (unsigned cara = 0; cara < 4; ++cara) {
    if (Vecino(cara) != otro) continue;
    short* const salida[3] = {&a, &b, &c};
    for (unsigned i = 0; i < 3; ++i) {
      if (*salida[i] != LARGO) *salida[i] = Arista(kArista[cara][i]);
    }
    return;
  }
}

void CTetraedro::EstableceDistancias(CTetraedro const* otro, bool a, bool b, bool c) {
  for (unsigned cara = 0; cara < 4; ++cara) {
    if (Vecino(cara) != otro) continue;
    const bool largas[3] = {a, b, c};
    for (unsigned i = 0; i < 3; ++i) {
      if (Arista(kArista[cara][i]) != LARGO) SetArista(kArista[cara][i], largas[i] ? LARGO : CORTO);
    }
    return;
  }
}

bool CTetraedro::Salva(CFile* fichero, double limite, bool todas, std::vector<unsigned short>* intensidades) {
  std::vector<std::int32_t> registros;
  Salva(registros, limite, todas, intensidades);
  return registros.empty() || fichero->Write(registros.data(), registros.size() * sizeof(std::int32_t));
}

void CTetraedro::Salva(std::vector<std::int32_t>& registros, double limite, bool todas,
                       std::vector<unsigned short> const* intensidades) {
  const auto delMarco = [](CCoor3D<int> const* p) { return p->num < 0; };
  if (std::count_if(std::begin(puntos), std::end(puntos), delMarco) > 1) return;

  short estado[6];
  for (unsigned i = 0; i < 6; ++i) estado[i] = Arista(i);
  for (unsigned cara = 0; cara < 4; ++cara) {
    unsigned const* a = kArista[cara];
    if (CTetraedro const* v = Vecino(cara)) v->DameDistancias(this, estado[a[0]], estado[a[1]], estado[a[2]]);
  }
  bool larga[6];
  for (unsigned i = 0; i < 6; ++i) {
    CCoor3D<int> const &p = *puntos[kExtremo[i][0]], &q = *puntos[kExtremo[i][1]];
    larga[i] = true;  // what touches the frame, however great the limit, and what a neighbour knows to be long
    if (!delMarco(&p) && !delMarco(&q) && estado[i] != LARGO) {
      larga[i] = (estado[i] == CORTO ? 0 : p.Distancia2(q, 1)) > limite;
    }
    if (larga[i] || intensidades == nullptr || delMarco(&p) || delMarco(&q)) continue;
    const auto intensidad = [&](CCoor3D<int> const& v) {
      return static_cast<int>((*intensidades)[static_cast<std::size_t>(v.num) - 1]);
    };
    larga[i] = std::abs(intensidad(p) - intensidad(q)) > kSaltoDeIntensidad;
  }
  for (unsigned cara = 0; cara < 4; ++cara) {
    unsigned const* a = kArista[cara];
    if (CTetraedro* v = Vecino(cara)) v->EstableceDistancias(this, larga[a[0]], larga[a[1]], larga[a[2]]);
  }
  if (!todas && std::none_of(std::begin(larga), std::end(larga), [](bool l) { return l; })) return;

  for (unsigned cara = 0; cara < 4; ++cara) {
    unsigned const *a = kArista[cara], *v = kVertice[cara];
    if (larga[a[0]] || larga[a[1]] || larga[a[2]] || Grabado(cara)) continue;
    for (unsigned i = 0; i < 3; ++i) registros.push_back(puntos[v[i]]->num);
  }
  SueltaDeVecinos(true);
}

}  // namespace Meseta47
