#include "platform/CSingleLock.h"

CSingleLock::CSingleLock(CSyncObject* objeto, bool toma) : objeto_(objeto) {
  if (toma) {
    Lock();
  }
}

CSingleLock::~CSingleLock() { Unlock(); }

bool CSingleLock::Lock(long long milisegundos) {
  if (!tomado_ && objeto_ != nullptr) {
    tomado_ = objeto_->Lock(milisegundos);
  }
  return tomado_;
}

bool CSingleLock::Unlock() {
  if (!tomado_) {
    return false;
  }
  tomado_ = false;
  return objeto_->Unlock();
}
