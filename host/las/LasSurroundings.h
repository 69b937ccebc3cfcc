#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/OutputFile.h"
#include "host/las/ByteSource.h"
#include "host/las/LasReader.h"
#include "host/laz/LazScheme.h"

namespace Meseta47::host {

/// What stands before and after the points of a LAS file, for a copy of it. Where neither file is compressed, that is
/// the same byte for byte. Else the record that tells of compression goes or is put in behind the others, records of a
/// spatial order that the copy does not have go (COPC), and the places in the header follow; all other bytes stay.
class LasSurroundings {
 public:
  /// Of a copy that is compressed in a scheme, or not at all. Reader and source, both of the same file, outlive this.
  LasSurroundings(LasReader const& reader, ByteSource& source, std::optional<LazScheme> const& scheme);

  /// Writes header and records, up to where the points begin.
  void writeBefore(OutputFile& to) const;

  /// Writes what follows the points, at the position, and puts its place into the header.
  void writeAfter(OutputFile& to) const;

 private:
  void recode(std::optional<LazScheme> const& scheme);
  void writeRecordsAfter(OutputFile& to) const;

  LasReader const& reader_;
  ByteSource& source_;
  bool asItIs_;
  std::vector<std::uint8_t> before_;
};

}  // namespace Meseta47::host
