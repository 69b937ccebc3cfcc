#pragma once

#include <deque>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/Manejadores.h"

/// Threads of the platform layer, for tests that make or destroy elements of the pools in several: those of the C++
/// library cannot end at the same moment as others under GCC on Windows, once they have (scripts/check-layers). What
/// they do must not throw.
class Threads {
 public:
  Threads() = default;
  Threads(Threads const&) = delete;
  Threads& operator=(Threads const&) = delete;
  ~Threads() { join(); }

  void start(std::function<void()> work) {
    works_.push_back(std::move(work));
    HANDLE const thread = CreateThread(nullptr, 0, run, &works_.back(), 0, nullptr);
    if (thread == nullptr) throw std::runtime_error("no thread to be had");
    threads_.push_back(thread);
  }
  /// Waits until all have ended. Asks for no memory.
  void join() {
    for (HANDLE thread : threads_) {
      WaitForSingleObject(thread, INFINITE);
      CloseHandle(thread);
    }
    threads_.clear();
  }

 private:
  static unsigned long run(void* work) {
    (*static_cast<std::function<void()>*>(work))();
    return 0;
  }

  std::deque<std::function<void()>> works_;  // which don't move
  std::vector<HANDLE> threads_;
};
