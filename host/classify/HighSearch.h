#pragma once

#include "classification/CDataBuscarPuntos.h"
#include "host/classify/MeshSearch.h"

namespace Meseta47::host {

/// Points that stand above the ground: buildings, vegetation.
class HighSearch : public MeshSearch {
 public:
  HighSearch();

  [[nodiscard]] char const* name() const override { return "high"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points that rise steeply above their neighbours, and what lies within the outline around them: buildings, "
           "vegetation";
  }
  [[nodiscard]] bool drawsOutline() const override { return true; }

 protected:
  int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found, SearchOutcome& outcome) override;

 private:
  CDataBuscarPuntos data_;
};

}  // namespace Meseta47::host
