#pragma once

#include "classification/CDataBuscarPuntos.h"
#include "host/classify/MeshSearch.h"

namespace Meseta47::host {

/// Points that hang above what is around them, or lie below it.
class AerialSearch : public MeshSearch {
 public:
  AerialSearch();

  [[nodiscard]] char const* name() const override { return "aerial"; }
  [[nodiscard]] char const* purpose() const override {
    return "Points far above the heights around them, or far below: high and low noise";
  }
  void settle(ProfilePlace const* profile) override;
  [[nodiscard]] bool keep(ProfilePlace const& profile) const override;

 protected:
  int search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found, SearchOutcome& outcome) override;

 private:
  /// By the sign of the factor.
  [[nodiscard]] CInfoClasificacion usualTarget() const;

  CDataBuscarPuntos data_;
};

}  // namespace Meseta47::host
