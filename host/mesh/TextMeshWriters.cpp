// Meshes as text, for Medit and those that read its files, and for Gmsh; the hull as PLY.
#include <algorithm>
#include <fmt/format.h>
#include <limits>

#include "host/Failure.h"
#include "host/Parsing.h"
#include "host/mesh/BlockOutput.h"
#include "host/mesh/SpaceWriters.h"

namespace Meseta47::host {

namespace {

/// Writes a coordinate with the decimals that it has.
class Places {
 public:
  explicit Places(SpaceMesh const& mesh) : mesh_(mesh), decimals_(std::max<int>(mesh.seed.precision, 0)) {}
  void print(BlockOutput& out, ScaledPoint const& p) const {
    const auto [x, y, z] = mesh_.place(p);
    out.print("{:.{}f} {:.{}f} {:.{}f}", x, decimals_, y, decimals_, z, decimals_);
  }

 private:
  SpaceMesh const& mesh_;
  int decimals_;
};

}  // namespace

void writeMedit(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step) {
  BlockOutput out(file);
  const Places places(mesh);
  out.print("MeshVersionFormatted 2\nDimension 3\nVertices\n{}\n", mesh.vertices.size());
  for (ScaledPoint const& p : mesh.vertices) {
    places.print(out, p);
    out.print(" {}\n", p.classification);
  }
  out.print("Tetrahedra\n{}\n", mesh.tetrahedra);
  std::uint64_t done = 0;
  mesh.forEachBlock([&](std::span<Tetrahedron const> block) {
    for (auto const& [a, b, c, d] : block) out.print("{} {} {} {} 0\n", a + 1, b + 1, c + 1, d + 1);
    step(done += block.size(), mesh.tetrahedra);
  });
  out.print("End\n");
  out.flush();
}

void writeGmsh(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step) {
  BlockOutput out(file);
  const Places places(mesh);
  out.print("$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n{}\n", mesh.vertices.size());
  for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
    out.print("{} ", i + 1);
    places.print(out, mesh.vertices[i]);
    out.print("\n");
  }
  out.print("$EndNodes\n$Elements\n{}\n", mesh.tetrahedra);
  std::uint64_t done = 0;
  mesh.forEachBlock([&](std::span<Tetrahedron const> block) {
    std::uint64_t number = done;
    // Type 4 is a tetrahedron; its two tags, physical and elementary entity, are 1.
    for (auto const& [a, b, c, d] : block) {
      out.print("{} 4 2 1 1 {} {} {} {}\n", ++number, a + 1, b + 1, c + 1, d + 1);
    }
    step(done += block.size(), mesh.tetrahedra);
  });
  out.print("$EndElements\n");
  out.flush();
}

void writeHullPly(SpaceMesh const& mesh, OutputFile& file, WriteStep const& step) {
  constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
  std::vector<std::uint32_t> placeOf(mesh.vertices.size(), kNone);
  for (HullFace const& face : mesh.hull) {
    for (const std::uint32_t v : face) placeOf[v] = 0;
  }
  std::uint32_t vertices = 0;
  for (std::uint32_t& place : placeOf) {
    if (place == 0) place = vertices++;
  }
  BlockOutput out(file);
  out.print(
      "ply\nformat binary_little_endian 1.0\nelement vertex {}\nproperty double x\nproperty double y\nproperty double "
      "z\nelement face {}\nproperty list uchar uint vertex_indices\nend_header\n",
      vertices, mesh.hull.size());
  for (std::size_t v = 0; v < placeOf.size(); ++v) {
    if (placeOf[v] != kNone) out.put(mesh.place(mesh.vertices[v]));
  }
  for (HullFace const& face : mesh.hull) {
    out.put(std::uint8_t{3});
    for (const std::uint32_t v : face) out.put(placeOf[v]);
  }
  out.flush();
  step(mesh.hull.size(), mesh.hull.size());
}

SpaceWriter spaceWriterFor(std::string const& output) {
  const std::string extension = extensionOf(output);
  if (extension == ".vtu") return writeVtu;
  if (extension == ".mesh") return writeMedit;
  if (extension == ".msh") return writeGmsh;
  if (extension == ".ply") return writeHullPly;
  throw UsageError(
      fmt::format("{}: no format has the extension \"{}\": use .vtu (ParaView), .mesh (Medit), .msh (Gmsh 2.2), "
                  ".tin3d (to be read again) or .ply (the hull alone)",
                  output, extension));
}

}  // namespace Meseta47::host
