#pragma once

#include "host/classify/CloudSearch.h"

namespace Meseta47 {
class CTriangulacion2D;
}

namespace Meseta47::host {

/// A search on one triangulation of the whole cloud.
class MeshSearch : public CloudSearch {
 public:
  [[nodiscard]] std::uint64_t temporaryBytes(std::uint64_t points) const override;
  int run(CDibujo<int>& drawing, CDataTriangulacion const& filters, bool fillsHull, SearchOutcome& outcome) final;

 protected:
  /// Whether it spills the mesh, and then passes over it.
  [[nodiscard]] virtual bool spills() const { return true; }
  /// Runs the search on a triangulation that is ready for it. `found` receives the points found; what else there is to
  /// tell goes into the outcome, of which accepted, found, mesh and seconds are filled afterwards. A code of the
  /// library.
  virtual int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                     SearchOutcome& outcome) = 0;
};

}  // namespace Meseta47::host
