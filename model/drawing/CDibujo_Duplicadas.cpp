#include <algorithm>
#include <numeric>

#include "model/drawing/CDibujo.h"
#include "model/threads/Codigos.h"

namespace Meseta47 {

namespace {

/// A point of a set by its position and by its place among all those of the drawing.
struct CPuesto {
  int x, y, z;
  std::uint32_t orden;

  [[nodiscard]] bool MismoLugar(CPuesto const& o) const { return x == o.x && y == o.y && z == o.z; }
  [[nodiscard]] bool operator<(CPuesto const& o) const {
    if (x != o.x) return x < o.x;
    if (y != o.y) return y < o.y;
    if (z != o.z) return z < o.z;
    return orden < o.orden;
  }
};

/// For each place of the list, whether it is the first one at its position.
std::vector<bool> Primeros(std::vector<CPuesto>& puestos) {
  std::sort(puestos.begin(), puestos.end());
  std::vector<bool> primeros(puestos.size(), true);
  for (std::size_t i = 1; i < puestos.size(); ++i) primeros[puestos[i].orden] = !puestos[i].MismoLugar(puestos[i - 1]);
  return primeros;
}

/// Takes the repeated points out of the sets.
void QuitaDeSets(std::vector<CLinea<int>*> const& sets, bool enPlano) {
  std::vector<CPuesto> puestos;
  for (CLinea<int> const* set : sets) {
    for (CCoor3D<int> const& p : set->Puntos()) {
      puestos.push_back({p.x, p.y, enPlano ? 0 : p.z, static_cast<std::uint32_t>(puestos.size())});
    }
  }
  const std::vector<bool> primeros = Primeros(puestos);
  auto desde = primeros.begin();
  for (CLinea<int>* set : sets) {
    const auto hasta = desde + set->NPuntos();
    if (std::find(desde, hasta, false) != hasta) set->Filtra(std::vector<bool>(desde, hasta));
    desde = hasta;
  }
}

/// -1, 0 or 1: a total order in which equal lines, and they alone, compare as 0.
int Compara(CLinea<int> const& a, CLinea<int> const& b, bool enPlano) {
  if (a.GetTipo() != b.GetTipo()) return a.GetTipo() < b.GetTipo() ? -1 : 1;
  if (a.GetCodigo() != b.GetCodigo()) return a.GetCodigo() < b.GetCodigo() ? -1 : 1;
  if (a.NPuntos() != b.NPuntos()) return a.NPuntos() < b.NPuntos() ? -1 : 1;
  for (int i = 0; i < a.NPuntos(); ++i) {
    CCoor3D<int> const &p = a.Punto(i), &q = b.Punto(i);
    if (p.x != q.x) return p.x < q.x ? -1 : 1;
    if (p.y != q.y) return p.y < q.y ? -1 : 1;
    if (!enPlano && p.z != q.z) return p.z < q.z ? -1 : 1;
  }
  return 0;
}

/// Empties the lines that repeat an earlier one.
void VaciaRepetidas(std::vector<CLinea<int>*> lineas, bool enPlano) {
  std::stable_sort(lineas.begin(), lineas.end(),
                   [&](CLinea<int> const* a, CLinea<int> const* b) { return Compara(*a, *b, enPlano) < 0; });
  CLinea<int> const* primera = nullptr;
  for (CLinea<int>* linea : lineas) {
    if (primera != nullptr && Compara(*primera, *linea, enPlano) == 0) {
      linea->Clear();
    } else {
      primera = linea;
    }
  }
}

}  // namespace

template <class T>
int CDibujo<T>::BorraDuplicadas(bool puntos, bool enPlano) {
  std::vector<CLinea<T>*> sets, lineas;
  for (CEntidad const& e : entidades) {
    if (!e->EsBorrado()) (e->EsSetPuntos() ? sets : lineas).push_back(e.get());
  }
  if (puntos) {
    QuitaDeSets(sets, enPlano);
    for (CLinea<T>* linea : lineas) linea->BorraPuntosDobles(enPlano ? 0 : 1);
  }
  VaciaRepetidas(std::move(lineas), enPlano);
  std::erase_if(entidades, [](CEntidad const& e) { return !e->EsBorrado() && e->NPuntos() == 0; });
  ActualizaCantidades();
  return kHecho;
}

template int CDibujo<int>::BorraDuplicadas(bool puntos, bool enPlano);

}  // namespace Meseta47
