#include <algorithm>

#include "fuzz/Fuzz.h"
#include "host/las/LasReader.h"

using namespace Meseta47;

namespace {

constexpr std::uint64_t kMostPoints = 20000;  // bytes can stand for so many points that no fuzzer would see their end

void readFile(std::uint8_t const* data, std::size_t size, host::LasReading const& reading) {
  host::LasReader reader(fuzz::sourceOf(data, size), reading);
  if (reading.partial && reader.header().pointCount > kMostPoints) return;
  std::vector<host::LasPoint> points;
  std::uint64_t read = 0;
  while (read < kMostPoints) {
    const std::size_t count = reader.readBatch(points, 3000);
    if (count == 0) break;
    read += count;
  }
  fuzz::require(read >= std::min(kMostPoints, reader.header().pointCount));
  reader.seek(reader.header().pointCount / 2);
  reader.readBatch(points, 10);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::reading([&] { readFile(data, size, {}); });
  fuzz::reading([&] { readFile(data, size, {.box = host::Bounds{0, 0, 1e6, 1e6}, .resolution = 1}); });
  const bool few = size > 111 && data[110] == 0 && data[109] == 0;  // what is partial is looked for to the end
  if (few) fuzz::reading([&] { readFile(data, size, {.partial = true}); });
  return 0;
}
