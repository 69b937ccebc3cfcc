#include "host/render/Picture.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/render/ContourLines.h"
#include "host/render/ContourPainter.h"
#include "host/render/Legend.h"
#include "host/render/RoundNumbers.h"

namespace Meseta47::host {

namespace {

constexpr double kCountable = 1e15;   // beyond it the number of levels says nothing any more
constexpr double kMostLevels = 1000;  // of contours in a picture: more are nothing but ink

View extentOf(Surface const& surface) {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  View view{kFar, kFar, -kFar, -kFar};
  for (Surface::Triangle const& t : surface.triangles) {
    for (const std::uint32_t corner : t) {
      Surface::Vertex const& v = surface.vertices[corner];
      view = {std::min(view.minX, v[0]), std::min(view.minY, v[1]), std::max(view.maxX, v[0]),
              std::max(view.maxY, v[1])};
    }
  }
  return view;
}

std::vector<std::uint8_t> classesIn(Surface const& surface, View const& view) {
  std::array<bool, 256> present{};
  for (std::size_t i = 0; i < surface.vertices.size(); ++i) {
    Surface::Vertex const& v = surface.vertices[i];
    if (v[0] >= view.minX && v[0] <= view.maxX && v[1] >= view.minY && v[1] <= view.maxY) {
      present[surface.classes[i]] = true;
    }
  }
  std::vector<std::uint8_t> codes;
  for (unsigned code = 0; code < present.size(); ++code) {
    if (present[code]) codes.push_back(static_cast<std::uint8_t>(code));
  }
  return codes;
}

std::vector<ContourLine> contoursFor(Surface const& surface, double interval, HeightRange const& heights,
                                     Steps const& step) {
  const double levels = levelsBetween(heights.low, heights.high, interval);
  if (!(levels <= kMostLevels)) {  // with so small an interval it is no number
    throw Failure(
        fmt::format("--contours {:g}: from height {:g} to {:g} that is {} levels, too many to tell apart: "
                    "give {} or more",
                    interval, heights.low, heights.high,
                    levels < kCountable ? withThousands(static_cast<std::uint64_t>(levels)) : "countless",
                    roundStep(heights.high - heights.low, 50).text(1)));
  }
  return contoursOf(surface, interval, step);
}

std::string contourNote(double interval, std::string const& unit) {
  return fmt::format("Contours every {:g}{}", interval, unit.empty() ? "" : " " + unit);
}

}  // namespace

View viewOf(Surface const& surface, std::optional<Bounds> const& bounds) {
  const View all = extentOf(surface);
  View view = all;
  if (bounds) {
    view = {std::max(all.minX, bounds->minX), std::max(all.minY, bounds->minY), std::min(all.maxX, bounds->maxX),
            std::min(all.maxY, bounds->maxY)};
  }
  if (view.width() > 0 && view.height() > 0) return view;
  if (!bounds) throw Failure("the surface has no extent in plan: there is nothing to see from above");
  throw Failure(
      fmt::format("--bounds {},{},{},{}: nothing to show there: the surface reaches from {:.2f},{:.2f} to "
                  "{:.2f},{:.2f}",
                  bounds->minX, bounds->minY, bounds->maxX, bounds->maxY, all.minX, all.minY, all.maxX, all.maxY));
}

Canvas paintPicture(Surface const& surface, PictureOptions const& options, Steps const& step, PictureFacts& facts) {
  const View view = viewOf(surface, options.bounds);
  const ReliefStyle style{heightRangeOf(surface, view), options.classes};
  std::vector<ContourLine> contours;
  if (options.contours > 0) contours = contoursFor(surface, options.contours, style.range, step);

  const HeightLegend heights(style.range, options.heightUnit);
  const ClassLegend classes(options.classes ? classesIn(surface, view) : std::vector<std::uint8_t>());
  const double font = fontFor(options.size);
  const Room room = options.classes ? classes.room(font) : heights.room(font);
  const Layout layout = layOut(view, options.size, room.width, room.height);

  Canvas canvas(layout.width, layout.height);
  paintRelief(canvas, layout, view, surface, style, step);
  if (options.contours > 0) paintContours(canvas, layout, view, contours, options.contours, step);
  if (!layout.bare) {
    options.classes ? classes.draw(canvas, layout) : heights.draw(canvas, layout);
    drawFoot(canvas, layout, options.unit,
             options.contours > 0 ? contourNote(options.contours, options.heightUnit) : "");
  }
  facts = {layout.width, layout.height, layout.unit, view, style.range, contours.size()};
  return canvas;
}

}  // namespace Meseta47::host
