#pragma once

#include <vector>

#include "planar/CLado2D.h"

class CStdioFile;

namespace Meseta47 {

/// Sides of the condemned triangles around a new point. Sides shared by two of them lie inside the cavity; what is left
/// once those are gone is its boundary, in an order that depends on point numbers alone, so that new triangles are
/// always made in the same order.
///
/// A bag of values: it owns no point. Not thread-safe; the inserting thread reuses one object for every point, so that
/// no insertion allocates once the largest cavity has been seen.
class URDIMBRE_API CSetLados2D {
 public:
  std::vector<CLado2D> lados;

  /// Removes both copies of every side that occurs twice, whichever way each runs. Of three equal sides one stays, of
  /// four none. The rest is sorted by (lower number, higher number). O(n log n); n is about 14 for a scattered cloud.
  void BorraDuplicados();

  /// True when no side occurs more than three times; sorts the sides. With a file, each longer run is reported on a
  /// line of its own. The limit of three is deliberate: hosts call this in the middle of an insertion, when old and new
  /// triangles meet.
  bool Comprueba(CStdioFile* fichero);
};

}  // namespace Meseta47
