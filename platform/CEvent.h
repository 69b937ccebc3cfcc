#pragma once

#include "platform/CSyncObject.h"
#include "platform/Manejador.h"

/// An event that threads wait for. An automatic one lets a single wait pass and is unset by it; a manual one lets all
/// pass until it is reset. Any thread may use it.
class URDIMBRE_API CEvent : public CSyncObject {
 public:
  /// `senalado`: set from the start. When the event cannot be made m_hObject is null and every operation fails.
  explicit CEvent(bool senalado = false, bool manual = false);
  ~CEvent() override;

  bool SetEvent();
  bool ResetEvent();

  using CSyncObject::Lock;
  bool Lock(long long milisegundos) override;

  /// Does nothing and succeeds: a wait takes nothing that could be given back.
  bool Unlock() override;

  operator HANDLE() const { return m_hObject; }

  HANDLE m_hObject;
};
