#include <algorithm>
#include <atomic>

#include "model/terrain/CTIN.h"
#include "model/threads/Codigos.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

/// A side in one of its two directions.
struct Paso {
  std::uint32_t desde, hasta;

  bool operator<(Paso const& o) const { return desde != o.desde ? desde < o.desde : hasta < o.hasta; }
};

/// Sides that may bound the surface, and how many triangles lie on either side of each.
class CCandidatos {
 public:
  CCandidatos(std::vector<CLado> const& lados, std::int64_t base, std::size_t puntos) : esExtremo(puntos) {
    for (CLado const& l : lados) {
      const std::int64_t a = std::min(l.P1, l.P2) - base, b = std::max(l.P1, l.P2) - base;
      if (a == b || a < 0 || b >= static_cast<std::int64_t>(puntos)) continue;
      claves.push_back(Clave(static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b)));
      esExtremo[static_cast<std::size_t>(a)] = esExtremo[static_cast<std::size_t>(b)] = 1;
    }
    std::sort(claves.begin(), claves.end());
    claves.erase(std::unique(claves.begin(), claves.end()), claves.end());
    aLaDerecha.resize(claves.size());
    aLaIzquierda.resize(claves.size());
  }

  /// Takes note of a triangle. From any number of threads.
  void Cuenta(Terna const& t) {
    for (std::size_t s = 0; s < 3; ++s) {
      const std::uint32_t a = t[s], b = t[(s + 1) % 3];
      if (!esExtremo[a] || !esExtremo[b]) continue;  // as good as always
      const std::uint64_t clave = Clave(std::min(a, b), std::max(a, b));
      const auto donde = std::lower_bound(claves.begin(), claves.end(), clave);
      if (donde == claves.end() || *donde != clave) continue;
      // Triangles run clockwise and have their inside on the right of each side.
      auto& cuenta = a < b ? aLaDerecha : aLaIzquierda;
      std::atomic_ref<std::uint32_t>(cuenta[static_cast<std::size_t>(donde - claves.begin())])
          .fetch_add(1, std::memory_order_relaxed);
    }
  }

  /// The sides that bound exactly one triangle, with it on their left; ascending.
  [[nodiscard]] std::vector<Paso> Contorno() const {
    std::vector<Paso> pasos;
    for (std::size_t i = 0; i < claves.size(); ++i) {
      if (aLaDerecha[i] + aLaIzquierda[i] != 1) continue;
      const auto a = static_cast<std::uint32_t>(claves[i] >> 32), b = static_cast<std::uint32_t>(claves[i]);
      pasos.push_back(aLaIzquierda[i] == 1 ? Paso{a, b} : Paso{b, a});
    }
    std::sort(pasos.begin(), pasos.end());
    return pasos;
  }

 private:
  static std::uint64_t Clave(std::uint32_t a, std::uint32_t b) { return static_cast<std::uint64_t>(a) << 32 | b; }

  std::vector<std::uint64_t> claves;
  std::vector<std::uint32_t> aLaDerecha, aLaIzquierda;
  std::vector<unsigned char> esExtremo;
};

struct Vector2 {
  std::int64_t x, y;
};

Vector2 Entre(CPuntoTIN const& a, CPuntoTIN const& b) {
  return {static_cast<std::int64_t>(b.x) - a.x, static_cast<std::int64_t>(b.y) - a.y};
}

double Giro(Vector2 a, Vector2 b) { return ProductoVectorial(a.x, a.y, b.x, b.y); }

/// In which part of a clockwise turn from `origen` a direction lies: 0 before the half turn, 1 at it, 2 behind it, 3
/// back at the start.
int ParteDelGiro(Vector2 origen, Vector2 v) {
  const double giro = Giro(origen, v);
  if (giro != 0) return giro < 0 ? 0 : 2;
  const bool opuesto = origen.x != 0 ? (origen.x < 0) != (v.x < 0) : (origen.y < 0) != (v.y < 0);
  return opuesto ? 1 : 3;
}

/// Whether a clockwise turn from `origen` meets `a` before `b`. Exact.
bool SeEncuentraAntes(Vector2 origen, Vector2 a, Vector2 b) {
  const int parteA = ParteDelGiro(origen, a), parteB = ParteDelGiro(origen, b);
  return parteA != parteB ? parteA < parteB : Giro(a, b) < 0;
}

/// Joins directed sides, each with the surface on its left, into rings.
class CTrazaAnillos {
 public:
  using Anillos = std::vector<std::vector<std::uint32_t>>;

  CTrazaAnillos(CSetPuntosMdt const& losPuntos, std::vector<Paso> losPasos)
      : puntos(losPuntos), pasos(std::move(losPasos)), usado(pasos.size()), lugar(losPuntos.size(), 0) {}

  /// False when a side has no continuation.
  bool Traza(Anillos& anillos) {
    for (std::size_t i = 0; i < pasos.size(); ++i) {
      if (!usado[i] && !TrazaDesde(i, anillos)) return false;
    }
    return true;
  }

 private:
  /// Walks until it comes back to the first side. A point met again closes a ring of its own: all that was walked since
  /// the first visit. Walks that turn through the surface do not cross themselves, so that the rings are the same
  /// wherever the walk begins.
  bool TrazaDesde(std::size_t primero, Anillos& anillos) {
    camino.clear();
    for (std::size_t i = primero;;) {
      usado[i] = 1;
      camino.push_back(pasos[i].desde);
      lugar[pasos[i].desde] = static_cast<std::uint32_t>(camino.size());
      Desprende(pasos[i].hasta, anillos);
      const std::size_t siguiente = Siguiente(pasos[i]);
      if (siguiente == pasos.size()) return false;
      if (usado[siguiente]) return siguiente == primero && camino.empty();
      i = siguiente;
    }
  }

  /// Cuts off the end of the path as a ring when the path has been at the point before.
  void Desprende(std::uint32_t punto, Anillos& anillos) {
    if (lugar[punto] == 0) return;
    const auto desde = camino.begin() + (lugar[punto] - 1);
    anillos.emplace_back(desde, camino.end());
    for (auto p = desde; p != camino.end(); ++p) lugar[*p] = 0;
    camino.erase(desde, camino.end());
  }

  //        v
  //     ///|\        The surface (/) lies on the left of u-v. Turning clockwise about v from u passes through it,
  //    u///| \       and the first boundary side met is the one on the other edge of the same wedge.
  //        w
  //
  std::size_t Siguiente(Paso const& llegada) const {
    const Vector2 origen = Entre(puntos[llegada.hasta], puntos[llegada.desde]);
    std::size_t mejor = pasos.size();
    for (std::size_t i = Primero(llegada.hasta); i < pasos.size() && pasos[i].desde == llegada.hasta; ++i) {
      if (mejor == pasos.size() || SeEncuentraAntes(origen, Hacia(i), Hacia(mejor))) mejor = i;
    }
    return mejor;
  }

  std::size_t Primero(std::uint32_t punto) const {
    return static_cast<std::size_t>(std::lower_bound(pasos.begin(), pasos.end(), Paso{punto, 0}) - pasos.begin());
  }
  Vector2 Hacia(std::size_t paso) const { return Entre(puntos[pasos[paso].desde], puntos[pasos[paso].hasta]); }

  CSetPuntosMdt const& puntos;
  std::vector<Paso> pasos;
  std::vector<unsigned char> usado;
  std::vector<std::uint32_t> lugar;   // of each point in the path, from 1; 0 when it is not there
  std::vector<std::uint32_t> camino;  // points since the last ring was cut off
};

/// Whether a ring runs clockwise: the turn at its least point, where a simple ring cannot but turn its own way.
bool EsHorario(CSetPuntosMdt const& puntos, std::vector<std::uint32_t> const& anillo) {
  const std::size_t n = anillo.size();
  std::size_t menor = 0;
  for (std::size_t i = 1; i < n; ++i) {
    if (puntos[anillo[i]] < puntos[anillo[menor]]) menor = i;
  }
  CPuntoTIN const& p = puntos[anillo[menor]];
  return Giro(Entre(puntos[anillo[(menor + n - 1) % n]], p), Entre(p, puntos[anillo[(menor + 1) % n]])) < 0;
}

}  // namespace

int CTIN::GenerarLimiteAPartirLados(std::vector<CLado>& lados, int sentido, int base) {
  limite.clear();
  huecos.clear();
  CCandidatos candidatos(lados, base, puntos.size());
  const auto trozos = Trozos();
  Reparte(trozos.size(), 1, [&](std::size_t i, std::size_t) {
    for (Terna const& t : trozos[i]) candidatos.Cuenta(t);
  });
  CTrazaAnillos::Anillos anillos;
  if (!CTrazaAnillos(puntos, candidatos.Contorno()).Traza(anillos)) return kFicheroInconsistente;
  for (auto& anillo : anillos) {
    if (sentido != 1) std::reverse(anillo.begin(), anillo.end());
    std::rotate(anillo.begin(), std::min_element(anillo.begin(), anillo.end()), anillo.end());
  }
  std::sort(anillos.begin(), anillos.end());
  for (auto const& anillo : anillos) huecos.push_back(EsHorario(puntos, anillo) == (sentido == 1));
  limite = std::move(anillos);
  return kHecho;
}

}  // namespace Meseta47
