#include "host/Summary.h"

#include <algorithm>
#include <fmt/format.h>

#include "host/FileError.h"
#include "host/JsonOutput.h"
#include "platform/Proceso.h"

namespace Meseta47::host {

namespace {

std::string labelled(std::string const& label, std::string const& text) {
  return fmt::format("{:<10} {}", label, text);
}

std::string listed(std::initializer_list<Summary::Count> counts) {
  std::string text;
  for (auto const& count : counts) {
    text += fmt::format("{}{} {}", text.empty() ? "" : ", ", withThousands(count.value), count.words);
  }
  return text;
}

}  // namespace

void Summary::read(LoadedCloud const& cloud) {
  surveyLines_ += cloud.lines.Cantidad();
  linePoints_ += cloud.linePoints;
  withoutZ_ += cloud.withoutZ;
  if (cloud.system.isKnown()) system_ = cloud.system.label();
  readPoints(cloud.pointsRead);
  fact("lines", surveyLines_);
  fact("line_points", linePoints_);
  fact("skipped_without_z", withoutZ_);
  fact("system", cloud.system.label());
}

void Summary::readPoints(std::uint64_t points) {
  pointsRead_ += points;
  fact("points_read", pointsRead_);
}

void Summary::line(std::string const& label, std::string const& text) { lines_.push_back(labelled(label, text)); }

void Summary::counts(std::string const& label, std::initializer_list<Count> counts) {
  Json json = Json::object();
  for (Count const& count : counts) json[count.key] = count.value;
  fact(label, std::move(json));
  line(label, listed(counts));
}

void Summary::points(std::initializer_list<Count> counts) {
  for (Count const& count : counts) fact(count.key, count.value);
  line("points", fmt::format("{} read, {}", withThousands(pointsRead_), listed(counts)));
}

void Summary::resident(std::string const& what, std::uint64_t peak, std::uint64_t linked) {
  fact("linked_" + what, linked);
  fact("peak_live_" + what, peak);
  line("resident",
       fmt::format("{} of {} {} at most at once ({:.1f} %)", withThousands(peak), withThousands(linked), what,
                   100.0 * static_cast<double>(peak) / static_cast<double>(std::max<std::uint64_t>(linked, 1))));
}

void Summary::print(CommonOptions const& common, HostApp& app) {
  app.clearProgress();
  const std::uint64_t memory = MemoriaResidenteMaxima();
  if (common.json) {
    fact("seconds", seconds.toJson());
    fact("peak_memory_bytes", memory);
    printJson(facts_);
    return;
  }
  if (common.quiet) return;
  if (!headline_.empty()) fmt::print("{}\n", headline_);
  if (!system_.empty()) fmt::print("{}\n", labelled("system", system_));
  if (surveyLines_ + linePoints_ + withoutZ_ != 0) {
    fmt::print("{}\n", labelled("lines", fmt::format("{} lines and sets of points with {} points, {} geometries "
                                                     "without heights left out",
                                                     withThousands(surveyLines_), withThousands(linePoints_),
                                                     withThousands(withoutZ_))));
  }
  for (std::string const& line : lines_) fmt::print("{}\n", line);
  fmt::print("{}\n", labelled("seconds", seconds.text()));
  fmt::print("{}\n", labelled("memory", fmt::format("{:.0f} MB at most", static_cast<double>(memory) / 1e6)));
}

}  // namespace Meseta47::host
