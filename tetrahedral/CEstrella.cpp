#include "tetrahedral/CEstrella.h"

#include <algorithm>
#include <limits>

#include "platform/Anticipa.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kComparados = 64;  // up to here all are compared with all, in loops without a jump

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

void CEstrella::Amplia() {
  const std::size_t n = std::max<std::size_t>(kComparados, 2 * bordes.size());
  bordes.resize(n);
  vertice.resize(n);  // a closed surface of n triangles has fewer vertices
  casillas.resize(4 * n);
  claves.resize(n);
  orden.resize(n);
  for (auto* columna : {&vx, &vy, &vz}) columna->resize(n);
  tandas.resize(n / kTanda);
  pareja.resize(4 * n);
}

inline void CEstrella::Condena(CTetraedro* t, std::uint32_t numero) {
  if (condenados == cavidad.size()) {
    cavidad.resize(2 * condenados + kComparados);
    numeros.resize(cavidad.size());
  }
  t->marcas |= CTetraedro::kBorrado;
  cavidad[condenados] = t;
  numeros[condenados++] = numero;
  // Its turn comes when those before it in the list are done: by then what it leads to is here.
  for (const std::uint32_t n : t->vecinos) Anticipa(CTetraedro::De(n));
  AnticipaLectura(&t->puntos);
}

/// The vertices get their local numbers once the cavity stands: a table that grows would have to be filled anew.
inline void CEstrella::PonBorde(std::size_t condenado, unsigned cara, CTetraedro* vecino, std::uint32_t numeroVecino) {
  if (cantidad == bordes.size()) Amplia();
  CBorde& b = bordes[cantidad++];
  b.fuera = numeroVecino;
  b.suCara = vecino != nullptr ? static_cast<std::uint8_t>(vecino->CaraHacia(numeros[condenado])) : 0;
  b.condenado = static_cast<std::uint32_t>(condenado);
  b.cara = static_cast<std::uint8_t>(cara);
}

bool CEstrella::Crece(CCoor3D<int> const& p, CTetraedro* semilla, std::int32_t marca) {
  condenados = cantidad = vertices = 0;
  const std::int32_t segunda = marca + 1;
  const double x = p.x, y = p.y, z = p.z;
  semilla->identificador = segunda;
  Condena(semilla, semilla->Numero());
  bool repetido = semilla->TieneVerticeEn(p);
  for (std::size_t i = 0; i < condenados && !repetido; ++i) {
    CTetraedro* t = cavidad[i];
    for (unsigned cara = 0; cara < 4; ++cara) {
      const std::uint32_t n = t->vecinos[cara];
      if (n == 0) {
        PonBorde(i, cara, nullptr, 0);
        continue;
      }
      CTetraedro* v = CTetraedro::De(n);
      if (v->identificador != segunda && v->identificador != marca) {
        v->identificador = segunda;
        ++esferas;
        const double exceso = v->Exceso(x, y, z);
        bool dentro = exceso < 0;
        if (!(std::abs(exceso) > v->margen)) [[unlikely]] {
          ++exactas;
          const int lado = LadoDeEsfera(*v->puntos[0], *v->puntos[1], *v->puntos[2], *v->puntos[3], p);
          dentro = lado <= 0;
          // Only on the sphere can the point be a vertex.
          if (lado == 0 && v->TieneVerticeEn(p)) repetido = true;
        }
        if (dentro) {
          Condena(v, n);
          continue;
        }
      }
      if (!v->Borrado()) PonBorde(i, cara, v, n);
    }
  }
  if (repetido) BorraMarcas();
  return !repetido;
}

void CEstrella::BorraMarcas() {
  for (std::size_t i = 0; i < condenados; ++i) cavidad[i]->marcas &= ~CTetraedro::kBorrado;
}

inline unsigned CEstrella::Vertice(CCoor3D<int>* punto) {
  constexpr std::uint64_t kReparto = 0x9E3779B97F4A7C15U;  // 2^64 over the golden ratio
  const std::size_t mascara = casillas.size() - 1;
  std::size_t i = (reinterpret_cast<std::uintptr_t>(punto) >> 4) * kReparto >> 40 & mascara;
  while (casillas[i].vez == vez) {
    if (casillas[i].punto == punto) return casillas[i].vertice;
    i = (i + 1) & mascara;
  }
  casillas[i] = {punto, vez, static_cast<unsigned>(vertices)};
  vertice[vertices] = {punto, punto->num, 0};
  return static_cast<unsigned>(vertices++);
}

bool CEstrella::Dispone(CCoor3D<int> const& p) {
  if (++vez == 0) {
    std::fill(casillas.begin(), casillas.end(), CCasilla{});
    vez = 1;
  }
  for (std::size_t i = 0; i < cantidad; ++i) {
    CBorde& b = bordes[i];
    CTetraedro const* t = cavidad[b.condenado];
    unsigned const* v = CTetraedro::kVertice[b.cara];
    b.grabado = t->Grabado(b.cara);
    for (unsigned k = 0; k < 3; ++k) {
      if (vertices == vertice.size()) return false;
      b.v[k] = Vertice(t->puntos[v[k]]);
    }
  }
  for (std::size_t i = 0; i < vertices; ++i) {
    CCoor3D<int> const& v = *vertice[i].punto;
    vx[i] = static_cast<double>(v.x) - p.x;
    vy[i] = static_cast<double>(v.y) - p.y;
    vz[i] = static_cast<double>(v.z) - p.z;
  }
  if (!Empareja()) return false;
  Ordena();
  return true;
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
  constexpr std::size_t kMasCaras = 0xFFFF / 4;
  if (cantidad >= kMasCaras) return false;
  if (aristas.size() < n * n) aristas.resize(n * n);
  std::uint16_t *ultima = aristas.data(), *par = pareja.data();
  std::fill(ultima, ultima + n * n, std::uint16_t{0});
  constexpr unsigned kDe[3] = {0, 0, 1}, kA[3] = {1, 2, 2};
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
  std::uint16_t fallos = 0;
  for (std::size_t i = 0; i < cantidad; ++i) {
    for (std::size_t e = 4 * i + 1; e < 4 * i + 4; ++e) {
      fallos = static_cast<std::uint16_t>(fallos | (par[par[e]] ^ e) | (par[e] == 0 ? 1 : 0));
    }
  }
  return fallos == 0;
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

void CEstrella::PonEsferas(CTanda& t, CCoor3D<int> const& p) {
  const double px = p.x, py = p.y, pz = p.z;
  for (std::size_t k = 0; k < kTanda; ++k) {
    const CEsfera::CCalculo r =
        CEsfera::Calcula({t.ax[k], t.ay[k], t.az[k], t.bx[k], t.by[k], t.bz[k], t.cx[k], t.cy[k], t.cz[k]}, px, py, pz);
    t.x[k] = r.x;
    t.y[k] = r.y;
    t.z[k] = r.z;
    t.radio2[k] = r.radio2;
    t.margen[k] = r.margen;
    t.radio[k] = r.radio;
    t.volumen6[k] = r.volumen6;
    t.tamano[k] = r.tamano;
    t.error[k] = r.error;
  }
}

bool CEstrella::Calcula(CCoor3D<int> const& p) {
  for (std::size_t i = 0; i < cantidad; i += kTanda) {
    CTanda& t = tandas[i / kTanda];
    for (std::size_t k = 0; k < kTanda; ++k) {
      // Beyond the last face the first comes again: batches are always full, and their loops of fixed length.
      unsigned const* v = bordes[i + k < cantidad ? i + k : 0].v;
      t.ax[k] = vx[v[0]], t.ay[k] = vy[v[0]], t.az[k] = vz[v[0]];
      t.bx[k] = vx[v[1]], t.by[k] = vy[v[1]], t.bz[k] = vz[v[1]];
      t.cx[k] = vx[v[2]], t.cy[k] = vy[v[2]], t.cz[k] = vz[v[2]];
    }
    PonEsferas(t, p);
  }
  for (std::size_t i = 0; i < cantidad; ++i) {
    CTanda& t = tandas[i / kTanda];
    const std::size_t k = i % kTanda;
    if (CEsfera::EsBuena(t.volumen6[k], t.tamano[k], t.error[k])) [[likely]] {
      continue;
    }
    unsigned const* v = bordes[i].v;
    CEsfera e;
    if (!e.Afina(*vertice[v[0]].punto, *vertice[v[1]].punto, *vertice[v[2]].punto, p)) return false;
    t.x[k] = e.x;
    t.y[k] = e.y;
    t.z[k] = e.z;
    t.radio2[k] = e.radio2;
    t.margen[k] = e.margen;
    t.radio[k] = e.radio;
  }
  return true;
}

void CEstrella::PideSitios() {
  if (sitios.size() < bordes.size()) sitios.resize(bordes.size());
  const std::size_t propios = std::min(condenados, cantidad);
  std::copy(cavidad.begin(), cavidad.begin() + static_cast<std::ptrdiff_t>(propios), sitios.begin());
  std::size_t i = propios;
  try {
    for (; i < cantidad; ++i) sitios[i] = CTetraedro::PideSitio();
  } catch (...) {
    while (i-- > propios) delete sitios[i];
    throw;
  }
}

void CEstrella::Construye(CCoor3D<int>* p) {
  const std::size_t n = cantidad;
  std::uint32_t* numero = reinterpret_cast<std::uint32_t*>(claves.data());
  const std::size_t propios = std::min(condenados, n);
  for (std::size_t i = 0; i < propios; ++i) numero[i] = numeros[i];
  for (std::size_t i = propios; i < n; ++i) numero[i] = sitios[i]->Numero();
  for (std::size_t i = n; i < condenados; ++i) {
    cavidad[i]->clear();
    delete cavidad[i];
  }
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
