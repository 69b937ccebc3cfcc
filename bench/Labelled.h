#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/HostApp.h"
#include "model/drawing/CDibujo.h"
#include "model/geometry/CDataSemilla.h"

namespace Meseta47::bench {

constexpr std::uint8_t kUnclassified = 1, kGround = 2;

/// Ground and objects, told apart rightly or not.
struct Confusion {
  double groundKept = 0, groundLost = 0, objectsFound = 0, objectsMissed = 0;

  [[nodiscard]] double all() const { return groundKept + groundLost + objectsFound + objectsMissed; }
  [[nodiscard]] double typeOne() const { return groundLost / (groundKept + groundLost); }
  [[nodiscard]] double typeTwo() const { return objectsMissed / (objectsFound + objectsMissed); }
  [[nodiscard]] double total() const { return (groundLost + objectsMissed) / all(); }
  [[nodiscard]] double kappa() const;
};

/// A cloud whose points are all in class 1, and the classes that somebody gave them.
struct Cloud {
  std::string name;
  CDataSemilla seed;
  double metres = 1;  ///< in a unit of the file
  std::vector<CCoor3D<int>> points;
  std::vector<std::uint8_t> truth;
};

/// Without `decimals`, those of the file.
[[nodiscard]] Cloud load(std::filesystem::path const& file, std::optional<int> decimals, host::HostApp& app);

/// The .las files of a folder, by name. Throws when there are none.
[[nodiscard]] std::vector<std::filesystem::path> lasFilesIn(std::filesystem::path const& folder);

/// The points of a cloud as a drawing that searches take.
[[nodiscard]] CDibujo<int> drawingOf(Cloud const& cloud);

/// `found`: which points were taken for objects.
[[nodiscard]] Confusion compare(std::vector<std::uint8_t> const& truth, std::vector<bool> const& found);

/// One pixel a mean spacing, wrong points over right ones: ground grey, objects green, type I red, type II blue. A PPM.
void paint(Cloud const& cloud, std::vector<bool> const& found, std::filesystem::path const& file);

/// `bench_accuracy --ground`: see ground.cpp.
void groundTables(std::filesystem::path const& folder, std::filesystem::path const& pictures, bool ablation,
                  host::HostApp& app);

/// `bench_accuracy --affinity`: see affinity.cpp.
void affinityTables(std::filesystem::path const& folder, std::filesystem::path const& pictures, host::HostApp& app);

}  // namespace Meseta47::bench
