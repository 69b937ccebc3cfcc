#include "host/render/Legend.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "host/AsprsClasses.h"

namespace Meseta47::host {

namespace {

// In letters' heights.
constexpr double kLine = 1.7;      // from line to line
constexpr double kBarWidth = 1.3;  // of the bar of tints, and of a class's swatch
constexpr double kTickGap = 0.6;   // between it and its text
constexpr double kLongestBar = 22, kShortestBar = 6;
constexpr double kPoint = 0.9;  // height of a pointed end

double widestText(std::vector<std::string> const& texts, double font) {
  Canvas paper(1, 1);
  double widest = 0;
  for (std::string const& text : texts) widest = std::max(widest, paper.textWidth(text, font));
  return widest;
}

int ticksFor(double barLength, double font) { return std::clamp(static_cast<int>(barLength / (2.6 * font)), 2, 10); }

std::string classText(std::uint8_t code) { return fmt::format("{}  {}", code, className(code)); }

void drawTints(Canvas& canvas, Box const& bar) {
  const HeightTint tint;
  for (int i = 0; i < static_cast<int>(bar.height); ++i) {
    const auto share = static_cast<float>(1 - (i + 0.5) / bar.height);
    canvas.fill({bar.x, bar.y + i, bar.width, 1}, tint.at(share));
  }
}

/// A tip on the bar, `height` up, or down when it is negative.
void drawPoint(Canvas& canvas, Box const& bar, double y, double height, Colour const& colour) {
  cairo_t* pen = canvas.pen();
  cairo_move_to(pen, bar.x, y);
  cairo_line_to(pen, bar.x + bar.width / 2, y - height);
  cairo_line_to(pen, bar.x + bar.width, y);
  cairo_close_path(pen);
  canvas.setColour(colour);
  cairo_fill_preserve(pen);
  canvas.setColour(kInk);
  cairo_stroke(pen);
}

}  // namespace

std::string HeightLegend::title() const { return unit_.empty() ? "Height" : fmt::format("Height ({})", unit_); }

Room HeightLegend::room(double font) const {
  std::vector<std::string> texts;
  for (int most = 2; most <= 10; ++most) {
    for (Tick const& tick : ticksBetween(range_.low, range_.high, most)) texts.push_back(tick.text);
  }
  const double beside = (kBarWidth + kTickGap) * font + widestText(texts, font);
  return {std::ceil(std::max(beside, widestText({title()}, font))), (2 * kLine + kShortestBar + 2 * kPoint) * font};
}

void HeightLegend::draw(Canvas& canvas, Layout const& layout) const {
  const double font = layout.font, line = std::max(1.0, font / 18);
  canvas.text(title(), layout.legend.x, layout.legend.y + font / 2, font);
  const double top = std::round(layout.legend.y + (kLine + kPoint) * font);
  const double bottom = std::max<double>(layout.legend.y + layout.legend.height, top + kShortestBar * font);
  const Box bar{std::round(layout.legend.x), top, std::round(kBarWidth * font),
                std::floor(std::min(bottom - top - kPoint * font, kLongestBar * font))};
  drawTints(canvas, bar);
  canvas.frame(bar, kInk, line);
  const HeightTint tint;
  if (range_.higher) drawPoint(canvas, bar, bar.y, kPoint * font, tint.at(1));
  if (range_.lower) drawPoint(canvas, bar, bar.y + bar.height, -kPoint * font, tint.at(0));
  for (Tick const& tick : ticksBetween(range_.low, range_.high, ticksFor(bar.height, font))) {
    const double y = bar.y + bar.height * (range_.high - tick.value) / (range_.high - range_.low);
    canvas.fill({bar.x + bar.width, y - line / 2, 0.3 * font, line}, kInk);
    canvas.text(tick.text, bar.x + bar.width + kTickGap * font, y, font);
  }
}

Room ClassLegend::room(double font) const {
  std::vector<std::string> texts{"Class"};
  for (const std::uint8_t code : codes_) texts.push_back(classText(code));
  return {std::ceil((kBarWidth + kTickGap) * font + widestText(texts, font)),
          kLine * font * static_cast<double>(codes_.size() + 1)};
}

void ClassLegend::draw(Canvas& canvas, Layout const& layout) const {
  const double font = layout.font;
  double y = layout.legend.y + font / 2;
  canvas.text("Class", layout.legend.x, y, font);
  for (const std::uint8_t code : codes_) {
    y += kLine * font;
    const Box swatch{layout.legend.x, y - font / 2, kBarWidth * font, font};
    canvas.fill(swatch, classColour(code));
    canvas.frame(swatch, kInk, std::max(1.0, font / 18));
    canvas.text(classText(code), swatch.x + swatch.width + kTickGap * font, y, font);
  }
}

RoundNumber scaleBarLength(Layout const& layout) { return roundDown(layout.foot.width * layout.unit / 3); }

std::string lengthText(double length, std::string const& unit) {
  if (unit == "m" && length >= 1000) return fmt::format("{:g} km", length / 1000);
  return unit.empty() ? fmt::format("{:g}", length) : fmt::format("{:g} {}", length, unit);
}

void drawFoot(Canvas& canvas, Layout const& layout, std::string const& unit, std::string const& note) {
  constexpr int kParts = 4;
  const double font = layout.font, thick = std::max(2.0, std::round(font * 0.4)), line = std::max(1.0, font / 18);
  const double length = scaleBarLength(layout).value();
  const double pixels = length / layout.unit;
  const double x = layout.foot.x, y = std::round(layout.foot.y + layout.foot.height - font);
  for (int part = 0; part < kParts; ++part) {
    canvas.fill({x + pixels * part / kParts, y, pixels / kParts, thick}, part % 2 == 0 ? kInk : Colour{1, 1, 1});
  }
  canvas.frame({x, y, pixels, thick}, kInk, line);
  const std::string text = lengthText(length, unit);
  canvas.text(text, x + pixels + 0.6 * font, y + thick / 2, font);

  const double right = x + layout.foot.width;
  const double arrow = right - 0.5 * font, tip = y + thick - 1.9 * font;
  cairo_t* pen = canvas.pen();
  cairo_move_to(pen, arrow, tip);
  cairo_line_to(pen, arrow + 0.5 * font, y + thick);
  cairo_line_to(pen, arrow, y + thick - 0.4 * font);
  cairo_line_to(pen, arrow - 0.5 * font, y + thick);
  cairo_close_path(pen);
  canvas.setColour(kInk);
  cairo_fill(pen);
  canvas.text("N", arrow - 1.3 * font, y + thick - 0.7 * font, font, Align::centre);

  const double noteLeft = x + pixels + 1.6 * font + canvas.textWidth(text, font), noteRight = arrow - 2.6 * font;
  const double noteWidth = canvas.textWidth(note, font);
  if (noteLeft + noteWidth <= noteRight) canvas.text(note, noteRight, y + thick / 2, font, Align::right);
}

}  // namespace Meseta47::host
