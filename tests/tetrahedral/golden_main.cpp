// Prints the golden lines of clouds linked in space, for tests/tetrahedral/golden/linked.txt: to be run when the
// outcome of a run was changed on purpose.
#include <iostream>

#include "support/PlanarRun.h"
#include "support/SpaceGolden.h"

int main() {
  using namespace Meseta47;
  const test::QuietApp app;
  std::cout << test::SpaceGoldenColumns() << '\n';
  for (test::SpaceGoldenCase const& golden : test::SpaceGoldenCases()) std::cout << GoldenLine(golden) << std::endl;
}
