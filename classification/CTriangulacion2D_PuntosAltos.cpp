// The search of high points: passes over the temporary file by one thread a processor, and the classes at the end.
#include <algorithm>
#include <optional>

#include "classification/BusquedaClases.h"
#include "classification/BusquedaContorno.h"
#include "classification/BusquedaMensajes.h"
#include "classification/CBusquedaPasadas.h"
#include "classification/CBusquedaPuntos.h"
#include "classification/CHiloBuscaPuntosAltos.h"
#include "classification/CTrianguloBuscado.h"
#include "model/threads/CEquipo.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "platform/Procesadores.h"
#include "run/CListasClases.h"
#include "run/Fases.h"

namespace Meseta47 {

namespace {

struct CParametros {
  int alturaMin, distanciaMax;  ///< scaled units
  unsigned pasadas;
};

/// One thread a processor, or a single one for a file with fewer records than that.
unsigned HilosPara(unsigned registros) {
  const unsigned procesadores = NumeroProcesadores();
  return registros / procesadores == 0 ? 1 : procesadores;
}

/// The threads of a search, and what they share.
class CBuscadores {
 public:
  CBuscadores(CFile& elFichero, CBusquedaPuntos const& laBusqueda, CParametros const& losParametros,
              std::vector<CCoor3D<int>>& losAltos, unsigned& laCantidad, IPorcentaje* elPorcentaje, int elNivel)
      : fichero(elFichero),
        busqueda(laBusqueda),
        parametros(losParametros),
        altos(losAltos),
        cantidad(laCantidad),
        porcentaje(elPorcentaje),
        nivel(elNivel),
        pasadas(losParametros.pasadas, elFichero.GetLength()),
        registros(static_cast<unsigned>(pasadas.longitud / CFicheroTriples::kBytes)),
        cuantos(HilosPara(registros)),
        eventosFin(cuantos, true),
        eventosSigue(cuantos, false),
        hilos(cuantos) {}
  CBuscadores(CBuscadores const&) = delete;
  CBuscadores& operator=(CBuscadores const&) = delete;
  ~CBuscadores() {
    for (CHiloBuscaPuntosAltos& hilo : hilos) hilo.Stop();
  }

  /// All passes. A run's code.
  int Busca() {
    int codigo = eventosFin.Estan() && eventosSigue.Estan() ? kHecho : kFicheroInconsistente;
    while (codigo == kHecho && pasadas.Quedan()) codigo = Pasada();
    return codigo;
  }

 private:
  int Pasada() {
    fichero.Seek(0, CFile::begin);
    if (fichero.HayError()) return kFicheroInconsistente;
    cantidad = 0;
    pasadas.Empieza();
    terminados = 0;
    leido = 0;
    cancelado = false;
    seccion.emplace();
    if (const int codigo = Reparte(); codigo != kHecho) return codigo;
    Espera();
    eventosFin.EsperaTodos();
    if (cancelado) return CuentaDondeQuedo();
    for (CHiloBuscaPuntosAltos const& hilo : hilos) {
      if (hilo.Codigo() != kHecho) return hilo.Codigo();
    }
    pasadas.Termina();
    return kHecho;
  }

  int Reparte() {
    const unsigned porHilo = registros / cuantos + 1;
    for (unsigned k = 0; k < cuantos; ++k) {
      CHiloBuscaPuntosAltos& hilo = hilos[k];
      hilo.Start(k, eventosFin.Manejador(k), eventosSigue.Manejador(k), porcentaje, static_cast<unsigned>(nivel),
                 pasadas.acumulado, fichero.GetFilePath(), &busqueda, &pasadas.pasada, &cantidad, parametros.alturaMin,
                 parametros.distanciaMax, CTrianguloBuscado::kEmpinado, &altos, &pasadas.cambio, &pasadas.total,
                 porHilo, &*seccion, &terminados, &leido, &cancelado);
      if (hilo.Codigo() != kHecho) return hilo.Codigo();
      eventosSigue[k].SetEvent();
    }
    return kHecho;
  }

  /// Reports until all threads are done, once at least. It sleeps between two reports, and the last thread wakes it.
  void Espera() {
    const std::atomic_ref<unsigned> bytes(leido);
    const std::atomic_ref<std::uint64_t> total(pasadas.total);
    do {
      if (porcentaje != nullptr && porcentaje->Porcentaje(nivel, bytes + pasadas.acumulado, total, false) == 0) {
        std::atomic_ref<bool>(cancelado).store(true);
        return;
      }
    } while (!eventosFin.EsperaTodos(porcentaje != nullptr ? CEquipo::kMilisegundos : CEquipo::kSinLimite));
  }

  int CuentaDondeQuedo() {
    const auto cuenta = [&](wchar_t const* formato, auto... valores) {
      CString texto;
      texto.Format(formato, valores...);
      porcentaje->Mensaje(1, &texto, 1);
    };
    if (porcentaje != nullptr) {
      cuenta(L"cantidad leida %u", leido);
      cuenta(L"cont %llu total %llu", static_cast<unsigned long long>(pasadas.acumulado),
             static_cast<unsigned long long>(pasadas.total));
      for (unsigned k = 0; k < cuantos; ++k) {
        cuenta(L"k=%u file=%llu limite=%llu", k, static_cast<unsigned long long>(hilos[k].Posicion()),
               static_cast<unsigned long long>(hilos[k].Limite()));
      }
    }
    return kCancelado;
  }

  CFile& fichero;
  CBusquedaPuntos const& busqueda;
  CParametros parametros;
  std::vector<CCoor3D<int>>& altos;
  unsigned& cantidad;
  IPorcentaje* porcentaje;
  int nivel;
  CBusquedaPasadas pasadas;
  unsigned registros, cuantos;
  std::optional<CCriticalSection> seccion;  // a new one for each pass, at the same place
  long terminados = 0;
  unsigned leido = 0;
  bool cancelado = false;
  CEquipo eventosFin, eventosSigue;
  std::vector<CHiloBuscaPuntosAltos> hilos;
};

/// The points that a search has found and whose class may be changed. Points that bear the class already join those
/// found, to be outlined with them.
std::vector<CClaseHallada> RecogeHallados(CDibujo<int> const& dibujo, CListasClases const& clases,
                                          CInfoClasificacion const& info, std::vector<CCoor3D<int>>& altos) {
  std::vector<CClaseHallada> hallados;
  RecorreElegibles(dibujo, clases, [&](CCoor3D<int> const& p, CPosicionEntidad const& lugar, bool elegible) {
    if (info.Compara(p.clasificacion)) altos.push_back(p);
    if (elegible && p.num < 0) hallados.push_back({lugar, info.GetTipo()});
  });
  return hallados;
}

}  // namespace

int CTriangulacion2D::RunPuntosAltos(CDibujo<int>& dibujo, double distanciaMax, double alturaMin,
                                     CInfoClasificacion const& info, int unaPasada, unsigned int& cantidad,
                                     std::vector<CDibujo<int>*>* otros,
                                     std::vector<CPosicionEntidad> const* seleccion) {
  return RunBusqueda(dibujo, otros, seleccion, [&] {
    return BuscaPuntosAltos(dibujo, otros, distanciaMax, alturaMin, info, unaPasada, cantidad, seleccion);
  });
}

int CTriangulacion2D::BuscaPuntosAltos(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distanciaMax,
                                       double alturaMin, CInfoClasificacion const& info, int unaPasada,
                                       unsigned int& cantidad, std::vector<CPosicionEntidad> const* seleccion) {
  const CListasClases clases(datos);
  const CParametros parametros{Trunca(Precision() * alturaMin), Trunca(Precision() * distanciaMax),
                               unaPasada != 0 ? 1 : kPasadas};
  std::vector<CCoor3D<int>> altos;
  std::vector<CClaseHallada> hallados;
  {
    CBusquedaPuntos busqueda(cantidadPuntos);
    int codigo = PreparaBusqueda(busqueda, CFuentes{dibujo, otros, seleccion});
    if (codigo != kHecho) return codigo;
    IPorcentaje* porcentaje = Progreso();
    if (porcentaje != nullptr) porcentaje->Fase(mensajes, kMensajeBusca);
    altos.reserve(cantidadPuntos);  // room that is not used costs nothing, and growth would move what is
    codigo =
        CBuscadores(*ficheroTemporal.Fichero(), busqueda, parametros, altos, cantidad, porcentaje, mensajes).Busca();
    if (codigo != kHecho) return codigo;
    hallados = RecogeHallados(dibujo, clases, info, altos);
  }
  return Cronometra(resumen.segundosContorno, [&] {
    std::vector<CGrupoHallado> grupos;
    grupos.push_back({DibujoDeHallados(dibujo.semilla, altos), info, parametros.alturaMin});
    return ClasificaHallados(dibujo, hallados, grupos, {distanciaMax, MENSAJES_NORMALES, sinMarco}, clases, cantidad);
  });
}

}  // namespace Meseta47
