#pragma once

#include <mutex>

#include "platform/CSyncObject.h"

/// A lock between threads. The thread that holds it may take it again, and frees it with as many Unlock() as Lock().
/// Construction throws std::system_error when the system has no room for one more lock: the only exception here.
class URDIMBRE_API CCriticalSection : public CSyncObject {
 public:
  CCriticalSection();
  ~CCriticalSection() override;

  using CSyncObject::Lock;
  bool Lock(long long milisegundos) override;

  /// To be called by the thread that holds the lock.
  bool Unlock() override;

 private:
  std::recursive_mutex cerrojo_;
};
