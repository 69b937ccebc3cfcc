#include "classification/CBusquedaSuelo.h"

#include <atomic>
#include <cmath>
#include <exception>
#include <functional>
#include <thread>
#include <utility>

#include "classification/BusquedaMensajes.h"
#include "classification/CPuntosSuelo.h"
#include "classification/CSuperficieSuelo.h"
#include "classification/CTinSuelo.h"
#include "classification/FasesSuelo.h"
#include "model/threads/CAvance.h"
#include "model/threads/IPorcentaje.h"
#include "platform/Manejadores.h"
#include "platform/Procesadores.h"
#include "run/Fases.h"

namespace Meseta47 {

namespace {

/// Work beside the caller's, on a thread of its own; where there is none, on the caller's when it asks for the result.
/// The thread is one of this library's handles: those of GCC on Windows end under a lock of their own, which takes the
/// system's for what was theirs alone (CReserva), and any other thread that ends takes the two the other way round.
class CAparte {
 public:
  CAparte(bool conHilo, std::function<int()> elTrabajo) : trabajo(std::move(elTrabajo)) {
    if (conHilo) hilo = CreateThread(nullptr, 0, Rutina, this, 0, nullptr);
  }
  CAparte(CAparte const&) = delete;
  CAparte& operator=(CAparte const&) = delete;
  ~CAparte() {
    if (hilo == nullptr) return;
    WaitForSingleObject(hilo, INFINITE);
    CloseHandle(hilo);
  }

  /// Whether nothing goes on beside the caller, or ends within so many milliseconds.
  bool HaAcabado(unsigned long milisegundos) {
    return hilo == nullptr || WaitForSingleObject(hilo, milisegundos) == WAIT_OBJECT_0;
  }
  /// Once it has ended. Throws what the work has thrown.
  int Resultado() {
    if (hilo == nullptr) return trabajo();
    if (fallo != nullptr) std::rethrow_exception(fallo);
    return resultado;
  }

 private:
  static unsigned long Rutina(void* dato) {
    auto& yo = *static_cast<CAparte*>(dato);
    try {
      yo.resultado = yo.trabajo();
    } catch (...) {
      yo.fallo = std::current_exception();
    }
    return 0;
  }

  std::function<int()> trabajo;
  HANDLE hilo = nullptr;
  int resultado = 0;
  std::exception_ptr fallo;
};

/// The phases between the minima and the classes, on one grid.
class CFases {
 public:
  CFases(CMallaSuelo& laMalla, CConstantesSuelo const& lasK, CDataSuelo const& losDatos, CAvance& elAvance,
         CTinSuelo& elTin, CSuperficieSuelo& laSuperficie, CResumenSuelo& elResumen)
      : malla(laMalla),
        k(lasK),
        data(losDatos),
        avance(elAvance),
        tin(elTin),
        superficie(laSuperficie),
        resumen(elResumen) {}

  int Busca() {
    if (!Separa() || !Crece() || !QuitaPozos()) return kCancelado;
    return Cronometra(resumen.segundosSuperficie, [&] { return MideYTriangula(); });
  }

 private:
  bool Separa() {
    const auto abre = [this] {
      return Cronometra(resumen.segundosAberturas, [&] { return SeparaPorAberturas(malla, k, data, avance); });
    };
    QuitaRuidoBajo(malla, k);
    if (!abre() || !QuitaPozos()) return false;
    return pozos.empty() || abre();  // what stood beside a pit looked like an object
  }

  bool Crece() {
    return Cronometra(resumen.segundosCrece, [&] {
      std::vector<std::uint8_t> crecidos;
      if (!CreceSuelo(malla, k, planos, crecidos, avance)) return false;
      if (k.poda && !PodaSuelo(malla, k, planos, avance)) return false;
      if (k.componentes) RechazaComponentes(malla, k, planos, crecidos);
      return true;
    });
  }

  bool QuitaPozos() {
    const auto quita = [this] { return Meseta47::QuitaPozos(malla, k, avance, pozos); };
    return !k.pozos || Cronometra(resumen.segundosPozos, quita);
  }

  /// Triangulates the ground on one processor, which takes longest, while the others measure its vertices, or
  /// afterwards where there is but one.
  int MideYTriangula() {
    constexpr unsigned long kMilisegundos = 20;
    std::atomic<bool> sigue{true};
    const auto pregunta = [this, &sigue, mio = std::this_thread::get_id()] {
      return sigue && (std::this_thread::get_id() != mio || avance.Sigue());  // progress is told by the caller's thread
    };
    CAparte triangulos(NumeroProcesadores() > 1, [&] { return tin.Construye(malla, pregunta); });
    RenuevaPlanos(malla, k, pozos, planos);
    sigue = superficie.MideVertices(std::move(planos), avance, 1);
    while (!triangulos.HaAcabado(kMilisegundos)) sigue = sigue && avance.Sigue();
    const int codigo = triangulos.Resultado();
    return sigue ? codigo : kCancelado;
  }

  CMallaSuelo& malla;
  CConstantesSuelo const& k;
  CDataSuelo const& data;
  CAvance& avance;
  CTinSuelo& tin;
  CSuperficieSuelo& superficie;
  CResumenSuelo& resumen;
  std::vector<std::uint32_t> pozos;  ///< found by the last look
  CPlanosSuelo planos;
};

}  // namespace

CBusquedaSuelo::CBusquedaSuelo(CDataSemilla const& laSemilla, CDataTriangulacion const& losFiltros, double metros,
                               double metrosAltura)
    : semilla(laSemilla),
      filtros(losFiltros),
      metro(metros / laSemilla.Precision()),
      metroZ(metrosAltura / laSemilla.Precision()) {}

CNivelMensajes CBusquedaSuelo::Mensajes(CNivelMensajes nivel) {
  const CNivelMensajes antes = mensajes;
  mensajes = nivel < MENSAJES_NINGUNO || nivel > MENSAJES_NORMALES ? MENSAJES_NINGUNO : nivel;
  return antes;
}

int CBusquedaSuelo::Busca(CDibujo<int>& dibujo, CDataSuelo const& data) {
  resumen = {};
  IPorcentaje* porcentaje = mensajes == MENSAJES_NINGUNO ? nullptr : BuscaPorcentaje();
  const auto fase = [&](unsigned mensaje, unsigned pasadas) {
    if (porcentaje != nullptr) porcentaje->Fase(mensajes, mensaje);
    return CAvance(porcentaje, mensajes, pasadas);
  };
  const CPuntosSuelo puntos(dibujo, filtros);
  CMallaSuelo malla;
  malla.metro = metro;
  malla.metroZ = metroZ;
  malla.origenX = std::llround(semilla.origen[0] * semilla.Precision());
  malla.origenY = std::llround(semilla.origen[1] * semilla.Precision());
  CAvance reune = fase(kMensajeRegistra, 4);
  int codigo = Cronometra(resumen.segundosMinimos, [&] { return ReuneMinimos(puntos, constantes, reune, malla); });
  if (codigo != kHecho) return codigo;
  resumen.minimos = malla.Minimos();
  resumen.celda = malla.c;
  resumen.espaciado = malla.espaciado;

  CTinSuelo tin(semilla);
  CSuperficieSuelo superficie(malla, constantes, tin);
  // Openings once or twice, pits twice, planes, rounds of growth, a look each for pruning and for the roughness.
  CAvance busca = fase(kMensajeBusca, 2 * Aberturas(malla, data) + 2 + 1 + constantes.rondas + 2);
  codigo = CFases(malla, constantes, data, busca, tin, superficie, resumen).Busca();
  if (codigo != kHecho) return codigo;
  malla.SueltaEntorno();
  CAvance clasifica = fase(kMensajeClases, 1);
  return Cronometra(resumen.segundosClasifica,
                    [&] { return ClasificaPuntos(puntos, malla, constantes, superficie, data, clasifica, resumen); });
}

}  // namespace Meseta47
