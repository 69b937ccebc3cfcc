#pragma once

#include <vector>

#include "host/las/ByteSource.h"
#include "host/las/LasHeader.h"
#include "host/las/LasVlr.h"

namespace Meseta47::host {

/// The header of a LAS file, once every claim that it makes has been checked against the file. Throws FileError with
/// the first that does not hold.
[[nodiscard]] LasHeader readCheckedHeader(ByteSource& source);

/// The variable length records of a file with such a header, each within the file. Points that are not compressed are
/// all there; those that are, though the header does not say so, are marked in it. With `partial`, a file that is cut
/// short is taken as far as it goes: points that are not there are taken off the header's count, and so are records.
[[nodiscard]] std::vector<LasVlr> readCheckedVlrs(ByteSource& source, LasHeader& header, bool partial = false);

/// The error for a point that the file should hold and does not. `found` is what there is of it.
[[noreturn]] void failAtCutPoint(ByteSource const& source, LasHeader const& header, std::uint64_t point,
                                 std::uint64_t found);

}  // namespace Meseta47::host
