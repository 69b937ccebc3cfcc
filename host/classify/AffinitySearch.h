#pragma once

#include <optional>

#include "host/classify/MeshSearch.h"
#include "model/geometry/CRango.h"

namespace Meseta47::host {

/// What is next to the points of a class, and like them.
class AffinitySearch : public MeshSearch {
 public:
  AffinitySearch();

  [[nodiscard]] char const* name() const override { return "affinity"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points next to those of a class and like them, and what is next to these: ground from a few points of it, "
           "a "
           "roof from one";
  }
  void settle(ProfilePlace const* profile) override;
  void requireSense(CloudUnits const& units) override;

 protected:
  [[nodiscard]] bool spills() const override { return once_ == 0; }
  int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found, SearchOutcome& outcome) override;

 private:
  /// How far apart two points may be in what a range judges; null where nothing was given.
  struct Ranges {
    std::optional<CRango> heights, intensities, squares, slopes;
  };
  [[nodiscard]] Ranges ranges() const;
  void requireTold(CDibujo<int> const& drawing, SearchOutcome& outcome) const;

  CInfoClasificacion grow_{2, 0.0, L""};
  std::optional<CInfoClasificacion> barrier_;
  std::optional<double> height_, intensity_, side_, slope_;
  int once_ = 0;
  double aMetre_ = 1;  ///< scaled units in a unit of the input
};

}  // namespace Meseta47::host
