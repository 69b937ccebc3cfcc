#pragma once

#include <memory>

#include "host/laz/ChunkCodec.h"

namespace Meseta47::host::laz {

/// Chunks of the schemes without layers: the first record as it is, the others in one stream.
[[nodiscard]] std::unique_ptr<ChunkDecoder> makePointwiseDecoder(LazScheme const& scheme);
[[nodiscard]] std::unique_ptr<ChunkEncoder> makePointwiseEncoder(LazScheme const& scheme);

}  // namespace Meseta47::host::laz
