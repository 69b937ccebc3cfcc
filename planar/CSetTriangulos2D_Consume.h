#pragma once

#include <memory>
#include <utility>

#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

/// Calls `trabajo(triangulo)` for each triangle of the set's own list, in order, and then frees them all, in one
/// exchange with the thread that made them. Those of an open set are cut off from the living mesh before. What
/// `trabajo` throws (no memory) leaves the set owning its triangles.
template <class F>
void CSetTriangulos2D::ConsumeLista(F&& trabajo) {
  if (!cerrado) Desengancha();
  for (CTriangulo2D* t = primero; t != nullptr; t = t->sig) trabajo(*t);
  CTriangulo2D::DestruyeLista(std::exchange(primero, nullptr));
  ultimo = nullptr;
  cantidad = 0;
}

/// The same for the whole subtree: the own list first, then each child in order. The children go as well.
template <class F>
void CSetTriangulos2D::Consume(F&& trabajo) {
  ConsumeLista(trabajo);
  const std::unique_ptr<CSetTriangulos2D[]> susHijos(std::exchange(hijos, nullptr));
  for (unsigned i = 0; susHijos != nullptr && i < kHijos; ++i) susHijos[i].Consume(trabajo);
}

}  // namespace Meseta47
