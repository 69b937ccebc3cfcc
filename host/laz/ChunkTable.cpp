#include "host/laz/ChunkTable.h"

#include <algorithm>
#include <array>
#include <limits>

#include "host/las/LasBytes.h"
#include "host/laz/ChunkCodec.h"
#include "host/laz/EntropyDecoder.h"
#include "host/laz/EntropyEncoder.h"
#include "host/laz/IntegerModel.h"
#include "host/laz/LayeredChunk.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kTableHead = 8;  // version, which is 0, and number of chunks

/// What stands in a row of the table, each number after the one of the row before: the points of chunks of varying
/// size, and the bytes.
class RowModel {
 public:
  explicit RowModel(bool variable) : variable_(variable) {}

  template <class Coder>
  void code(Coder& coder, std::uint32_t& points, std::uint32_t& bytes) {
    if (variable_) points = points_ = code(coder, points_, points, 0);
    bytes = bytes_ = code(coder, bytes_, bytes, 1);
  }

 private:
  template <class Coder>
  std::uint32_t code(Coder& coder, std::uint32_t last, std::uint32_t now, unsigned context) {
    return static_cast<std::uint32_t>(
        numbers_.code(coder, static_cast<std::int32_t>(last), static_cast<std::int32_t>(now), context));
  }

  laz::IntegerModel<32, 2> numbers_;
  bool variable_;
  std::uint32_t points_ = 0, bytes_ = 0;
};

std::uint64_t firstChunk(LasHeader const& header, LazScheme const& scheme) {
  return header.offsetToPoints + (scheme.isChunked() ? kChunkTablePointer : 0);
}

std::optional<std::uint64_t> readPlace(ByteSource& source, std::uint64_t at) {
  std::array<std::uint8_t, 8> bytes{};
  if (source.read(at, bytes) < bytes.size()) return std::nullopt;
  return load<std::uint64_t>(bytes.data());
}

/// Where the table begins. A writer that could not go back has left its place at the very end of the file.
std::optional<std::uint64_t> findTable(ByteSource& source, LasHeader const& header) {
  constexpr std::uint64_t kAtTheEnd = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t first = header.offsetToPoints + kChunkTablePointer;
  auto place = readPlace(source, header.offsetToPoints);
  if (place == kAtTheEnd && source.size() >= first + 8) place = readPlace(source, source.size() - 8);
  if (!place || *place < first || *place > source.size() || source.size() - *place < kTableHead) return std::nullopt;
  return place;
}

/// The bytes of the table: its head, and rows that may take all that follows.
std::vector<std::uint8_t> readTable(ByteSource& source, std::uint64_t place, std::uint64_t most) {
  constexpr std::uint64_t kRowBytes = 20;  // two numbers at their longest
  std::vector<std::uint8_t> bytes(kTableHead);
  bytes.resize(source.read(place, bytes));
  const std::uint32_t rows = bytes.size() < kTableHead ? 0 : load<std::uint32_t>(bytes.data() + 4);
  if (bytes.size() < kTableHead || load<std::uint32_t>(bytes.data()) != 0 || rows > most) return {};
  const std::uint64_t rest = std::min(source.size() - place, kTableHead + 16 + rows * kRowBytes);
  bytes.resize(static_cast<std::size_t>(rest) + laz::kDecoderSlack);
  const std::size_t got = source.read(place, std::span(bytes).first(static_cast<std::size_t>(rest)));
  return got == rest ? bytes : std::vector<std::uint8_t>();
}

/// True when the chunks fill what is before a place and hold all points.
bool fill(std::vector<LazChunk> const& chunks, std::uint64_t end, LasHeader const& header) {
  if (chunks.empty()) return false;
  LazChunk const& last = chunks.back();
  return last.firstPoint + last.points == header.pointCount && last.place + last.bytes == end;
}

std::vector<LazChunk> wholeFile(ByteSource const& source, LasHeader const& header) {
  if (header.pointCount == 0) return {};
  return {{0, header.pointCount, header.offsetToPoints, source.size() - header.offsetToPoints}};
}

std::vector<std::uint8_t> readBytes(ByteSource& source, std::uint64_t place, std::uint64_t most) {
  const std::uint64_t there = std::min(most, source.size() - std::min(place, source.size()));
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(there));
  bytes.resize(source.read(place, bytes));
  return bytes;
}

/// Takes chunks without layers one after the other.
class ChunkWalk {
 public:
  ChunkWalk(ByteSource& source, LazScheme const& scheme)
      : source_(source), scheme_(scheme), decoder_(laz::makeChunkDecoder(scheme)) {}

  /// Decodes a chunk of so many points from a place, and says how many are whole and how many bytes they took.
  LazChunk measure(std::uint64_t place, std::uint64_t points) {
    // A compressor has hardly ever made anything longer; where it has, the file's rest is looked at.
    std::uint64_t most = 2 * points * scheme_.recordLength() + 1024;
    LazChunk chunk = decode(place, points, most);
    if (chunk.points < points && most < source_.size() - place) chunk = decode(place, points, source_.size() - place);
    return chunk;
  }

 private:
  LazChunk decode(std::uint64_t place, std::uint64_t points, std::uint64_t most) {
    constexpr std::size_t kAtOnce = std::size_t{1} << 20;
    std::vector<std::uint8_t> bytes = readBytes(source_, place, most);
    const std::size_t size = bytes.size();
    bytes.resize(size + laz::kDecoderSlack);
    decoder_->start(std::span(bytes).first(size));
    const std::uint64_t batch = std::max<std::uint64_t>(1, kAtOnce / scheme_.recordLength());
    std::vector<std::uint8_t> records;
    LazChunk chunk{0, 0, place, 0};
    while (chunk.points < points) {
      const std::uint64_t wanted = std::min(batch, points - chunk.points);
      records.resize(static_cast<std::size_t>(wanted * scheme_.recordLength()));
      const std::size_t whole = decoder_->decode(records);
      chunk.points += whole;
      if (whole < wanted) break;
    }
    chunk.bytes = decoder_->bytesTaken();
    return chunk;
  }

  ByteSource& source_;
  LazScheme const& scheme_;
  std::unique_ptr<laz::ChunkDecoder> decoder_;
};

std::vector<LazChunk> walkPointwise(ByteSource& source, LasHeader const& header, LazScheme const& scheme) {
  ChunkWalk walk(source, scheme);
  std::vector<LazChunk> chunks;
  std::uint64_t place = firstChunk(header, scheme), points = 0;
  if (scheme.isVariable()) return chunks;  // nothing but the table tells how many points a chunk has
  while (points < header.pointCount) {
    const std::uint64_t left = header.pointCount - points;
    const std::uint64_t wanted = scheme.isChunked() ? std::min<std::uint64_t>(scheme.chunkPoints, left) : left;
    LazChunk chunk = walk.measure(place, wanted);
    chunk.firstPoint = points;
    if (chunk.points == 0 || (scheme.isChunked() && chunk.points < wanted)) break;
    chunks.push_back(chunk);
    points += chunk.points;
    place += chunk.bytes;
    if (chunk.points < wanted) break;
  }
  return chunks;
}

std::vector<LazChunk> walkLayered(ByteSource& source, LasHeader const& header, LazScheme const& scheme) {
  std::vector<LazChunk> chunks;
  std::uint64_t place = firstChunk(header, scheme), points = 0;
  while (points < header.pointCount) {
    const auto head = laz::readLayeredHead(scheme, readBytes(source, place, laz::layeredHeadBytes(scheme)));
    if (!head || head->points == 0 || head->points > header.pointCount - points) break;
    if (head->bytes > source.size() - place) break;
    chunks.push_back({points, head->points, place, head->bytes});
    points += head->points;
    place += head->bytes;
  }
  return chunks;
}

}  // namespace

std::optional<std::vector<LazChunk>> readChunks(ByteSource& source, LasHeader const& header, LazScheme const& scheme) {
  if (!scheme.isChunked()) return wholeFile(source, header);
  if (header.pointCount == 0) return std::vector<LazChunk>();
  const auto place = findTable(source, header);
  if (!place) return std::nullopt;
  const std::uint64_t first = firstChunk(header, scheme);
  const std::vector<std::uint8_t> table = readTable(source, *place, (*place - first) / scheme.recordLength());
  if (table.empty()) return std::nullopt;
  std::vector<LazChunk> chunks(load<std::uint32_t>(table.data() + 4));
  RowModel rows(scheme.isVariable());
  laz::EntropyDecoder coder(
      std::span<std::uint8_t const>(table).subspan(kTableHead, table.size() - kTableHead - laz::kDecoderSlack));
  LazChunk next{0, 0, first, 0};
  for (LazChunk& chunk : chunks) {
    const std::uint64_t left = header.pointCount - std::min(header.pointCount, next.firstPoint);
    auto points = static_cast<std::uint32_t>(std::min<std::uint64_t>(scheme.chunkPoints, left));
    std::uint32_t bytes = 0;
    rows.code(coder, points, bytes);
    next.points = points;
    next.bytes = bytes;
    if (coder.ranOut() || bytes < scheme.recordLength() || next.place + next.bytes > *place) return std::nullopt;
    chunk = next;
    next = {chunk.firstPoint + chunk.points, 0, chunk.place + chunk.bytes, 0};
  }
  if (!fill(chunks, *place, header)) return std::nullopt;
  return chunks;
}

std::vector<LazChunk> rebuildChunks(ByteSource& source, LasHeader const& header, LazScheme const& scheme) {
  return scheme.kind == LazScheme::Kind::layered ? walkLayered(source, header, scheme)
                                                 : walkPointwise(source, header, scheme);
}

std::vector<std::uint8_t> encodeChunkTable(std::vector<LazChunk> const& chunks, bool variable) {
  std::vector<std::uint8_t> table(kTableHead);
  store(table.data() + 4, static_cast<std::uint32_t>(chunks.size()));
  if (chunks.empty()) return table;
  RowModel rows(variable);
  laz::EntropyEncoder coder;
  for (LazChunk const& chunk : chunks) {
    auto points = static_cast<std::uint32_t>(chunk.points), bytes = static_cast<std::uint32_t>(chunk.bytes);
    rows.code(coder, points, bytes);
  }
  auto const& coded = coder.finish();
  table.insert(table.end(), coded.begin(), coded.end());
  return table;
}

}  // namespace Meseta47::host
