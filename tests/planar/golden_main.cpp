// Prints the golden lines of linked clouds, for tests/planar/golden/linked.txt: to be run when the outcome of a run was
// changed on purpose.
#include <iostream>

#include "support/PlanarGolden.h"
#include "support/PlanarRun.h"

int main() {
  using namespace Meseta47;
  const test::QuietApp app;
  std::cout << test::GoldenColumns() << '\n';
  for (test::GoldenCase const& golden : test::GoldenCases()) std::cout << GoldenLine(golden) << std::endl;
}
