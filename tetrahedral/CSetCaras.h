#pragma once

#include <vector>

#include "tetrahedral/CCara.h"

namespace Meseta47 {

/// Faces of the condemned tetrahedra around a new point. A face between two of them comes twice; what comes once is the
/// boundary of the cavity.
class URDIMBRE_API CSetCaras : public std::vector<CCara> {
 public:
  /// Keeps the faces that occur once, sorted by the numbers of their points. Callers give four faces a tetrahedron,
  /// each at most twice; what other lists become is kept for them as it always was: a lone face goes, of three equal
  /// ones in a row one stays before another face and none at the end. O(n log n); about 100 faces a scattered point.
  void BorraDuplicadas();
};

}  // namespace Meseta47
