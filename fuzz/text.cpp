#include <cmath>

#include "fuzz/Fuzz.h"
#include "host/text/TextReader.h"

using namespace Meseta47;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::reading([&] {
    host::TextReader reader(fuzz::sourceOf(data, size));
    std::vector<host::CloudPoint> points;
    std::size_t read = 0, again = 0;
    while (const std::size_t count = reader.readBatch(points, 7)) {
      read += count;
      for (host::CloudPoint const& p : points) {
        fuzz::require(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z));
      }
    }
    reader.rewind();
    while (const std::size_t count = reader.readBatch(points)) again += count;
    fuzz::require(read == again);
  });
  return 0;
}
