#pragma once

#include <vector>

#include "host/classify/CloudSearch.h"
#include "model/drawing/CCondicionHIntensidad.h"
#include "model/drawing/CCondicionHRGB.h"

namespace Meseta47::host {

/// Sums up a listing of what rises by its looks: kinds of colours in an eighth of the range of each channel, or of
/// intensities in a twelfth of the range met, the most frequent first. Each is told with the condition that would take
/// it, but for the class.
void tellColours(std::vector<CCondicionHRGB> const& rises, double height, SearchOutcome& outcome);
void tellIntensities(std::vector<CCondicionHIntensidad> const& rises, double height, SearchOutcome& outcome);

}  // namespace Meseta47::host
