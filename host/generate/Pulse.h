#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/AsprsClasses.h"
#include "host/generate/Noise.h"
#include "host/generate/Paint.h"
#include "host/generate/Scene.h"

namespace Meseta47::host {

/// Classes of the ASPRS list that the made-up land knows.
enum class PointClass : std::uint8_t {
  Ground = 2,
  LowVegetation = 3,
  MediumVegetation = 4,
  HighVegetation = 5,
  Building = 6,
  LowNoise = kLowNoise,
  Water = 9,
  Road = 11,
  BridgeDeck = 17,
  HighNoise = kHighNoise
};

/// One return of a pulse.
struct Echo {
  double z = 0;
  PointClass kind = PointClass::Ground;
  Material material;
  double shade = 1;
};

/// The returns of one pulse, from the highest down.
class Echoes {
 public:
  static constexpr std::size_t kMost = 5;

  void add(Echo const& echo) {
    if (count_ < kMost) echoes_[count_++] = echo;
  }
  void keepFirst(std::size_t number) { count_ = number < count_ ? number : count_; }
  void clear() { count_ = 0; }
  std::size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  Echo const& operator[](std::size_t i) const { return echoes_[i]; }
  Echo const* begin() const { return echoes_.data(); }
  Echo const* end() const { return echoes_.data() + count_; }

 private:
  std::array<Echo, kMost> echoes_{};
  std::size_t count_ = 0;
};

/// Lets one pulse fall on a place, metres from the land's centre, and gathers what comes back: nothing from still water
/// seen askew, one return from open ground or a roof, several from a tree, now and then one from a bird or from
/// nowhere. `lean` is the tangent of the pulse's angle from the plumb line. Heights carry the noise of the ranging.
void echoesOf(Scene& scene, double x, double y, double lean, Random& random, Echoes& echoes);

}  // namespace Meseta47::host
