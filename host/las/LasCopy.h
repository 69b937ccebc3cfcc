#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace Meseta47::host {

/// Told of the points done and of all of them; false asks to stop.
using CopyProgress = std::function<bool(std::uint64_t done, std::uint64_t points)>;

/// Throws FileError for a class that points of the format cannot have: one above 31 in formats 0 to 5.
void requireClassFits(std::string const& file, unsigned pointFormat, unsigned wanted);

/// Writes a copy of a LAS file in which point i, in the order of the file, has the class `classes[i]`. Everything else
/// is the same byte for byte: header, records before and after the points, order, extra bytes, and the flags that
/// formats 0 to 5 keep beside the class. The two names may be one.
///
/// A copy named .laz is compressed, any other is plain, whatever the file was: then bytes are the same as far as they
/// do not tell of compression or of places in the file (LasSurroundings.h).
///
/// False when the progress asked to stop; then, and after a FileError, no file has changed. Throws FileError when a
/// class above 31 is asked for in formats 0 to 5, or when there is not one class for each point.
bool copyWithClasses(std::string const& from, std::string const& to, std::span<std::uint8_t const> classes,
                     CopyProgress const& progress = {});

}  // namespace Meseta47::host
