#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/HostApp.h"
#include "host/Parsing.h"
#include "host/SpatialOrder.h"
#include "host/text/TextReader.h"
#include "host/vector/ReferenceSystem.h"
#include "host/vector/VectorInput.h"
#include "model/drawing/CDibujo.h"
#include "model/geometry/CCoor3D.h"
#include "model/geometry/CDataSemilla.h"

namespace Meseta47::host {

/// What is taken beside clouds, and where on the Earth all of it lies.
struct MapOptions {
  VectorOptions vectors;
  ReferenceSystem system;        ///< stands for what the files say; unknown: they say it
  std::uint8_t vertexClass = 0;  ///< of the points of vector files, which have none of their own
};

struct LoadOptions {
  std::optional<int> precision;   ///< decimals; by default the finest that the files' scales need, or a small extent
  int moreDecimals = 0;           ///< finer by so many, where no precision is given and 32 bits leave room
  std::optional<Bounds> bounds;   ///< in the files' reference system, limits included
  TextColumns columns;            ///< of text files
  bool wayBack = false;           ///< keep the way from the points back to the records of the files
  bool colours = false;           ///< keep the colours of the points
  bool partial = false;           ///< take what there is of files that are cut short
  double resolution = 0;          ///< above 0: the levels of octrees down to points so far apart
  std::optional<MapOptions> map;  ///< none: clouds alone are taken, and nobody asks for their reference systems
};

/// Red, green and blue.
using Rgb8 = std::array<std::uint8_t, 3>;

/// Points of files as one cloud in scaled integers, in the order of the files.
struct LoadedCloud {
  CDataSemilla seed;                ///< precision, and the whole-metre origin that was taken off in plan
  std::vector<ScaledPoint> points;  ///< until they are taken
  std::uint64_t pointsRead = 0;     ///< in the files, before the bounds; those of vector files too

  // With a way back alone:
  std::vector<std::uint32_t> places;  ///< of each point, its place among those read; none where it is the point's own
  std::vector<std::uint8_t> classes;  ///< of every point read, those out of bounds too

  std::vector<Rgb8> colours{};  ///< of each point, with colours alone

  // With map options alone:
  CDibujo<int> lines{};          ///< of vector files: lines and sets of points, on the seed
  std::uint64_t linePoints = 0;  ///< those of pointsRead that vector files hold
  std::uint64_t withoutZ = 0;    ///< geometries left out for want of heights
  ReferenceSystem system{};      ///< of all groups
};

/// Takes the points out of a cloud, as a drawing wants them, along the Hilbert curve of SpatialOrder.h when asked for;
/// their places and colours follow. Needs the memory of both forms of the points.
[[nodiscard]] std::vector<CCoor3D<int>> takePoints(LoadedCloud& cloud, bool hilbert, Ties ties = Ties::asTheyCome,
                                                   Halves halves = Halves::asTheyCome);

/// Reads groups of files, each group one cloud, all onto one seed. The origin is the middle of all extents. Throws
/// FileError for a file that cannot be read or lies in another reference system than the rest, Failure for an extent
/// that does not fit 32 bits at the precision or for more points than a way back can count, and Cancelled.
std::vector<LoadedCloud> loadClouds(std::vector<std::vector<std::string>> const& groups, LoadOptions const& options,
                                    HostApp& app);
/// The same for files that are one cloud.
[[nodiscard]] inline LoadedCloud loadCloud(std::vector<std::string> const& files, LoadOptions const& options,
                                           HostApp& app) {
  return std::move(loadClouds({files}, options, app).front());
}

}  // namespace Meseta47::host
