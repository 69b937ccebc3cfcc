#include "platform/CCriticalSection.h"

#include <system_error>

#include "platform/Sistema.h"

CCriticalSection::CCriticalSection() {
  if (const int codigo = sistema::Consulta(EOperacion::CreaSeccion, L""); codigo != 0) {
    throw std::system_error(codigo, std::generic_category());
  }
}

CCriticalSection::~CCriticalSection() = default;

void CCriticalSection::Toma() { cerrojo_.lock(); }

bool CCriticalSection::Intenta() { return cerrojo_.try_lock(); }

bool CCriticalSection::Unlock() {
  cerrojo_.unlock();
  return true;
}
