#include <algorithm>
#include <atomic>

#include "model/terrain/CTIN.h"
#include "model/threads/CAvance.h"
#include "model/threads/Codigos.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kPorBloque = 1 << 14;

/// Shares out things in groups by a number below `grupos`, in two passes over all of them: in the first each is
/// counted, in the second each gets its place. Any number of threads takes part in a pass; which place in its group a
/// thing gets depends on them.
class CReparteGrupos {
 public:
  explicit CReparteGrupos(std::size_t grupos) : lugar(grupos + 2) {}

  void Cuenta(std::uint32_t grupo) { Atomico(grupo + 2).fetch_add(1, std::memory_order_relaxed); }
  /// Between the two passes.
  void Situa() {
    for (std::size_t i = 2; i < lugar.size(); ++i) lugar[i] += lugar[i - 1];
  }
  /// Groups begin one slot behind their number, so that when all is placed the end of each has become the beginning of
  /// the next.
  std::uint32_t Coloca(std::uint32_t grupo) { return Atomico(grupo + 1).fetch_add(1, std::memory_order_relaxed); }

  /// All things that were counted, once they have their places.
  [[nodiscard]] std::size_t Cuantos() const { return lugar.back(); }

  // After the second pass.
  [[nodiscard]] std::uint32_t Desde(std::size_t grupo) const { return lugar[grupo]; }
  [[nodiscard]] std::uint32_t Hasta(std::size_t grupo) const { return lugar[grupo + 1]; }
  [[nodiscard]] std::size_t Grupos() const { return lugar.size() - 2; }

 private:
  std::atomic_ref<std::uint32_t> Atomico(std::size_t i) { return std::atomic_ref<std::uint32_t>(lugar[i]); }

  std::vector<std::uint32_t> lugar;
};

/// A side as the point at its lower end knows it: the other end, and the triangle and side it is (3 * triangle + side).
struct Cabo {
  std::uint32_t otro, lado;

  bool operator<(Cabo const& o) const { return otro != o.otro ? otro < o.otro : lado < o.lado; }
};

std::uint32_t Menor(Terna const& t, std::size_t lado) { return std::min(t[lado], t[(lado + 1) % 3]); }
std::uint32_t Mayor(Terna const& t, std::size_t lado) { return std::max(t[lado], t[(lado + 1) % 3]); }

/// Makes neighbours of the triangles that share a side. Sides of one triangle, and of three or more, have none.
class CEmpareja {
 public:
  explicit CEmpareja(VectorCrudo<Terna>& losVecinos) : vecinos(losVecinos) {}

  void operator()(std::vector<Cabo>& cabos) { cabos.size() <= kPocos ? Compara(cabos) : Ordena(cabos); }

 private:
  static constexpr std::size_t kPocos = 12;

  /// Each with all, branch-free: they are few, and every other branch of a sort would be mispredicted.
  void Compara(std::vector<Cabo> const& cabos) {
    for (Cabo const& cabo : cabos) {
      std::uint32_t iguales = 0, suma = 0;
      for (Cabo const& otro : cabos) {
        const std::uint32_t mascara = otro.otro == cabo.otro ? 0xFFFFFFFF : 0;
        iguales -= mascara;
        suma += otro.lado & mascara;
      }
      Pon(cabo, iguales == 2 ? (suma - cabo.lado) / 3 : kSinTriangulo);
    }
  }

  void Ordena(std::vector<Cabo>& cabos) {
    std::sort(cabos.begin(), cabos.end());
    for (std::size_t i = 0, j; i < cabos.size(); i = j) {
      for (j = i + 1; j < cabos.size() && cabos[j].otro == cabos[i].otro;) ++j;
      const bool pareja = j - i == 2;
      for (std::size_t k = i; k < j; ++k) Pon(cabos[k], pareja ? cabos[i + j - 1 - k].lado / 3 : kSinTriangulo);
    }
  }

  void Pon(Cabo const& cabo, std::uint32_t vecino) { vecinos[cabo.lado / 3][cabo.lado % 3] = vecino; }

  VectorCrudo<Terna>& vecinos;
};

}  // namespace

int CTIN::Sort(IPorcentaje* progreso, int, bool enlaza) {
  constexpr std::uint64_t kMayorCantidad = kSinTriangulo / 3;  // sides are numbered too
  if (Cantidad() > kMayorCantidad) return kFicheroInconsistente;
  const bool enlazara = enlaza && conVecinos;
  CAvance avance(progreso, nivelMensajes, enlazara ? 6 : 3);
  return Ordena(avance) && (!enlazara || Enlaza(avance)) ? kHecho : kCancelado;
}

/// Groups by the first point, about two triangles each, and then orders every group: a pass over the triangles costs
/// less than the comparisons of a sort.
bool CTIN::Ordena(CAvance& avance) {
  const std::vector<std::span<Terna const>> trozos = Trozos();
  const auto enCadaTriangulo = [&trozos, &avance](auto hace) {
    const auto enTrozos = [&](std::size_t desde, std::size_t) {
      for (Terna const& t : trozos[desde]) hace(t);
    };
    return Reparte(trozos.size(), 1, enTrozos, avance.Pasada(trozos.size()));
  };
  CReparteGrupos grupos(puntos.size());
  VectorCrudo<Terna> ordenados(Cantidad());
  if (!enCadaTriangulo([&](Terna const& t) { grupos.Cuenta(t[0]); })) return false;
  grupos.Situa();
  if (!enCadaTriangulo([&](Terna const& t) { ordenados[grupos.Coloca(t[0])] = t; })) return false;
  const auto ordena = [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t g = desde; g < hasta; ++g) {
      std::sort(ordenados.begin() + grupos.Desde(g), ordenados.begin() + grupos.Hasta(g));
    }
  };
  if (!Reparte(grupos.Grupos(), kPorBloque, ordena, avance.Pasada(grupos.Grupos()))) return false;
  if (quitaRepetidos) ordenados.erase(std::unique(ordenados.begin(), ordenados.end()), ordenados.end());
  triangulos.swap(ordenados);
  relleno.Vacia();
  VectorCrudo<Terna>().swap(vecinos);
  enlazado = false;
  return true;
}

/// Looks at the sides that have the same lower point, about six, and finds in that handful those whose other ends
/// agree. Where a triangle begins with that point it stands there itself, with two of its sides; only the third one,
/// between its other points, has to be filed.
bool CTIN::Enlaza(CAvance& avance) {
  const std::size_t cuantos = triangulos.size();
  CReparteGrupos grupos(puntos.size());
  const auto enCadaLejano = [&](auto hace) {
    const auto enTriangulos = [&](std::size_t desde, std::size_t hasta) {
      for (std::size_t i = desde; i < hasta; ++i) {
        for (std::size_t s = 0; s < 3; ++s) {
          const std::uint32_t menor = Menor(triangulos[i], s);
          if (menor != triangulos[i][0]) hace(menor, static_cast<std::uint32_t>(3 * i + s));
        }
      }
    };
    return Reparte(cuantos, kPorBloque, enTriangulos, avance.Pasada(cuantos));
  };
  if (!enCadaLejano([&](std::uint32_t punto, std::uint32_t) { grupos.Cuenta(punto); })) return false;
  grupos.Situa();
  VectorCrudo<std::uint32_t> lejanos(grupos.Cuantos());
  if (!enCadaLejano([&](std::uint32_t punto, std::uint32_t lado) { lejanos[grupos.Coloca(punto)] = lado; })) {
    return false;
  }
  VectorCrudo<Terna> nuevos(cuantos);
  const auto enlaza = [&](std::size_t desde, std::size_t hasta) {
    CEmpareja empareja(nuevos);
    std::vector<Cabo> cabos;
    auto i = static_cast<std::uint32_t>(
        std::lower_bound(triangulos.begin(), triangulos.end(), Terna{static_cast<std::uint32_t>(desde)}) -
        triangulos.begin());
    for (std::size_t g = desde; g < hasta; ++g) {
      cabos.clear();
      const auto anade = [&](std::uint32_t lado) { cabos.push_back({Mayor(triangulos[lado / 3], lado % 3), lado}); };
      for (; i < cuantos && triangulos[i][0] == g; ++i) {
        for (std::uint32_t s = 0; s < 3; ++s) {
          if (Menor(triangulos[i], s) == g) anade(3 * i + s);
        }
      }
      for (std::size_t k = grupos.Desde(g); k < grupos.Hasta(g); ++k) anade(lejanos[k]);
      empareja(cabos);
    }
  };
  if (!Reparte(grupos.Grupos(), kPorBloque, enlaza, avance.Pasada(grupos.Grupos()))) return false;
  vecinos.swap(nuevos);
  enlazado = true;
  return true;
}

}  // namespace Meseta47
