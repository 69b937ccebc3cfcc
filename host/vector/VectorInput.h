#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/CloudPoint.h"
#include "host/vector/ReferenceSystem.h"

namespace Meseta47::host {

/// How vector files are read.
struct VectorOptions {
  std::string codeField;           ///< field that holds an entity's code; empty: its layer is its code
  std::vector<std::string> codes;  ///< take only these; empty: all
  bool skipWithoutZ = false;       ///< leave geometries without heights out, instead of refusing the file
  bool anySystem = false;          ///< a system that cannot be understood, or layers of several, are no fault: unknown
};

/// A line, or a number of points with nothing between them.
struct VectorEntity {
  std::string code;
  bool isLine = true;
  std::vector<std::array<double, 3>> places;  ///< in the reference system of the file
};

/// How many of its places have the height 0, as those of drawings without heights often do.
[[nodiscard]] std::uint64_t placesAtZero(VectorEntity const& entity);
/// Whether all of them have.
[[nodiscard]] bool liesAtZero(VectorEntity const& entity);

/// What a vector file holds for a terrain: lines, the rings of polygons as closed lines, points.
struct VectorContent {
  std::vector<VectorEntity> entities;
  ReferenceSystem system;
  Extent extent;
  int decimals = 0;              ///< that hold its coordinates: up to 3, a millimetre, and up to 7 for degrees
  std::uint64_t places = 0;      ///< of all entities
  std::uint64_t withoutZ = 0;    ///< geometries left out for want of heights
  std::uint64_t otherCodes = 0;  ///< entities left out because of their codes
};

/// Whether the name is one of a vector file: its extension belongs to a format of this machine's GDAL, and not to those
/// that clouds come in as well (.txt, .csv, .xyz and the like).
[[nodiscard]] bool isVectorFile(std::string const& path);

/// Reads all layers of a file. Curves become chords; a geometry of several parts becomes as many entities. In a DXF the
/// layer is the one of the drawing. A geometry counts as one without heights when it has none, or any that is not a
/// number: it is never taken to lie at 0.
///
/// Throws FileError for a file that cannot be read or holds nothing of use, for a geometry without heights unless such
/// ones are skipped, for a coordinate that no place on Earth has, for a code field that is not there, and for layers of
/// different reference systems.
[[nodiscard]] VectorContent readVectorFile(std::string const& path, VectorOptions const& options);

}  // namespace Meseta47::host
