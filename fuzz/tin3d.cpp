#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz/Fuzz.h"
#include "model/storage/CFicheroSumado.h"
#include "model/terrain/CTIN.h"
#include "model/threads/Codigos.h"
#include "platform/CWinApp.h"
#include "tetrahedral/CTriangulacion3D.h"

using namespace Meseta47;

namespace {

/// The file again with the sum that the point block of the second version should have: chance never meets it.
std::vector<std::uint8_t> mended(std::uint8_t const* data, std::size_t size) {
  constexpr std::size_t kBlock = 69, kHead = 12, kPlain = 20, kRich = 36;
  std::vector<std::uint8_t> bytes(data, data + size);
  if (size < kBlock + kHead || bytes[14] != '2') return bytes;
  std::uint32_t form = 0;
  std::uint64_t points = 0;
  std::memcpy(&form, &bytes[kBlock], sizeof form);
  std::memcpy(&points, &bytes[kBlock + 4], sizeof points);
  const std::uint64_t length = kHead + std::min<std::uint64_t>(points, size) * (form == 1 ? kRich : kPlain);
  CSuma sum;
  if (size - kBlock < length + sizeof sum.Valor()) return bytes;
  sum.Suma(reinterpret_cast<char const*>(&bytes[kBlock]), length);
  const std::uint64_t value = sum.Valor();
  std::memcpy(&bytes[kBlock + length], &value, sizeof value);
  return bytes;
}

class OneProcessor : public CWinApp {
 public:
  OneProcessor() { PonProcesadores(1); }
};

}  // namespace

/// What is taken agrees with itself: it can be walked, drawn a surface of, and written and read again.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static const OneProcessor app;
  const std::vector<std::uint8_t> bytes = mended(data, size);
  const CString path = CString::DesdeUtf8(fuzz::fileOf(bytes.data(), size));
  CTriangulacion3D mesh(0, CDataSemilla(), 1);
  const int code = mesh.Read(path, false);
  fuzz::require(code == kHecho || code == kFicheroInaccesible || code == kFicheroCortado ||
                code == kFicheroInconsistente);
  if (code != kHecho) {
    fuzz::require(mesh.CantidadTetraedros() == 0 && mesh.Punto(0) == nullptr);
    return 0;
  }
  mesh.RecorreMalla([&](CTriangulacion3D::CCuatro const& t) {
    for (const std::int32_t n : t) fuzz::require(n >= -8 && n != 0 && n <= static_cast<int>(mesh.CantidadPuntos()));
  });
  CTIN surface(0, 0, mesh.Semilla());
  fuzz::require(mesh.GenerarMDT(surface, 50) == kHecho);
  fuzz::require(mesh.Write(path, 2) == kHecho);
  CTriangulacion3D again(0, CDataSemilla(), 1);
  fuzz::require(again.Read(path, false) == kHecho);
  fuzz::require(again.CantidadTetraedros() == mesh.CantidadTetraedros());
  return 0;
}
