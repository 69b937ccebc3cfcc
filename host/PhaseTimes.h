#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/Stopwatch.h"

namespace Meseta47::host {

/// Seconds that the phases of a piece of work took, in the order in which they first began, and all of it since the
/// object was made. What runs within a phase under a name of its own counts there and not in the phase around it.
class PhaseTimes {
 public:
  /// Does `work` as the phase, or as more of it.
  template <class F>
  auto timed(std::string const& phase, F&& work) {
    const Running running(*this, phase);
    return work();
  }
  /// Adds what somebody else has measured.
  void spent(std::string const& phase, double seconds) { phases_[placeOf(phase)].second += seconds; }

  [[nodiscard]] nlohmann::ordered_json toJson() const;
  /// "read 0.21, order 0.08, total 0.30"
  [[nodiscard]] std::string text() const;

 private:
  class Running {
   public:
    Running(PhaseTimes& times, std::string const& phase)
        : times_(times), place_(times.placeOf(phase)), around_(std::exchange(times.running_, this)) {}
    Running(Running const&) = delete;
    Running& operator=(Running const&) = delete;
    ~Running() {
      const double all = watch_.seconds();
      times_.phases_[place_].second += all - within_;
      times_.running_ = around_;
      if (around_ != nullptr) around_->within_ += all;
    }

   private:
    PhaseTimes& times_;
    std::size_t place_;
    Running* around_;
    double within_ = 0;
    Stopwatch watch_;
  };

  std::size_t placeOf(std::string const& phase);

  Stopwatch whole_;
  std::vector<std::pair<std::string, double>> phases_;
  Running* running_ = nullptr;
};

}  // namespace Meseta47::host
