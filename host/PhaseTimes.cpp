#include "host/PhaseTimes.h"

#include <algorithm>
#include <fmt/format.h>

namespace Meseta47::host {

std::size_t PhaseTimes::placeOf(std::string const& phase) {
  const auto place = std::find_if(phases_.begin(), phases_.end(), [&](auto const& p) { return p.first == phase; });
  if (place != phases_.end()) return static_cast<std::size_t>(place - phases_.begin());
  phases_.emplace_back(phase, 0.0);
  return phases_.size() - 1;
}

nlohmann::ordered_json PhaseTimes::toJson() const {
  nlohmann::ordered_json json;
  for (auto const& [phase, took] : phases_) json[phase] = took;
  json["total"] = whole_.seconds();
  return json;
}

std::string PhaseTimes::text() const {
  std::string text;
  for (auto const& [phase, took] : phases_) text += fmt::format("{} {:.2f}, ", phase, took);
  return text + fmt::format("total {:.2f}", whole_.seconds());
}

}  // namespace Meseta47::host
