#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>

#include "model/drawing/CDibujo.h"
#include "model/drawing/Juntas.h"

namespace Meseta47 {

namespace {

using CPuntos = std::vector<CCoor3D<int>>;

constexpr std::uint32_t kNinguno = std::numeric_limits<std::uint32_t>::max();

/// -1, 0 or 1: the order of two lists of points by their positions, one after another.
int Compara(CPuntos const& a, CPuntos const& b) {
  const std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

/// The points, or the same ones backwards, whichever comes first.
CPuntos EnSuSentido(CPuntos puntos) {
  CPuntos alReves(puntos.rbegin(), puntos.rend());
  return Compara(alReves, puntos) < 0 ? alReves : puntos;
}

/// A ring, given with its first point repeated at the end, in the turn and sense that come first among all.
CPuntos EnSuGiro(CPuntos anillo) {
  anillo.pop_back();
  CPuntos alReves(anillo.rbegin(), anillo.rend());
  for (CPuntos* a : {&anillo, &alReves}) {
    std::rotate(a->begin(), a->begin() + static_cast<std::ptrdiff_t>(PrimerGiro(*a)), a->end());
    a->push_back(a->front());
  }
  return Compara(alReves, anillo) < 0 ? alReves : anillo;
}

/// One end of a line, at a node.
struct CExtremo {
  std::uint32_t codigo;  // lines of one code have one number
  std::int32_t x, y, z;
  std::uint32_t cual;  // twice the line, plus 1 at its far end

  [[nodiscard]] bool MismoNudo(CExtremo const& o) const {
    return codigo == o.codigo && x == o.x && y == o.y && z == o.z;
  }
  [[nodiscard]] bool operator<(CExtremo const& o) const {
    if (codigo != o.codigo) return codigo < o.codigo;
    if (x != o.x) return x < o.x;
    if (y != o.y) return y < o.y;
    if (z != o.z) return z < o.z;
    return cual < o.cual;
  }
};

/// Joins lines at their ends. What it makes depends on the lines alone, not on their order nor on their sense.
class CJuntador {
 public:
  CJuntador(std::vector<CLinea<int>*> const& lasLineas, bool mismoCodigo, bool mismaAltura, bool cruces)
      : lineas(lasLineas), enEspacio(mismaAltura), tambienCruces(cruces), pareja(2 * lasLineas.size(), kNinguno) {
    NumeraCodigos(mismoCodigo);
    EmparejaExtremos();
  }

  /// The lines that come out, each with the code that comes first among those of its parts.
  [[nodiscard]] std::vector<CLinea<int>> Junta() {
    std::vector<CLinea<int>> juntas;
    std::vector<bool> hecha(lineas.size(), false);
    const auto recorre = [&](std::uint32_t desde) {
      if (!hecha[desde / 2]) juntas.push_back(Cadena(desde, hecha));
    };
    for (std::uint32_t e = 0; e < pareja.size(); ++e) {
      if (pareja[e] == kNinguno) recorre(e);
    }
    for (std::uint32_t e = 0; e < pareja.size(); e += 2) recorre(e);  // what is left are rings
    std::sort(juntas.begin(), juntas.end(), [](CLinea<int> const& a, CLinea<int> const& b) {
      const int orden = Compara(a.Puntos(), b.Puntos());
      return orden != 0 ? orden < 0 : a.GetCodigo() < b.GetCodigo();
    });
    return juntas;
  }

  [[nodiscard]] int Uniones() const { return uniones; }

 private:
  void NumeraCodigos(bool mismoCodigo) {
    codigos.assign(lineas.size(), 0);
    const auto otro = [&](CLinea<int> const* l) { return l->GetCodigo() != lineas.front()->GetCodigo(); };
    if (!mismoCodigo || std::none_of(lineas.begin(), lineas.end(), otro)) return;
    std::vector<std::uint32_t> orden(lineas.size());
    std::iota(orden.begin(), orden.end(), 0u);
    const auto codigo = [&](std::uint32_t i) -> CString const& { return lineas[i]->GetCodigo(); };
    std::sort(orden.begin(), orden.end(), [&](std::uint32_t a, std::uint32_t b) { return codigo(a) < codigo(b); });
    for (std::size_t i = 1; i < orden.size(); ++i) {
      codigos[orden[i]] = codigos[orden[i - 1]] + (codigo(orden[i]) == codigo(orden[i - 1]) ? 0u : 1u);
    }
  }

  void EmparejaExtremos() {
    std::vector<CExtremo> extremos;
    extremos.reserve(pareja.size());
    for (std::uint32_t e = 0; e < pareja.size(); ++e) {
      CCoor3D<int> const& p = PuntoDe(e, 0);
      extremos.push_back({codigos[e / 2], p.x, p.y, enEspacio ? p.z : 0, e});
    }
    std::sort(extremos.begin(), extremos.end());
    for (auto desde = extremos.begin(); desde != extremos.end();) {
      const auto hasta = std::find_if(desde, extremos.end(), [&](CExtremo const& e) { return !e.MismoNudo(*desde); });
      if (hasta - desde == 2) {
        Une(desde[0].cual, desde[1].cual);
      } else if (tambienCruces && hasta - desde > 2) {
        EmparejaNudo({desde, hasta});
      }
      desde = hasta;
    }
  }

  void EmparejaNudo(std::vector<CExtremo> const& extremos) {
    const std::vector<CSalida> salidas = SalidasPorGiro(extremos);
    CNudo(salidas).Empareja([this](std::uint32_t a, std::uint32_t b) { Une(a, b); });
  }

  [[nodiscard]] std::vector<CSalida> SalidasPorGiro(std::vector<CExtremo> const& extremos) const {
    std::vector<CSalida> salidas;
    salidas.reserve(extremos.size());
    for (CExtremo const& e : extremos) salidas.push_back(SalidaDe(e.cual));
    std::sort(salidas.begin(), salidas.end(), [&](CSalida const& a, CSalida const& b) {
      const int giro = a.ComparaGiro(b);
      return giro != 0 ? giro < 0 : ComparaDesde(a.cual, b.cual) < 0;
    });
    return salidas;
  }

  [[nodiscard]] CSalida SalidaDe(std::uint32_t e) const {
    CCoor3D<int> const& nudo = PuntoDe(e, 0);
    CSalida salida{0, 0, e};
    for (int i = 1; i < lineas[e / 2]->NPuntos() && salida.dx == 0 && salida.dy == 0; ++i) {
      salida.dx = static_cast<std::int64_t>(PuntoDe(e, i).x) - nudo.x;
      salida.dy = static_cast<std::int64_t>(PuntoDe(e, i).y) - nudo.y;
    }
    return salida;
  }

  /// Order of two lines by their points, each read from one of its ends.
  [[nodiscard]] int ComparaDesde(std::uint32_t a, std::uint32_t b) const {
    const int n = lineas[a / 2]->NPuntos(), m = lineas[b / 2]->NPuntos();
    for (int i = 0; i < std::min(n, m); ++i) {
      CCoor3D<int> const &p = PuntoDe(a, i), &q = PuntoDe(b, i);
      if (p != q) return p < q ? -1 : 1;
    }
    return n - m;
  }

  /// Point of a line counted from one of its ends.
  [[nodiscard]] CCoor3D<int> const& PuntoDe(std::uint32_t e, int i) const {
    CLinea<int> const& linea = *lineas[e / 2];
    return linea.Punto(e % 2 == 0 ? i : linea.NPuntos() - 1 - i);
  }

  void Une(std::uint32_t a, std::uint32_t b) {
    pareja[a] = b;
    pareja[b] = a;
    ++uniones;
  }

  /// The line that begins at an end and goes on until nothing follows, or until it is back.
  CLinea<int> Cadena(std::uint32_t desde, std::vector<bool>& hecha) {
    CPuntos puntos;
    CString const* codigo = &lineas[desde / 2]->GetCodigo();
    std::uint32_t e = desde;
    do {
      hecha[e / 2] = true;
      codigo = &std::min(*codigo, lineas[e / 2]->GetCodigo());
      for (int i = 0; i < lineas[e / 2]->NPuntos(); ++i) {
        CCoor3D<int> const& p = PuntoDe(e, i);
        if (i > 0 || puntos.empty() || puntos.back() != p) puntos.push_back(p);  // a joint is one point
      }
      e = pareja[e ^ 1];
    } while (e != kNinguno && e != desde);
    const bool anillo = e == desde;
    if (anillo && puntos.back() != puntos.front()) puntos.push_back(puntos.front());  // in plan alone they met already
    CLinea<int> linea(*codigo);
    linea.Asigna(anillo ? EnSuGiro(std::move(puntos)) : EnSuSentido(std::move(puntos)));
    return linea;
  }

  std::vector<CLinea<int>*> const& lineas;
  bool enEspacio, tambienCruces;
  std::vector<std::uint32_t> codigos;
  std::vector<std::uint32_t> pareja;  // for each end, the one that it is joined to
  int uniones = 0;
};

/// A line read in the sense that comes first; its first point stands beside it, where sorting looks most of the time.
struct CLectura {
  CCoor3D<int> const* primero;
  int x, y, z;
  std::uint32_t cual;
  std::ptrdiff_t paso;  // to the next point: 1 or -1
};

CLectura Lee(CLinea<int> const& linea, std::uint32_t cual) {
  CPuntos const& p = linea.Puntos();
  const bool alReves = std::lexicographical_compare(p.rbegin(), p.rend(), p.begin(), p.end(),
                                                    [](auto const& a, auto const& b) { return (a < b) != 0; });
  CCoor3D<int> const& primero = alReves ? p.back() : p.front();
  return {&primero, primero.x, primero.y, primero.z, cual, alReves ? -1 : 1};
}

/// Leaves of lines that follow the same points, in either sense, only the first one; the others are emptied.
void VaciaRepetidas(std::vector<CLinea<int>*> const& lineas) {
  std::vector<CLectura> lecturas;
  for (std::uint32_t i = 0; i < lineas.size(); ++i) {
    if (lineas[i]->NPuntos() > 0) lecturas.push_back(Lee(*lineas[i], i));
  }
  const auto compara = [&](CLectura const& a, CLectura const& b) {
    if (a.x != b.x) return a.x < b.x ? -1 : 1;
    if (a.y != b.y) return a.y < b.y ? -1 : 1;
    if (a.z != b.z) return a.z < b.z ? -1 : 1;
    const int n = lineas[a.cual]->NPuntos(), m = lineas[b.cual]->NPuntos();
    if (n != m) return n < m ? -1 : 1;
    for (std::ptrdiff_t i = 1; i < n; ++i) {
      CCoor3D<int> const &p = a.primero[i * a.paso], &q = b.primero[i * b.paso];
      if (p != q) return p < q ? -1 : 1;
    }
    return lineas[a.cual]->GetCodigo().Compare(lineas[b.cual]->GetCodigo());
  };
  std::sort(lecturas.begin(), lecturas.end(), [&](CLectura const& a, CLectura const& b) {
    const int orden = compara(a, b);
    return orden != 0 ? orden < 0 : a.cual < b.cual;
  });
  for (std::size_t i = 1, primera = 0; i < lecturas.size(); ++i) {
    if (compara(lecturas[primera], lecturas[i]) != 0) {
      primera = i;
    } else {
      lineas[lecturas[i].cual]->Clear();
    }
  }
}

/// Closed as far as joining goes: back where it began, so that no other line can go on from it.
bool VuelveASuPrincipio(CLinea<int> const& linea, bool enEspacio) {
  CCoor3D<int> const &a = linea.Punto(0), &b = linea.Punto(linea.NPuntos() - 1);
  return a.x == b.x && a.y == b.y && (!enEspacio || a.z == b.z);
}

}  // namespace

template <class T>
int CDibujo<T>::Junta(int primera, int cuantas, bool mismoCodigo, bool mismaAltura, bool cruces, int minimo, int maximo,
                      bool quitaDobles) {
  const std::size_t desde = std::min(entidades.size(), static_cast<std::size_t>(std::max(primera, 0)));
  const std::size_t quedan = entidades.size() - desde;
  const std::size_t hasta = desde + (cuantas <= 0 ? quedan : std::min(quedan, static_cast<std::size_t>(cuantas)));
  std::vector<CLinea<T>*> lineas;
  for (std::size_t i = desde; i < hasta; ++i) {
    if (entidades[i]->EsGrafico() && !entidades[i]->EsBorrado()) lineas.push_back(entidades[i].get());
  }
  std::vector<CLinea<T> const*> sobran;
  if (quitaDobles) {
    for (CLinea<T>* linea : lineas) {
      CPuntos const& puntos = linea->Puntos();
      if (std::adjacent_find(puntos.begin(), puntos.end()) != puntos.end()) linea->BorraPuntosDobles(1);
      if (linea->NPuntos() < 2) linea->Clear();
    }
    VaciaRepetidas(lineas);
    std::copy_if(lineas.begin(), lineas.end(), std::back_inserter(sobran), [](auto l) { return l->NPuntos() == 0; });
  }
  std::erase_if(lineas, [&](CLinea<T> const* l) { return l->NPuntos() < 2 || VuelveASuPrincipio(*l, mismaAltura); });

  CJuntador juntador(lineas, mismoCodigo, mismaAltura, cruces);
  std::vector<CLinea<T>> juntas = juntador.Junta();
  std::vector<CEntidad> nuevas;
  for (CLinea<T>& linea : juntas) {
    if (linea.NPuntos() < minimo || (maximo > 0 && linea.NPuntos() > maximo)) continue;
    linea.CalculaMaximas();
    nuevas.push_back(std::make_unique<CLinea<T>>(std::move(linea)));
  }
  sobran.insert(sobran.end(), lineas.begin(), lineas.end());
  std::sort(sobran.begin(), sobran.end());
  entidades.reserve(entidades.size() + nuevas.size());  // the last that can fail: what was joined goes only now
  std::erase_if(entidades,
                [&](CEntidad const& e) { return std::binary_search(sobran.begin(), sobran.end(), e.get()); });
  std::move(nuevas.begin(), nuevas.end(), std::back_inserter(entidades));
  ActualizaCantidades();
  return juntador.Uniones();
}

template int CDibujo<int>::Junta(int, int, bool, bool, bool, int, int, bool);

}  // namespace Meseta47
