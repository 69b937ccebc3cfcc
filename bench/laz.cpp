// How fast compressed clouds decode: millions of points a second, with the fields of a surface and with all of them, on
// one thread and on two; medians.
//
//   bench_laz [--runs N] FILE.laz ...
//
// Reading the file is in it, making anything of the records is not. scripts/compare-laz tells the figure of an
// independent decoder for the same files.
#include <algorithm>
#include <fmt/format.h>
#include <string>
#include <vector>

#include "host/Stopwatch.h"
#include "host/las/LasReader.h"
#include "platform/CWinApp.h"

using namespace Meseta47::host;

namespace {

double secondsToRead(std::string const& file, LasFields fields) {
  const Stopwatch watch;
  LasReader reader(file, LasReading{.fields = fields});
  while (reader.readRecords() > 0) {
  }
  return watch.seconds();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void measure(CWinApp& app, std::string const& file, unsigned runs) {
  const auto points = static_cast<double>(LasReader(file).header().pointCount);
  for (const LasFields fields : {LasFields::surface, LasFields::all}) {
    std::vector<double> one, two;
    for (unsigned run = 0; run < runs; ++run) {  // in turn, so that both meet the same machine
      app.PonProcesadores(1);
      one.push_back(secondsToRead(file, fields));
      app.PonProcesadores(2);
      two.push_back(secondsToRead(file, fields));
    }
    const double alone = median(one), together = median(two);
    fmt::print("{}: {:.0f} points, {}: {:.2f} M/s on one thread, {:.2f} on two ({:.2f} times)\n", file, points,
               fields == LasFields::all ? "all fields" : "those of a surface", points / alone / 1e6,
               points / together / 1e6, alone / together);
  }
}

}  // namespace

int main(int count, char** words) {
  unsigned runs = 5;
  CWinApp app;
  for (int i = 1; i < count; ++i) {
    if (std::string(words[i]) == "--runs" && i + 1 < count) {
      runs = static_cast<unsigned>(std::max(1, std::stoi(words[++i])));
    } else {
      measure(app, words[i], runs);
    }
  }
}
