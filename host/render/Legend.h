#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/render/Canvas.h"
#include "host/render/ReliefPainter.h"
#include "host/render/RoundNumbers.h"

namespace Meseta47::host {

/// The room that something takes beside the map, in pixels.
struct Room {
  double width = 0, height = 0;
};

/// What the colours of a map mean: a bar of tints with round heights, pointed where the land goes on beyond it.
class HeightLegend {
 public:
  HeightLegend(HeightRange const& range, std::string const& unit) : range_(range), unit_(unit) {}
  [[nodiscard]] Room room(double font) const;
  void draw(Canvas& canvas, Layout const& layout) const;

 private:
  [[nodiscard]] std::string title() const;

  HeightRange range_;
  std::string unit_;
};

/// The classes of a map, each with its colour, code and name.
class ClassLegend {
 public:
  explicit ClassLegend(std::vector<std::uint8_t> codes) : codes_(std::move(codes)) {}
  [[nodiscard]] Room room(double font) const;
  void draw(Canvas& canvas, Layout const& layout) const;

 private:
  std::vector<std::uint8_t> codes_;
};

/// How long the scale bar is, in units of the land: round, and a third of the map's width at most.
[[nodiscard]] RoundNumber scaleBarLength(Layout const& layout);

/// Draws, below the map, a scale bar of round length, an arrow to the north and, between them, a note.
void drawFoot(Canvas& canvas, Layout const& layout, std::string const& unit, std::string const& note);

/// A length as a scale bar names it: thousands of metres are kilometres.
[[nodiscard]] std::string lengthText(double length, std::string const& unit);

}  // namespace Meseta47::host
