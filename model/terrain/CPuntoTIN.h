#pragma once

#include "model/drawing/tipoAero3.h"
#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// A vertex of a terrain model: a coordinate and, behind it, the survey data of its point.
class URDIMBRE_API CPuntoTIN : public CCoor3D<int> {
 public:
  tipoAero3 aero{};  ///< clear unless somebody who knows it copies it in

  CPuntoTIN() = default;
  CPuntoTIN(CPuntoTIN const&) = default;
  CPuntoTIN& operator=(CPuntoTIN const&) = default;
  CPuntoTIN(CCoor3D<int> const& punto) : CCoor3D<int>(punto) {}
};

// A model of 25 million points is 1.2 GB of them.
static_assert(sizeof(tipoAero3) == 16 && sizeof(CPuntoTIN) == 48);

}  // namespace Meseta47
