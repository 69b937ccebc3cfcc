#include "host/laz/LazRecords.h"

#include <algorithm>
#include <fmt/format.h>

#include "host/FileError.h"
#include "host/laz/EntropyDecoder.h"
#include "platform/Procesadores.h"

namespace Meseta47::host {

namespace {

// A chunk of more bytes than this, once decoded, is not decoded as a whole. Writers make them of a few megabytes.
constexpr std::uint64_t kLargeChunk = std::uint64_t{32} << 20;
constexpr std::uint64_t kLargestPiece = std::uint64_t{4} << 20;
// Who asks for so few points looks here and there, and has no use for whole chunks.
constexpr std::size_t kFewPoints = 4096;

}  // namespace

LazRecords::LazRecords(ByteSource& source, LasHeader const& header, LazScheme const& scheme, LasFields fields)
    : source_(source), promised_(header.pointCount), header_(header), scheme_(scheme), fields_(fields) {
  if (auto chunks = readChunks(source_, header_, scheme_)) {
    chunks_ = std::move(*chunks);
    known_ = true;
  }
}

void LazRecords::findChunks() {
  if (known_) return;
  chunks_ = rebuildChunks(source_, header_, scheme_);
  known_ = true;
}

std::uint64_t LazRecords::takeWhole() {
  if (!scheme_.isChunked()) known_ = false;  // there is no table: how far the one chunk goes, its points tell
  findChunks();
  promised_ = chunks_.empty() ? 0 : chunks_.back().firstPoint + chunks_.back().points;
  return promised_;
}

std::vector<LazChunk> const& LazRecords::chunks() {
  findChunks();
  const std::uint64_t found = chunks_.empty() ? 0 : chunks_.back().firstPoint + chunks_.back().points;
  if (found < promised_) failAsCut(found);
  return chunks_;
}

void LazRecords::choose(std::vector<LazChunk> chunks) {
  dropAhead(ahead_.size());
  chunks_ = std::move(chunks);
  piece_.chunk = {};
  known_ = true;
  next_ = 0;
  promised_ = chunks_.empty() ? 0 : chunks_.back().firstPoint + chunks_.back().points;
}

std::size_t LazRecords::chunkOf(std::uint64_t point) const {
  const auto behind = std::upper_bound(chunks_.begin(), chunks_.end(), point,
                                       [](std::uint64_t p, LazChunk const& c) { return p < c.firstPoint + c.points; });
  return static_cast<std::size_t>(behind - chunks_.begin());
}

std::uint64_t LazRecords::chunkStart(std::uint64_t point) {
  (void)chunks();
  const std::size_t chunk = chunkOf(point);
  return chunk < chunks_.size() ? chunks_[chunk].firstPoint : point;
}

bool LazRecords::isLarge(LazChunk const& chunk) const { return chunk.points * scheme_.recordLength() > kLargeChunk; }

void LazRecords::fetch(Slot& slot, LazChunk const& chunk) {
  if (!slot.decoder) slot.decoder = laz::makeChunkDecoder(scheme_, fields_);
  slot.chunk = chunk;
  slot.whole = 0;
  slot.bytes.resize(static_cast<std::size_t>(chunk.bytes) + laz::kDecoderSlack);
  const auto bytes = std::span(slot.bytes).first(static_cast<std::size_t>(chunk.bytes));
  if (source_.read(chunk.place, bytes) < bytes.size()) {
    throw FileError(source_.name(), "became shorter while it was read: wait until it is written");
  }
  slot.decoder->start(bytes);
}

/// Begins to decode the chunk behind those that are decoded already. Where the system has no thread for it, that is
/// done when it is asked for.
void LazRecords::begin(std::size_t chunk) {
  if (spares_.empty()) spares_.push_back(std::make_unique<Slot>());
  Slot& slot = *spares_.back();
  fetch(slot, chunks_[chunk]);
  slot.records.resize(static_cast<std::size_t>(slot.chunk.points * scheme_.recordLength()));
  ahead_.push_back(std::move(spares_.back()));
  spares_.pop_back();
  const auto how = NumeroProcesadores() > 1 ? std::launch::async | std::launch::deferred : std::launch::deferred;
  slot.decoding = std::async(how, [&slot] { slot.whole = slot.decoder->decode(slot.records); });
}

/// Gives up the first `count` of the chunks that are decoded.
void LazRecords::dropAhead(std::size_t count) {
  for (; count > 0; --count, ++first_) {
    ahead_.front()->decoding = {};  // waits for one that is under way
    spares_.push_back(std::move(ahead_.front()));
    ahead_.pop_front();
  }
}

/// Makes a chunk the one in front, decoded. With one processor nothing is decoded before it is needed.
void LazRecords::load(std::size_t chunk) {
  dropAhead(isAhead(chunk) ? chunk - first_ : ahead_.size());
  first_ = chunk;
  const std::size_t most = NumeroProcesadores() > 1 ? NumeroProcesadores() + 1 : 1;
  for (std::size_t next = chunk + ahead_.size(); next < chunks_.size() && ahead_.size() < most; ++next) {
    if (isLarge(chunks_[next])) break;
    begin(next);
  }
  if (ahead_.front()->decoding.valid()) ahead_.front()->decoding.get();
}

std::span<std::uint8_t const> LazRecords::serve(Slot const& slot, std::size_t max) {
  const std::uint64_t within = next_ - slot.chunk.firstPoint;
  if (slot.whole < slot.chunk.points) failAt(slot.chunk, slot.whole);
  const std::uint64_t count = std::min<std::uint64_t>(max, slot.chunk.points - within);
  next_ += count;
  return std::span(slot.records)
      .subspan(static_cast<std::size_t>(within * scheme_.recordLength()),
               static_cast<std::size_t>(count * scheme_.recordLength()));
}

std::span<std::uint8_t const> LazRecords::read(std::size_t max) {
  (void)chunks();
  const std::size_t chunk = chunkOf(next_);
  if (chunk == chunks_.size() || max == 0) return {};
  if (!isAhead(chunk) && (max < kFewPoints || isLarge(chunks_[chunk]))) return readPiece(chunk, max);
  if (!isAhead(chunk) || chunk != first_) load(chunk);
  return serve(*ahead_.front(), max);
}

void LazRecords::decodePiece(std::uint64_t points) {
  piece_.records.resize(static_cast<std::size_t>(points * scheme_.recordLength()));
  const std::size_t whole = piece_.decoder->decode(piece_.records);
  if (whole < points) failAt(piece_.chunk, pieceNext_ - piece_.chunk.firstPoint + whole);
  pieceNext_ += points;
}

std::span<std::uint8_t const> LazRecords::readPiece(std::size_t number, std::size_t max) {
  const std::uint64_t most = std::max<std::uint64_t>(1, kLargestPiece / scheme_.recordLength());
  LazChunk const& chunk = chunks_[number];
  if (piece_.chunk.points == 0 || piece_.chunk.place != chunk.place || next_ < pieceNext_) {
    fetch(piece_, chunk);
    pieceNext_ = chunk.firstPoint;
  }
  while (pieceNext_ < next_) decodePiece(std::min(most, next_ - pieceNext_));
  decodePiece(std::min<std::uint64_t>({most, max, chunk.firstPoint + chunk.points - next_}));
  next_ = pieceNext_;
  return piece_.records;
}

void LazRecords::failAt(LazChunk const& chunk, std::uint64_t whole) const {
  throw FileError(source_.name(),
                  fmt::format("points {} to {} are one compressed chunk, of which only {} can be decoded: {}",
                              withThousands(chunk.firstPoint + 1), withThousands(chunk.firstPoint + chunk.points),
                              withThousands(whole), kDamaged));
}

void LazRecords::failAsCut(std::uint64_t points) const {
  throw FileError(source_.name(), fmt::format("the header promises {} points and {} of them stand in whole compressed "
                                              "chunks: {}; --partial takes those",
                                              withThousands(promised_), withThousands(points), kDamaged));
}

}  // namespace Meseta47::host
