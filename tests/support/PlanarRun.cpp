#include "support/PlanarRun.h"

#include <limits>

#include "model/drawing/CSetPuntos.h"
#include "model/threads/Codigos.h"

namespace Meseta47::test {

namespace {

std::int32_t NumberAt(std::string const& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t b = 4; b-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[at + b]);
  return static_cast<std::int32_t>(value);
}

/// Numbers given by a run, changed for the places of the points, from 1.
std::vector<support::Triangle> ByPlace(std::vector<support::Triangle> triangles, CLinea<int> const& cloud) {
  std::vector<std::int32_t> placeOf;
  for (int i = 0; i < cloud.NPuntos(); ++i) {
    const auto number = static_cast<std::size_t>(cloud.Punto(i).num);
    if (placeOf.size() <= number) placeOf.resize(number + 1, 0);
    placeOf[number] = i + 1;
  }
  placeOf[0] = 0;
  constexpr std::int32_t kNobody = std::numeric_limits<std::int32_t>::max();
  for (support::Triangle& t : triangles) {
    for (std::int32_t& vertex : t) {
      if (vertex <= 0) continue;
      const auto number = static_cast<std::size_t>(vertex);
      vertex = number < placeOf.size() && placeOf[number] != 0 ? placeOf[number] : kNobody;
    }
  }
  return triangles;
}

}  // namespace

std::vector<support::Triangle> RecordsOf(std::string const& bytes) {
  std::vector<support::Triangle> records;
  for (std::size_t at = 0; at + 12 <= bytes.size(); at += 12) {
    records.push_back({NumberAt(bytes, at), NumberAt(bytes, at + 4), NumberAt(bytes, at + 8)});
  }
  return records;
}

CSetPuntos<int> CloudOf(std::vector<support::Point> const& points, wchar_t const* code) {
  std::vector<CCoor3D<int>> stored;
  stored.reserve(points.size());
  for (support::Point const& p : points) stored.emplace_back(p.x, p.y, p.z, 0);
  CSetPuntos<int> cloud{CString(code)};
  cloud.CLinea<int>::Asigna(std::move(stored));
  return cloud;
}

CDibujo<int> DrawingOf(std::vector<support::Point> const& points) {
  CDibujo<int> drawing;
  drawing.Inserta(CloudOf(points));
  return drawing;
}

Linked Collected(OpenTriangulation& triangulation, CLinea<int> const& cloud, std::vector<support::Point> points) {
  Linked linked;
  linked.summary = triangulation.Resumen();
  linked.mesh.points = std::move(points);
  for (CCoor3D<int> const& corner : triangulation.esquinas) linked.mesh.corners.push_back({corner.x, corner.y, 0});
  linked.bytes = triangulation.SpilledBytes();
  linked.mesh.triangles = ByPlace(RecordsOf(linked.bytes), cloud);
  triangulation.BorraFicheroTemporal();
  linked.code = kHecho;
  return linked;
}

Linked LinkCloud(std::vector<support::Point> const& points) {
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation triangulation;
  if (const int code = triangulation.Link(drawing); code != kHecho) {
    return {code, {}, {points, {}, {}}, triangulation.Resumen()};
  }
  return Collected(triangulation, drawing[0], points);
}

std::uint64_t HashOf(std::string const& bytes) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
  return hash;
}

}  // namespace Meseta47::test
