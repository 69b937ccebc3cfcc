#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <limits>
#include <mutex>

#include "platform/IVigilante.h"

/// All that can be refused.
inline constexpr EOperacion kEveryOperation[] = {
    EOperacion::Abre,     EOperacion::Lee,        EOperacion::Escribe,      EOperacion::Posiciona,
    EOperacion::Longitud, EOperacion::Trunca,     EOperacion::Sincroniza,   EOperacion::Cierra,
    EOperacion::Renombra, EOperacion::Borra,      EOperacion::CreaTemporal, EOperacion::CreaEvento,
    EOperacion::CreaHilo, EOperacion::CreaSeccion};

/// A guard that counts what is asked of the system and refuses what the test wants refused, while it lives.
class FaultGuard : public IVigilante {
 public:
  static constexpr int kNever = std::numeric_limits<int>::max();

  FaultGuard() : before_(PonVigilante(this)) {
    for (auto& first : firstRefused_) {
      first = kNever;
    }
  }
  FaultGuard(FaultGuard const&) = delete;
  FaultGuard& operator=(FaultGuard const&) = delete;
  ~FaultGuard() override { PonVigilante(before_); }

  /// Refuses an operation from its n-th time on, counted from 1 and from now.
  FaultGuard& Refuse(EOperacion operation, int nth = 1) {
    asked_[Index(operation)] = 0;
    firstRefused_[Index(operation)] = nth;
    refusedOnce_[Index(operation)] = false;
    return *this;
  }
  /// Refuses the n-th time alone: what comes after it must not make the failure forgotten.
  FaultGuard& RefuseOnce(EOperacion operation, int nth) {
    Refuse(operation, nth);
    refusedOnce_[Index(operation)] = true;
    return *this;
  }
  FaultGuard& Allow(EOperacion operation) { return Refuse(operation, kNever); }

  /// Lets no single transfer move more than so many bytes.
  FaultGuard& LimitTransfers(std::size_t bytes) {
    const std::scoped_lock lock(limits_);
    transferLimit_ = bytes;
    return *this;
  }

  /// A disk with room for so many bytes.
  FaultGuard& LimitDisk(std::size_t bytes) {
    const std::scoped_lock lock(limits_);
    diskLeft_ = bytes;
    return *this;
  }

  /// How often an operation was asked for.
  [[nodiscard]] int Asked(EOperacion operation) const { return asked_[Index(operation)]; }

  bool Permite(EOperacion operation, CString const&) override {
    const int nth = ++asked_[Index(operation)], refused = firstRefused_[Index(operation)];
    return refusedOnce_[Index(operation)] ? nth != refused : nth < refused;
  }

  std::size_t Concede(EOperacion operation, CString const&, std::size_t bytes) override {
    const std::scoped_lock lock(limits_);
    bytes = std::min(bytes, transferLimit_);
    if (operation == EOperacion::Escribe) {
      bytes = std::min(bytes, diskLeft_);
      diskLeft_ -= bytes;
    }
    return bytes;
  }

 private:
  static constexpr std::size_t kOperations = static_cast<std::size_t>(EOperacion::CreaSeccion) + 1;
  static std::size_t Index(EOperacion operation) { return static_cast<std::size_t>(operation); }

  std::array<std::atomic<int>, kOperations> asked_{};
  std::array<std::atomic<int>, kOperations> firstRefused_{};
  std::array<std::atomic<bool>, kOperations> refusedOnce_{};
  std::mutex limits_;
  std::size_t transferLimit_ = std::numeric_limits<std::size_t>::max();
  std::size_t diskLeft_ = std::numeric_limits<std::size_t>::max();
  IVigilante* before_;
};
