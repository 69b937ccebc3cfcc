#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/las/LasPoint.h"
#include "host/laz/LazScheme.h"

namespace Meseta47::host::laz {

/// Decodes the records of one chunk after the other. A decoder holds up to some megabytes of models and is worth
/// keeping. Used by one thread at a time; throws nothing but std::bad_alloc, so that any thread of a team may use it.
class ChunkDecoder {
 public:
  virtual ~ChunkDecoder() = default;

  /// Begins with a chunk: its bytes, behind which kDecoderSlack more can be read. They stay until the next call.
  virtual void start(std::span<std::uint8_t const> chunk) = 0;

  /// Decodes the next records, whose bytes are zero, and gives how many are whole: fewer where the bytes run out.
  /// `recordLength` bytes each. More records than the chunk was made of are never asked for. Where not all fields are
  /// wanted, the others have values of no meaning, yet the same for the same chunk.
  virtual std::size_t decode(std::span<std::uint8_t> records) = 0;

  /// Bytes that the chunk has taken, once all of its records have been decoded.
  [[nodiscard]] virtual std::size_t bytesTaken() const = 0;
};

[[nodiscard]] std::unique_ptr<ChunkDecoder> makeChunkDecoder(LazScheme const& scheme,
                                                             LasFields fields = LasFields::all);

/// Encodes chunks. Used by one thread at a time.
class ChunkEncoder {
 public:
  virtual ~ChunkEncoder() = default;

  /// All the bytes of a chunk of these records, at least one.
  virtual void encode(std::span<std::uint8_t const> records, std::vector<std::uint8_t>& chunk) = 0;
};

[[nodiscard]] std::unique_ptr<ChunkEncoder> makeChunkEncoder(LazScheme const& scheme);

}  // namespace Meseta47::host::laz
