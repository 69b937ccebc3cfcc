#pragma once

#include "platform/CSyncObject.h"

/// Holds a lock or an event for the length of a block: what it took, its destruction gives back.
/// It lives on one thread's stack; `objeto` must outlive it.
class URDIMBRE_API CSingleLock {
 public:
  /// With `toma`, waits for the object at once.
  explicit CSingleLock(CSyncObject* objeto, bool toma = false);
  CSingleLock(CSingleLock const&) = delete;
  CSingleLock& operator=(CSingleLock const&) = delete;
  ~CSingleLock();

  /// Takes the object, waiting at most so many milliseconds (-1: without limit). True when this lock holds it, also
  /// when it held it already; false when the time ran out or there is no object.
  bool Lock(long long milisegundos = -1);

  /// Gives the object back. False when this lock does not hold it.
  bool Unlock();

  [[nodiscard]] bool IsLocked() const { return tomado_; }

 private:
  CSyncObject* objeto_;
  bool tomado_ = false;
};
