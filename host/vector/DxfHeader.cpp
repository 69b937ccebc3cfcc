#include "host/vector/DxfHeader.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cpl_conv.h>
#include <cpl_vsi.h>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <string_view>

namespace Meseta47::host {

namespace {

/// Replaces the number of a variable of the header, which stands three lines behind its name. False when it is not
/// there.
bool setVariable(std::string& header, std::string_view name, int value) {
  std::size_t at = header.find(name);
  for (int line = 0; line < 2 && at != std::string::npos; ++line) at = header.find('\n', at + 1);
  if (at == std::string::npos) return false;
  const std::size_t end = header.find_first_of("\r\n", at + 1);
  header.replace(at + 1, end == std::string::npos ? end : end - at - 1, fmt::format("{:6}", value));
  return true;
}

}  // namespace

int dxfUnitOf(ReferenceSystem const& system) {
  if (!system.isKnown()) return 0;
  struct Known {
    double metres;
    int number;
  };
  constexpr Known kKnown[] = {{1, 6},     {0.3048, 2},  {1200.0 / 3937, 21}, {1000, 7},    {0.01, 5},
                              {0.001, 4}, {0.9144, 10}, {0.0254, 1},         {1609.344, 3}};
  const double metres = system.unit().metres;
  for (Known const& known : kKnown) {
    if (std::abs(metres / known.metres - 1) < 1e-7) return known.number;  // the feet differ by 2e-6
  }
  return 0;
}

DxfHeader::DxfHeader(ReferenceSystem const& system) {
  char const* const found = CPLFindFile("gdal", "header.dxf");
  if (found == nullptr) return;
  std::ifstream file(found, std::ios::binary);
  text_.assign(std::istreambuf_iterator<char>(file), {});
  const int unit = dxfUnitOf(system);
  if (!setVariable(text_, "$INSUNITS", unit)) return;
  constexpr int kMetres[] = {4, 5, 6, 7};
  const bool isMetric = std::find(std::begin(kMetres), std::end(kMetres), unit) != std::end(kMetres);
  if (unit != 0) setVariable(text_, "$MEASUREMENT", isMetric ? 1 : 0);
  static std::atomic<unsigned> counter{0};
  path_ = fmt::format("/vsimem/urdimbre_header_{}.dxf", counter++);
  VSILFILE* const memory =
      VSIFileFromMemBuffer(path_.c_str(), reinterpret_cast<GByte*>(text_.data()), text_.size(), FALSE);
  if (memory != nullptr) {
    VSIFCloseL(memory);
  } else {
    path_.clear();
  }
}

DxfHeader::~DxfHeader() {
  if (!path_.empty()) VSIUnlink(path_.c_str());
}

}  // namespace Meseta47::host
