#include "host/Parsing.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <string_view>

#include "host/Failure.h"
#include "host/Paths.h"

namespace Meseta47::host {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (std::size_t begin = 0;;) {
    const std::size_t end = text.find(separator, begin);
    parts.push_back(text.substr(begin, end - begin));
    if (end == std::string_view::npos) return parts;
    begin = end + 1;
  }
}

template <class T>
bool parseNumber(std::string_view text, T& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

}  // namespace

std::string extensionOf(std::string const& path) {
  std::string extension = textOf(pathOf(path).extension());
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
  return extension;
}

Limits parseLimits(std::string const& option, std::string const& text, double lowest, double highest) {
  const auto parts = split(text, ':');
  Limits limits{lowest, highest};
  const bool good = parts.size() == 2 && (parts[0].empty() || parseNumber(parts[0], limits.min)) &&
                    (parts[1].empty() || parseNumber(parts[1], limits.max)) && !std::isnan(limits.min) &&
                    !std::isnan(limits.max);
  if (!good) throw UsageError(fmt::format("{} {}: give two numbers as MIN:MAX (either may be left out)", option, text));
  if (limits.min < lowest || limits.max > highest) {
    throw UsageError(fmt::format("{} {}: give numbers from {} to {}", option, text, lowest, highest));
  }
  if (limits.min > limits.max) throw UsageError(fmt::format("{} {}: the minimum is above the maximum", option, text));
  return limits;
}

double asMost(double limit) {
  constexpr double kRounding = 0x1p-49;  // a few times what a number, a power of ten and their product are off by
  return limit + std::abs(limit) * kRounding;
}

double asLeast(double limit) { return -asMost(-limit); }

std::array<bool, 256> parseClasses(std::string const& option, std::string const& text) {
  std::array<bool, 256> classes{};
  for (const std::string_view part : split(text, ',')) {
    const std::size_t dash = part.find('-');
    unsigned from = 0, to = 0;
    const bool good = parseNumber(part.substr(0, dash), from) &&
                      (dash == std::string_view::npos ? (to = from, true) : parseNumber(part.substr(dash + 1), to)) &&
                      from <= to && to < classes.size();
    if (!good) {
      throw UsageError(
          fmt::format("{} {}: give classes from 0 to 255 as 2,9 or 3-5; \"{}\" is none", option, text, part));
    }
    for (unsigned c = from; c <= to; ++c) classes[c] = true;
  }
  return classes;
}

Bounds parseBounds(std::string const& text) {
  const auto parts = split(text, ',');
  Bounds b{};
  const bool good = parts.size() == 4 && parseNumber(parts[0], b.minX) && parseNumber(parts[1], b.minY) &&
                    parseNumber(parts[2], b.maxX) && parseNumber(parts[3], b.maxY);
  if (!good) throw UsageError(fmt::format("--bounds {}: give four numbers as XMIN,YMIN,XMAX,YMAX", text));
  if (std::isnan(b.minX) || std::isnan(b.minY) || std::isnan(b.maxX) || std::isnan(b.maxY)) {
    throw UsageError(fmt::format("--bounds {}: \"nan\" is no number: give four numbers as XMIN,YMIN,XMAX,YMAX", text));
  }
  if (b.minX > b.maxX || b.minY > b.maxY) {
    throw UsageError(fmt::format("--bounds {}: a minimum is above its maximum", text));
  }
  return b;
}

}  // namespace Meseta47::host
