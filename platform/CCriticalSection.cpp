#include "platform/CCriticalSection.h"

#include <chrono>
#include <system_error>
#include <thread>

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
  // Sections are short and such waits rare: looking again now and then keeps the lock itself a plain one.
  const auto limite = std::chrono::steady_clock::now() + std::chrono::milliseconds(milisegundos);
  while (!cerrojo_.try_lock()) {
    if (std::chrono::steady_clock::now() >= limite) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

bool CCriticalSection::Unlock() {
  cerrojo_.unlock();
  return true;
}
