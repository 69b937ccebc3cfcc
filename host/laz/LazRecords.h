#pragma once

#include <cstdint>
#include <deque>
#include <future>
#include <memory>
#include <span>
#include <vector>

#include "host/las/ByteSource.h"
#include "host/laz/ChunkCodec.h"
#include "host/laz/ChunkTable.h"

namespace Meseta47::host {

/// The records of a compressed file, decoded as they are read. The chunks after the one that the caller works with are
/// decoded side by side, one a processor, and the next is begun as soon as the caller moves on. Chunks too large for
/// that are decoded by the calling thread a piece at a time.
///
/// Used by one thread at a time; of the source, nothing is read but in calls to this.
class LazRecords {
 public:
  /// The source outlives this. Where the chunk table is missing or damaged, chunks are looked for when the first record
  /// is asked for.
  LazRecords(ByteSource& source, LasHeader const& header, LazScheme const& scheme, LasFields fields = LasFields::all);
  LazRecords(LazRecords const&) = delete;
  LazRecords& operator=(LazRecords const&) = delete;

  [[nodiscard]] LazScheme const& scheme() const { return scheme_; }

  /// From now on is content with the chunks that are whole, and tells how many points they have: fewer than the header
  /// promises in a file that is cut short.
  std::uint64_t takeWhole();

  /// The chunks, in the order of the file. Throws FileError when the file does not hold all points.
  [[nodiscard]] std::vector<LazChunk> const& chunks();

  /// From now on these chunks alone are read, as if the file had no others. Their `firstPoint` counts on from 0.
  void choose(std::vector<LazChunk> chunks);

  /// The next records, up to `max` and all from one chunk; none at the end. They stay until the next call. Throws
  /// FileError for a chunk that does not decode.
  [[nodiscard]] std::span<std::uint8_t const> read(std::size_t max);

  /// Makes a point the next one to be read.
  void seek(std::uint64_t point) { next_ = point; }
  [[nodiscard]] std::uint64_t position() const { return next_; }

  /// The first point of the chunk that holds this one: reading from there decodes nothing in vain.
  [[nodiscard]] std::uint64_t chunkStart(std::uint64_t point);

 private:
  /// A chunk and what became of it.
  struct Slot {
    std::unique_ptr<laz::ChunkDecoder> decoder;
    LazChunk chunk;
    std::vector<std::uint8_t> bytes, records;
    std::size_t whole = 0;       // points
    std::future<void> decoding;  // the last member: it waits before the others go
  };

  void findChunks();
  [[nodiscard]] std::size_t chunkOf(std::uint64_t point) const;
  [[nodiscard]] bool isLarge(LazChunk const& chunk) const;
  void fetch(Slot& slot, LazChunk const& chunk);
  [[nodiscard]] bool isAhead(std::size_t chunk) const { return chunk - first_ < ahead_.size(); }
  void begin(std::size_t chunk);
  void load(std::size_t chunk);
  void dropAhead(std::size_t count);
  [[nodiscard]] std::span<std::uint8_t const> serve(Slot const& slot, std::size_t max);
  [[nodiscard]] std::span<std::uint8_t const> readPiece(std::size_t chunk, std::size_t max);
  void decodePiece(std::uint64_t points);
  [[noreturn]] void failAt(LazChunk const& chunk, std::uint64_t whole) const;
  [[noreturn]] void failAsCut(std::uint64_t points) const;

  ByteSource& source_;
  std::uint64_t promised_;  // points
  LasHeader header_;
  LazScheme scheme_;
  LasFields fields_;
  std::vector<LazChunk> chunks_;
  bool known_ = false;
  std::uint64_t next_ = 0;
  std::deque<std::unique_ptr<Slot>> ahead_;    // the chunk that is read now, and those after it
  std::size_t first_ = 0;                      // number of the chunk in front
  std::vector<std::unique_ptr<Slot>> spares_;  // their decoders are worth keeping
  Slot piece_;                                 // the chunk that is decoded piece by piece
  std::uint64_t pieceNext_ = 0;
};

}  // namespace Meseta47::host
