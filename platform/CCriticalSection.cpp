#include "platform/CCriticalSection.h"

#include <chrono>
#include <system_error>

#include "platform/Sistema.h"

CSyncObject::~CSyncObject() = default;

CCriticalSection::CCriticalSection() {
  if (const int codigo = sistema::Consulta(EOperacion::CreaSeccion, L""); codigo != 0) {
    throw std::system_error(codigo, std::generic_category());
  }
}

CCriticalSection::~CCriticalSection() = default;

bool CCriticalSection::Lock(long long milisegundos) {
  if (milisegundos < 0 || milisegundos >= static_cast<long long>(INFINITE)) {
    cerrojo_.lock();
    return true;
  }
  return cerrojo_.try_lock_for(std::chrono::milliseconds(milisegundos));
}

bool CCriticalSection::Unlock() {
  cerrojo_.unlock();
  return true;
}
