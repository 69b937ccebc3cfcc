#pragma once

#include "platform/Exporta.h"

/// What CSingleLock can hold: a lock or an event.
class URDIMBRE_API CSyncObject {
 public:
  CSyncObject() = default;
  CSyncObject(CSyncObject const&) = delete;
  CSyncObject& operator=(CSyncObject const&) = delete;
  virtual ~CSyncObject();

  /// Waits for the object, at most so many milliseconds; INFINITE, or any negative time, has no limit. False when the
  /// time ran out.
  virtual bool Lock(long long milisegundos) = 0;
  bool Lock() { return Lock(-1); }

  /// Gives the object back.
  virtual bool Unlock() = 0;
};
