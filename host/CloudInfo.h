#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/CloudPoint.h"
#include "host/las/LasHeader.h"
#include "host/las/LasVlr.h"

namespace Meseta47::host {

/// What the points of a cloud are, all of them counted.
struct CloudCounts {
  std::uint64_t points = 0;
  Extent extent;  ///< of the points, not of a header
  std::array<std::uint64_t, 256> byClass{};
  std::array<std::uint64_t, 16> byReturn{};  ///< by return number; 0 is for points without one
  std::uint64_t planDuplicates = 0;          ///< points less distinct plan positions
};

/// One file.
struct CloudFileInfo : CloudCounts {
  std::string name;
  std::optional<LasHeader> header;  ///< none for text
  std::vector<LasVlr> vlrs;
  std::string wkt;  ///< its reference system, where it is told as text
  std::optional<GeoKeys> geoKeys;
  int precision = 0;  ///< decimals of its coordinates
};

/// Files as one cloud. `all` counts duplicates between files too.
struct CloudInfo {
  std::vector<CloudFileInfo> files;
  CloudCounts all;
  int precision = 0;  ///< the finest of the files: plan positions are told apart by this many decimals
};

/// Told of the points passed; false asks to stop.
using InfoProgress = std::function<bool(std::uint64_t points)>;

/// Reads the files, each twice: once to count and once to compare plan positions, 8 bytes a point. None when the
/// progress asked to stop. Throws FileError as the readers do.
[[nodiscard]] std::optional<CloudInfo> gatherInfo(std::span<std::string const> names,
                                                  InfoProgress const& progress = {});

}  // namespace Meseta47::host
