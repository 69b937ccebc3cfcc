#pragma once

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "model/terrain/CTIN.h"
#include "model/threads/Codigos.h"
#include "support/Canonical.h"
#include "support/PlanarRun.h"
#include "support/PlanarScene.h"

namespace Meseta47::test {

/// Points that fill the plane without four of them on one circle.
inline std::vector<support::Point> Scatter(std::size_t n) {
  return support::family(support::Family::Uniform, n, 20'260);
}

/// A set of points of one code, at places.
inline CSetPuntos<int> CloudAt(std::vector<At> const& places, wchar_t const* code = L"cloud") {
  std::vector<support::Point> points;
  for (At const& p : places) points.push_back({p.x, p.y, p.z});
  return CloudOf(points, code);
}
inline CDibujo<int> DrawingAt(std::vector<At> const& places) {
  CDibujo<int> drawing;
  drawing.Inserta(CloudAt(places));
  return drawing;
}
inline CLinea<int> LineAt(std::vector<At> const& places, wchar_t const* code = L"line") {
  CLinea<int> line{CString(code)};
  for (At const& p : places) line << CCoor3D<int>(p.x, p.y, p.z, 0);
  return line;
}

/// A model that has points and nothing else.
inline CTIN ModelOf(std::vector<support::Point> const& points) {
  CTIN model(0, 0, CDataSemilla());
  CSetPuntosMdt set(0, 0);
  for (support::Point const& p : points) set.push_back(CPuntoTIN(CCoor3D<int>(p.x, p.y, p.z, 0)), false);
  model.SetPuntosMdt(set);
  return model;
}

inline CDigiTab Codes(std::vector<wchar_t const*> const& codes) {
  CDigiTab table;
  for (wchar_t const* code : codes) {
    table.Inserta(CElementoDigiTab(ENTIDAD_LINEA, code, 70, 70, 70, 0, 0, L"", 1), false);
  }
  return table;
}

inline std::vector<int> NumbersOf(CLinea<int> const& entity) {
  std::vector<int> numbers;
  for (CCoor3D<int> const& p : entity.Puntos()) numbers.push_back(p.num);
  return numbers;
}

/// Points, triangles, links, outline and figures of a model, to be compared as a whole.
inline std::string Described(CTIN const& model) {
  std::string text = std::to_string(model.longitudMaxima) + ' ' + std::to_string(model.estado) + '\n';
  const auto add = [&text](auto... numbers) { ((text += std::to_string(numbers) + ' '), ...); };
  for (CPuntoTIN const& p : model.puntos) add(p.x, p.y, p.z, p.num, p.intensidad);
  for (std::uint32_t i = 0; i < model.Cantidad(); ++i) {
    for (const std::uint32_t v : model.Vertices(i)) add(v);
    for (const std::uint32_t v : model.Vecinos(i)) add(v);
  }
  for (auto const& ring : model.Limite()) {
    text += '\n';
    for (const std::uint32_t v : ring) add(v);
  }
  return text;
}

/// Triangles of a model as point indices from 1, in canonical form.
inline std::vector<support::Triangle> TrianglesOf(CTIN const& model) {
  std::vector<support::Triangle> triangles;
  for (std::uint32_t i = 0; i < model.Cantidad(); ++i) {
    Terna const& t = model.Vertices(i);
    triangles.push_back({static_cast<int>(t[0]) + 1, static_cast<int>(t[1]) + 1, static_cast<int>(t[2]) + 1});
  }
  return support::canonicalSet(triangles);
}

/// A mesh made by hand: the frame of a box and no point yet.
inline void Frame(OpenTriangulation& t, int minX, int minY, int maxX, int maxY) {
  t.esquinas[0] = CCoor3D<int>(minX, minY, 0, -1);
  t.esquinas[1] = CCoor3D<int>(minX, maxY, 0, -2);
  t.esquinas[2] = CCoor3D<int>(maxX, maxY, 0, -3);
  t.esquinas[3] = CCoor3D<int>(maxX, minY, 0, -4);
  t.EstableceDivisiones(t.divisiones, t.setRaiz);
  t.setRaiz.Inserta(CTriangulo2D(&t.esquinas[0], &t.esquinas[1], &t.esquinas[2]));
  t.setRaiz.Inserta(CTriangulo2D(&t.esquinas[0], &t.esquinas[2], &t.esquinas[3]));
}

/// The living triangles of a tree of sets as they run, in canonical form.
inline void Collect(CSetTriangulos2D const& set, std::vector<support::Triangle>& triangles) {
  for (CTriangulo2D const* t = set.primero; t != nullptr; t = t->Sig()) {
    triangles.push_back({t->N1(), t->N2(), t->N3()});
  }
  for (int i = 0; set.hijos != nullptr && i < 4; ++i) Collect(set.hijos[i], triangles);
}
inline std::vector<support::Triangle> Living(OpenTriangulation const& t) {
  std::vector<support::Triangle> triangles;
  Collect(t.setRaiz, triangles);
  return support::canonicalSet(triangles);
}

}  // namespace Meseta47::test
