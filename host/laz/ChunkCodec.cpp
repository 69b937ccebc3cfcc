#include "host/laz/ChunkCodec.h"

#include "host/laz/LayeredChunk.h"
#include "host/laz/PointwiseChunk.h"

namespace Meseta47::host::laz {

std::unique_ptr<ChunkDecoder> makeChunkDecoder(LazScheme const& scheme, LasFields fields) {
  return scheme.kind == LazScheme::Kind::layered ? makeLayeredDecoder(scheme, fields) : makePointwiseDecoder(scheme);
}

std::unique_ptr<ChunkEncoder> makeChunkEncoder(LazScheme const& scheme) {
  return scheme.kind == LazScheme::Kind::layered ? makeLayeredEncoder(scheme) : makePointwiseEncoder(scheme);
}

}  // namespace Meseta47::host::laz
