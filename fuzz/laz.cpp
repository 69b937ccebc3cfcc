#include <algorithm>

#include "fuzz/Fuzz.h"
#include "host/las/LasCodec.h"
#include "host/las/LasReader.h"
#include "host/laz/ChunkCodec.h"
#include "host/laz/EntropyDecoder.h"

using namespace Meseta47;

namespace {

constexpr std::uint64_t kMostPoints = 20000;  // bytes can stand for so many points that no fuzzer would see their end

/// The bytes as a chunk of each kind that the first of them name: whatever they are, records come out or none do.
void decodeChunk(std::uint8_t const* data, std::size_t size) {
  if (size < 3) return;
  host::LazScheme scheme = host::lazSchemeFor(data[0] % host::kLasFormats, data[1] % 5);
  scheme.itemVersion -= data[2] % 2 == 0 ? 0U : 1U;
  if (scheme.kind == host::LazScheme::Kind::layered) scheme.itemVersion += data[2] % 2 == 0 ? 0U : 2U;  // 3 or 4
  std::vector<std::uint8_t> bytes(data + 3, data + size);
  bytes.resize(size - 3 + host::laz::kDecoderSlack);
  const auto decoder = host::laz::makeChunkDecoder(scheme);
  decoder->start(std::span<std::uint8_t const>(bytes).first(size - 3));
  std::vector<std::uint8_t> records(std::size_t{scheme.recordLength()} * 300);
  fuzz::require(decoder->decode(records) <= 300);
}

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
  decodeChunk(data, size);
  fuzz::reading([&] { readFile(data, size, {}); });
  fuzz::reading([&] { readFile(data, size, {.box = host::Bounds{0, 0, 1e6, 1e6}, .resolution = 1}); });
  const bool few = size > 111 && data[110] == 0 && data[109] == 0;  // what is partial is looked for to the end
  if (few) fuzz::reading([&] { readFile(data, size, {.partial = true}); });
  return 0;
}
