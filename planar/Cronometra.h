#pragma once

#include <chrono>

namespace Meseta47 {

/// Adds to `segundos` how long `fase` takes, and hands its code on.
template <class F>
int Cronometra(double& segundos, F&& fase) {
  const auto antes = std::chrono::steady_clock::now();
  const int codigo = fase();
  segundos += std::chrono::duration<double>(std::chrono::steady_clock::now() - antes).count();
  return codigo;
}

}  // namespace Meseta47
