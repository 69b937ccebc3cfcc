#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz/Fuzz.h"
#include "model/storage/CFicheroSumado.h"
#include "model/terrain/CModeloDigital.h"
#include "model/threads/Codigos.h"
#include "platform/CWinApp.h"

using namespace Meseta47;

namespace {

/// The file again with the sums that its sections should have: chance never meets one, and whoever makes a file to do
/// harm would.
class Mended {
 public:
  Mended(std::uint8_t const* data, std::size_t size) : bytes_(data, data + size) {
    constexpr std::size_t kHead = 47, kPlain = 20, kRich = 36, kTriangle = 12;
    sum(kHead);
    sum(12 + number<std::uint64_t>(4) * (number<std::uint32_t>(0) == 1 ? kRich : kPlain));
    sum(8 + number<std::uint64_t>(0) * kTriangle);
    sum(size);
  }
  [[nodiscard]] std::vector<std::uint8_t> const& bytes() const { return bytes_; }

 private:
  /// A number in the section, 0 where the file ends before; no greater than the file is long, which leaves it as it is
  /// or as wrong.
  template <class T>
  [[nodiscard]] std::size_t number(std::size_t from) const {
    T value = 0;
    if (at_ + from + sizeof value <= bytes_.size()) std::memcpy(&value, bytes_.data() + at_ + from, sizeof value);
    return std::min<std::uint64_t>(value, bytes_.size());
  }
  /// Sums a section, or what is left of the file before room for a sum.
  void sum(std::size_t length) {
    constexpr std::size_t kSum = sizeof(std::uint64_t);
    if (bytes_.size() - at_ < kSum) return;
    length = std::min(length, bytes_.size() - at_ - kSum);
    CSuma sum;
    sum.Suma(reinterpret_cast<char const*>(bytes_.data()) + at_, length);
    const std::uint64_t value = sum.Valor();
    std::memcpy(bytes_.data() + at_ + length, &value, kSum);
    at_ += length + kSum;
  }

  std::vector<std::uint8_t> bytes_;
  std::size_t at_ = 0;
};

void readModel(CString const& path) {
  CModeloDigital model(new CTIN(0, 0, CDataSemilla()));
  const int code = model.Read(path);
  fuzz::require(code == kHecho || code == kFicheroCortado || code == kFicheroInconsistente);
  CTIN const& tin = model.Tin();
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) {
    for (const std::uint32_t v : tin.Vertices(i)) fuzz::require(tin.Punto(v) != nullptr);
  }
  for (auto const& ring : tin.Limite()) {
    for (const std::uint32_t v : ring) fuzz::require(tin.Punto(v) != nullptr);
  }
}

class OneProcessor : public CWinApp {
 public:
  OneProcessor() { PonProcesadores(1); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static const OneProcessor app;
  readModel(CString::DesdeUtf8(fuzz::fileOf(data, size)));
  const Mended mended(data, size);
  readModel(CString::DesdeUtf8(fuzz::fileOf(mended.bytes().data(), size)));
  return 0;
}
