// Contours of generated terrain, straight from its points, beside GDAL's contours of a raster of as many cells; what
// they hold in memory; and how joining grows with the segments of a level.
//
//   bench_contours [--points N] [--interval M] [--join N]
//
// One point a square metre, in jittered rows brought along the Hilbert curve that the program uses, in millimetres;
// GDAL's cells are the same square metres, their heights those of their centres. Times are those of the processors, all
// threads together, so that they can be compared on a machine that does other things too, and in brackets those of the
// clock. Memory is what the heap held beyond the points, a point: the unfinished mesh (of a run without a level), the
// segments, and what joining adds to them.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <fmt/format.h>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/CountedHeap.h"
#include "host/SpatialOrder.h"
#include "host/Stopwatch.h"
#include "host/generate/Noise.h"
#include "host/generate/Terrain.h"
#include "model/drawing/CDibujo.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"

#ifdef URDIMBRE_WITH_GDAL
#include <gdal.h>
#include <gdal_alg.h>
#include <ogr_api.h>
#endif

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

constexpr double kScale = 1000;  // scaled units in a metre
constexpr std::uint64_t kSeed = 7;

/// Seconds of the processors and of the clock.
struct Time {
  double processors = 0, clock = 0;

  Time operator-(Time o) const { return {processors - o.processors, clock - o.clock}; }
};

Time now() {
  static const Stopwatch watch;
  return {static_cast<double>(std::clock()) / CLOCKS_PER_SEC, watch.seconds()};
}

/// Takes down the time and the heap at the start of each phase and at the end.
class Phases : public CWinApp, public IPorcentaje {
 public:
  struct Mark {
    Time time;
    std::size_t heap, peakBefore;
  };

  int Porcentaje(int, unsigned long long, unsigned long long, bool) override { return 1; }
  void Fase(int, unsigned) override { mark(); }
  void Cierra(int, int) override { mark(); }
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int, CString*, int) override {}

  void clear() {
    marks.clear();
    bench::resetPeak();
  }

  std::vector<Mark> marks;

 private:
  void mark() {
    marks.push_back({now(), bench::heapBytes(), bench::peakHeapBytes()});
    bench::resetPeak();
  }
};

std::vector<CCoor3D<int>> cloud(Terrain const& terrain, std::size_t columns) {
  std::vector<CCoor3D<int>> points;
  points.reserve(columns * columns);
  for (std::size_t row = 0; row < columns; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      const auto i = static_cast<std::int64_t>(column), j = static_cast<std::int64_t>(row);
      const double x = static_cast<double>(column) + unitOf(cellHash(kSeed, i, j));
      const double y = static_cast<double>(row) + unitOf(cellHash(kSeed + 1, i, j));
      CCoor3D<int> p;
      p.Actualiza(x * kScale, y * kScale, terrain.height(x, y) * kScale);
      points.push_back(p);
    }
  }
  applyOrder(points, hilbertOrder(points));
  return points;
}

struct Lines {
  Time time;
  std::size_t lines = 0, points = 0;
};

Lines contourPoints(CDibujo<int>& drawing, double interval, Phases& phases) {
  const std::size_t before = bench::heapBytes();
  phases.clear();
  CDibujo<int> contours(drawing.semilla);
  drawing.PonNumerosACero();
  CTriangulacion2D triangulation(0, drawing.semilla, 1);
  if (triangulation.Curvado(drawing, contours, 1000, interval, nullptr) != kHecho) throw std::runtime_error("contours");
  auto const& m = phases.marks;
  const auto n = static_cast<double>(drawing.nPuntos);
  const auto a_point = [&](std::size_t bytes) { return static_cast<double>(bytes - std::min(before, bytes)) / n; };
  const Time fill = m[1].time - m[0].time, link = m[2].time - m[1].time, join = m[3].time - m[2].time;
  fmt::print("  interval {:g} m: fill {:.2f} s ({:.2f}), link and cut {:.2f} s ({:.2f}), join {:.2f} s ({:.2f})\n",
             interval, fill.processors, fill.clock, link.processors, link.clock, join.processors, join.clock);
  fmt::print("  bytes a point: {:.1f} at most while linking, {:.1f} when linked, {:.1f} at most while joining\n",
             a_point(m[2].peakBefore), a_point(m[2].heap), a_point(m[3].peakBefore));
  return {m[3].time - m[0].time, contours.Cantidad(), contours.nPuntos};
}

#ifdef URDIMBRE_WITH_GDAL
Lines contourRaster(Terrain const& terrain, std::size_t columns, double interval) {
  GDALAllRegister();
  const int n = static_cast<int>(columns);
  GDALDatasetH raster = GDALCreate(GDALGetDriverByName("MEM"), "", n, n, 1, GDT_Float32, nullptr);
  double transform[6] = {0, 1, 0, 0, 0, 1};
  GDALSetGeoTransform(raster, transform);
  GDALRasterBandH band = GDALGetRasterBand(raster, 1);
  std::vector<float> row(columns);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) row[static_cast<std::size_t>(i)] = static_cast<float>(terrain.height(i + 0.5, j + 0.5));
    if (GDALRasterIO(band, GF_Write, 0, j, n, 1, row.data(), n, 1, GDT_Float32, 0, 0) != CE_None) {
      throw std::runtime_error("raster");
    }
  }
  GDALDatasetH vector = GDALCreate(GDALGetDriverByName("Memory"), "", 0, 0, 0, GDT_Unknown, nullptr);
  OGRLayerH layer = GDALDatasetCreateLayer(vector, "contour", nullptr, wkbLineString25D, nullptr);
  for (auto const& [name, type] : {std::pair{"ID", OFTInteger}, std::pair{"ELEV", OFTReal}}) {
    OGRFieldDefnH field = OGR_Fld_Create(name, type);
    OGR_L_CreateField(layer, field, FALSE);
    OGR_Fld_Destroy(field);
  }
  const std::string level = fmt::format("LEVEL_INTERVAL={}", interval);
  char const* options[] = {level.c_str(), "ID_FIELD=0", "ELEV_FIELD=1", nullptr};
  Lines result;
  const Time before = now();
  if (GDALContourGenerateEx(band, layer, const_cast<char**>(options), nullptr, nullptr) != CE_None) {
    throw std::runtime_error("GDAL's contours");
  }
  result.time = now() - before;
  OGR_L_ResetReading(layer);
  while (OGRFeatureH feature = OGR_L_GetNextFeature(layer)) {
    ++result.lines;
    result.points += static_cast<std::size_t>(OGR_G_GetPointCount(OGR_F_GetGeometryRef(feature)));
    OGR_F_Destroy(feature);
  }
  GDALClose(vector);
  GDALClose(raster);
  return result;
}
#endif

void print(char const* who, Lines const& lines) {
  fmt::print("{:<10} {:8.2f} s ({:.2f}) {:>10} lines {:>12} points\n", who, lines.time.processors, lines.time.clock,
             lines.lines, lines.points);
  std::fflush(stdout);
}

/// So many segments of one level that make rings of so many, in random order and sense.
CDibujo<int> shuffledRings(std::size_t segments, std::size_t ring) {
  std::vector<std::pair<CCoor3D<int>, CCoor3D<int>>> pieces;
  pieces.reserve(segments);
  const auto place = [ring](std::size_t i) {
    const double turn = 6.283185307179586 * static_cast<double>(i % ring) / static_cast<double>(ring);
    const double radius = 10.0 * static_cast<double>(ring);
    const auto which = static_cast<double>(i / ring);
    CCoor3D<int> p;
    p.Actualiza(radius * std::cos(turn) + std::fmod(which, 1000) * 2.5 * radius,
                radius * std::sin(turn) + std::floor(which / 1000) * 2.5 * radius, 500);
    return p;
  };
  for (std::size_t i = 0; i < segments; ++i) {
    const std::size_t first = i / ring * ring, next = i + 1 == first + ring ? first : i + 1;
    pieces.emplace_back(place(i), place(next));
  }
  std::mt19937_64 random(kSeed);
  std::shuffle(pieces.begin(), pieces.end(), random);
  CDibujo<int> drawing;
  for (auto const& [a, b] : pieces) {
    CLinea<int> line(L"nuevo");
    line.Reserva(2);
    const bool turned = random() % 2 == 0;
    line << (turned ? b : a) << (turned ? a : b);
    drawing.Inserta(std::move(line));
  }
  return drawing;
}

void joinOneLevel(std::size_t most) {
  fmt::print("\njoining one level: {:>10} {:>8} {:>8} {:>8} {:>16}\n", "segments", "a ring", "lines", "s",
             "ns/(n log2 n)");
  for (const std::size_t ring : {std::size_t{50}, std::size_t{20'000}}) {
    for (std::size_t n = std::max(most / 8 / ring, std::size_t{1}) * ring; n <= most; n *= 2) {
      CDibujo<int> level = shuffledRings(n, ring);
      const auto segments = static_cast<double>(level.Cantidad());
      const Time before = now();
      level.Junta(0, 0, true, true, true, 0, 0, true);
      const double seconds = (now() - before).processors;
      fmt::print("                   {:>10} {:>8} {:>8} {:8.2f} {:16.2f}\n", segments, ring, level.Cantidad(), seconds,
                 seconds * 1e9 / (segments * std::log2(segments)));
      std::fflush(stdout);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 10'000'000, join = 2'000'000;
  double interval = 0.5;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::strcmp(argv[i], "--points") == 0) count = std::stoul(argv[i + 1]);
    if (std::strcmp(argv[i], "--interval") == 0) interval = std::stod(argv[i + 1]);
    if (std::strcmp(argv[i], "--join") == 0) join = std::stoul(argv[i + 1]);
  }
  const auto columns = static_cast<std::size_t>(std::lround(std::sqrt(static_cast<double>(count))));
  const Terrain terrain(kSeed);
  Phases phases;
  {
    CSetPuntos<int> set(L"CLOUD");
    set.CLinea<int>::Asigna(cloud(terrain, columns));
    CDibujo<int> drawing(CDataSemilla(3, 0, 0, 0));
    drawing.tipoNube = 1;
    drawing.Inserta(std::move(set));
    fmt::print("{} points\n", drawing.nPuntos);
    contourPoints(drawing, 1e6, phases);
    print("ours", contourPoints(drawing, interval, phases));
  }
#ifdef URDIMBRE_WITH_GDAL
  print("GDAL", contourRaster(terrain, columns, interval));
#else
  fmt::print("GDAL is not here to compare with\n");
#endif
  joinOneLevel(join);
}
