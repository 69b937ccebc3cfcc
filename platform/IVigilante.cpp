#include "platform/IVigilante.h"

#include <algorithm>
#include <atomic>
#include <system_error>

#include "platform/Sistema.h"

namespace {

std::atomic<IVigilante*> vigilanteActual{nullptr};

std::errc FalloSimulado(EOperacion operacion) {
  switch (operacion) {
    case EOperacion::Escribe:
    case EOperacion::Sincroniza:
    case EOperacion::Cierra:
      return std::errc::no_space_on_device;
    case EOperacion::Abre:
    case EOperacion::Renombra:
    case EOperacion::Borra:
    case EOperacion::CreaTemporal:
      return std::errc::permission_denied;
    case EOperacion::CreaEvento:
    case EOperacion::CreaHilo:
    case EOperacion::CreaSeccion:
      return std::errc::resource_unavailable_try_again;
    case EOperacion::Lee:
    case EOperacion::Posiciona:
    case EOperacion::Longitud:
    case EOperacion::Trunca:
      break;
  }
  return std::errc::io_error;
}

}  // namespace

IVigilante::~IVigilante() = default;

std::size_t IVigilante::Concede(EOperacion, CString const&, std::size_t bytes) { return bytes; }

IVigilante* PonVigilante(IVigilante* vigilante) { return vigilanteActual.exchange(vigilante); }

int sistema::Consulta(EOperacion operacion, CString const& path) {
  IVigilante* const vigilante = vigilanteActual.load(std::memory_order_acquire);
  if (vigilante == nullptr || vigilante->Permite(operacion, path)) {
    return 0;
  }
  return static_cast<int>(FalloSimulado(operacion));
}

int sistema::Consulta(EOperacion operacion, wchar_t const* path) {
  return vigilanteActual.load(std::memory_order_acquire) == nullptr ? 0 : Consulta(operacion, CString(path));
}

std::size_t sistema::Concedidos(EOperacion operacion, CString const& path, std::size_t bytes) {
  IVigilante* const vigilante = vigilanteActual.load(std::memory_order_acquire);
  return vigilante == nullptr ? bytes : std::min(bytes, vigilante->Concede(operacion, path, bytes));
}
