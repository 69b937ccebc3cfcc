// VTK's unstructured grid in XML, its arrays raw and appended: what ParaView reads fastest, and exactly.
#include <bit>

#include "host/mesh/BlockOutput.h"
#include "host/mesh/SpaceWriters.h"

namespace Meseta47::host {

namespace {

static_assert(std::endian::native == std::endian::little, "values are put into the file as they stand");

constexpr std::uint8_t kVtkTetra = 10;

/// The line of an array in the head. Each array stands behind its length in bytes, 8 bytes long.
class ArrayLines {
 public:
  explicit ArrayLines(BlockOutput& out) : out_(out) {}
  void add(char const* type, char const* name, unsigned components, std::uint64_t bytes) {
    out_.print("<DataArray type=\"{}\" Name=\"{}\" NumberOfComponents=\"{}\" format=\"appended\" offset=\"{}\"/>\n",
               type, name, components, offset_);
    offset_ += sizeof(std::uint64_t) + bytes;
  }

 private:
  BlockOutput& out_;
  std::uint64_t offset_ = 0;
};

void writeHead(BlockOutput& out, std::uint64_t points, std::uint64_t cells) {
  ArrayLines arrays(out);
  out.print(
      "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
      "header_type=\"UInt64\">\n<UnstructuredGrid>\n<Piece NumberOfPoints=\"{}\" NumberOfCells=\"{}\">\n<Points>\n",
      points, cells);
  arrays.add("Float64", "Points", 3, 24 * points);
  out.print("</Points>\n<PointData>\n");
  arrays.add("UInt16", "intensity", 1, 2 * points);
  arrays.add("UInt8", "classification", 1, points);
  out.print("</PointData>\n<Cells>\n");
  arrays.add("Int64", "connectivity", 1, 32 * cells);
  arrays.add("Int64", "offsets", 1, 8 * cells);
  arrays.add("UInt8", "types", 1, cells);
  out.print("</Cells>\n</Piece>\n</UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_");
}

void writePoints(SpaceMesh const& mesh, BlockOutput& out) {
  const std::uint64_t points = mesh.vertices.size();
  out.put(24 * points);
  for (ScaledPoint const& p : mesh.vertices) out.put(mesh.place(p));
  out.put(2 * points);
  for (ScaledPoint const& p : mesh.vertices) out.put(p.intensity);
  out.put(points);
  for (ScaledPoint const& p : mesh.vertices) out.put(p.classification);
}

}  // namespace

void writeVtu(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step) {
  const std::uint64_t cells = mesh.tetrahedra;
  BlockOutput out(file);
  writeHead(out, mesh.vertices.size(), cells);
  writePoints(mesh, out);
  std::uint64_t done = 0;
  out.put(32 * cells);
  mesh.forEachBlock([&](std::span<Tetrahedron const> block) {
    for (Tetrahedron const& t : block) {
      for (const std::uint32_t v : t) out.put(std::int64_t{v});
    }
    step(done += block.size(), cells);
  });
  out.put(8 * cells);
  for (std::uint64_t i = 1; i <= cells; ++i) out.put(static_cast<std::int64_t>(4 * i));
  out.put(cells);
  for (std::uint64_t i = 0; i < cells; ++i) out.put(kVtkTetra);
  out.print("\n</AppendedData>\n</VTKFile>\n");
  out.flush();
}

}  // namespace Meseta47::host
