#pragma once

#include <cairo.h>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "host/OutputFile.h"
#include "host/render/Colour.h"
#include "host/render/Layout.h"

namespace Meseta47::host {

enum class Align { left, centre, right };

/// A white picture to draw on, in pixels from the upper left corner. One thread at a time. Throws Failure for what
/// memory cannot hold.
class Canvas {
 public:
  Canvas(int width, int height);

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }

  /// A row of pixels, 0x00RRGGBB each. Whoever writes to rows calls rowsWritten() before the next drawing.
  [[nodiscard]] std::span<std::uint32_t> row(int y);
  void rowsWritten() { cairo_surface_mark_dirty(surface_.get()); }

  /// For lines and areas of any form.
  [[nodiscard]] cairo_t* pen() { return pen_.get(); }
  void setColour(Colour const& colour, double alpha = 1);

  void fill(Box const& box, Colour const& colour);
  void frame(Box const& box, Colour const& colour, double width);

  /// Text with its middle line at `y`. A halo keeps it legible over a map.
  void text(std::string const& text, double x, double y, double size, Align align = Align::left, bool halo = false);
  [[nodiscard]] double textWidth(std::string const& text, double size);

  /// Appends the picture to a file as PNG. Throws FileError.
  void writePng(OutputFile& file);

 private:
  int width_, height_;
  std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface_;
  std::unique_ptr<cairo_t, void (*)(cairo_t*)> pen_;
};

/// The colour of letters and of lines that belong to no class.
inline constexpr Colour kInk{0.16F, 0.17F, 0.20F};

}  // namespace Meseta47::host
