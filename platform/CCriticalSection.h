#pragma once

#if defined(_WIN32)
#include <cstddef>
#else
#include <mutex>
#endif

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
  void Toma();
  bool Intenta();

#if defined(_WIN32)
  alignas(void*) std::byte cerrojo_[40];  // the system's own, with a spin count
#else
  std::recursive_mutex cerrojo_;
#endif
};
