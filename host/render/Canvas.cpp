#include "host/render/Canvas.h"

#include <exception>
#include <fmt/format.h>

#include "host/Failure.h"

namespace Meseta47::host {

namespace {

void useFont(cairo_t* pen, double size) {
  cairo_select_font_face(pen, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(pen, size);
}

/// A file, and why it refused. Exceptions must not pass through the C code that calls back.
struct Sink {
  OutputFile& file;
  std::exception_ptr failure;

  static cairo_status_t write(void* closure, unsigned char const* data, unsigned length) {
    auto& sink = *static_cast<Sink*>(closure);
    try {
      sink.file.write(data, length);
      return CAIRO_STATUS_SUCCESS;
    } catch (...) {
      sink.failure = std::current_exception();
      return CAIRO_STATUS_WRITE_ERROR;
    }
  }
};

}  // namespace

Canvas::Canvas(int width, int height)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height), cairo_surface_destroy),
      pen_(cairo_create(surface_.get()), cairo_destroy) {
  if (cairo_status(pen_.get()) != CAIRO_STATUS_SUCCESS) {
    throw Failure(fmt::format("a picture of {} by {} pixels: {}: give a smaller --size", width, height,
                              cairo_status_to_string(cairo_status(pen_.get()))));
  }
  cairo_set_source_rgb(pen_.get(), 1, 1, 1);
  cairo_paint(pen_.get());
}

std::span<std::uint32_t> Canvas::row(int y) {
  cairo_surface_flush(surface_.get());
  auto* const bytes = cairo_image_surface_get_data(surface_.get()) +
                      static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface_.get());
  return {reinterpret_cast<std::uint32_t*>(bytes), static_cast<std::size_t>(width_)};
}

void Canvas::setColour(Colour const& c, double alpha) { cairo_set_source_rgba(pen(), c.r, c.g, c.b, alpha); }

void Canvas::fill(Box const& box, Colour const& colour) {
  setColour(colour);
  cairo_rectangle(pen(), box.x, box.y, box.width, box.height);
  cairo_fill(pen());
}

void Canvas::frame(Box const& box, Colour const& colour, double width) {
  setColour(colour);
  cairo_set_line_width(pen(), width);
  cairo_rectangle(pen(), box.x, box.y, box.width, box.height);
  cairo_stroke(pen());
}

double Canvas::textWidth(std::string const& text, double size) {
  useFont(pen(), size);
  cairo_text_extents_t extents;
  cairo_text_extents(pen(), text.c_str(), &extents);
  return extents.x_advance;
}

void Canvas::text(std::string const& text, double x, double y, double size, Align align, bool halo) {
  const double width = textWidth(text, size);
  const double left = align == Align::left ? x : align == Align::centre ? x - width / 2 : x - width;
  constexpr double kHalfOfAFigure = 0.36;  // of the size of the letters: figures stand 0.72 high in common fonts
  cairo_new_path(pen());
  cairo_move_to(pen(), left, y + kHalfOfAFigure * size);
  cairo_text_path(pen(), text.c_str());
  if (halo) {
    setColour({1, 1, 1}, 0.85);
    cairo_set_line_width(pen(), size * 0.3);
    cairo_set_line_join(pen(), CAIRO_LINE_JOIN_ROUND);
    cairo_stroke_preserve(pen());
  }
  setColour(kInk);
  cairo_fill(pen());
}

void Canvas::writePng(OutputFile& file) {
  Sink sink{file, nullptr};
  const cairo_status_t status = cairo_surface_write_to_png_stream(surface_.get(), Sink::write, &sink);
  if (sink.failure) std::rethrow_exception(sink.failure);
  if (status != CAIRO_STATUS_SUCCESS) throw Failure(fmt::format("{}: {}", file.name(), cairo_status_to_string(status)));
}

}  // namespace Meseta47::host
