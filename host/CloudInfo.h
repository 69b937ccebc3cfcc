#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/CloudPoint.h"
#include "host/las/LasHeader.h"
#include "host/laz/LazScheme.h"
#include "host/text/TextReader.h"
#include "host/vector/ReferenceSystem.h"

namespace Meseta47::host {

/// The least and the greatest of a value that points have.
struct ValueRange {
  int least = 1, most = 0;  ///< of no point

  [[nodiscard]] bool isEmpty() const { return least > most; }
  [[nodiscard]] bool varies() const { return least < most; }
  void include(int value) { include(ValueRange{value, value}); }
  void include(ValueRange const& other);
};

/// What the points of a cloud are, all of them counted.
struct CloudCounts {
  std::uint64_t points = 0;
  Extent extent;                             ///< of the points, not of a header
  std::array<std::uint64_t, 256> byClass{};  ///< those of vector files have none, and count in none
  std::array<std::uint64_t, 16> byReturn{};  ///< by return number; 0 is for points without one
  std::uint64_t planDuplicates = 0;          ///< points less distinct plan positions
  ValueRange intensity;                      ///< of points that are in no vector file
  std::array<ValueRange, 3> colour;          ///< red, green, blue, 8 bits, of files that hold colours
  ReferenceSystem system;                    ///< unknown when nobody tells, or files contradict one another

  [[nodiscard]] bool hasColour() const { return !colour[0].isEmpty(); }
  [[nodiscard]] bool colourVaries() const { return colour[0].varies() || colour[1].varies() || colour[2].varies(); }
};

/// What an octree of points is.
struct Octree {
  std::uint64_t nodes = 0;  ///< with points
  int levels = 0;
  double spacing = 0;        ///< between points of the root, in units of the file
  double finestSpacing = 0;  ///< between points of the last level
};

/// What a LAS file says of itself.
struct LasFacts {
  LasHeader header;
  std::size_t records = 0;
  std::optional<LazScheme> compression;  ///< none for plain points
  std::optional<Octree> octree;          ///< of a COPC file
  std::uint64_t missing = 0;             ///< points that a cut took away, where parts are read
};

/// How the columns of a text file are taken: see TextReader.
struct TextFacts {
  std::vector<std::string> columns;
  std::string from;
};

/// The surface of a native model.
struct ModelFacts {
  std::uint64_t triangles = 0;
  std::size_t rings = 0;
};

/// What a vector file holds beside places.
struct VectorFacts {
  std::uint64_t lines = 0, sets = 0, withoutZ = 0;
  std::uint64_t atZero = 0;                    ///< of the lines and sets, those whose heights are 0 throughout
  std::map<std::string, std::uint64_t> codes;  ///< lines and sets of each
};

/// One file. Which kind it is, its facts tell.
struct CloudFileInfo : CloudCounts {
  std::string name;
  std::optional<LasFacts> las;
  std::optional<TextFacts> text;
  std::optional<ModelFacts> model;
  std::optional<VectorFacts> vector;
  std::string systemProblem;  ///< why its reference system could not be understood
  int precision = 0;          ///< decimals of its coordinates
};

/// Files as one cloud. `all` counts duplicates between files too.
struct CloudInfo {
  std::vector<CloudFileInfo> files;
  CloudCounts all;
  int precision = 0;          ///< the finest of the files: plan positions are told apart by this many decimals
  std::string systemProblem;  ///< how the files contradict one another
};

/// Told of the points passed; false asks to stop.
using InfoProgress = std::function<bool(std::uint64_t points)>;

/// Reads the files, each twice: once to count and once to compare plan positions, 8 bytes a point. None when the
/// progress asked to stop. With `partial`, takes what there is of files that are cut short. Throws FileError and
/// Failure as the readers do, but not for a reference system.
[[nodiscard]] std::optional<CloudInfo> gatherInfo(std::span<std::string const> names, InfoProgress const& progress = {},
                                                  TextColumns const& columns = {}, bool partial = false);

}  // namespace Meseta47::host
