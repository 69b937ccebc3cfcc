#include "platform/CCriticalSection.h"

#include <system_error>

#include "platform/Sistema.h"
#include "platform/windows/Win32.h"

namespace {

// Turns before a thread that finds the lock taken goes to sleep: the count that the system's own heap works with.
constexpr DWORD kVueltas = 4000;

CRITICAL_SECTION* Cerrojo(std::byte* sitio) { return reinterpret_cast<CRITICAL_SECTION*>(sitio); }

}  // namespace

CCriticalSection::CCriticalSection() {
  static_assert(sizeof cerrojo_ == sizeof(CRITICAL_SECTION) && alignof(CRITICAL_SECTION) <= alignof(void*));
  if (const int codigo = sistema::Consulta(EOperacion::CreaSeccion, L""); codigo != 0) {
    throw std::system_error(codigo, std::generic_category());
  }
  if (::InitializeCriticalSectionAndSpinCount(Cerrojo(cerrojo_), kVueltas) == 0) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category());
  }
}

CCriticalSection::~CCriticalSection() { ::DeleteCriticalSection(Cerrojo(cerrojo_)); }

void CCriticalSection::Toma() { ::EnterCriticalSection(Cerrojo(cerrojo_)); }

bool CCriticalSection::Intenta() { return ::TryEnterCriticalSection(Cerrojo(cerrojo_)) != 0; }

bool CCriticalSection::Unlock() {
  ::LeaveCriticalSection(Cerrojo(cerrojo_));
  return true;
}
