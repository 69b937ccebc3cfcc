#include <map>
#include <memory>

#include "fuzz/Fuzz.h"
#include "host/las/LasCodec.h"
#include "host/laz/ChunkCodec.h"
#include "host/laz/EntropyDecoder.h"

using namespace Meseta47;

namespace {

constexpr std::size_t kPoints = 300;

/// A scheme by the first three bytes: any format, with up to four extra bytes, in any version of its items.
host::LazScheme schemeOf(std::uint8_t const* data) {
  host::LazScheme scheme = host::lazSchemeFor(data[0] % host::kLasFormats, data[1] % 5);
  scheme.itemVersion -= data[2] % 2 == 0 ? 0U : 1U;
  if (scheme.kind == host::LazScheme::Kind::layered) scheme.itemVersion += data[2] % 2 == 0 ? 0U : 2U;  // 3 or 4
  return scheme;
}

/// Decoders are kept, as readers keep them: making their megabytes anew would take most of the time.
host::laz::ChunkDecoder& decoderFor(host::LazScheme const& scheme) {
  static std::map<unsigned, std::unique_ptr<host::laz::ChunkDecoder>> kept;
  auto& decoder = kept[(scheme.pointFormat * 8 + scheme.extraBytes) * 8 + scheme.itemVersion];
  if (!decoder) decoder = host::laz::makeChunkDecoder(scheme);
  return *decoder;
}

}  // namespace

/// The bytes as a chunk: whatever they are, records come out or none do.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size < 3) return 0;
  const host::LazScheme scheme = schemeOf(data);
  std::vector<std::uint8_t> bytes(data + 3, data + size);
  bytes.resize(size - 3 + host::laz::kDecoderSlack);
  host::laz::ChunkDecoder& decoder = decoderFor(scheme);
  decoder.start(std::span<std::uint8_t const>(bytes).first(size - 3));
  std::vector<std::uint8_t> records(std::size_t{scheme.recordLength()} * kPoints);
  fuzz::require(decoder.decode(records) <= kPoints);
  return 0;
}
