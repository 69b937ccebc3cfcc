#include "host/laz/LazRecords.h"

#include <algorithm>
#include <fmt/format.h>

#include "host/FileError.h"
#include "host/laz/EntropyDecoder.h"
#include "model/threads/Reparto.h"
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

LazRecords::~LazRecords() { dropAhead(); }

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
  dropAhead();
  now_.count = 0;
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
  slot.bytes.resize(static_cast<std::size_t>(chunk.bytes) + laz::kDecoderSlack);
  const auto bytes = std::span(slot.bytes).first(static_cast<std::size_t>(chunk.bytes));
  if (source_.read(chunk.place, bytes) < bytes.size()) {
    throw FileError(source_.name(), "became shorter while it was read: wait until it is written");
  }
  slot.decoder->start(bytes);
}

void LazRecords::gather(Group& group, std::size_t first) {
  group.first = first;
  group.count = 0;
  const std::size_t most = NumeroProcesadores();
  while (group.count < most && first + group.count < chunks_.size() && !isLarge(chunks_[first + group.count])) {
    if (group.slots.size() == group.count) group.slots.emplace_back();
    Slot& slot = group.slots[group.count];
    LazChunk const& chunk = chunks_[first + group.count];
    fetch(slot, chunk);
    slot.records.resize(static_cast<std::size_t>(chunk.points * scheme_.recordLength()));
    ++group.count;
  }
}

void LazRecords::decode(Group& group) {
  Reparte(group.count, 1, [&group](std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last; ++i) {
      group.slots[i].whole = group.slots[i].decoder->decode(group.slots[i].records);
    }
  });
}

void LazRecords::dropAhead() {
  if (decoding_.valid()) decoding_.wait();
  decoding_ = {};
  ahead_.count = 0;
}

void LazRecords::lookAhead(std::size_t chunk) {
  if (NumeroProcesadores() == 1) return;  // the one there is has work
  gather(ahead_, chunk);
  if (ahead_.count == 0) return;
  decoding_ = std::async(std::launch::async | std::launch::deferred, [this] { decode(ahead_); });
}

void LazRecords::load(std::size_t chunk) {
  if (decoding_.valid()) decoding_.get();
  if (ahead_.has(chunk)) {
    std::swap(now_, ahead_);
  } else {
    gather(now_, chunk);
    decode(now_);
  }
  ahead_.count = 0;
  lookAhead(now_.first + now_.count);
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
  if (!now_.has(chunk)) {
    if (max < kFewPoints || isLarge(chunks_[chunk])) return readPiece(chunk, max);
    load(chunk);
  }
  return serve(now_.slots[chunk - now_.first], max);
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
