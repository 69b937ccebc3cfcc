#include "platform/CCriticalSection.h"

#include <chrono>
#include <thread>

#include "platform/Manejadores.h"

CSyncObject::~CSyncObject() = default;

bool CCriticalSection::Lock(long long milisegundos) {
  if (milisegundos < 0 || milisegundos >= static_cast<long long>(INFINITE)) {
    Toma();
    return true;
  }
  // Sections are short and such waits rare: looking again now and then keeps the lock itself a plain one.
  const auto limite = std::chrono::steady_clock::now() + std::chrono::milliseconds(milisegundos);
  while (!Intenta()) {
    if (std::chrono::steady_clock::now() >= limite) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}
