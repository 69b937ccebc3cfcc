#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "support/SpaceFamilies.h"

namespace Meseta47::test {

/// What a run in space is asked for, and how it gets its points.
struct SpaceGoldenCase {
  enum class Form {
    Faces,  ///< the faces of the surface, in random order
    Whole,  ///< whole tetrahedra, along a curve
    Kept,   ///< in memory, along a curve
  };
  support::SpaceFamily family;
  std::size_t size;
  Form form;

  [[nodiscard]] std::string Name() const;
};
std::ostream& operator<<(std::ostream& out, SpaceGoldenCase const& golden);

[[nodiscard]] std::vector<SpaceGoldenCase> SpaceGoldenCases();

/// What must not change when nothing but the speed is meant to: one line, the name first. SpaceGoldenColumns() says
/// what the rest is.
[[nodiscard]] std::string GoldenLine(SpaceGoldenCase const& golden);
[[nodiscard]] std::string SpaceGoldenColumns();

}  // namespace Meseta47::test
