#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/OutputFile.h"
#include "host/mesh/SpaceMesh.h"

namespace Meseta47::host {

/// Told, now and then, how many vertices, tetrahedra or faces of how many are written; may throw to stop.
using WriteStep = std::function<void(std::uint64_t, std::uint64_t)>;

/// One for each format. What stands where is told in docs/formats.md. Throw FileError when the disk refuses it.
void writeVtu(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step);
void writeMedit(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step);
void writeGmsh(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step);
/// The boundary of the mesh alone, with the vertices that are on it.
void writeHullPly(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step);

using SpaceWriter = void (*)(SpaceMesh const&, OutputFile&, WriteStep const&);

/// The writer for the extension of a name. Throws UsageError for one that no format has.
[[nodiscard]] SpaceWriter spaceWriterFor(std::string const& output);

}  // namespace Meseta47::host
