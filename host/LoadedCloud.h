#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/HostApp.h"
#include "host/Parsing.h"
#include "model/CCoor3D.h"
#include "model/CDataSemilla.h"

namespace Meseta47::host {

struct LoadOptions {
  std::optional<int> precision;  ///< decimals; by default the finest that the files' scales need
  std::optional<Bounds> bounds;  ///< in the files' reference system, limits included
  bool wayBack = false;          ///< keep the way from the points back to the records of the files
};

/// Points of files as one cloud in scaled integers, in the order of the files.
struct LoadedCloud {
  CDataSemilla seed;                 ///< precision, and the whole-metre origin that was taken off in plan
  std::vector<CCoor3D<int>> points;  ///< with intensity and class
  std::uint64_t pointsRead = 0;      ///< in the files, before the bounds

  // With a way back alone:
  std::vector<std::uint32_t> places;  ///< of each point, its place among those read
  std::vector<std::uint8_t> classes;  ///< of every point read, those out of bounds too
};

/// Reads groups of files, each group one cloud, all onto one seed. The origin is the middle of all extents. Throws
/// FileError for a file that cannot be read, Failure for an extent that does not fit 32 bits at the precision or for
/// more points than a way back can count, and Cancelled.
std::vector<LoadedCloud> loadClouds(std::vector<std::vector<std::string>> const& groups, LoadOptions const& options,
                                    HostApp& app);

}  // namespace Meseta47::host
