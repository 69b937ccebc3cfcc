#pragma once

#include <algorithm>
#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/las/ByteSource.h"
#include "host/las/LasHeader.h"
#include "host/las/LasPoint.h"
#include "host/las/LasVlr.h"
#include "host/laz/Copc.h"
#include "host/laz/LazRecords.h"

namespace Meseta47::host {

/// What of a file is read: all of it, unless something is asked for.
struct LasReading {
  LasFields fields = LasFields::all;
  bool partial = false;         ///< of a file that is cut short, what there is before the cut, in whole chunks
  std::optional<Bounds> box{};  ///< leave out what an octree knows to be outside; others are read as a whole
  double resolution = 0;        ///< above 0: the levels of an octree down to points so far apart
};

/// The error for a resolution where there are no levels to choose among.
[[noreturn]] void failWithoutLevels(std::string const& file);

/// Reads a LAS file, plain or compressed (LAZ): versions 1.0 to 1.4, point formats 0 to 10, extra bytes, both kinds of
/// variable length records.
///
/// The constructor checks the file against its header, so that afterwards every count and place lies within the file;
/// whatever does not is a FileError. What compressed points hold shows when they are read. A file without points is a
/// valid empty cloud. Used by one thread at a time.
class LasReader {
 public:
  /// Points of a batch when the caller has no wish: 1.25 MiB of the shortest records.
  static constexpr std::size_t kBatch = 65536;

  explicit LasReader(std::unique_ptr<ByteSource> source, LasReading const& reading = {});
  explicit LasReader(std::string const& path, LasReading const& reading = {})
      : LasReader(std::make_unique<FileSource>(path), reading) {}
  LasReader(LasReader const&) = delete;  // what reads ahead knows where it is
  LasReader& operator=(LasReader const&) = delete;

  /// The header; its count of points is that of the points that will be read.
  [[nodiscard]] LasHeader const& header() const { return header_; }
  /// Points that the header promises and that a cut took away. None, unless parts are read.
  [[nodiscard]] std::uint64_t missing() const { return missing_; }
  [[nodiscard]] std::string const& name() const { return source_->name(); }
  [[nodiscard]] std::uint64_t fileSize() const { return source_->size(); }

  /// How the points are compressed; none when they are not.
  [[nodiscard]] std::optional<LazScheme> compression() const {
    return laz_ ? std::optional(laz_->scheme()) : std::nullopt;
  }
  /// The octree of a file that has one (COPC). Reads its pages anew at each call.
  [[nodiscard]] std::optional<Copc> octree() const { return readCopc(bytes(), header_, vlrs_); }

  /// Bytes of a record beyond those of its format.
  [[nodiscard]] std::size_t extraBytes() const;

  /// The variable length records in the order of the file, extended ones last.
  [[nodiscard]] std::vector<LasVlr> const& vlrs() const { return vlrs_; }
  [[nodiscard]] std::vector<std::uint8_t> vlrData(LasVlr const& vlr) const;

  /// The reference system as well known text; empty when the file has none.
  [[nodiscard]] std::string wkt() const;
  /// The reference system as GeoTIFF keys; none when the file has no directory of them.
  [[nodiscard]] std::optional<GeoKeys> geoKeys() const;

  /// Replaces `points` by the next ones in the order of the file, up to `max` and to 8 MiB of records, and returns how
  /// many: 0 only after the last one. Throws FileError when the file has become shorter since it was opened, and for
  /// compressed points that are damaged.
  std::size_t readBatch(std::vector<LasPoint>& points, std::size_t max = kBatch);

  /// The same without decoding: afterwards the records stand in rawRecords().
  std::size_t readRecords(std::size_t max = kBatch);

  /// The records of the last batch as a plain file holds them, recordLength bytes each, until the next one is read.
  [[nodiscard]] std::span<std::uint8_t const> rawRecords() const { return records_; }

  /// Makes a point the next one to be read; the number of points means the end.
  void seek(std::uint64_t point) { next_ = std::min(point, header_.pointCount); }
  [[nodiscard]] std::uint64_t position() const { return next_; }

  /// The last point, up to this one, from which reading begins at no cost.
  [[nodiscard]] std::uint64_t goodStart(std::uint64_t point) { return laz_ ? laz_->chunkStart(point) : point; }

 private:
  [[nodiscard]] LasVlr const* find(std::string_view user, unsigned record) const;
  [[nodiscard]] std::unique_ptr<LazRecords> openCompressed(LasFields fields) const;
  void choose(LasReading const& reading);
  void readPlain(std::size_t count);
  void readAhead(std::size_t count);
  /// The bytes of the file, once nothing is read ahead.
  [[nodiscard]] ByteSource& bytes() const;

  std::unique_ptr<ByteSource> source_;
  LasHeader header_;
  std::uint64_t missing_;  // until the constructor has read on, all that are promised
  std::vector<LasVlr> vlrs_;
  std::unique_ptr<LazRecords> laz_;  // of a compressed file
  std::vector<std::uint8_t> raw_;    // of a plain one
  std::span<std::uint8_t const> records_;
  std::uint64_t next_ = 0;

  // Of a plain file that is read block by block, the next one, on a thread of its own:
  std::vector<std::uint8_t> ahead_;
  std::uint64_t aheadFirst_ = 0;
  std::future<std::size_t> aheadGot_;  // last: it ends before the rest goes
};

}  // namespace Meseta47::host
