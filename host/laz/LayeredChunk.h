#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "host/laz/ChunkCodec.h"

namespace Meseta47::host::laz {

// A chunk in layers: the first record as it is, the number of its points, the bytes of each layer, and the layers.

/// What stands before the layers.
struct LayeredHead {
  std::uint64_t points = 0;
  std::uint64_t bytes = 0;  ///< of the whole chunk
  std::vector<std::uint32_t> layers;
};

/// Bytes of the head with the first record.
[[nodiscard]] std::size_t layeredHeadBytes(LazScheme const& scheme);
/// None when there are fewer bytes than that.
[[nodiscard]] std::optional<LayeredHead> readLayeredHead(LazScheme const& scheme, std::span<std::uint8_t const> chunk);

[[nodiscard]] std::unique_ptr<ChunkDecoder> makeLayeredDecoder(LazScheme const& scheme, LasFields fields);
[[nodiscard]] std::unique_ptr<ChunkEncoder> makeLayeredEncoder(LazScheme const& scheme);

}  // namespace Meseta47::host::laz
