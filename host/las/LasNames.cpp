#include "host/las/LasNames.h"

#include <algorithm>

namespace Meseta47::host {

namespace {

std::string endingOf(std::string const& path) {
  std::string ending = path.substr(path.size() - std::min<std::size_t>(path.size(), 4));
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
  return ending;
}

}  // namespace

bool isNamedLaz(std::string const& path) { return endingOf(path) == ".laz"; }

bool isNamedLas(std::string const& path) { return endingOf(path) == ".las" || isNamedLaz(path); }

}  // namespace Meseta47::host
