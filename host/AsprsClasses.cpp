#include "host/AsprsClasses.h"

#include <array>

namespace Meseta47::host {

char const* className(std::size_t code) {
  static constexpr std::array<char const*, 19> kNames{"never classified",
                                                      "unclassified",
                                                      "ground",
                                                      "low vegetation",
                                                      "medium vegetation",
                                                      "high vegetation",
                                                      "building",
                                                      "low noise",
                                                      "key point",
                                                      "water",
                                                      "rail",
                                                      "road",
                                                      "overlap",
                                                      "wire, guard",
                                                      "wire, conductor",
                                                      "tower",
                                                      "wire joint",
                                                      "bridge deck",
                                                      "high noise"};
  return code < kNames.size() ? kNames[code] : "other";
}

}  // namespace Meseta47::host
