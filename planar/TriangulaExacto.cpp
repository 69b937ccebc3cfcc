#include "planar/TriangulaExacto.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include "model/geometry/CirculoExacto.h"

namespace Meseta47 {

namespace {

using CIndice = std::uint32_t;
/// A directed side: 2 k or 2 k + 1 for the two directions of side k.
using CArista = std::uint32_t;

constexpr CArista Opuesta(CArista e) { return e ^ 1U; }

/// The relations of position, exact. Coordinates of 32 bits: differences need 33, their products 66.
class CPredicados {
 public:
  explicit CPredicados(std::vector<CLugarPlano> const& losLugares) : lugares(losLugares) {}

  /// Above 0 when a, b, c turn to the left, 0 on one line.
  [[nodiscard]] double Giro(CIndice a, CIndice b, CIndice c) const {
    CLugarPlano const &p = lugares[a], &q = lugares[b], &r = lugares[c];
    return ProductoVectorial(Resta(q.x, p.x), Resta(q.y, p.y), Resta(r.x, p.x), Resta(r.y, p.y));
  }

  /// Whether d lies in the circle of a, b, c, which turn to the left. Of four places on one circle the least is taken
  /// to lie a little off it, as if its lifted point on the paraboloid were lowered: inside the circle of the others, so
  /// that it is joined to the one across. Lowering the lesser ones by far more than the greater ones makes one decision
  /// of all of these.
  [[nodiscard]] bool EnCirculo(CIndice a, CIndice b, CIndice c, CIndice d) const {
    const double dentro = Dentro(lugares[a], lugares[b], lugares[c], lugares[d]);
    if (dentro != 0) return dentro > 0;
    const CIndice menor = std::min({a, b, c, d});  // places ascend with their indices
    if (menor == d) return true;
    // Lowering a lowers the plane through a, b, c on the side of b-c where a is, and lifts it on the other.
    if (menor == a) return Giro(b, c, d) < 0;
    return menor == b ? Giro(c, a, d) < 0 : Giro(a, b, d) < 0;
  }

 private:
  static std::int64_t Resta(std::int32_t a, std::int32_t b) { return std::int64_t{a} - b; }

  /// Above 0 inside the circle, 0 on it.
  static double Dentro(CLugarPlano const& a, CLugarPlano const& b, CLugarPlano const& c, CLugarPlano const& d) {
    const auto resta = [](std::int32_t p, std::int32_t q) { return static_cast<double>(Resta(p, q)); };
    const double ax = resta(a.x, d.x), ay = resta(a.y, d.y), bx = resta(b.x, d.x), by = resta(b.y, d.y);
    const double cx = resta(c.x, d.x), cy = resta(c.y, d.y);
    const double a2 = ax * ax + ay * ay, b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    const double determinante = a2 * (bx * cy - by * cx) + b2 * (cx * ay - cy * ax) + c2 * (ax * by - ay * bx);
    // Differences are exact, and each term goes through at most seven roundings: Shewchuk's bound (1997), rounded up.
    constexpr double kError = 0x1p-49;
    const double tamano = a2 * (std::abs(bx * cy) + std::abs(by * cx)) + b2 * (std::abs(cx * ay) + std::abs(cy * ax)) +
                          c2 * (std::abs(ax * by) + std::abs(ay * bx));
    if (std::abs(determinante) > kError * tamano) return determinante;
    const auto punto = [](CLugarPlano const& p) { return CCoor3D<int>(p.x, p.y, 0, 0); };
    return -ExcesoSobreCirculo(punto(a), punto(b), punto(c), punto(d));
  }

  std::vector<CLugarPlano> const& lugares;
};

/// A planar subdivision as rings of directed sides around each origin.
class CAristas {
 public:
  explicit CAristas(std::size_t lugares) { lados.reserve(6 * lugares); }

  /// The next side around the same origin, counter-clockwise; clockwise.
  [[nodiscard]] CArista Siguiente(CArista e) const { return lados[e].siguiente; }
  [[nodiscard]] CArista Anterior(CArista e) const { return lados[e].anterior; }
  [[nodiscard]] CIndice Desde(CArista e) const { return lados[e].desde; }
  [[nodiscard]] CIndice Hasta(CArista e) const { return lados[Opuesta(e)].desde; }
  /// The side that follows around the face on the left.
  [[nodiscard]] CArista PorLaIzquierda(CArista e) const { return Anterior(Opuesta(e)); }
  [[nodiscard]] std::size_t Cantidad() const { return lados.size(); }

  /// A side on its own.
  CArista Haz(CIndice desde, CIndice hasta) {
    CArista e = static_cast<CArista>(lados.size());
    if (libres.empty()) {
      lados.resize(lados.size() + 2);
    } else {
      e = libres.back();
      libres.pop_back();
    }
    lados[e] = {e, e, desde};
    lados[Opuesta(e)] = {Opuesta(e), Opuesta(e), hasta};
    return e;
  }
  /// A side from the end of `a` to the origin of `b`; the three then have one face on their left.
  CArista Une(CArista a, CArista b) {
    const CArista e = Haz(Hasta(a), Desde(b));
    PonTras(PorLaIzquierda(a), e);
    PonTras(b, Opuesta(e));
    return e;
  }
  void Borra(CArista e) {
    Saca(e);
    Saca(Opuesta(e));
    libres.push_back(e & ~1U);
    lados[e & ~1U].desde = lados[e | 1U].desde = kNadie;
  }
  [[nodiscard]] bool Existe(CArista e) const { return lados[e].desde != kNadie; }
  /// Puts `e`, alone in its ring, behind `x`, counter-clockwise.
  void PonTras(CArista x, CArista e) {
    const CArista y = lados[x].siguiente;
    lados[e].siguiente = y;
    lados[e].anterior = x;
    lados[x].siguiente = lados[y].anterior = e;
  }

  //         l                     l           The side between the triangles l and r of it becomes the one that joins
  //       / ^ \                 /   \         their apexes, from the right one to the left one.
  //      q  |  \      ->       /     \        .
  //     p --e-- q             p <--e-- q      (p to q with l on its left and r on its right)
  //       \ | /                 \   /
  //         r                     r
  void Voltea(CArista e) {
    const CArista a = Anterior(e), b = Anterior(Opuesta(e));
    Saca(e);
    Saca(Opuesta(e));
    lados[e].desde = Hasta(a);
    lados[Opuesta(e)].desde = Hasta(b);
    PonTras(PorLaIzquierda(a), e);
    PonTras(PorLaIzquierda(b), Opuesta(e));
  }

 private:
  static constexpr CIndice kNadie = ~CIndice{0};
  struct CLado {
    CArista siguiente = 0, anterior = 0;
    CIndice desde = 0;
  };

  void Saca(CArista e) {
    const CArista s = lados[e].siguiente, a = lados[e].anterior;
    lados[a].siguiente = s;
    lados[s].anterior = a;
    lados[e].siguiente = lados[e].anterior = e;
  }

  std::vector<CLado> lados;
  std::vector<CArista> libres;
};

/// Divide and conquer: halves by x, joined from their lower common tangent upwards.
class CDivideYVence {
 public:
  CDivideYVence(CPredicados const& losPredicados, CAristas& lasAristas) : son(losPredicados), t(lasAristas) {}

  /// The hull's side out of the first place, counter-clockwise, and the one out of the last place, clockwise.
  struct CExtremos {
    CArista izquierda, derecha;
  };

  /// The places from `i` to before `j`, two at least.
  CExtremos Triangula(CIndice i, CIndice j) {
    if (j - i == 2) {
      const CArista a = t.Haz(i, i + 1);
      return {a, Opuesta(a)};
    }
    if (j - i == 3) return Tres(i);
    const CIndice medio = i + (j - i) / 2;
    return Junta(Triangula(i, medio), Triangula(medio, j));
  }

 private:
  CExtremos Tres(CIndice i) {
    const CArista a = t.Haz(i, i + 1), b = t.Haz(i + 1, i + 2);
    t.PonTras(Opuesta(a), b);
    const double giro = son.Giro(i, i + 1, i + 2);
    if (giro == 0) return {a, Opuesta(b)};
    const CArista c = t.Une(b, a);
    return giro > 0 ? CExtremos{a, Opuesta(b)} : CExtremos{Opuesta(c), c};
  }

  [[nodiscard]] bool AIzquierda(CIndice p, CArista e) const { return son.Giro(p, t.Desde(e), t.Hasta(e)) > 0; }
  [[nodiscard]] bool ADerecha(CIndice p, CArista e) const { return son.Giro(p, t.Hasta(e), t.Desde(e)) > 0; }

  CExtremos Junta(CExtremos izq, CExtremos der) {
    CArista ldi = izq.derecha, rdi = der.izquierda;
    for (;;) {
      if (AIzquierda(t.Desde(rdi), ldi)) {
        ldi = t.PorLaIzquierda(ldi);
      } else if (ADerecha(t.Desde(ldi), rdi)) {
        rdi = t.Siguiente(Opuesta(rdi));
      } else {
        break;
      }
    }
    CArista base = t.Une(Opuesta(rdi), ldi);
    if (t.Desde(ldi) == t.Desde(izq.izquierda)) izq.izquierda = Opuesta(base);
    if (t.Desde(rdi) == t.Desde(der.derecha)) der.derecha = base;
    Cose(base);
    return {izq.izquierda, der.derecha};
  }

  /// `base` runs from right to left; each step joins it with the next place above it, of the left or of the right half.
  void Cose(CArista base) {
    for (;;) {
      const auto vale = [&](CArista e) { return ADerecha(t.Hasta(e), base); };
      CArista l = t.Siguiente(Opuesta(base));
      if (vale(l)) {
        while (vale(t.Siguiente(l)) &&
               son.EnCirculo(t.Hasta(base), t.Desde(base), t.Hasta(l), t.Hasta(t.Siguiente(l)))) {
          const CArista siguiente = t.Siguiente(l);
          t.Borra(l);
          l = siguiente;
        }
      }
      CArista r = t.Anterior(base);
      if (vale(r)) {
        while (vale(t.Anterior(r)) && son.EnCirculo(t.Hasta(base), t.Desde(base), t.Hasta(r), t.Hasta(t.Anterior(r)))) {
          const CArista siguiente = t.Anterior(r);
          t.Borra(r);
          r = siguiente;
        }
      }
      if (!vale(l) && !vale(r)) return;
      const bool porLaDerecha = !vale(l) || (vale(r) && son.EnCirculo(t.Hasta(l), t.Desde(l), t.Desde(r), t.Hasta(r)));
      base = porLaDerecha ? t.Une(r, Opuesta(base)) : t.Une(Opuesta(base), Opuesta(l));
    }
  }

  CPredicados const& son;
  CAristas& t;
};

/// The triangulation, with sides that are imposed on it.
class CTriangulada {
 public:
  explicit CTriangulada(std::vector<CLugarPlano> const& lugares) : son(lugares), t(lugares.size()) {
    const auto n = static_cast<CIndice>(lugares.size());
    if (n < 2) return;
    const CArista primera = Opuesta(CDivideYVence(son, t).Triangula(0, n).izquierda);
    exterior.resize(t.Cantidad());
    fijo.resize(t.Cantidad() / 2);
    CArista e = primera;
    do {
      exterior[e] = true;
      e = t.PorLaIzquierda(e);
    } while (e != primera);
    alguna.resize(n);
    for (e = 0; e < t.Cantidad(); ++e) {
      if (t.Existe(e)) alguna[t.Desde(e)] = e;
    }
  }

  /// Makes a-b a side, or several where places lie on it.
  void Impone(CIndice a, CIndice b) {
    while (a != b) {
      const CArista e = Hacia(a, b);
      const bool llega = son.Giro(a, t.Hasta(e), b) == 0;
      a = llega ? Fija(e) : Abre(e, b);
    }
  }

  /// Delaunay again, but for what is imposed.
  void Legaliza() {
    std::vector<CArista> pendientes;
    for (CArista e = 0; e < t.Cantidad(); e += 2) {
      if (t.Existe(e)) pendientes.push_back(e);
    }
    while (!pendientes.empty()) {
      const CArista e = pendientes.back();
      pendientes.pop_back();
      if (fijo[e / 2] || exterior[e] || exterior[Opuesta(e)]) continue;
      const CIndice l = t.Hasta(t.Siguiente(e)), r = t.Hasta(t.Anterior(e));
      if (!son.EnCirculo(t.Desde(e), t.Hasta(e), l, r)) continue;
      Voltea(e);
      for (const CArista f : {e, Opuesta(e)}) {
        const CArista otro = t.PorLaIzquierda(f);
        pendientes.insert(pendientes.end(), {otro & ~1U, t.PorLaIzquierda(otro) & ~1U});
      }
    }
  }

  [[nodiscard]] CSuperficieExacta Superficie() const {
    CSuperficieExacta s;
    std::vector<bool> vista(t.Cantidad());
    std::vector<CArista> pendientes = Comienzos();
    while (!pendientes.empty()) {
      const CArista primera = pendientes.back();
      pendientes.pop_back();
      if (vista[primera]) continue;
      CArista e = primera;
      for (int k = 0; k < 3; ++k, e = t.PorLaIzquierda(e)) {
        vista[e] = true;
        if (!fijo[e / 2] && !exterior[Opuesta(e)] && !vista[Opuesta(e)]) pendientes.push_back(Opuesta(e));
      }
      s.triangulos.push_back(ALaDerecha(t.Desde(e), t.Hasta(e), t.Hasta(t.Siguiente(e))));
    }
    for (CArista e = 0; e < t.Cantidad(); ++e) {
      if (exterior[e]) s.contorno.push_back({t.Hasta(e), t.Desde(e)});
    }
    std::sort(s.triangulos.begin(), s.triangulos.end());
    std::sort(s.contorno.begin(), s.contorno.end());
    return s;
  }

 private:
  /// The same triangle, which turns to the left, turned round and with its least index first.
  static std::array<CIndice, 3> ALaDerecha(CIndice a, CIndice b, CIndice c) {
    if (a < b && a < c) return {a, c, b};
    return b < c ? std::array{b, a, c} : std::array{c, b, a};
  }

  /// Sides with a triangle of the region on their left.
  [[nodiscard]] std::vector<CArista> Comienzos() const {
    std::vector<CArista> comienzos;
    for (const CArista e : bordes) {
      if (!exterior[Opuesta(e)]) comienzos.push_back(Opuesta(e));
    }
    for (CArista e = 0; bordes.empty() && e < t.Cantidad(); ++e) {
      if (t.Existe(e) && !exterior[e]) comienzos.push_back(e);
    }
    return comienzos;
  }

  void Voltea(CArista e) {
    for (const CArista f : {e, Opuesta(e)}) alguna[t.Desde(f)] = t.Siguiente(f);
    t.Voltea(e);
  }

  /// The side out of `a` on which b lies, or the last one clockwise of b: b is in the wedge on its left.
  [[nodiscard]] CArista Hacia(CIndice a, CIndice b) const {
    const CArista primera = alguna[a];
    CArista e = primera;
    do {
      const CIndice p = t.Hasta(e), q = t.Hasta(t.Siguiente(e));
      const double conP = son.Giro(a, p, b);
      if (conP == 0 && MismoLado(a, p, b)) return e;
      if (!exterior[e] && conP > 0 && son.Giro(a, q, b) < 0) return e;
      e = t.Siguiente(e);
    } while (e != primera);
    return e;
  }
  /// Of places on one line: whether p and b lie on one hand of a. They ascend along the line as their indices do.
  static bool MismoLado(CIndice a, CIndice p, CIndice b) { return (p > a) == (b > a); }

  CIndice Fija(CArista e) {
    fijo[e / 2] = true;
    bordes.push_back(e);
    return t.Hasta(e);
  }

  /// Flips away what lies between the origin of `e` and b, on whose wedge's right side `e` is; up to the first place on
  /// the way, which it returns.
  CIndice Abre(CArista e, CIndice b) {
    const CIndice a = t.Desde(e);
    std::deque<CArista> cruzan;
    CArista cruza = t.PorLaIzquierda(e);
    CIndice fin = b;
    for (;;) {
      cruzan.push_back(cruza);
      const CIndice p = t.Hasta(t.Siguiente(Opuesta(cruza)));  // the apex beyond
      if (p == b) break;
      const double giro = son.Giro(a, b, p);
      if (giro == 0) {
        fin = p;
        break;
      }
      // The way leaves the triangle beyond by its side on the left of p, or on the right.
      const CArista dePorLaDerecha = t.PorLaIzquierda(Opuesta(cruza));
      cruza = giro > 0 ? dePorLaDerecha : t.PorLaIzquierda(dePorLaDerecha);
    }
    Despeja(a, fin, cruzan);
    return Fija(Hacia(a, fin));
  }

  void Despeja(CIndice a, CIndice b, std::deque<CArista>& cruzan) {
    while (!cruzan.empty()) {
      const CArista e = cruzan.front();
      cruzan.pop_front();
      const CIndice p = t.Desde(e), q = t.Hasta(e), l = t.Hasta(t.Siguiente(e)), r = t.Hasta(t.Anterior(e));
      if (!(son.Giro(r, l, p) > 0 && son.Giro(r, l, q) < 0)) {
        cruzan.push_back(e);  // not a convex pair yet; another flip will make it one
        continue;
      }
      Voltea(e);
      const bool toca = l == a || l == b || r == a || r == b;
      if (!toca && (son.Giro(a, b, l) > 0) != (son.Giro(a, b, r) > 0)) cruzan.push_back(e);
    }
  }

  CPredicados son;
  CAristas t;
  std::vector<bool> exterior;   ///< directed sides with the outside on their left
  std::vector<bool> fijo;       ///< sides imposed
  std::vector<CArista> bordes;  ///< in the direction asked for
  std::vector<CArista> alguna;  ///< a side out of each place
};

}  // namespace

CSuperficieExacta TriangulaExacto(std::vector<CLugarPlano> const& lugares,
                                  std::vector<std::array<std::uint32_t, 2>> const& bordes) {
  CTriangulada triangulada(lugares);
  for (auto const& [a, b] : bordes) triangulada.Impone(a, b);
  triangulada.Legaliza();
  return triangulada.Superficie();
}

}  // namespace Meseta47
