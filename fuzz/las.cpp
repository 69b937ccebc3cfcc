#include "fuzz/Fuzz.h"
#include "host/las/LasReader.h"

using namespace Meseta47;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::reading([&] {
    host::LasReader reader(fuzz::sourceOf(data, size));
    for (host::LasVlr const& vlr : reader.vlrs()) fuzz::require(reader.vlrData(vlr).size() <= size);
    (void)reader.wkt();
    (void)reader.geoKeys();
    std::vector<host::LasPoint> points;
    std::uint64_t read = 0;
    if (reader.compression()) return;  // another fuzzer's
    while (const std::size_t count = reader.readBatch(points)) read += count;
    fuzz::require(read == reader.header().pointCount);
  });
  return 0;
}
