#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/OutputFile.h"
#include "host/las/LasHeader.h"
#include "host/las/LasPoint.h"
#include "host/las/LasVlr.h"
#include "host/laz/LazRecordWriter.h"

namespace Meseta47::host {

/// What a new LAS file is to be. Version 1.4 takes formats 0 to 10, 1.3 formats 0 to 5, 1.2 formats 0 to 3, and 1.0 and
/// 1.1 formats 0 and 1.
struct LasWriterOptions {
  unsigned versionMinor = 4;
  unsigned pointFormat = 6;
  std::array<double, 3> scale{0.001, 0.001, 0.001};
  std::array<double, 3> offset{};
  std::uint16_t extraBytes = 0;                        ///< of each record, beyond those of the format
  bool compressed = false;                             ///< LAZ
  std::uint32_t chunkPoints = LazScheme::kUsualChunk;  ///< of compressed points, in a chunk; or LazScheme::kVariable
  std::uint16_t fileSourceId = 0;
  std::uint16_t globalEncoding = 0;
  std::uint16_t creationDay = 0;  ///< of the year. No clock is read: the same points give the same bytes.
  std::uint16_t creationYear = 0;
  std::string systemId;
  std::string software = "urdimbre";
  std::vector<LasVlrRecord> vlrs;
  std::vector<LasVlrRecord> evlrs;  ///< version 1.4 alone
};

/// Writes a new LAS file, plain or compressed, point by point. The header's counts and bounds are those of the points
/// that were given, put in at the end; nothing stands under the file's name before finish(). Failures are FileErrors.
class LasWriter {
 public:
  /// Throws FileError also for a version that does not have the format.
  LasWriter(std::string const& path, LasWriterOptions options);

  /// Adds a point. `extra` are its extra bytes: as many as the options say, or none for zeros. A class above 31 in
  /// formats 0 to 5 is an error, since it would come back as another one.
  void add(LasPoint const& point, std::span<std::uint8_t const> extra = {});

  /// Ends a chunk, where compressed chunks are of varying size.
  void endChunk();

  /// Writes the extended records and the final header, and gives the file its name.
  void finish();

  [[nodiscard]] std::uint64_t points() const { return header_.pointCount; }

 private:
  void writeRecords(std::vector<LasVlrRecord> const& records, bool extended);
  void takeNote(LasPoint const& point);
  void flush();

  LasWriterOptions options_;
  LasHeader header_;
  OutputFile file_;
  std::unique_ptr<LazRecordWriter> laz_;
  std::array<std::int32_t, 3> least_, most_;
  std::vector<std::uint8_t> block_;  // records on their way out
};

}  // namespace Meseta47::host
