#pragma once

#include <vector>

#include "model/drawing/CDibujo.h"
#include "platform/Exporta.h"

namespace Meseta47 {

class CRango;

/// What a run from drawings to a model is asked for. The drawings are borrowed; a run writes nothing but the numbers of
/// their points, unless it is to empty them.
struct URDIMBRE_API CEncargo {
  CDibujo<int>& dibujo;                         ///< its entities are put in a spatial order first
  std::vector<CDibujo<int>*>* otros = nullptr;  ///< further drawings, which go in behind it as they stand
  CDibujo<int>* extra = nullptr;                ///< whose points are added in the end, under the tolerance
  /// How far an added point may lie above the surface found so far, metres; 0 for any. One in a triangle with a corner
  /// of the frame, beyond the border or near it, goes in untested.
  double tolerancia = 0;
  double ladoMaximo = 0;                 ///< greatest length of a side in plan, metres; 0 for any
  CRango const* alturas = nullptr;       ///< of the absolute differences of height along sides, scaled units
  CRango const* intensidades = nullptr;  ///< and of intensity
  /// Clears `dibujo` at the end and deletes the further drawings, which must come from new, as soon as their points are
  /// in the model: null pointers are left.
  bool vaciar = false;
};

}  // namespace Meseta47
