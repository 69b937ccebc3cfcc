#include "host/ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>

#include "platform/Proceso.h"

namespace Meseta47::host {

namespace {

constexpr std::chrono::milliseconds kRedraw{100};
constexpr std::chrono::seconds kBetweenLines{10};
constexpr unsigned kStepsAPhase = 400;  // looks at the clock, at most

void put(std::string const& text) {
  static_cast<void>(std::fputs(text.c_str(), stderr));
  static_cast<void>(std::fflush(stderr));  // not every system's stderr does that by itself
}

std::string timeLeft(double seconds) {
  const auto s = static_cast<long>(seconds + 0.5);
  return s < 60 ? fmt::format("{} s left", s) : fmt::format("{}:{:02} left", s / 60, s % 60);
}

}  // namespace

ProgressBar::ProgressBar(bool quiet) : mode_(quiet ? Mode::Quiet : EsTerminal(stderr) ? Mode::Bar : Mode::Lines) {
  if (mode_ == Mode::Bar) columns_ = ColumnasTerminal(stderr);
}

void ProgressBar::phase(std::string const& name) {
  phase_ = name;
  lastValue_ = nextValue_ = 0;
  begin_ = lastReport_ = Clock::now();
  if (mode_ == Mode::Lines) put(name + " ...\n");
  if (mode_ == Mode::Bar) draw(0);
}

void ProgressBar::report(unsigned long long value, unsigned long long total) {
  lastValue_ = value;
  nextValue_ = value + std::max(1ULL, total / kStepsAPhase);
  const auto now = Clock::now();
  if (total == 0 ||
      now - lastReport_ < (mode_ == Mode::Bar ? Clock::duration(kRedraw) : Clock::duration(kBetweenLines))) {
    return;
  }
  lastReport_ = now;
  const double done = std::min(1.0, static_cast<double>(value) / static_cast<double>(total));
  if (mode_ == Mode::Bar) {
    draw(done);
  } else {
    put(fmt::format("{} {:.0f} %\n", phase_, 100 * done));
  }
}

void ProgressBar::draw(double done) {
  const double elapsed = std::chrono::duration<double>(Clock::now() - begin_).count();
  const std::string left = done > 0.02 && elapsed > 1 ? timeLeft(elapsed / done - elapsed) : "";
  const std::string head = fmt::format("{:<24}", phase_), tail = fmt::format("{:4.0f} %  {:<12}", 100 * done, left);
  const std::size_t used = head.size() + tail.size() + 4;
  const std::size_t width = columns_ > used + 10 ? std::min<std::size_t>(columns_ - used, 50) : 0;
  const auto full = static_cast<std::size_t>(done * static_cast<double>(width));
  put(fmt::format("\r{}{}{}{}", head, std::string(full, '='), std::string(width - full, ' '), tail));
  drawn_ = true;
}

void ProgressBar::clear() noexcept {
  if (!drawn_) return;
  static_cast<void>(std::fprintf(stderr, "\r%*s\r", static_cast<int>(columns_ > 1 ? columns_ - 1 : 0), ""));
  std::fflush(stderr);
  drawn_ = false;
}

}  // namespace Meseta47::host
