#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "model/drawing/CSetPuntos.h"
#include "platform/CFile.h"

namespace Meseta47 {

/// Positions in test failures.
template <class T>
void PrintTo(CCoor3D<T> const& p, std::ostream* out) {
  *out << '(' << p.x << ", " << p.y << ", " << p.z << ") number " << p.num;
}

namespace test {

using Point = CCoor3D<int>;

inline Point P(int x, int y, int z = 0) { return Point(x, y, z, 0); }

inline CLinea<int> Line(std::vector<Point> const& points, wchar_t const* code = L"line") {
  CLinea<int> line{CString(code)};
  for (Point const& p : points) line << p;
  return line;
}

inline CSetPuntos<int> Set(std::vector<Point> const& points, wchar_t const* code = L"set") {
  CSetPuntos<int> set{CString(code)};
  for (Point const& p : points) set << p;
  return set;
}

/// The points of an entity, for comparisons of positions.
template <class T>
std::vector<CCoor3D<T>> PointsOf(CLinea<T> const& e) {
  return e.Puntos();
}

template <class T>
CMaximas<T> BoxOf(std::vector<CCoor3D<T>> const& points) {
  CMaximas<T> box;
  for (CCoor3D<T> const& p : points) box.Nuevo(p);
  return box;
}

/// A file of this test alone, gone with the object.
class ScratchFile {
 public:
  ScratchFile() {
    auto const* info = testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::path(testing::TempDir()) /
            (std::string("urdimbre_") + info->test_suite_name() + "_" + info->name() + ".bin");
  }
  ~ScratchFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  ScratchFile(ScratchFile const&) = delete;
  ScratchFile& operator=(ScratchFile const&) = delete;

  [[nodiscard]] CString Name() const { return CString(path_.string().c_str()); }
  [[nodiscard]] CFile ForWriting() const { return CFile(Name(), CFile::modeCreate | CFile::modeWrite); }
  [[nodiscard]] CFile ForReading() const { return CFile(Name(), CFile::modeRead); }

  [[nodiscard]] std::vector<unsigned char> Bytes() const {
    std::ifstream in(path_, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  /// Leaves only the first bytes of the file.
  void Cut(std::size_t bytes) const { std::filesystem::resize_file(path_, bytes); }

 private:
  std::filesystem::path path_;
};

}  // namespace test
}  // namespace Meseta47
