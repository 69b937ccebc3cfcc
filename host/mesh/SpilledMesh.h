#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/HostApp.h"
#include "host/mesh/HullFill.h"
#include "host/mesh/SpaceMesh.h"
#include "model/drawing/CDibujo.h"

class CFile;

namespace Meseta47 {
class CTriangulacion3D;
}

namespace Meseta47::host {

/// The mesh of a run in space without the frame, up to the convex hull of the points: the tetrahedra that the run
/// spilled or kept, without those that touch the frame, and behind them what a frame so near kept from the mesh.
class SpilledMesh {
 public:
  /// `file` holds records of four numbers of 32 bits, as a run in space leaves it; `drawing` the points with the
  /// numbers that it gave them, up to `numbers`, and is emptied. The file must stay as long as this object.
  ///
  /// Throws Failure when the disk fails or when the volumes of the tetrahedra are not, to the last unit, that of the
  /// convex hull; and Cancelled. Reads the file once; 21 bytes a point, and the cost of HullFill.
  SpilledMesh(CFile& file, CDibujo<int>& drawing, std::uint32_t numbers, HostApp& app);
  /// The same of a mesh that is kept, or was read from the file `name`, which messages tell of. Must stay as well.
  SpilledMesh(CTriangulacion3D& kept, std::string const& name, HostApp& app);
  SpilledMesh(SpilledMesh const&) = delete;
  SpilledMesh& operator=(SpilledMesh const&) = delete;

  [[nodiscard]] SpaceMesh const& mesh() const { return mesh_; }
  /// How many of its tetrahedra the run had not.
  [[nodiscard]] std::uint64_t filled() const { return fill_.tetrahedra().size(); }
  /// In cubic units of the input.
  [[nodiscard]] double volume() const;

 private:
  using Record = std::array<std::int32_t, 4>;
  using Take = std::function<void(Record const&)>;
  void takePoints(CDibujo<int>& drawing, std::uint32_t numbers);
  void take(CCoor3D<int> const& point);
  void build(std::uint64_t records, HostApp& app);
  void readOnce(std::uint64_t records, HostApp& app);
  void numberVertices();
  [[nodiscard]] Entero128 missingVolume() const;
  [[nodiscard]] bool takeBack(std::vector<std::array<std::int32_t, 3>> const& walls);
  void fillHull();
  [[nodiscard]] Entero128 volumeOf(Record const& record) const;
  [[nodiscard]] CCoor3D<int> pointOf(std::int32_t number) const;
  [[nodiscard]] Tetrahedron upright(Record const& record) const;

  std::function<void(Take const&)> forEachRecord_;
  std::string amiss_;    // what it means that the hull is not filled
  bool inTurn_ = false;  // numbers tell the order in which points went in
  SpaceMesh mesh_;
  std::vector<std::uint32_t> vertexOf_;  // of each number: its place in mesh_.vertices
  std::vector<bool> used_;               // numbers that are in the mesh
  std::vector<bool> taken_;              // records that were there and are filled anew
  std::uint64_t kept_ = 0;
  Entero128 keptVolume_{0};
  HullFill fill_;
};

}  // namespace Meseta47::host
