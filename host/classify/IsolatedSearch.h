#pragma once

#include "classification/CDataBuscarPuntos.h"
#include "host/classify/MeshSearch.h"

namespace Meseta47::host {

/// Points with hardly anything around them.
class IsolatedSearch : public MeshSearch {
 public:
  IsolatedSearch();

  [[nodiscard]] char const* name() const override { return "isolated"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points with too few neighbours within a distance: echoes of birds, dust, the air";
  }

 protected:
  int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found, SearchOutcome& outcome) override;

 private:
  CDataBuscarPuntos data_;
};

}  // namespace Meseta47::host
