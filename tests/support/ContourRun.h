#pragma once

#include <string>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "support/ContourFaults.h"
#include "support/Mesh.h"
#include "support/PlainContours.h"

namespace Meseta47::test {

/// One cloud, contoured by the library and finished into a model, which the plain way is told.
struct Contoured {
  int code = 0;  ///< kHecho, or what the first run that failed answered
  support::ContourRule rule;
  support::Mesh mesh;                       ///< the finished model
  std::vector<support::ContourLine> lines;  ///< from the lowest level to the highest
};
/// In whole scaled units; `whole` without the frame. A longest side above 2^31 - 1 is cut to that.
[[nodiscard]] Contoured ContourCloud(std::vector<CCoor3D<int>> points, support::ContourRule rule, bool whole = false);

/// Everything that exact arithmetic has to say against the lines, a line a fault; empty when they are the contours of
/// the model.
[[nodiscard]] std::string FaultsOf(Contoured const& contoured);

[[nodiscard]] std::vector<support::ContourLine> LinesOf(CDibujo<int> const& drawing);

}  // namespace Meseta47::test
