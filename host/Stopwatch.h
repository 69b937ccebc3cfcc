#pragma once

#include <chrono>

namespace Meseta47::host {

/// Seconds since it was made.
class Stopwatch {
 public:
  [[nodiscard]] double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// Does `work` and adds to `sum` how long it took.
template <class F>
auto timed(double& sum, F&& work) {
  struct Adder {
    double& sum;
    Stopwatch watch;
    ~Adder() { sum += watch.seconds(); }
  } adder{sum, {}};
  return work();
}

}  // namespace Meseta47::host
