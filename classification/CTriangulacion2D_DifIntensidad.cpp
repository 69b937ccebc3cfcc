// The search of jumps of intensity: that of high points on one thread, with intensities in the place of heights.
#include <limits>

#include "classification/BusquedaClases.h"
#include "classification/BusquedaContorno.h"
#include "classification/BusquedaMensajes.h"
#include "classification/CBusquedaPasadas.h"
#include "classification/CBusquedaPuntos.h"
#include "classification/CTrianguloBuscado.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "run/CListasClases.h"
#include "run/Fases.h"

namespace Meseta47 {

namespace {

constexpr int kSinLimite = 2147483647;  // of the height above an outline
constexpr double kCualquierLado = std::numeric_limits<double>::infinity();

/// What the points of the mesh are held against one another by, by number: 4 bytes each.
class CValoresPorNumero {
 public:
  explicit CValoresPorNumero(std::size_t numeros) : valores(numeros) {}

  void Pon(CCoor3D<int> const& p, int valor) { valores[static_cast<std::size_t>(p.num) - 1] = valor; }
  [[nodiscard]] std::int64_t De(int numero) const { return valores[static_cast<std::size_t>(numero) - 1]; }

 private:
  std::vector<int> valores;
};

/// Marks the points of a triangle that jump. Points that are lower than the rest by the difference are the higher ones
/// once all values have changed their sign, so that one test serves both.
class CBuscaSaltos {
 public:
  CBuscaSaltos(CBusquedaPuntos const& laBusqueda, CValoresPorNumero const& losValores, int laDiferencia,
               CBusquedaPasadas& lasPasadas, std::vector<CCoor3D<int>>& losHallados)
      : busqueda(laBusqueda),
        valores(losValores),
        signo(laDiferencia < 0 ? -1 : 1),
        salto(signo * std::int64_t{laDiferencia}),
        pasadas(lasPasadas),
        hallados(losHallados) {}

  void operator()(CTriple const& numeros) {
    CCoor3D<int>*const a = busqueda.Punto(numeros[0]), *const b = busqueda.Punto(numeros[1]);
    CCoor3D<int>* const c = busqueda.Punto(numeros[2]);
    if (a == nullptr || b == nullptr || c == nullptr) return;
    const CTrianguloBuscado::CNumeros nums{a->num, b->num, c->num};
    const bool algunoHallado = nums[0] < 0 || nums[1] < 0 || nums[2] < 0;
    if ((nums[0] < 0 && nums[1] < 0 && nums[2] < 0) || (pasadas.pasada != 0 && !algunoHallado)) return;
    CTrianguloBuscado::CValores suyos{valores.De(numeros[0]), valores.De(numeros[1]), valores.De(numeros[2])};
    if (!CTrianguloBuscado::Es(*a, *b, *c, suyos)) return;
    for (std::int64_t& valor : suyos) valor *= signo;
    const CTrianguloBuscado t(a, b, c, suyos);
    pasadas.pasada == 0 ? Siembra(t) : Extiende(t, nums);
  }

 private:
  void Siembra(CTrianguloBuscado const& t) {
    if (salto == 0) return;  // nothing jumps by nothing
    for (unsigned i = 0; i < 3; ++i) {
      const auto salta = [&](unsigned j) { return t.Desnivel(i, j) > salto; };
      if (t.Vertice(i).num > 0 && salta(t.Siguiente(i)) && salta(t.Anterior(i))) Marca(t.Vertice(i));
    }
  }

  void Extiende(CTrianguloBuscado const& t, CTrianguloBuscado::CNumeros const& nums) {
    for (unsigned i = 0; i < 3; ++i) {
      if (nums[i] < 0) continue;
      const unsigned apoyos = t.Apoyos(i, nums, kCualquierLado);
      if (apoyos == 2 || (pasadas.pasada == kUltimaPasada && apoyos != 0)) Marca(t.Vertice(i));
    }
  }

  void Marca(CCoor3D<int>& punto) {
    hallados.push_back(punto);
    punto.num = -punto.num;
    pasadas.Halla();
  }

  CBusquedaPuntos const& busqueda;
  CValoresPorNumero const& valores;
  std::int64_t signo, salto;
  CBusquedaPasadas& pasadas;
  std::vector<CCoor3D<int>>& hallados;
};

bool EsNube(CDibujo<int> const& dibujo) { return dibujo.tipoNube >= 1 && dibujo.tipoNube <= 3; }

}  // namespace

int CTriangulacion2D::RunPuntosDifIntensidad(CDibujo<int>& dibujo, double distancia, int diferencia,
                                             CInfoClasificacion const& info, unsigned int& cantidad,
                                             std::vector<CDibujo<int>*>* otros,
                                             std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion, [&] {
    return BuscaPuntosDifIntensidad(dibujo, otros, distancia, diferencia, info, cantidad, seleccion);
  });
}

int CTriangulacion2D::BuscaPuntosDifIntensidad(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros,
                                               double distancia, int diferencia, CInfoClasificacion const& info,
                                               unsigned int& cantidad, std::vector<CPosicionEntidad> const* seleccion) {
  const CListasClases clases(datos);
  std::vector<CCoor3D<int>> puntos;
  std::vector<CClaseHallada> hallados;
  {
    CBusquedaPuntos busqueda(cantidadPuntos);
    CValoresPorNumero valores(cantidadPuntos);
    const bool deNube = EsNube(dibujo);  // further drawings keep their heights
    int codigo = PreparaBusqueda(busqueda, CFuentes{dibujo, otros, seleccion},
                                 [&](short lista, CLinea<int> const& e, unsigned k) {
                                   CCoor3D<int> const& p = e.Punto(static_cast<int>(k));
                                   valores.Pon(p, lista == 0 && deNube ? p.intensidad : p.z);
                                 });
    if (codigo != kHecho) return codigo;
    IPorcentaje* porcentaje = Progreso();
    if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeBusca);
    CBusquedaPasadas pasadas(kPasadas, ficheroTemporal.Fichero()->GetLength(), kAnunciadas);
    CBuscaSaltos busca(busqueda, valores, diferencia, pasadas, puntos);
    codigo = RecorrePasadas(ficheroTemporal.Ruta(), pasadas, porcentaje, mensajes, busca);
    cantidad = pasadas.hallados;
    if (codigo != kHecho) return codigo;
    RecorreElegibles(dibujo, clases, [&](CCoor3D<int> const& p, CPosicionEntidad const& lugar, bool elegible) {
      if (elegible && p.num < 0) hallados.push_back({lugar, info.GetTipo()});
    });
  }
  return Cronometra(resumen.segundosContorno, [&] {
    std::vector<CGrupoHallado> grupos;
    grupos.push_back({DibujoDeHallados(dibujo.semilla, puntos), info, kSinLimite});
    return ClasificaHallados(dibujo, hallados, grupos, {distancia, mensajes, sinMarco}, clases, cantidad);
  });
}

}  // namespace Meseta47
