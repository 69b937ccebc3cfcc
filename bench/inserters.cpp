// Linking by one thread and by two, on the same points in the same order: seconds, ratio, and whether the bytes agree.
//
//   bench_inserters [--runs K] [--points N] [--alternate N] [--family NAME ...] [FILE.las ...]
//
// Points go in along the Hilbert curve, so many of one half and so many of the other in turns (0: as the curve goes).
// Without a family only the files are taken, each alone and then all as one.
#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <string>
#include <vector>

#include "host/LoadedCloud.h"
#include "host/SpatialOrder.h"
#include "host/Stopwatch.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"
#include "run/CFicheroTriples.h"
#include "support/Families.h"

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

struct Linked {
  double seconds = 0;
  std::size_t bytes = 0;
  CResumenPlano counts;
  std::string how;
};

class Phases : public CTriangulacion2D {
 public:
  explicit Phases(CDataSemilla const& seed) : CTriangulacion2D(0, seed, 1) {
    Mensajes(MENSAJES_NINGUNO);
    DosDesde(0);
  }

  Linked run(CDibujo<int>& drawing) {
    drawing.PonNumerosACero();
    const CFuentes sources{drawing};
    if (Rellena(sources) != kHecho) throw std::runtime_error("fill");
    CEnlace linking;
    Linked linked;
    Stopwatch watch;
    if (Enlaza(sources, linking) != kHecho) throw std::runtime_error("link");
    linked.seconds = watch.seconds();
    linked.bytes = hashOfSpill();
    const auto percent = [this](std::uint64_t n) {
      return 100 * static_cast<double>(n) / static_cast<double>(Resumen().aceptados);
    };
    linked.how = fmt::format("{}{:.2f} % in turn, {:.0f} % by one alone", porDos.tarde ? "late, " : "",
                             percent(porDos.enTurno), percent(porDos.aSolas));
    linked.counts = Resumen();
    BorraFicheroTemporal();
    return linked;
  }

 private:
  std::size_t hashOfSpill() {
    ficheroTemporal.Vuelca();
    CLectorTriples reader;
    if (!reader.Abre(ficheroTemporal.Ruta())) throw std::runtime_error("read");
    const std::uint64_t length = reader.Longitud();
    if (!reader.Situa(0, static_cast<unsigned>(length / CFicheroTriples::kBytes), length)) {
      throw std::runtime_error("read");
    }
    std::size_t hash = 14695981039346656037U;  // FNV-1a, a number at a time
    for (auto triples = reader.Siguiente(); !triples.empty(); triples = reader.Siguiente()) {
      for (CTriple const& triple : triples) {
        for (const std::int32_t number : triple) hash = (hash ^ static_cast<std::uint32_t>(number)) * 1099511628211U;
      }
    }
    return hash;
  }
};

bool agree(Linked const& a, Linked const& b) {
  CResumenPlano const &p = a.counts, &q = b.counts;
  return a.bytes == b.bytes && p.duplicados == q.duplicados && p.rechazados == q.rechazados &&
         p.picoVivos == q.picoVivos && p.enlazados == q.enlazados && p.examinados == q.examinados;
}

void compare(std::string const& name, std::vector<CCoor3D<int>> points, std::size_t alternate, unsigned runs) {
  const std::size_t n = points.size();
  std::vector<std::uint32_t> order = hilbertOrder(points);
  if (alternate != 0) alternateHalves(order, points, alternate);
  applyOrder(points, order);
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::move(points));
  const CDataSemilla seed;
  CDibujo<int> drawing(seed);
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  std::vector<double> times[2];
  bool equal = true;
  Linked first;
  std::string how;
  for (unsigned i = 0; i < runs; ++i) {
    for (unsigned threads = 1; threads <= 2; ++threads) {
      CWinApp app;
      app.PonProcesadores(threads);
      const Linked linked = Phases(seed).run(drawing);
      if (i == 0 && threads == 1) first = linked;
      equal = equal && agree(first, linked);
      how = linked.how;
      times[threads - 1].push_back(linked.seconds);
    }
  }
  for (auto& t : times) std::sort(t.begin(), t.end());
  const double one = times[0][runs / 2], two = times[1][runs / 2];
  fmt::print("{:<18} {:>10} | {:7.3f} {:7.3f} | {:5.2f} {:5.2f} | {} {}\n", name, n, one, two, one / two,
             static_cast<double>(n) / two / 1e6, equal ? "same" : "DIFFERENT", how);
  std::fflush(stdout);
}

struct Options {
  unsigned runs = 5;
  std::size_t count = 1000000, alternate = 64;
  std::vector<std::string> files, families;
};

Options parsed(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const bool more = i + 1 < argc;
    if (std::strcmp(argv[i], "--runs") == 0 && more) {
      options.runs = static_cast<unsigned>(std::stoul(argv[++i]));
    } else if (std::strcmp(argv[i], "--points") == 0 && more) {
      options.count = std::stoul(argv[++i]);
    } else if (std::strcmp(argv[i], "--alternate") == 0 && more) {
      options.alternate = std::stoul(argv[++i]);
    } else if (std::strcmp(argv[i], "--family") == 0 && more) {
      options.families.emplace_back(argv[++i]);
    } else {
      options.files.emplace_back(argv[i]);
    }
  }
  return options;
}

void compareFamilies(Options const& options) {
  auto const& wanted = options.families;
  const bool all = std::find(wanted.begin(), wanted.end(), "all") != wanted.end();
  for (const support::Family family : support::kAllFamilies) {
    if (!all && std::find(wanted.begin(), wanted.end(), support::name(family)) == wanted.end()) continue;
    std::vector<CCoor3D<int>> points;
    for (support::Point const& p : support::family(family, options.count, 1)) points.emplace_back(p.x, p.y, p.z, 0);
    compare(support::name(family), std::move(points), options.alternate, options.runs);
  }
}

void compareFiles(Options const& options) {
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  std::vector<std::vector<std::string>> groups;
  groups.reserve(options.files.size() + 1);
  for (std::string const& file : options.files) groups.push_back({file});
  if (options.files.size() > 1) groups.push_back(options.files);
  for (auto const& group : groups) {
    std::vector<CCoor3D<int>> points = takePoints(loadClouds({group}, LoadOptions(), app)[0], false);
    compare(group.size() > 1 ? "all as one" : group[0].substr(group[0].rfind('/') + 1), std::move(points),
            options.alternate, options.runs);
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = parsed(argc, argv);
    fmt::print("{:<18} {:>10} | {:>7} {:>7} | {:>5} {:>5} |\n", "cloud", "points", "one", "two", "ratio", "Mpt/s");
    compareFamilies(options);
    compareFiles(options);
  } catch (std::exception const& failure) {
    fmt::print(stderr, "bench_inserters: {}\n", failure.what());
    return 1;
  }
  return 0;
}
