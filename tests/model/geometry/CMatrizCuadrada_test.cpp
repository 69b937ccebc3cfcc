#include "model/geometry/CMatrizCuadrada.h"

#include <gtest/gtest.h>
#include <random>

#include "model/Fixtures.h"

using namespace Meseta47;

namespace {

using Real = CCoor3D<double>;

CMatrizCuadrada Matrix(std::size_t rows, std::vector<double> const& values) {
  CMatrizCuadrada m(rows);
  for (std::size_t i = 0; i < values.size(); ++i) m(i / rows, i % rows) = values[i];
  return m;
}

void ExpectNear(CMatrizCuadrada const& a, CMatrizCuadrada const& b, double tolerance) {
  for (std::size_t i = 0; i < a.Orden(); ++i) {
    for (std::size_t j = 0; j < a.Orden(); ++j) EXPECT_NEAR(a(i, j), b(i, j), tolerance) << i << ' ' << j;
  }
}

CMatrizCuadrada RandomMatrix(std::mt19937& random, std::size_t rows) {
  std::uniform_real_distribution<double> value(-10, 10);
  CMatrizCuadrada m(rows);
  for (std::size_t i = 0; i < rows * rows; ++i) m(i / rows, i % rows) = value(random);
  return m;
}

TEST(CMatrizCuadrada, BeginsAsTheIdentity) { ExpectNear(CMatrizCuadrada(2), Matrix(2, {1, 0, 0, 1}), 0); }

TEST(CMatrizCuadrada, TheProductIsThatOfRowsByColumns) {
  ExpectNear(Matrix(2, {1, 2, 3, 4}) * Matrix(2, {5, 6, 7, 8}), Matrix(2, {19, 22, 43, 50}), 0);
}

TEST(CMatrizCuadrada, TheInverseTakesTheMatrixToTheIdentity) {
  std::mt19937 random(7);
  for (std::size_t rows = 1; rows <= 6; ++rows) {
    const CMatrizCuadrada m = RandomMatrix(random, rows);
    CMatrizCuadrada inverse(m);
    ASSERT_TRUE(inverse.Invierte());
    ExpectNear(m * inverse, CMatrizCuadrada(rows), 1e-10);
  }
}

TEST(CMatrizCuadrada, AZeroOnTheDiagonalDoesNotStopTheInversion) {
  CMatrizCuadrada m = Matrix(2, {0, 1, 1, 0});
  ASSERT_TRUE(m.Invierte());
  ExpectNear(m, Matrix(2, {0, 1, 1, 0}), 0);
}

TEST(CMatrizCuadrada, ASingularMatrixIsLeftAsItWas) {
  CMatrizCuadrada m = Matrix(2, {1, 2, 2, 4});
  EXPECT_FALSE(m.Invierte());
  ExpectNear(m, Matrix(2, {1, 2, 2, 4}), 0);
}

TEST(CMatrizCuadrada, EigenvectorsAreThoseOfTheirEigenvalues) {
  std::mt19937 random(8);
  for (std::size_t rows = 1; rows <= 6; ++rows) {
    CMatrizCuadrada m = RandomMatrix(random, rows);
    for (std::size_t i = 0; i < rows; ++i) {
      for (std::size_t j = 0; j < i; ++j) m(i, j) = m(j, i);
    }
    std::vector<double> values;
    CMatrizCuadrada vectors(rows);
    m.Autovalores(values, vectors);
    ASSERT_EQ(values.size(), rows);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    CMatrizCuadrada diagonal(rows), transposed(rows);
    for (std::size_t i = 0; i < rows; ++i) {
      diagonal(i, i) = values[i];
      for (std::size_t j = 0; j < rows; ++j) transposed(i, j) = vectors(j, i);
    }
    ExpectNear(m * vectors, vectors * diagonal, 1e-11);
    ExpectNear(transposed * vectors, CMatrizCuadrada(rows), 1e-13);
  }
}

TEST(CMatrizCuadrada, OrderThreeTurnsAndOrderFourAlsoShiftsAndDivides) {
  EXPECT_EQ(Matrix(3, {0, -1, 0, 1, 0, 0, 0, 0, 1}).Aplica(Real(2, 3, 4, 0)), Real(-3, 2, 4, 0));
  EXPECT_EQ(Matrix(4, {1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30, 0, 0, 0, 2}).Aplica(Real(2, 4, 6, 0)),
            Real(6, 12, 18, 0));
  EXPECT_EQ(CMatrizCuadrada(2).Aplica(Real(2, 4, 6, 0)), Real(2, 4, 6, 0));
}

}  // namespace
