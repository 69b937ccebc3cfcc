#pragma once

#include "classification/CDataPicos.h"
#include "host/classify/MeshSearch.h"

namespace Meseta47::host {

/// Points that stand out against those that the triangulation joins them to.
class PeaksSearch : public MeshSearch {
 public:
  PeaksSearch();

  [[nodiscard]] char const* name() const override { return "peaks"; }
  [[nodiscard]] char const* purpose() const override {
    return "Spikes and pits: points above or below all their neighbours in the triangulation";
  }

 protected:
  [[nodiscard]] bool spills() const override { return false; }
  int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found, SearchOutcome& outcome) override;

 private:
  CDataPicos data_;
};

}  // namespace Meseta47::host
