// The searches of high points by colour and by intensity: those of the high points that a condition wants, with a class
// for each condition. They differ in the test of a condition alone.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <utility>

#include "classification/BusquedaClases.h"
#include "classification/BusquedaContorno.h"
#include "classification/BusquedaMensajes.h"
#include "classification/CBusquedaPasadas.h"
#include "classification/CBusquedaPuntos.h"
#include "classification/CTrianguloBuscado.h"
#include "model/drawing/CCondicionHIntensidad.h"
#include "model/drawing/CCondicionHRGB.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/CListasClases.h"
#include "run/Fases.h"

namespace Meseta47 {

namespace {

constexpr int kOrdenDeContornos = 3;  // sort key of entities
constexpr int kPasosPorContorno = 3;  // phases that a further outline adds to the bar
constexpr std::int8_t kNinguna = -1;  // no condition has taken the point

/// What of a point a condition by colour looks at, and the condition that has taken it: 4 bytes.
struct CColorTomado {
  std::uint8_t r = 0, g = 0, b = 0;
  std::int8_t tipo = kNinguna;
};

struct CIntensidadTomada {
  std::uint16_t intensidad = 0;
  std::int8_t tipo = kNinguna;
};

static_assert(sizeof(CColorTomado) == 4 && sizeof(CIntensidadTomada) == 4);

struct CPorColor {
  using CCondicion = CCondicionHRGB;
  using CAtributo = CColorTomado;

  static CAtributo De(CLinea<int> const& e, unsigned k) {
    CSetPuntos<int> const* nube = CSetPuntos<int>::De(e);
    if (nube == nullptr) return {};
    tipoAero3 const& info = nube->Info(k);
    return {info.rojo, info.verde, info.azul};
  }
  // A colour at exactly the tolerance is no seed, and yet a spread reaches it.
  static bool Siembra(CCondicion const& c, CAtributo const& a) { return Diferencia(c, a) < c.tolerancia; }
  static bool Alcanza(CCondicion const& c, CAtributo const& a) { return Diferencia(c, a) <= c.tolerancia; }
  static CCondicion Sola(CAtributo const& a, float altura) { return {a.r, a.g, a.b, kNinguna, altura, 1}; }
  static void Ordena(CDibujo<int>& /*hallados*/) {}

 private:
  static int Diferencia(CCondicion const& c, CAtributo const& a) {
    return std::max({std::abs(c.r - a.r), std::abs(c.g - a.g), std::abs(c.b - a.b)});
  }
};

struct CPorIntensidad {
  using CCondicion = CCondicionHIntensidad;
  using CAtributo = CIntensidadTomada;

  static CAtributo De(CLinea<int> const& e, unsigned k) {
    return {e.EsSetPuntos() ? e.Punto(static_cast<int>(k)).intensidad : std::uint16_t{0}};
  }
  static bool Siembra(CCondicion const& c, CAtributo const& a) {
    return c.minimo <= a.intensidad && a.intensidad <= c.maximo;
  }
  static bool Alcanza(CCondicion const& c, CAtributo const& a) { return Siembra(c, a); }
  static CCondicion Sola(CAtributo const& a, float altura) { return {a.intensidad, a.intensidad, kNinguna, altura}; }
  static void Ordena(CDibujo<int>& hallados) { hallados.Sort(kOrdenDeContornos, true, -1); }
};

/// Attributes of the points of the mesh by number.
template <class Forma>
class CAtributosPorNumero {
 public:
  using CAtributo = typename Forma::CAtributo;

  explicit CAtributosPorNumero(std::size_t numeros) : atributos(numeros) {}
  void Pon(CLinea<int> const& e, unsigned k) { De(e.Punto(static_cast<int>(k)).num) = Forma::De(e, k); }
  /// Of a number whose sign may tell that the point has been found.
  [[nodiscard]] CAtributo& De(int numero) { return atributos[static_cast<std::size_t>(std::abs(numero)) - 1]; }

 private:
  std::vector<CAtributo> atributos;
};

/// How much a vertex rises above the lower of the others, when it is steep above both; else less than any height.
std::int64_t Subida(CTrianguloBuscado const& t, unsigned i) {
  constexpr std::int64_t kNoSube = std::numeric_limits<std::int64_t>::min();
  const unsigned s = CTrianguloBuscado::Siguiente(i), a = CTrianguloBuscado::Anterior(i);
  if (t.Desnivel(i, s) <= 0 || t.Desnivel(i, a) <= 0) return kNoSube;  // two vertices of three, without a root
  const auto escarpado = [&](unsigned j) { return t.Pendiente(i, j) > CTrianguloBuscado::kEmpinado; };
  return escarpado(s) && escarpado(a) ? std::max(t.Desnivel(i, s), t.Desnivel(i, a)) : kNoSube;
}

/// Marks the points that conditions take, and keeps a copy of each with those of its condition.
template <class Forma>
class CBuscaPorCondiciones {
 public:
  using CCondicion = typename Forma::CCondicion;

  CBuscaPorCondiciones(CBusquedaPuntos const& laBusqueda, CAtributosPorNumero<Forma>& losAtributos,
                       std::vector<CCondicion> const& lasCondiciones, double precision, int laDistancia,
                       CBusquedaPasadas& lasPasadas)
      : tomados(lasCondiciones.size()),
        busqueda(laBusqueda),
        atributos(losAtributos),
        condiciones(lasCondiciones),
        distancia(laDistancia),
        pasadas(lasPasadas) {
    for (CCondicion const& c : condiciones) alturas.push_back(Trunca(precision * c.altura));
  }

  void operator()(CTriple const& numeros) {
    CCoor3D<int>*const a = busqueda.Punto(numeros[0]), *const b = busqueda.Punto(numeros[1]);
    CCoor3D<int>* const c = busqueda.Punto(numeros[2]);
    if (!CTrianguloBuscado::Es(a, b, c)) return;
    const CTrianguloBuscado::CNumeros nums{a->num, b->num, c->num};
    if (nums[0] < 0 && nums[1] < 0 && nums[2] < 0) return;
    if (pasadas.pasada == 0) {
      Siembra(CTrianguloBuscado(a, b, c));
    } else if (nums[0] < 0 || nums[1] < 0 || nums[2] < 0) {
      Extiende(CTrianguloBuscado(a, b, c), nums);
    }
  }

  [[nodiscard]] int Altura(std::size_t condicion) const { return alturas[condicion]; }

  std::vector<std::vector<CCoor3D<int>>> tomados;  ///< copies of the points that each condition has taken

 private:
  /// One rise that is high enough is enough here, though both must be steep.
  void Siembra(CTrianguloBuscado const& t) {
    const std::array<std::int64_t, 3> subidas{Subida(t, 0), Subida(t, 1), Subida(t, 2)};
    const std::int64_t mayor = *std::max_element(subidas.begin(), subidas.end());
    for (std::size_t c = 0; c < condiciones.size(); ++c) {
      if (mayor <= alturas[c]) continue;
      for (unsigned i = 0; i < 3; ++i) {
        CCoor3D<int>& p = t.Vertice(i);
        if (p.num > 0 && subidas[i] > alturas[c] && Forma::Siembra(condiciones[c], atributos.De(p.num))) Toma(p, c);
      }
    }
  }

  void Extiende(CTrianguloBuscado const& t, CTrianguloBuscado::CNumeros const& nums) {
    for (unsigned i = 0; i < 3; ++i) {
      if (nums[i] < 0) continue;
      // The distance is held against the squared length as it is: see CHiloBuscaPuntosAltos::Extiende.
      const unsigned apoyos = t.Apoyos(i, nums, distancia);
      if (apoyos == 2 || (pasadas.pasada == kUltimaPasada && apoyos != 0)) TomaPorLaPrimera(t.Vertice(i));
    }
  }

  void TomaPorLaPrimera(CCoor3D<int>& p) {
    for (std::size_t c = 0; c < condiciones.size(); ++c) {
      if (Forma::Alcanza(condiciones[c], atributos.De(p.num))) return Toma(p, c);
    }
  }

  void Toma(CCoor3D<int>& p, std::size_t condicion) {
    tomados[condicion].push_back(p);
    atributos.De(p.num).tipo = static_cast<std::int8_t>(condicion);
    p.num = -p.num;
    pasadas.Halla();
  }

  CBusquedaPuntos const& busqueda;
  CAtributosPorNumero<Forma>& atributos;
  std::vector<CCondicion> const& condiciones;
  std::vector<int> alturas;  ///< scaled units
  int distancia;
  CBusquedaPasadas& pasadas;
};

/// The points that conditions have taken and whose class may be changed. Points that bear the class of a condition
/// already join those that it took, to be outlined with them; its class has a sign there, and so none above 127 is met.
template <class Forma>
std::vector<CClaseHallada> RecogeTomados(CDibujo<int> const& dibujo, CListasClases const& clases,
                                         std::vector<typename Forma::CCondicion> const& condiciones,
                                         CAtributosPorNumero<Forma>& atributos,
                                         std::vector<std::vector<CCoor3D<int>>>& tomados) {
  std::vector<CClaseHallada> hallados;
  RecorreElegibles(dibujo, clases, [&](CCoor3D<int> const& p, CPosicionEntidad const& lugar, bool elegible) {
    const auto suya = std::find_if(condiciones.begin(), condiciones.end(),
                                   [&p](auto const& c) { return int{c.tipo} == int{p.clasificacion}; });
    if (suya != condiciones.end()) tomados[static_cast<std::size_t>(suya - condiciones.begin())].push_back(p);
    if (!elegible || p.num >= 0) return;
    const signed char toma = atributos.De(p.num).tipo;
    if (toma < 0) return;  // a condition whose place does not fit the byte
    hallados.push_back({lugar, static_cast<std::uint8_t>(condiciones[static_cast<unsigned char>(toma)].tipo)});
  });
  return hallados;
}

/// One group for each run of neighbouring conditions with the same class, with the height of the first.
template <class Forma>
std::vector<CGrupoHallado> Agrupa(CDataSemilla const& semilla, CBuscaPorCondiciones<Forma>& busca,
                                  std::vector<typename Forma::CCondicion> const& condiciones) {
  std::vector<CGrupoHallado> grupos;
  for (std::size_t c = 0; c < condiciones.size(); ++c) {
    CDibujo<int> suyos = DibujoDeHallados(semilla, busca.tomados[c]);
    if (c > 0 && condiciones[c].tipo == condiciones[c - 1].tipo) {
      grupos.back().puntos.Suma(std::move(suyos), false, 0);
    } else {
      const CInfoClasificacion info(static_cast<unsigned char>(condiciones[c].tipo), 0.0, CString());
      grupos.push_back({std::move(suyos), info, busca.Altura(c)});
    }
  }
  for (CGrupoHallado& grupo : grupos) Forma::Ordena(grupo.puntos);
  return grupos;
}

}  // namespace

template <class Forma>
int CTriangulacion2D::BuscaPorCondiciones(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distanciaMax,
                                          std::vector<typename Forma::CCondicion> const& condiciones,
                                          unsigned& cantidad, std::vector<CPosicionEntidad> const* seleccion) {
  const CListasClases clases(datos);
  std::vector<CGrupoHallado> grupos;
  std::vector<CClaseHallada> hallados;
  {
    CBusquedaPuntos busqueda(cantidadPuntos);
    CAtributosPorNumero<Forma> atributos(cantidadPuntos);
    int codigo = PreparaBusqueda(busqueda, CFuentes{dibujo, otros, seleccion},
                                 [&](short, CLinea<int> const& e, unsigned k) { atributos.Pon(e, k); });
    if (codigo != kHecho) return codigo;
    IPorcentaje* porcentaje = Progreso();
    if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeBusca);
    CBusquedaPasadas pasadas(kPasadas, ficheroTemporal.Fichero()->GetLength(), kAnunciadas);
    CBuscaPorCondiciones<Forma> busca(busqueda, atributos, condiciones, Precision(), Trunca(Precision() * distanciaMax),
                                      pasadas);
    codigo = RecorrePasadas(ficheroTemporal.Ruta(), pasadas, porcentaje, mensajes, busca);
    cantidad = pasadas.hallados;
    if (codigo != kHecho) return codigo;
    hallados = RecogeTomados<Forma>(dibujo, clases, condiciones, atributos, busca.tomados);
    grupos = Agrupa(dibujo.semilla, busca, condiciones);
    if (porcentaje != nullptr && !grupos.empty()) {
      porcentaje->Amplia(mensajes, (static_cast<int>(grupos.size()) - 1) * kPasosPorContorno);
    }
  }
  return Cronometra(resumen.segundosContorno, [&] {
    return ClasificaHallados(dibujo, hallados, grupos, {distanciaMax, MENSAJES_NORMALES, sinMarco}, clases, cantidad);
  });
}

template <class Forma>
int CTriangulacion2D::ListaAltos(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double alturaMin,
                                 std::vector<typename Forma::CCondicion>& lista,
                                 std::vector<CPosicionEntidad> const* seleccion) {
  CBusquedaPuntos busqueda(cantidadPuntos);
  CAtributosPorNumero<Forma> atributos(cantidadPuntos);
  const int codigo = PreparaBusqueda(busqueda, CFuentes{dibujo, otros, seleccion},
                                     [&](short, CLinea<int> const& e, unsigned k) { atributos.Pon(e, k); });
  if (codigo != kHecho) return codigo;
  IPorcentaje* porcentaje = Progreso();
  if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeBusca);
  const int altura = Trunca(Precision() * alturaMin);
  CBusquedaPasadas pasadas(1, ficheroTemporal.Fichero()->GetLength(), kAnunciadas);
  return RecorrePasadas(ficheroTemporal.Ruta(), pasadas, porcentaje, mensajes, [&](CTriple const& numeros) {
    CCoor3D<int>*const a = busqueda.Punto(numeros[0]), *const b = busqueda.Punto(numeros[1]);
    CCoor3D<int>* const c = busqueda.Punto(numeros[2]);
    if (!CTrianguloBuscado::Es(a, b, c)) return;
    const CTrianguloBuscado t(a, b, c);
    for (unsigned i = 0; i < 3; ++i) {
      const std::int64_t subida = Subida(t, i);
      if (subida <= altura) continue;
      // The third vertex is told by what the first one looks like: programs know the lists that way.
      const int delQueSeVe = t.Vertice(i == 2 ? 0 : i).num;
      lista.push_back(
          Forma::Sola(atributos.De(delQueSeVe), static_cast<float>(static_cast<double>(subida) / Precision())));
    }
  });
}

int CTriangulacion2D::RunPuntosAltosRGB(CDibujo<int>& dibujo, double distanciaMax,
                                        std::vector<CCondicionHRGB> const& condiciones, unsigned int& cantidad,
                                        std::vector<CDibujo<int>*>* otros,
                                        std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion, [&] {
    return BuscaPuntosAltosRGB(dibujo, otros, distanciaMax, condiciones, cantidad, seleccion);
  });
}

int CTriangulacion2D::RunPuntosAltosIntensidad(CDibujo<int>& dibujo, double distanciaMax,
                                               std::vector<CCondicionHIntensidad> const& condiciones,
                                               unsigned int& cantidad, std::vector<CDibujo<int>*>* otros,
                                               std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion, [&] {
    return BuscaPuntosAltosIntensidad(dibujo, otros, distanciaMax, condiciones, cantidad, seleccion);
  });
}

int CTriangulacion2D::RunListarPuntosAltosRGB(CDibujo<int>& dibujo, double alturaMin,
                                              std::vector<CCondicionHRGB>& lista, std::vector<CDibujo<int>*>* otros,
                                              std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion,
                     [&] { return ListaPuntosAltosRGB(dibujo, otros, alturaMin, lista, seleccion); });
}

int CTriangulacion2D::RunListarPuntosAltosIntensidad(CDibujo<int>& dibujo, double alturaMin,
                                                     std::vector<CCondicionHIntensidad>& lista,
                                                     std::vector<CDibujo<int>*>* otros,
                                                     std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion,
                     [&] { return ListaPuntosAltosIntensidad(dibujo, otros, alturaMin, lista, seleccion); });
}

int CTriangulacion2D::BuscaPuntosAltosRGB(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distanciaMax,
                                          std::vector<CCondicionHRGB> const& condiciones, unsigned int& cantidad,
                                          std::vector<CPosicionEntidad> const* seleccion) {
  return BuscaPorCondiciones<CPorColor>(dibujo, otros, distanciaMax, condiciones, cantidad, seleccion);
}

int CTriangulacion2D::BuscaPuntosAltosIntensidad(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros,
                                                 double distanciaMax,
                                                 std::vector<CCondicionHIntensidad> const& condiciones,
                                                 unsigned int& cantidad,
                                                 std::vector<CPosicionEntidad> const* seleccion) {
  return BuscaPorCondiciones<CPorIntensidad>(dibujo, otros, distanciaMax, condiciones, cantidad, seleccion);
}

int CTriangulacion2D::ListaPuntosAltosRGB(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double alturaMin,
                                          std::vector<CCondicionHRGB>& lista,
                                          std::vector<CPosicionEntidad> const* seleccion) {
  return ListaAltos<CPorColor>(dibujo, otros, alturaMin, lista, seleccion);
}

int CTriangulacion2D::ListaPuntosAltosIntensidad(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros,
                                                 double alturaMin, std::vector<CCondicionHIntensidad>& lista,
                                                 std::vector<CPosicionEntidad> const* seleccion) {
  return ListaAltos<CPorIntensidad>(dibujo, otros, alturaMin, lista, seleccion);
}

}  // namespace Meseta47
