// Outlines: how long one takes to draw beside a plain run over the same points, and how long points take to be looked
// up in ten thousand of them beside a loop over all.
//
//   bench_outlines [--points N] [FILE.las DISTANCE]
//
// The plain loop looks at so few of the points that it ends in a few seconds; the ratio is of times a point.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <fmt/format.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/CountedHeap.h"
#include "host/LoadedCloud.h"
#include "host/SpatialOrder.h"
#include "host/Stopwatch.h"
#include "model/terrain/CTIN.h"
#include "planar/CTriangulacion.h"
#include "planar/CTriangulacion2D.h"
#include "support/Families.h"
#include "support/Random.h"

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

CDibujo<int> drawingOf(std::vector<CCoor3D<int>> points, CDataSemilla const& seed) {
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::move(points));
  CDibujo<int> drawing(seed);
  drawing.Inserta(std::move(set));
  return drawing;
}

void expectDone(int code, char const* what) {
  if (code != 1) throw std::runtime_error(fmt::format("{}: code {}", what, code));
}

/// Draws the outline and, over the points in a spatial order, a model with the same limit.
CDibujo<int> drawOutline(std::string const& name, std::vector<CCoor3D<int>> points, CDataSemilla const& seed,
                         double distance) {
  const auto n = static_cast<double>(points.size());
  CDibujo<int> drawing = drawingOf(points, seed), outlines(seed);
  CDataSacaLimites how;
  how.distancia = distance;
  const std::size_t before = bench::heapBytes();
  bench::resetPeak();
  Stopwatch outlining;
  expectDone(CTriangulacion(seed, {}).LimiteDibujo(drawing, outlines, &how, 1, 0), "outline");
  const double seconds = outlining.seconds();
  const double bytes = static_cast<double>(bench::peakHeapBytes() - before) / n;

  Stopwatch running;
  applyOrder(points, hilbertOrder(points));
  drawing = drawingOf(std::move(points), seed);
  CTIN tin(0, 0, seed);
  expectDone(CTriangulacion2D(0, seed, 1).Run({.dibujo = drawing, .ladoMaximo = distance}, tin), "run");
  const double plain = running.seconds();
  fmt::print(
      "outline  {:<20} {:>9} points {:>7} rings {:>9} on them | {:6.2f} s, {:4.0f} bytes a point | a run {:6.2f} s, "
      "ratio {:4.2f}\n",
      name, n, outlines.Cantidad(), outlines.nPuntos, seconds, bytes, plain, seconds / plain);
  return outlines;
}

/// The place of a point by a loop over all rings and all sides.
bool inside(CDibujo<int> const& rings, CCoor3D<int> const& p) {
  bool odd = false;
  for (unsigned r = 0; r < rings.Cantidad(); ++r) {
    auto const& ring = rings[r].Puntos();
    for (std::size_t i = 1; i < ring.size(); ++i) {
      CCoor3D<int> const &a = ring[i - 1], &b = ring[i];
      const double side = ProductoVectorial(static_cast<std::int64_t>(b.x) - a.x, static_cast<std::int64_t>(b.y) - a.y,
                                            static_cast<std::int64_t>(p.x) - a.x, static_cast<std::int64_t>(p.y) - a.y);
      if (side == 0 && p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) && p.y >= std::min(a.y, b.y) &&
          p.y <= std::max(a.y, b.y)) {
        return true;
      }
      if ((a.y <= p.y) != (b.y <= p.y) && (side > 0) == (b.y > a.y)) odd = !odd;
    }
  }
  return odd;
}

void classify(std::string const& name, std::vector<CCoor3D<int>> points, CDibujo<int> const& outlines) {
  const std::size_t few = std::clamp<std::size_t>(200'000'000 / (outlines.nPuntos + 1), 1, points.size());
  Stopwatch looping;
  std::size_t within = 0;
  const std::size_t step = points.size() / few;
  for (std::size_t i = 0; i < few; ++i) within += inside(outlines, points[i * step]) ? 1U : 0U;
  const double loop = looping.seconds() / static_cast<double>(few);

  const auto n = static_cast<double>(points.size());
  CDibujo<int> cloud = drawingOf(std::move(points), outlines.semilla);
  constexpr int kNoLimit = 2147483647;
  unsigned changed = 0;
  Stopwatch classifying;
  expectDone(cloud.ClasificarPuntosSegunLimite(outlines, CInfoClasificacion(6, 0.0, L""), changed,
                                               {CInfoClasificacion(0, 0.0, kTextoComodin)}, {}, kNoLimit, kNoLimit,
                                               nullptr, nullptr, nullptr),
             "classify");
  const double seconds = classifying.seconds();
  std::size_t agreed = 0;
  for (std::size_t i = 0; i < few; ++i) {
    agreed += cloud[0].Punto(static_cast<int>(i * step)).clasificacion == 6 ? 1U : 0U;
  }
  fmt::print(
      "classify {:<20} {:>9} points {:>7} rings, {:.0f}% inside | {:6.2f} s | a plain loop over {} of them: {:.0f} "
      "times "
      "as long a point, {}\n",
      name, n, outlines.Cantidad(), 100 * changed / n, seconds, few, loop * n / seconds,
      agreed == within ? "the same points inside" : "ANOTHER NUMBER INSIDE");
}

std::vector<CCoor3D<int>> scattered(std::size_t n, std::uint64_t seed) {
  std::vector<CCoor3D<int>> points;
  for (support::Point const& p : support::family(support::Family::Uniform, n, seed)) {
    points.emplace_back(p.x, p.y, p.z, 0);
  }
  return points;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 1000000;
  std::string file;
  double distance = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--points") == 0 && i + 1 < argc) {
      count = std::stoul(argv[++i]);
    } else if (i + 1 < argc) {
      file = argv[i];
      distance = std::stod(argv[++i]);
    }
  }
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  try {
    if (!file.empty()) {
      LoadedCloud cloud = std::move(loadClouds({{file}}, LoadOptions(), app)[0]);
      const std::string name = file.substr(file.find_last_of('/') + 1);
      std::vector<CCoor3D<int>> points = takePoints(cloud, false);
      CDibujo<int> outlines = drawOutline(name, points, cloud.seed, distance);
      outlines.Sort(3, true, -1);
      classify(name, std::move(points), outlines);
      return 0;
    }
    auto points = scattered(count, 1);
    CMaximas<int> box;
    for (auto const& p : points) box.Nuevo(p);
    const CDataSemilla metres(0, 0, 0, 0);
    // At this multiple of the mean spacing, scattered points hang together in thousands of pieces and holes.
    const double spacing = std::sqrt(box.Ancho() * box.Alto() / static_cast<double>(count));
    for (const double multiple : {0.8, 1.2, 2.0}) {
      const std::string name = fmt::format("uniform, {} spacings", multiple);
      CDibujo<int> outlines = drawOutline(name, points, metres, multiple * spacing);
      outlines.Sort(3, true, -1);
      classify(name, scattered(count, 2), outlines);
    }
  } catch (std::exception const& failure) {
    fmt::print(stderr, "bench_outlines: {}\n", failure.what());
    return 1;
  }
  return 0;
}
