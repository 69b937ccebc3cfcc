#pragma once

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace Meseta47::host {

/// Prints a summary to stdout. Names of files are bytes, and JSON is UTF-8: what is none shows as U+FFFD, as it does on
/// a terminal, instead of ending work that is done.
inline void printJson(nlohmann::ordered_json const& json) {
  fmt::print("{}\n", json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

}  // namespace Meseta47::host
