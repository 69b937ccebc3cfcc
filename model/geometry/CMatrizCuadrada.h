#pragma once

#include <cstddef>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// A square matrix of doubles.
class URDIMBRE_API CMatrizCuadrada {
 public:
  /// The identity of so many rows.
  explicit CMatrizCuadrada(std::size_t filas);

  [[nodiscard]] std::size_t Orden() const { return orden; }
  [[nodiscard]] double operator()(std::size_t fila, std::size_t columna) const { return v[fila * orden + columna]; }
  [[nodiscard]] double& operator()(std::size_t fila, std::size_t columna) { return v[fila * orden + columna]; }

  /// Product of two matrices of the same order.
  [[nodiscard]] CMatrizCuadrada operator*(CMatrizCuadrada const& m) const;

  /// Makes it its own inverse, by elimination with partial pivoting. False, with nothing changed, for a singular one.
  bool Invierte();

  /// Eigenvalues of a symmetric matrix, ascending, and its eigenvectors, one a column, in the same order. By cyclic
  /// Jacobi rotations (Golub and Van Loan, Matrix Computations, 8.5), which find small eigenvalues to full precision.
  void Autovalores(std::vector<double>& valores, CMatrizCuadrada& vectores) const;

  /// The matrix as a map of points: of order 3 over (x, y, z), of order 4 over (x, y, z, 1), whose last coordinate
  /// divides the others. A matrix of another order changes nothing.
  [[nodiscard]] CCoor3D<double> Aplica(CCoor3D<double> const& p) const;

 private:
  std::size_t orden;
  std::vector<double> v;
};

}  // namespace Meseta47
