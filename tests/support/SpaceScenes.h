#pragma once

#include <deque>
#include <string>
#include <vector>

#include "tetrahedral/CSetCaras.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47::test {

/// Points that stay where they are.
class Points {
 public:
  CCoor3D<int>* operator()(int x, int y, int z, int number) { return &stored.emplace_back(x, y, z, number); }

 private:
  std::deque<CCoor3D<int>> stored;
};

[[nodiscard]] inline CMaximas<int> Box(int low, int high) {
  CMaximas<int> box;
  box.Nuevo(CCoor3D<int>(low, low, low, 0));
  box.Nuevo(CCoor3D<int>(high, high, high, 0));
  return box;
}

/// The numbers of a face, "1 2 3".
[[nodiscard]] inline std::string Named(CCara const& f) {
  return std::to_string(f.N1()) + " " + std::to_string(f.N2()) + " " + std::to_string(f.N3());
}
[[nodiscard]] inline std::vector<std::string> Named(CSetCaras const& faces) {
  std::vector<std::string> names;
  for (CCara const& f : faces) names.push_back(Named(f));
  return names;
}

}  // namespace Meseta47::test
