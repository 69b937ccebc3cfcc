#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <utility>

namespace Meseta47 {

/// Adds to `segundos` how long `fase` takes, and hands its code on.
template <class F>
auto Cronometra(double& segundos, F&& fase) {
  const auto antes = std::chrono::steady_clock::now();
  const auto codigo = fase();
  segundos += std::chrono::duration<double>(std::chrono::steady_clock::now() - antes).count();
  return codigo;
}

/// A phase of a run, which answers a code, and where the time goes that it takes.
struct CFase {
  double& segundos;
  std::function<int()> trabajo;
};

/// Calls something when an exception (no memory, a host's own) leaves the block that this stands in.
template <class F>
class CSiSeRompe {
 public:
  explicit CSiSeRompe(F queHacer) : recoge(std::move(queHacer)) {}
  CSiSeRompe(CSiSeRompe const&) = delete;
  CSiSeRompe& operator=(CSiSeRompe const&) = delete;
  ~CSiSeRompe() {
    if (std::uncaught_exceptions() > antes) recoge();
  }

 private:
  F recoge;
  int antes = std::uncaught_exceptions();
};

}  // namespace Meseta47
