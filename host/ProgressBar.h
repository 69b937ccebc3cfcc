#pragma once

#include <chrono>
#include <string>

namespace Meseta47::host {

/// How far the work is, on stderr: a bar that is drawn over itself on a terminal, a line now and then elsewhere,
/// nothing when quiet. Cheap enough to be told every point. What stderr refuses is lost, and nothing else.
class ProgressBar {
 public:
  explicit ProgressBar(bool quiet);
  ~ProgressBar() { clear(); }
  ProgressBar(ProgressBar const&) = delete;
  ProgressBar& operator=(ProgressBar const&) = delete;

  /// A phase begins.
  void phase(std::string const& name);
  /// So many of so many steps of the phase are done.
  void step(unsigned long long value, unsigned long long total) {
    if (mode_ == Mode::Quiet || (value < nextValue_ && value >= lastValue_)) return;
    report(value, total);
  }
  /// Takes the bar off the terminal, so that something else can be written there.
  void clear() noexcept;

 private:
  using Clock = std::chrono::steady_clock;
  enum class Mode { Quiet, Bar, Lines };

  void report(unsigned long long value, unsigned long long total);
  void draw(double done);

  Mode mode_;
  unsigned columns_ = 80;
  std::string phase_;
  bool drawn_ = false;
  unsigned long long lastValue_ = 0, nextValue_ = 0;  ///< nothing is reported between the two
  Clock::time_point begin_, lastReport_;
};

}  // namespace Meseta47::host
