#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <limits>
#include <mutex>

#include "platform/IVigilante.h"

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
    return ++asked_[Index(operation)] < firstRefused_[Index(operation)];
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
  std::mutex limits_;
  std::size_t transferLimit_ = std::numeric_limits<std::size_t>::max();
  std::size_t diskLeft_ = std::numeric_limits<std::size_t>::max();
  IVigilante* before_;
};
