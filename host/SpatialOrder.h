#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47::host {

/// A point of a cloud in scaled integers, in half the memory that a drawing takes for it.
struct ScaledPoint {
  int x, y, z;
  std::uint16_t intensity;
  std::uint8_t classification;

  explicit operator CCoor3D<int>() const {
    CCoor3D<int> p(x, y, z, 0);
    p.intensidad = intensity;
    p.clasificacion = classification;
    return p;
  }
};

/// In which order points stand that share a finest cell of the curve.
enum class Ties {
  asTheyCome,  ///< that of the input
  /// x, then y, and those of one place in plan as they come: how a file is sorted does not show but there.
  byPosition,
};

/// Whether points come as two threads want them that insert at once: those of either half in turns.
enum class Halves { asTheyCome, inTurns };

/// The order of the points along a Hilbert curve over the cells that a run divides their extents into, so that cells
/// are finished one after another and hardly anything of the mesh is unfinished at a time. Element i of the result is
/// the index of the i-th point. O(n), on all processors, and a sort of the points of each finest cell where they are to
/// be in order; the result does not depend on the number of processors.
template <class Point>
std::vector<std::uint32_t> hilbertOrder(std::vector<Point> const& points, Ties ties = Ties::asTheyCome);

/// As long as a wait of one thread for the other, as a rule; 16 and 256 did as well.
constexpr std::size_t kStretch = 64;

/// The order that hilbertOrder gave, for two threads that insert at once: of each half of the extents in turns so many
/// points, each half in its own order (CTriangulacion2D::DosDesde). Where one half has no more, the rest of the other
/// follows. Orders of few points, and of such as two threads don't take, stay as they are; neither the number of
/// processors nor of threads matters, so that the outcome of a run does not depend on them.
template <class Point>
void alternateHalves(std::vector<std::uint32_t>& order, std::vector<Point> const& points,
                     std::size_t stretch = kStretch);

/// Whether points that follow each other lie far apart, as they don't in the order of a flight: farther than a
/// twentieth of the longer side of their box on average, of a sample.
[[nodiscard]] bool jumpsAbout(std::vector<ScaledPoint> const& points);

/// The points, or what is kept beside them, in that order: element i is the one that stands at `order[i]`, made a `To`.
template <class To, class From>
std::vector<To> inOrder(std::vector<From> const& items, std::vector<std::uint32_t> const& order);

template <class T>
void applyOrder(std::vector<T>& items, std::vector<std::uint32_t> const& order) {
  items = inOrder<T>(items, order);
}

extern template std::vector<std::uint32_t> hilbertOrder(std::vector<CCoor3D<int>> const&, Ties);
extern template std::vector<std::uint32_t> hilbertOrder(std::vector<ScaledPoint> const&, Ties);
extern template void alternateHalves(std::vector<std::uint32_t>&, std::vector<CCoor3D<int>> const&, std::size_t);
extern template void alternateHalves(std::vector<std::uint32_t>&, std::vector<ScaledPoint> const&, std::size_t);
extern template std::vector<CCoor3D<int>> inOrder(std::vector<CCoor3D<int>> const&, std::vector<std::uint32_t> const&);
extern template std::vector<CCoor3D<int>> inOrder(std::vector<ScaledPoint> const&, std::vector<std::uint32_t> const&);
extern template std::vector<std::uint32_t> inOrder(std::vector<std::uint32_t> const&,
                                                   std::vector<std::uint32_t> const&);
extern template std::vector<std::array<std::uint8_t, 3>> inOrder(std::vector<std::array<std::uint8_t, 3>> const&,
                                                                 std::vector<std::uint32_t> const&);

}  // namespace Meseta47::host
