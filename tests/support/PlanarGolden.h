#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "support/PlanarFeeds.h"

namespace Meseta47::test {

/// How a run gets the points of a feed.
enum class Form {
  Drawing,  ///< as one drawing
  Others,   ///< a quarter as a drawing, the rest as three further ones, the last of which loses its seeds
  Update,   ///< every third one added to the rest under a tolerance
  Model,    ///< as the points of a model
};

struct GoldenCase {
  Feed feed;
  Form form = Form::Drawing;

  [[nodiscard]] std::string Name() const;
};
std::ostream& operator<<(std::ostream& out, GoldenCase const& golden);

[[nodiscard]] std::vector<GoldenCase> GoldenCases();

/// What must not change when nothing but the speed is meant to: one line, the name first. GoldenColumns() says what the
/// rest is.
[[nodiscard]] std::string GoldenLine(GoldenCase const& golden);
[[nodiscard]] std::string GoldenColumns();

}  // namespace Meseta47::test
