#include "platform/CEvent.h"

#include <algorithm>

#include "platform/Manejadores.h"

CEvent::CEvent(bool senalado, bool manual) : m_hObject(CreateEventW(nullptr, manual, senalado, nullptr)) {}

CEvent::~CEvent() { CloseHandle(m_hObject); }

bool CEvent::SetEvent() { return ::SetEvent(m_hObject); }

bool CEvent::ResetEvent() { return ::ResetEvent(m_hObject); }

bool CEvent::Lock(long long milisegundos) {
  constexpr auto kSinLimite = static_cast<long long>(INFINITE);
  const long long espera = milisegundos < 0 ? kSinLimite : std::min(milisegundos, kSinLimite);
  return WaitForSingleObject(m_hObject, static_cast<unsigned long>(espera)) == WAIT_OBJECT_0;
}

bool CEvent::Unlock() { return true; }
