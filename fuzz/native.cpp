#include <algorithm>
#include <cstring>

#include "fuzz/Fuzz.h"
#include "model/CFicheroSumado.h"
#include "model/CModeloDigital.h"
#include "model/Codigos.h"
#include "platform/CFile.h"
#include "platform/CWinApp.h"

using namespace Meseta47;

namespace {

/// The sections of a file, to be written again with the sums that they should have: chance never meets one, and whoever
/// makes a file to do harm would.
class Sections {
 public:
  Sections(std::uint8_t const* data, std::size_t size, CFile& file) : data_(data), size_(size), file_(file) {}

  void writeAll() {
    constexpr std::size_t kHead = 47, kPlain = 20, kRich = 36, kTriangle = 12;
    write(kHead);
    write(12 + number<std::uint64_t>(4) * (number<std::uint32_t>(0) == 1 ? kRich : kPlain));
    write(8 + number<std::uint64_t>(0) * kTriangle);
    write(size_);
  }

 private:
  /// A number in the section, or what is left of it; no greater than the file is long, which leaves it as it is or as
  /// wrong.
  template <class T>
  [[nodiscard]] std::size_t number(std::size_t from) const {
    T value = 0;
    const std::size_t place = std::min(size_, at_ + from);
    std::memcpy(&value, data_ + place, std::min(sizeof value, size_ - place));
    return std::min<std::uint64_t>(value, size_);
  }
  void write(std::size_t length) {
    constexpr std::size_t kSum = 8;
    length = std::min(length, size_ - at_ < kSum ? 0 : size_ - at_ - kSum);
    CSeccionSalida section(file_);
    section.Pon(data_ + at_, length);
    fuzz::require(section.Cierra());
    at_ = std::min(size_, at_ + length + kSum);
  }

  std::uint8_t const* data_;
  std::size_t size_;
  CFile& file_;
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
  const CString path = CString::DesdeUtf8(fuzz::fileOf(data, size));
  readModel(path);
  {
    CFile file;
    fuzz::require(file.Open(path, CFile::modeCreate | CFile::modeWrite));
    Sections(data, size, file).writeAll();
  }
  readModel(path);
  return 0;
}
