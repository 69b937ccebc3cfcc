#include "tetrahedral/CCascoCompleto.h"

#include <algorithm>
#include <utility>

#include "model/geometry/CEsfera.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kEntreAvisos = 1024;

template <class T>
void QuitaRepetidos(std::vector<T>& cosas) {
  std::sort(cosas.begin(), cosas.end());
  cosas.erase(std::unique(cosas.begin(), cosas.end()), cosas.end());
}

}  // namespace

void CCascoCompleto::Anade(CCuatro const& numeros) {
  for (const std::int32_t n : numeros) {
    if (n > 0) vertices.push_back(n);
  }
  if (numeros[0] < 0 && numeros[1] > 0) caras.push_back({numeros[1], numeros[2], numeros[3]});
  // Each vertex comes some ten times.
  if (vertices.size() == vertices.capacity()) QuitaRepetidos(vertices);
}

int CCascoCompleto::Infinito(CCelda const& c) {
  return static_cast<int>(std::find(std::begin(c.v), std::end(c.v), kInfinito) - std::begin(c.v));
}

int CCascoCompleto::Giro(CCelda const& c, int i, std::int32_t por) const {
  std::int32_t v[4] = {c.v[0], c.v[1], c.v[2], c.v[3]};
  v[i] = por;
  return SignoDeVolumen(P(v[0]), P(v[1]), P(v[2]), P(v[3]));
}

bool CCascoCompleto::EnConflicto(CCelda const& c, std::int32_t p) const {
  if (const int k = Infinito(c); k != 4) {
    // The sphere of a face of the hull is the half-space beyond it. On its plane, the circle tells, and it lies on the
    // sphere behind the face.
    const int giro = Giro(c, k, p);
    return giro > 0 || (giro == 0 && EnConflicto(celdas[static_cast<std::size_t>(c.n[k])], p));
  }
  const int lado = LadoDeEsfera(P(c.v[0]), P(c.v[1]), P(c.v[2]), P(c.v[3]), P(p));
  if (lado != 0) return lado < 0;
  // On the sphere. The one with the greatest number lies infinitely little below its place on the paraboloid, the next
  // one infinitely less, and so on: the first that moves the plane through the four away from the fifth decides.
  int orden[4] = {0, 1, 2, 3};
  std::sort(std::begin(orden), std::end(orden), [&c](int a, int b) { return c.v[a] > c.v[b]; });
  for (const int i : orden) {
    if (p > c.v[i]) return true;
    if (const int giro = Giro(c, i, p); giro != 0) return giro < 0;
  }
  return true;
}

/// From cell to cell across faces that have the point on their other side, into the cell that holds it or beyond the
/// hull's face that sees it.
std::int32_t CCascoCompleto::Localiza(std::int32_t p) const {
  std::int32_t i = ultima, antes = -1;
  if (const int k = Infinito(celdas[static_cast<std::size_t>(i)]); k != 4) {
    i = celdas[static_cast<std::size_t>(i)].n[k];
  }
  for (;;) {
    CCelda const& c = celdas[static_cast<std::size_t>(i)];
    if (Infinito(c) != 4) return i;
    int sale = -1;
    for (int k = 0; k < 4 && sale < 0; ++k) {
      if (c.n[k] != antes && Giro(c, k, p) < 0) sale = k;
    }
    if (sale < 0) return i;
    antes = std::exchange(i, c.n[sale]);
  }
}

std::int32_t CCascoCompleto::Nueva(CCelda const& c) {
  if (libres.empty()) {
    celdas.push_back(c);
    return static_cast<std::int32_t>(celdas.size()) - 1;
  }
  const std::int32_t i = libres.back();
  libres.pop_back();
  celdas[static_cast<std::size_t>(i)] = c;
  return i;
}

/// A first tetrahedron and the four cells at infinity around it. False when all points lie on one plane.
bool CCascoCompleto::Empieza() {
  celdas.clear();
  libres.clear();
  marca = 0;
  if (vertices.size() < 4) return false;
  const auto colineal = [this](std::int32_t a, std::int32_t b, std::int32_t c) {
    for (int plano = 0; plano < 3; ++plano) {
      if (P(c).CalculaLado(P(a), P(b), plano) != 0) return false;
    }
    return true;
  };
  const std::int32_t a = vertices[0], b = vertices[1];
  const auto c = std::find_if(vertices.begin() + 2, vertices.end(), [&](std::int32_t v) { return !colineal(a, b, v); });
  if (c == vertices.end()) return false;
  const auto giro = [&](std::int32_t d) { return SignoDeVolumen(P(a), P(b), P(*c), P(d)); };
  const auto d = std::find_if(vertices.begin() + 2, vertices.end(), [&](std::int32_t v) { return giro(v) != 0; });
  if (d == vertices.end()) return false;
  CCelda primera{{a, b, *c, *d}, {1, 2, 3, 4}};
  if (giro(*d) < 0) std::swap(primera.v[0], primera.v[1]);
  std::copy(std::begin(primera.v), std::end(primera.v), primeros);
  celdas.push_back(primera);
  nuevas.clear();
  for (int i = 0; i < 4; ++i) {
    // Seen through the face across from vertex i, infinity is on the other side: two vertices change places.
    CCelda fuera = primera;
    fuera.v[i] = kInfinito;
    const int j = (i + 1) % 4, k = (i + 2) % 4;
    std::swap(fuera.v[j], fuera.v[k]);
    fuera.n[i] = 0;
    celdas.push_back(fuera);
  }
  lados.clear();
  for (std::int32_t i = 0; i < 4; ++i) {
    CCelda const& fuera = celdas[static_cast<std::size_t>(i) + 1];
    for (int k = 0; k < 4; ++k) {
      if (k == i) continue;
      std::int32_t resto[2];
      for (int j = 0, m = 0; j < 4; ++j) {
        if (j != k && j != i) resto[m++] = fuera.v[j];
      }
      lados.push_back({std::min(resto[0], resto[1]), std::max(resto[0], resto[1]), i + 1, k});
    }
  }
  Enlaza();
  ultima = 0;
  return true;
}

/// Links the faces in `lados` in pairs.
void CCascoCompleto::Enlaza() {
  std::sort(lados.begin(), lados.end(),
            [](CLado const& p, CLado const& q) { return p.a != q.a ? p.a < q.a : p.b < q.b; });
  for (std::size_t i = 0; i + 1 < lados.size(); i += 2) {
    CLado const &p = lados[i], &q = lados[i + 1];
    celdas[static_cast<std::size_t>(p.celda)].n[p.cara] = q.celda;
    celdas[static_cast<std::size_t>(q.celda)].n[q.cara] = p.celda;
  }
}

void CCascoCompleto::Inserta(std::int32_t p) {
  marca += 2;  // tested and outside; and the number after it: condemned
  conflicto.assign(1, Localiza(p));
  nuevas.clear();
  lados.clear();
  celdas[static_cast<std::size_t>(conflicto[0])].marca = marca + 1;
  for (std::size_t i = 0; i < conflicto.size(); ++i) {
    const std::int32_t yo = conflicto[i];
    for (const std::int32_t otra : celdas[static_cast<std::size_t>(yo)].n) {
      CCelda& c = celdas[static_cast<std::size_t>(otra)];
      if (c.marca < marca) {
        const bool dentro = EnConflicto(c, p);
        c.marca = marca + (dentro ? 1 : 0);
        if (dentro) conflicto.push_back(otra);
      }
    }
  }
  for (const std::int32_t yo : conflicto) {
    for (int k = 0; k < 4; ++k) {
      const std::int32_t otra = celdas[static_cast<std::size_t>(yo)].n[k];
      if (celdas[static_cast<std::size_t>(otra)].marca == marca + 1) continue;
      CCelda nueva = celdas[static_cast<std::size_t>(yo)];
      nueva.v[k] = p;
      nueva.marca = marca;
      const std::int32_t aqui = Nueva(nueva);
      nuevas.push_back(aqui);
      CCelda& vecina = celdas[static_cast<std::size_t>(otra)];
      *std::find(std::begin(vecina.n), std::end(vecina.n), yo) = aqui;
      for (int j = 0; j < 4; ++j) {
        if (j == k) continue;
        std::int32_t resto[2];
        for (int q = 0, m = 0; q < 4; ++q) {
          if (q != j && q != k) resto[m++] = nueva.v[q];
        }
        lados.push_back({std::min(resto[0], resto[1]), std::max(resto[0], resto[1]), aqui, j});
      }
    }
  }
  Enlaza();
  libres.insert(libres.end(), conflicto.begin(), conflicto.end());
  for (const std::int32_t yo : conflicto) celdas[static_cast<std::size_t>(yo)].v[0] = -1;
  ultima = nuevas.back();
}

/// What can be reached from infinity without crossing a face that has a tetrahedron of the mesh behind it.
void CCascoCompleto::Recorre(std::function<void(CCuatro const&)> const& recibe) {
  marca += 2;
  std::vector<std::int32_t> pila;
  for (std::size_t i = 0; i < celdas.size(); ++i) {
    if (celdas[i].v[0] < 0 || Infinito(celdas[i]) == 4) continue;
    celdas[i].marca = marca;
    pila.push_back(static_cast<std::int32_t>(i));
  }
  while (!pila.empty()) {
    const CCelda c = celdas[static_cast<std::size_t>(pila.back())];
    pila.pop_back();
    const int infinito = Infinito(c);
    if (infinito == 4) {
      CCuatro numeros{c.v[0], c.v[1], c.v[2], c.v[3]};
      std::sort(numeros.begin(), numeros.end());
      recibe(numeros);
    }
    for (int k = 0; k < 4; ++k) {
      if (infinito != 4 && k != infinito) continue;
      CCelda& otra = celdas[static_cast<std::size_t>(c.n[k])];
      if (otra.marca == marca) continue;
      CCara cara{};
      for (int j = 0, m = 0; j < 4; ++j) {
        if (j != k) cara[static_cast<std::size_t>(m++)] = c.v[j];
      }
      std::sort(cara.begin(), cara.end());
      if (std::binary_search(caras.begin(), caras.end(), cara)) continue;
      otra.marca = marca;
      pila.push_back(c.n[k]);
    }
  }
}

bool CCascoCompleto::Completa(std::function<void(CCuatro const&)> const& recibe, std::function<bool()> const& sigue) {
  QuitaRepetidos(vertices);
  // A face with a corner's tetrahedron on both sides keeps nothing apart.
  std::sort(caras.begin(), caras.end());
  std::size_t quedan = 0;
  for (std::size_t i = 0; i < caras.size();) {
    const std::size_t j = i + 1 < caras.size() && caras[i + 1] == caras[i] ? i + 2 : i + 1;
    if (j == i + 1) caras[quedan++] = caras[i];
    i = j;
  }
  caras.resize(quedan);
  if (!Empieza()) return true;
  std::size_t cuantos = 0;
  for (const std::int32_t p : vertices) {
    if (std::find(std::begin(primeros), std::end(primeros), p) != std::end(primeros)) continue;
    if (++cuantos % kEntreAvisos == 0 && sigue && !sigue()) return false;
    Inserta(p);
  }
  Recorre(recibe);
  return true;
}

}  // namespace Meseta47
