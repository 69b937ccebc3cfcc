#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/las/ByteSource.h"
#include "host/las/LasHeader.h"
#include "host/laz/LazScheme.h"

namespace Meseta47::host {

/// Bytes in front of the first chunk: the place of the table behind the last one.
inline constexpr std::uint64_t kChunkTablePointer = 8;

/// One chunk of a file.
struct LazChunk {
  std::uint64_t firstPoint = 0;  ///< in the order of reading
  std::uint64_t points = 0;
  std::uint64_t place = 0;  ///< of its first byte in the file
  std::uint64_t bytes = 0;
};

/// The chunks that a file says it has, each within the file and all points in them. None when the table is missing,
/// damaged, or tells of something else; then rebuildChunks() finds them.
[[nodiscard]] std::optional<std::vector<LazChunk>> readChunks(ByteSource& source, LasHeader const& header,
                                                              LazScheme const& scheme);

/// The chunks that are whole, found by reading on from each to the next one, until all points are found or the file
/// ends. Of chunks without layers each must be decoded for that. Needs the memory of one chunk.
///
/// A file that is not chunked has one, cut at the last point that is whole.
[[nodiscard]] std::vector<LazChunk> rebuildChunks(ByteSource& source, LasHeader const& header, LazScheme const& scheme);

/// The table's bytes for chunks that stand in a file one after the other.
[[nodiscard]] std::vector<std::uint8_t> encodeChunkTable(std::vector<LazChunk> const& chunks, bool variable);

}  // namespace Meseta47::host
