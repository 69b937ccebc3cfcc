#include <algorithm>

#include "host/vector/VectorInput.h"

namespace Meseta47::host {

std::uint64_t placesAtZero(VectorEntity const& entity) {
  auto const& places = entity.places;
  return static_cast<std::uint64_t>(
      std::count_if(places.begin(), places.end(), [](auto const& place) { return place[2] == 0; }));
}

bool liesAtZero(VectorEntity const& entity) { return placesAtZero(entity) == entity.places.size(); }

}  // namespace Meseta47::host
