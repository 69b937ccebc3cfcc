#pragma once

#include <cstdint>
#include <future>
#include <memory>
#include <span>
#include <vector>

#include "host/OutputFile.h"
#include "host/laz/ChunkCodec.h"
#include "host/laz/ChunkTable.h"

namespace Meseta47::host {

/// Writes the points of a compressed file: chunks, and behind them their table. Chunks are encoded side by side by all
/// processors while the caller makes the next ones; it holds two of them a processor, encoded and not. The bytes
/// depend on the records alone.
///
/// Used by one thread at a time; the file is written in calls to this alone.
class LazRecordWriter {
 public:
  /// Begins at the file's position, which is where the points are to begin. The file outlives this.
  LazRecordWriter(OutputFile& file, LazScheme const& scheme);
  LazRecordWriter(LazRecordWriter const&) = delete;
  LazRecordWriter& operator=(LazRecordWriter const&) = delete;
  ~LazRecordWriter();

  /// Adds whole records. Where the scheme has chunks of varying size, they all belong to the current one.
  void add(std::span<std::uint8_t const> records);

  /// Ends a chunk of varying size; one without records is none.
  void endChunk();

  /// Writes what is left, and the table. The file's position is behind it.
  void finish();

 private:
  struct Slot {
    std::unique_ptr<laz::ChunkEncoder> encoder;
    std::vector<std::uint8_t> records, bytes;
  };
  using Group = std::vector<Slot>;

  void next();
  void encode();
  void writeEncoded();

  OutputFile& file_;
  LazScheme scheme_;
  std::uint64_t start_;
  std::size_t chunkBytes_;  // of records
  std::size_t groupSize_;
  Group filling_, encoding_;
  std::size_t current_ = 0;  // of those being filled
  std::size_t encoded_ = 0;  // how many are being encoded
  std::future<void> work_;
  std::vector<LazChunk> chunks_;
};

}  // namespace Meseta47::host
