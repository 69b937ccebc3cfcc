#include "tetrahedral/CTetraedro.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

#include "model/storage/CDeReserva_Define.h"
#include "model/terrain/CTriangulo.h"
#include "platform/Vectores.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

template class CDeReserva<CTetraedro, true>;

namespace {

/// Numbers of the elements that live outside the pool and are linked to.
struct CForasteros {
  std::mutex cerrojo;
  std::unordered_map<CTetraedro const*, std::uint32_t> bloques;
};
CForasteros& Forasteros() {
  static auto* forasteros = new CForasteros;
  return *forasteros;
}

}  // namespace

std::uint32_t CTetraedro::NumeroPropio() {
  CForasteros& forasteros = Forasteros();
  const std::lock_guard guarda(forasteros.cerrojo);
  std::uint32_t& bloque = forasteros.bloques[this];
  if ((marcas & kMascaraSitio) != kConNumero) {
    bloque = CNumeros::Pon(this);
    marcas |= kConNumero;
  }
  return CNumeros::Numero(bloque, 0);
}

void CTetraedro::OlvidaNumero() noexcept {
  CForasteros& forasteros = Forasteros();
  const std::lock_guard guarda(forasteros.cerrojo);
  const auto lugar = forasteros.bloques.find(this);
  CNumeros::Quita(lugar->second);
  forasteros.bloques.erase(lugar);
}

/// A default tetrahedron that knows its number from where it stands in the pool.
CTetraedro* CTetraedro::PideSitio() {
  auto* t = new CTetraedro;
  if (CReserva::HayBloques()) t->marcas |= kEnReserva;
  return t;
}

CTetraedro* CTetraedro::Nuevo(CTetraedro const& t) {
  CTetraedro* copia = PideSitio();
  copia->Copia(t);
  return copia;
}

void CTetraedro::Deja(CTetraedro* t, CReserva::CLote& lote) noexcept {
  if (t->EsDeReserva()) {
    lote.Anade(t);  // a plain record without links: its destructor would have nothing to do
  } else {
    t->clear();
    delete t;
  }
}

/// All but where the element itself lives.
void CTetraedro::Copia(CTetraedro const& o) {
  const std::uint32_t sitio = marcas & kMascaraSitio;
  cx = o.cx;
  cy = o.cy;
  cz = o.cz;
  radio2 = o.radio2;
  margen = o.margen;
  identificador = o.identificador;
  marcas = (o.marcas & ~kMascaraSitio) | sitio;
  std::copy(std::begin(o.vecinos), std::end(o.vecinos), vecinos);
  std::copy(std::begin(o.puntos), std::end(o.puntos), puntos);
  radio = o.radio;
  distanciaMaxima = o.distanciaMaxima;
  set = o.set;
  sig = o.sig;
  ant = o.ant;
}

void CTetraedro::PonEsfera(CEsfera const& e) {
  cx = e.x;
  cy = e.y;
  cz = e.z;
  radio2 = e.radio2;
  margen = e.margen;
  radio = e.radio;
}

void CTetraedro::ActualizaMaxMin() {
  CEsfera esfera;
  const bool todos = std::find(std::begin(puntos), std::end(puntos), nullptr) == std::end(puntos);
  if (todos) esfera.Por4Puntos(*puntos[0], *puntos[1], *puntos[2], *puntos[3]);
  PonEsfera(esfera);
  identificador = 0;
}

void CTetraedro::OrdenaPorNumero() {
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i + 1; j < 4; ++j) {
      if (Num(j) < Num(i)) std::swap(puntos[i], puntos[j]);
    }
  }
}

void CTetraedro::SetPuntos(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, CCoor3D<int>* d, bool recalcula) {
  puntos[0] = a;
  puntos[1] = b;
  puntos[2] = c;
  puntos[3] = d;
  OrdenaPorNumero();
  if (recalcula) ActualizaMaxMin();
  distanciaMaxima = 0;
}

bool CTetraedro::SetPunto(unsigned i, CCoor3D<int>* p) {
  for (unsigned j = 0; j < 4; ++j) {
    if (j != i && p != nullptr && puntos[j] != nullptr && *puntos[j] == *p) return false;
  }
  puntos[i] = p;
  ActualizaMaxMin();
  return true;
}

//  An exchange of two vertices renames what holds one of them: of faces those that hold exactly one, of edges likewise.
void CTetraedro::CambiaVertices(unsigned i, unsigned j) {
  std::swap(puntos[i], puntos[j]);
  // The face opposite a vertex has its index counted from the end.
  const unsigned a = 3 - i, b = 3 - j;
  std::swap(vecinos[a], vecinos[b]);
  const bool grabadoA = Grabado(a);
  SetGrabado(a, Grabado(b));
  SetGrabado(b, grabadoA);
  constexpr unsigned kEntre[4][4] = {{6, 0, 1, 2}, {0, 6, 3, 4}, {1, 3, 6, 5}, {2, 4, 5, 6}};
  for (unsigned k = 0; k < 4; ++k) {
    if (k == i || k == j) continue;
    const short con = Arista(kEntre[i][k]);
    SetArista(kEntre[i][k], Arista(kEntre[j][k]));
    SetArista(kEntre[j][k], con);
  }
}

void CTetraedro::OrdenaPuntos() {
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i + 1; j < 4; ++j) {
      if (Num(j) < Num(i)) CambiaVertices(i, j);
    }
  }
}

bool CTetraedro::operator==(CTetraedro const& o) const {
  return std::all_of(std::begin(puntos), std::end(puntos), [&o](CCoor3D<int> const* p) {
    return std::find(std::begin(o.puntos), std::end(o.puntos), p) != std::end(o.puntos);
  });
}

CCentro CTetraedro::Centro() const {
  CCentro c;
  c.centro = CCoor3D<double>(cx, cy, cz, identificador);
  c.radio = radio;
  c.radio2 = radio2;
  return c;
}

CCoor3D<int> CTetraedro::GetMinEsfera() const {
  CCoor3D<int> p;
  p.Actualiza(cx - radio, cy - radio, cz - radio);
  return p;
}
CCoor3D<int> CTetraedro::GetMaxEsfera() const {
  CCoor3D<int> p;
  p.Actualiza(cx + radio, cy + radio, cz + radio);
  return p;
}
CMaximas<int> CTetraedro::GetMaximasEsfera() const {
  CMaximas<int> m;
  m.Minimo = GetMinEsfera();
  m.Maximo = GetMaxEsfera();
  return m;
}

bool CTetraedro::EsValido() const {
  for (unsigned i = 0; i < 4; ++i) {
    if (puntos[i] == nullptr) return false;
    for (unsigned j = 0; j < i; ++j) {
      if (*puntos[i] == *puntos[j]) return false;
    }
  }
  return Signo(radio) != 0;
}

bool CTetraedro::ContieneLado(int a, int b) const {
  if (a == b) return false;
  int cuantos = 0;
  for (unsigned i = 0; i < 4; ++i) cuantos += Num(i) == a || Num(i) == b ? 1 : 0;
  return cuantos >= 2;
}

int CTetraedro::ContieneCara(int a, int b, int c) const {
  for (unsigned cara = 0; cara < 4; ++cara) {
    unsigned const* v = kVertice[cara];
    if (Num(v[0]) == a && Num(v[1]) == b && Num(v[2]) == c) return static_cast<int>(cara) + 1;
  }
  return 0;
}

int CTetraedro::CarasLimite() const { return static_cast<int>(std::count(std::begin(vecinos), std::end(vecinos), 0U)); }

bool CTetraedro::GetCaras(CCara* caras) const {
  for (unsigned cara = 0; cara < 4; ++cara) {
    CTetraedro* vecino = Vecino(cara);
    if (vecino != nullptr && (vecino->set == nullptr || vecino->set->cerrado)) vecino = nullptr;
    unsigned const *v = kVertice[cara], *a = kArista[cara];
    caras[cara].SetPuntos(puntos[v[0]], puntos[v[1]], puntos[v[2]], vecino, Arista(a[0]), Arista(a[1]), Arista(a[2]),
                          Grabado(cara));
  }
  return true;
}

void CTetraedro::SetVecino(unsigned cara, CTetraedro* t, short a, short b, short c, bool grabado) {
  vecinos[cara] = NumeroDe(t);
  SetArista(kArista[cara][0], a);
  SetArista(kArista[cara][1], b);
  SetArista(kArista[cara][2], c);
  SetGrabado(cara, grabado);
}

void CTetraedro::BorraVecino(CTetraedro const* t, bool grabado) {
  for (unsigned cara = 0; cara < 4; ++cara) {
    if (Vecino(cara) != t) continue;
    vecinos[cara] = 0;
    SetGrabado(cara, grabado);
    return;
  }
}

void CTetraedro::SueltaDeVecinos(bool grabado) {
  if ((marcas & kMascaraSitio) == 0) {  // nobody can have linked to it
    clear();
    return;
  }
  const std::uint32_t mio = Numero();
  for (std::uint32_t& numero : vecinos) {
    CTetraedro* vecino = De(numero);
    numero = 0;
    if (vecino == nullptr) continue;
    const unsigned cara = vecino->CaraHacia(mio);
    if (cara == 4) continue;
    vecino->vecinos[cara] = 0;
    vecino->SetGrabado(cara, grabado);
  }
}

/// Whether there is a neighbour, and across which of its faces, is as good as random: no jump depends on it.
void CTetraedro::DejaDeSerVecino() {
  const std::uint32_t mio = Numero();
  std::uint32_t deNadie[4] = {};
  for (const std::uint32_t numero : vecinos) BorraDeCuatro(numero != 0 ? De(numero)->vecinos : deNadie, mio);
}

bool CTetraedro::Dentro(CCoor3D<int> const& p) {
  identificador = p.num;
  const double x = p.x, y = p.y, z = p.z;
  if (radio > kRadioDudoso) return EnEsfera(p);
  // The box has no tolerance.
  if (cx - radio > x || x > cx + radio || cy - radio > y || y > cy + radio || cz - radio > z || z > cz + radio) {
    return false;
  }
  return SignoCuadrado(Exceso(x, y, z), radio) < 1;
}

double CTetraedro::DistanciaMaxima() {
  if (Signo(distanciaMaxima) == 0) {
    distanciaMaxima =
        std::max({Distancia12(), Distancia23(), Distancia34(), Distancia41(), Distancia24(), Distancia31()});
  }
  return distanciaMaxima;
}

double CTetraedro::DistanciaMinima() const {
  return std::min({Distancia12(), Distancia23(), Distancia34(), Distancia41(), Distancia24(), Distancia31()});
}

double CTetraedro::Area(double precision) const {
  CPuntoTIN v[4] = {CPuntoTIN(*puntos[0]), CPuntoTIN(*puntos[1]), CPuntoTIN(*puntos[2]), CPuntoTIN(*puntos[3])};
  double suma = 0;
  for (auto const& cara : kVertice) {
    suma += CTriangulo(&v[cara[0]], &v[cara[1]], &v[cara[2]], -1, -1, -1).CalculaSuperficie(precision);
  }
  return suma;
}

double CTetraedro::Volumen(double precision) const {
  std::vector<CCoor3D<double>> base;
  for (unsigned i = 0; i < 3; ++i) base.emplace_back(*puntos[i]);
  CCoor3D<double> normal, media;
  double termino = 0, emc = 0, residuoMaximo = 0;
  std::vector<double> residuos;
  if (!normal.CalcularPlano(base, termino, residuos, emc, media, residuoMaximo, 0)) return 0.0;
  CPuntoTIN v[4] = {CPuntoTIN(*puntos[0]), CPuntoTIN(*puntos[1]), CPuntoTIN(*puntos[2]), CPuntoTIN(*puntos[3])};
  const double superficie = CTriangulo(&v[0], &v[1], &v[2], -1, -1, -1).CalculaSuperficie(precision);
  const CCoor3D<int> pie = v[3].ProyectaSobrePlano(normal, termino, false);
  return pie.Distancia(v[3], 1) * superficie / 3.0;
}

double CTetraedro::GetArea(short cara) const {
  CCoor3D<int> a, b, c;
  if (cara >= 0 && cara < 4) {
    unsigned const* v = kVertice[cara];
    a = *puntos[v[0]];
    b = *puntos[v[1]];
    c = *puntos[v[2]];
  }
  const double s1 = a.Distancia(*puntos[1], 1), s2 = b.Distancia(*puntos[2], 1), s3 = c.Distancia(*puntos[0], 1);
  const double h = (s1 + s2 + s3) / 2;
  return std::sqrt((h - s1) * h * (h - s2) * (h - s3));
}

}  // namespace Meseta47
