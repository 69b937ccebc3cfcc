#include "tetrahedral/CEstrella.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "platform/Anticipa.h"
#include "platform/Vectores.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kComparados = 64;        // up to here all are compared with all, in loops without a jump
constexpr std::size_t kVerticesEnTabla = 256;  // a table of all pairs takes 128 KB then
constexpr std::size_t kCarasEnTabla = 0x3FFF;  // whose edges count to 16 bits

constexpr std::size_t kCasillasPorCara = 8;  // a sixteenth in use; half as many for the largest star so far

constexpr unsigned kDe[3] = {0, 0, 1}, kA[3] = {1, 2, 2};  // the edges of a face, by its vertices

/// How many numbers lie below each. No two are equal.
template <class T>
void CuentaMenores(T const* numeros, std::size_t n, int* menores) {
  for (std::size_t i = 0; i < n; ++i) {
    int cuantos = 0;
    for (std::size_t j = 0; j < n; ++j) cuantos += static_cast<int>(numeros[j] < numeros[i]);
    menores[i] = cuantos;
  }
}

}  // namespace

void CEstrella::AmpliaCavidad() { cavidad.resize(2 * cavidad.size() + kComparados); }

void CEstrella::Amplia() {
  const std::size_t n = std::max<std::size_t>(kComparados, 2 * bordes.size());
  bordes.resize(n);
  vertice.resize(3 * n + 1);  // a closed surface has fewer by far; one that is not is refused later
  casillas.resize(std::bit_ceil(kCasillasPorCara / 2 * n));
  claves.resize(3 * n);
  orden.resize(n);
  for (auto* columna : {&vx, &vy, &vz}) columna->resize(3 * n);
  tandas.resize(n / kTanda);
  pareja.resize(4 * n);
}

CTetraedro* CEstrella::MasCercano(CCoor3D<int> const& p, CTetraedro* a, CTetraedro* b) {
  if (a == nullptr || b == nullptr) return a != nullptr ? a : b;
  return b->Exceso(p.x, p.y, p.z) < a->Exceso(p.x, p.y, p.z) ? b : a;
}

/// The least first, then who has it: which of them is nearest is unpredictable, and this way a single branch depends on
/// it.
CTetraedro* CEstrella::MasCercano(CCoor3D<int> const& p) {
  const double x = p.x, y = p.y, z = p.z;
  double menores[kTanda];
  std::fill(std::begin(menores), std::end(menores), HUGE_VAL);
  const std::size_t n = std::min(cantidad, hechos);
  for (std::size_t i = 0; i < n; i += kTanda) {
    CTanda& t = tandas[i / kTanda];
    for (std::size_t k = 0; k < kTanda; ++k) {
      const double dx = t.x[k] - x, dy = t.y[k] - y, dz = t.z[k] - z;
      t.exceso[k] = dx * dx + dy * dy + dz * dz - t.radio2[k];
    }
    for (std::size_t k = n - i; k < kTanda; ++k) t.exceso[k] = HUGE_VAL;  // no tetrahedron's
    for (std::size_t k = 0; k < kTanda; ++k) menores[k] = t.exceso[k] < menores[k] ? t.exceso[k] : menores[k];
  }
  const double menor = *std::min_element(std::begin(menores), std::end(menores));
  std::size_t mejor = 0;
  while (mejor + 1 < n && tandas[mejor / kTanda].exceso[mejor % kTanda] != menor) ++mejor;
  return sitios[mejor];
}

CTetraedro* CEstrella::Desciende(CCoor3D<int> const& p, CTetraedro* desde, std::uint64_t& pasos, bool& dentro) {
  const double x = p.x, y = p.y, z = p.z;
  CTetraedro* t = desde;
  double exceso = t->Exceso(x, y, z);
  for (;;) {
    dentro = std::abs(exceso) > t->margen ? exceso < 0 : t->EnEsfera(p);
    if (dentro) return t;
    CTetraedro* mejor = nullptr;
    for (unsigned cara = 0; cara < 4; ++cara) {
      CTetraedro* v = t->Vecino(cara);
      if (v == nullptr) continue;
      const double suyo = v->Exceso(x, y, z);
      if (!(suyo < exceso)) continue;
      exceso = suyo;
      mejor = v;
    }
    if (mejor == nullptr) return t;
    ++pasos;
    t = mejor;
  }
}

/// Where doubles cannot tell. Only on the sphere can the point be a vertex.
int CEstrella::Decide(CTetraedro const& t, CCoor3D<int> const& p, bool& repetido) {
  ++exactas;
  const int lado = LadoDeEsfera(*t.puntos[0], *t.puntos[1], *t.puntos[2], *t.puntos[3], p);
  if (lado == 0 && t.TieneVerticeEn(p)) repetido = true;
  return lado;
}

// Whether a neighbour is new, and lies inside, is as good as random: both lists are written in any case, and grow or do
// not. The vertices of the boundary get their local numbers once the cavity stands.
bool CEstrella::Crece(CCoor3D<int> const& p, CTetraedro* semilla, std::int32_t marca) {
  const std::int32_t segunda = marca + 1;
  const double x = p.x, y = p.y, z = p.z;
  bool repetido = semilla->TieneVerticeEn(p);
  nadie.identificador = marca;
  semilla->identificador = segunda;
  if (cavidad.empty()) AmpliaCavidad();
  cavidad[0] = {semilla, semilla->Numero(), 4};
  std::size_t dentro = 1, caras = 0, probadas = 0;
  for (std::size_t i = 0; i < dentro && !repetido; ++i) {
    if (dentro + 4 > cavidad.size()) AmpliaCavidad();
    if (caras + 4 > bordes.size()) Amplia();
    CTetraedro const* t = cavidad[i].t;
    const std::uint32_t mio = cavidad[i].numero;
    AnticipaLectura(&t->puntos);
    for (const std::uint32_t n : cavidad[std::min(i + 2, dentro - 1)].t->vecinos) Anticipa(CNumeros::Direccion<128>(n));
    const unsigned vuelta = cavidad[i].vuelta;  // leads to one that is known to lie inside
    const unsigned otras = vuelta == 4 ? 4 : 3;
    for (unsigned k = 0; k < otras; ++k) {
      const unsigned cara = k + static_cast<unsigned>(k >= vuelta);
      const std::uint32_t n = t->vecinos[cara];
      CTetraedro* v = n != 0 ? CTetraedro::De(n) : &nadie;
      const auto sello = static_cast<std::uint32_t>(v->identificador) - static_cast<std::uint32_t>(marca);
      const auto nuevo = static_cast<unsigned>(sello > 1);
      double exceso = v->Exceso(x, y, z);
      if (!(std::abs(exceso) > v->margen)) [[unlikely]] {
        if (nuevo != 0) exceso = Decide(*v, p, repetido);
      }
      const unsigned fuera = (nuevo & static_cast<unsigned>(exceso > 0)) | static_cast<unsigned>(sello == 0);
      v->identificador = segunda - static_cast<std::int32_t>(fuera);
      const unsigned suya = v->CaraHacia(mio);
      cavidad[dentro] = {v, n, suya};
      dentro += static_cast<unsigned>(nuevo > fuera);
      CBorde& b = bordes[caras];
      b.fuera = n;
      b.condenado = static_cast<std::uint32_t>(i);
      b.cara = static_cast<std::uint8_t>(cara);
      b.suCara = static_cast<std::uint8_t>(suya);
      caras += fuera;
      probadas += nuevo;
    }
  }
  esferas += probadas;
  condenados = dentro;
  cantidad = caras;
  return !repetido;
}

/// Whether a vertex has been met before is unpredictable, so its entry is written in any case. Another vertex of this
/// star in its place, which is rare, has a key that differs in the address alone: one comparison, one branch.
inline unsigned CEstrella::Vertice(CCoor3D<int>* punto) {
  constexpr std::uint64_t kReparto = 0x9E3779B97F4A7C15U;  // 2^64 over the golden ratio
  const std::uint64_t clave = std::uint64_t{reinterpret_cast<std::uintptr_t>(punto)} << kBitsDeVez | vez;
  std::size_t i = clave * kReparto >> 40 & mascara;
  std::uint64_t distinta = casillas[i].clave ^ clave;
  const auto esDeOtro = [&] { return std::rotr(distinta, kBitsDeVez) - 1 < (UINT64_MAX >> kBitsDeVez); };
  while (esDeOtro()) [[unlikely]] {
      i = (i + 1) & mascara;
      distinta = casillas[i].clave ^ clave;
    }
  CCasilla& suya = casillas[i];
  const auto nuevo = static_cast<std::uint64_t>(distinta != 0);
  const std::uint64_t suyo = (vertices & (0 - nuevo)) | (suya.vertice & (nuevo - 1));
  suya = {clave, suyo};
  vertice[vertices].punto = punto;
  vertices += nuevo;
  return static_cast<unsigned>(suyo);
}

URDIMBRE_DE_UNA_PIEZA void CEstrella::NumeraVertices() {
  vertices = 0;
  // A large star leaves a large table, which would fill the nearest cache: a small one takes its beginning alone.
  mascara = std::min(std::bit_ceil(kCasillasPorCara * cantidad), casillas.size()) - 1;
  if (++vez == 1U << kBitsDeVez) {
    std::fill(casillas.begin(), casillas.end(), CCasilla{});
    vez = 1;
  }
  for (std::size_t i = 0; i < cantidad; ++i) {
    CBorde& b = bordes[i];
    CTetraedro const* t = cavidad[b.condenado].t;
    unsigned const* v = CTetraedro::kVertice[b.cara];
    b.grabado = t->Grabado(b.cara);
    b.v[0] = Vertice(t->puntos[v[0]]);
    b.v[1] = Vertice(t->puntos[v[1]]);
    b.v[2] = Vertice(t->puntos[v[2]]);
  }
}

bool CEstrella::Dispone(CCoor3D<int> const& p) {
  NumeraVertices();
  for (std::size_t i = 0; i < vertices; ++i) {
    CCoor3D<int> const& v = *vertice[i].punto;
    vertice[i].num = v.num;
    vx[i] = static_cast<double>(v.x) - p.x;
    vy[i] = static_cast<double>(v.y) - p.y;
    vz[i] = static_cast<double>(v.z) - p.z;
  }
  const bool enTabla = vertices <= kVerticesEnTabla && cantidad <= kCarasEnTabla;
  return enTabla ? Empareja() : EmparejaPorOrden();
}

//        a                     The face (a, b, c) sees the point P; its tetrahedron (a, b, c, P) meets the one of the
//        face
//      / | \                   across the edge a-b in the face (a, b, P), which both call 124. Likewise a-c and 134,
//      b-c
//    c   |   d      P          and 234 ... in the other it is whatever a-b is there: 12, 13 or 23.
//      \ | /
//        b
bool CEstrella::Empareja() {
  const std::size_t n = vertices;
  if (aristas.size() < n * n) aristas.resize(n * n);
  std::uint16_t* ultima = aristas.data();
  std::uint32_t* par = pareja.data();
  std::fill(ultima, ultima + n * n, std::uint16_t{0});
  // The second of two finds the first. Without a jump: which of them an edge is, is as good as random, and a first one
  // does no harm at place 0.
  for (std::size_t i = 0; i < cantidad; ++i) {
    unsigned const* v = bordes[i].v;
    for (unsigned k = 0; k < 3; ++k) {
      std::uint16_t& aqui = ultima[v[kDe[k]] * n + v[kA[k]]];
      const auto yo = static_cast<std::uint16_t>(i * 4 + k + 1);
      par[yo] = aqui;
      par[aqui] = yo;
      aqui = yo;
    }
  }
  // Where an edge came once, or more than twice, some partner is not mutual.
  std::uint32_t fallos = 0;
  for (std::size_t i = 0; i < cantidad; ++i) {
    for (auto e = static_cast<std::uint32_t>(4 * i + 1); e < 4 * i + 4; ++e) {
      fallos |= (par[par[e]] ^ e) | static_cast<std::uint32_t>(par[e] == 0);
    }
  }
  return fallos == 0;
}

/// The same for a boundary of many vertices, whose table of pairs would grow with the square.
bool CEstrella::EmparejaPorOrden() {
  lados.clear();
  for (std::size_t i = 0; i < cantidad; ++i) {
    unsigned const* v = bordes[i].v;
    for (unsigned k = 0; k < 3; ++k) {
      lados.push_back({std::uint64_t{v[kDe[k]]} << 32 | v[kA[k]], static_cast<std::uint32_t>(4 * i + k + 1)});
    }
  }
  std::sort(lados.begin(), lados.end(), [](CLado const& a, CLado const& b) { return a.extremos < b.extremos; });
  for (std::size_t i = 0; i < lados.size(); i += 2) {
    if (i + 1 == lados.size() || lados[i].extremos != lados[i + 1].extremos) return false;
    if (i + 2 < lados.size() && lados[i].extremos == lados[i + 2].extremos) return false;
    pareja[lados[i].lado] = lados[i + 1].lado;
    pareja[lados[i + 1].lado] = lados[i].lado;
  }
  return true;
}

/// By the numbers of the vertices, as CCara compares them.
void CEstrella::Ordena() {
  int *num = claves.data(), *rango = reinterpret_cast<int*>(orden.data());
  if (vertices <= kComparados && cantidad <= kComparados) {
    for (std::size_t i = 0; i < vertices; ++i) num[i] = vertice[i].num;
    CuentaMenores(num, vertices, rango);
    for (std::size_t i = 0; i < vertices; ++i) vertice[i].rango = rango[i];
    for (std::size_t i = 0; i < cantidad; ++i) {
      unsigned const* v = bordes[i].v;
      claves[i] = (vertice[v[0]].rango << 16) | (vertice[v[1]].rango << 8) | vertice[v[2]].rango;
    }
    int puestos[kComparados];
    CuentaMenores(claves.data(), cantidad, puestos);
    for (std::size_t i = 0; i < cantidad; ++i) orden[static_cast<std::size_t>(puestos[i])] = static_cast<unsigned>(i);
    return;
  }
  for (std::size_t i = 0; i < cantidad; ++i) orden[i] = static_cast<unsigned>(i);
  std::sort(orden.begin(), orden.begin() + static_cast<std::ptrdiff_t>(cantidad), [this](unsigned i, unsigned j) {
    for (unsigned k = 0; k < 3; ++k) {
      const int a = vertice[bordes[i].v[k]].num, b = vertice[bordes[j].v[k]].num;
      if (a != b) return a < b;
    }
    return false;
  });
}

inline void CEstrella::PonTandas(CTanda* tandas, std::size_t cuantas, CCoor3D<int> const& p) {
  const double px = p.x, py = p.y, pz = p.z;
  for (CTanda* t = tandas; t != tandas + cuantas; ++t) {
    for (std::size_t k = 0; k < kTanda; ++k) {
      const CEsfera::CCalculo r = CEsfera::Calcula(
          {t->ax[k], t->ay[k], t->az[k], t->bx[k], t->by[k], t->bz[k], t->cx[k], t->cy[k], t->cz[k]}, px, py, pz);
      t->x[k] = r.x;
      t->y[k] = r.y;
      t->z[k] = r.z;
      t->radio2[k] = r.radio2;
      t->margen[k] = r.margen;
      t->radio[k] = r.radio;
      t->certeza[k] = CEsfera::EsBuena(r.volumen6, r.tamano, r.error) ? 1 : -1;
    }
  }
}

URDIMBRE_DE_UNA_PIEZA void CEstrella::PonEsferas(CTanda* tandas, std::size_t cuantas, CCoor3D<int> const& p) {
  PonTandas(tandas, cuantas, p);
}
URDIMBRE_ANCHO void CEstrella::PonEsferasAncho(CTanda* tandas, std::size_t cuantas, CCoor3D<int> const& p) {
  PonTandas(tandas, cuantas, p);
}

/// All faces are laid out before the first sphere: then spheres do not wait for one another's divisions.
bool CEstrella::Calcula(CCoor3D<int> const& p) {
  static const bool ancho = HayVectoresAnchos();
  const std::size_t cuantas = (cantidad + kTanda - 1) / kTanda;
  for (std::size_t i = 0; i < cuantas * kTanda; ++i) {
    CTanda& t = tandas[i / kTanda];
    const std::size_t k = i % kTanda;
    // Beyond the last face the first comes again: batches are always full, and their loops of fixed length.
    unsigned const* v = bordes[i < cantidad ? i : 0].v;
    t.ax[k] = vx[v[0]], t.ay[k] = vy[v[0]], t.az[k] = vz[v[0]];
    t.bx[k] = vx[v[1]], t.by[k] = vy[v[1]], t.bz[k] = vz[v[1]];
    t.cx[k] = vx[v[2]], t.cy[k] = vy[v[2]], t.cz[k] = vz[v[2]];
  }
  ancho ? PonEsferasAncho(tandas.data(), cuantas, p) : PonEsferas(tandas.data(), cuantas, p);
  for (std::size_t i = 0; i < cuantas; ++i) {
    for (unsigned dudosas = BajoCero(tandas[i].certeza); dudosas != 0; dudosas &= dudosas - 1) {
      const std::size_t cual = i * kTanda + static_cast<unsigned>(std::countr_zero(dudosas));
      if (cual < cantidad && !Afina(cual, p)) return false;
    }
  }
  return true;
}

bool CEstrella::Afina(std::size_t i, CCoor3D<int> const& p) {
  unsigned const* v = bordes[i].v;
  CEsfera e;
  if (!e.Afina(*vertice[v[0]].punto, *vertice[v[1]].punto, *vertice[v[2]].punto, p)) return false;
  CTanda& t = tandas[i / kTanda];
  const std::size_t k = i % kTanda;
  t.x[k] = e.x;
  t.y[k] = e.y;
  t.z[k] = e.z;
  t.radio2[k] = e.radio2;
  t.margen[k] = e.margen;
  t.radio[k] = e.radio;
  return true;
}

void CEstrella::Guarda(CTetraedro* t) noexcept {
  t->clear();
  if (libres.size() == libres.capacity() || !t->EsDeReserva()) {
    delete t;
  } else {
    libres.push_back(t);
  }
}

void CEstrella::SueltaLibres() noexcept {
  CTetraedro::Destruye(libres);
  libres.clear();
}

void CEstrella::PideSitios() {
  if (sitios.size() < bordes.size()) sitios.resize(bordes.size());
  const std::size_t propios = std::min(condenados, cantidad);
  for (std::size_t k = 0; k < propios; ++k) sitios[k] = cavidad[k].t;
  std::size_t i = propios;
  for (; i < cantidad && !libres.empty(); libres.pop_back()) sitios[i++] = libres.back();
  const std::size_t tenidos = i;
  try {
    for (; i < cantidad; ++i) sitios[i] = CTetraedro::PideSitio();
    // Without a pool a number takes memory too.
    for (std::size_t k = tenidos; k < cantidad; ++k) static_cast<void>(sitios[k]->Numero());
  } catch (...) {
    while (i-- > propios) delete sitios[i];
    throw;
  }
}

void CEstrella::Construye(CCoor3D<int>* p) {
  const std::size_t n = cantidad;
  hechos = n;
  std::uint32_t* numero = reinterpret_cast<std::uint32_t*>(claves.data());
  const std::size_t propios = std::min(condenados, n);
  for (std::size_t i = 0; i < propios; ++i) numero[i] = cavidad[i].numero;
  for (std::size_t i = propios; i < n; ++i) numero[i] = sitios[i]->Numero();
  for (std::size_t i = n; i < condenados; ++i) Guarda(cavidad[i].t);
  for (std::size_t i = 0; i < n; ++i) {
    CBorde const& b = bordes[i];
    CTetraedro& t = *sitios[i];
    CTanda const& e = tandas[i / kTanda];
    const std::size_t en = i % kTanda;
    t.cx = e.x[en];
    t.cy = e.y[en];
    t.cz = e.z[en];
    t.radio2 = e.radio2[en];
    t.margen = e.margen[en];
    t.identificador = 0;
    t.marcas = (t.marcas & CTetraedro::kMascaraSitio) | CTetraedro::kDesconocidas;
    if (b.grabado) t.SetGrabado(0, true);
    t.vecinos[0] = b.fuera;
    for (unsigned k = 0; k < 3; ++k) t.vecinos[k + 1] = numero[pareja[4 * i + k + 1] / 4];
    for (unsigned k = 0; k < 3; ++k) t.puntos[k] = vertice[b.v[k]].punto;
    t.puntos[3] = p;
    t.radio = e.radio[en];
    t.distanciaMaxima = 0;
    if (b.fuera == 0) continue;
    CTetraedro& otro = *CTetraedro::De(b.fuera);
    otro.vecinos[b.suCara] = numero[i];
    // What was known of the face and its edges is forgotten on both sides.
    constexpr std::uint32_t kCara[4] = {3U << 5 | 3U << 7 | 3U << 11, 3U << 5 | 3U << 9 | 3U << 13,
                                        3U << 7 | 3U << 9 | 3U << 16, 3U << 11 | 3U << 13 | 3U << 16};
    const std::uint32_t suyas = kCara[b.suCara];
    otro.marcas =
        (otro.marcas & ~suyas & ~(1U << (CTetraedro::kBitGrabado + b.suCara))) | (CTetraedro::kDesconocidas & suyas);
  }
}

unsigned CEstrella::Marco(std::size_t i, CMarco const* marcos, unsigned n) const {
  CTanda const& t = tandas[i / kTanda];
  const std::size_t en = i % kTanda;
  const double x = t.x[en], y = t.y[en], z = t.z[en], r = t.radio[en];
  const double minX = x - r, minY = y - r, minZ = z - r, maxX = x + r, maxY = y + r, maxZ = z + r;
  unsigned k = n - 1;
  for (; k != 0; --k) {
    CMarco const& m = marcos[k];
    const unsigned enX = static_cast<unsigned>(minX >= m.minX) & static_cast<unsigned>(maxX <= m.maxX);
    const unsigned enY = static_cast<unsigned>(minY >= m.minY) & static_cast<unsigned>(maxY <= m.maxY);
    const unsigned enZ = static_cast<unsigned>(minZ >= m.minZ) & static_cast<unsigned>(maxZ <= m.maxZ);
    if ((enX & enY & enZ) != 0) break;
  }
  return k;
}

}  // namespace Meseta47
