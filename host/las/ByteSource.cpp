#include "host/las/ByteSource.h"

#include <algorithm>
#include <fmt/format.h>
#include <system_error>

#include "host/FileError.h"
#include "host/Paths.h"

namespace Meseta47::host {

namespace {

[[noreturn]] void failToOpen(std::string const& path, CFile const& file) {
  const auto code = static_cast<std::errc>(file.CodigoError());
  if (code == std::errc::no_such_file_or_directory) {
    throw FileError(path, "there is no such file: check the name and the folder");
  }
  if (code == std::errc::is_a_directory) {
    throw FileError(path, "is a folder: name the files in it");
  }
  throw FileError(path, fmt::format("cannot be opened: {}", file.Causa().Utf8()));
}

}  // namespace

void requireOrdinaryFile(std::string const& path) {
  if (lookAt(path).EsOtro()) {
    throw FileError(path, "is not an ordinary file: copy what it gives to one, and name that");
  }
}

FileSource::FileSource(std::string const& path) : ByteSource(path, 0) {
  requireOrdinaryFile(path);
  if (!file_.Open(CString::DesdeUtf8(path), CFile::modeRead)) {
    failToOpen(path, file_);
  }
  size_ = file_.GetLength();
  if (file_.HayError()) {
    failToOpen(path, file_);
  }
}

std::size_t FileSource::read(std::uint64_t from, std::span<std::uint8_t> to) {
  constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;  // the length of one transfer is a 32-bit number
  std::size_t done = 0;
  file_.Seek(static_cast<long long>(from), CFile::begin);
  while (done < to.size()) {
    const auto wanted = static_cast<unsigned>(std::min(to.size() - done, kLargestTransfer));
    const unsigned got = file_.Read(to.data() + done, wanted);
    done += got;
    if (got < wanted) {
      break;
    }
  }
  if (file_.HayError()) {
    throw FileError(name_,
                    fmt::format("cannot be read at byte {}: {}", withThousands(from + done), file_.Causa().Utf8()));
  }
  return done;
}

MemorySource::MemorySource(std::string const& name, std::vector<std::uint8_t> bytes)
    : ByteSource(name, bytes.size()), bytes_(std::move(bytes)) {}

std::size_t MemorySource::read(std::uint64_t from, std::span<std::uint8_t> to) {
  if (from >= bytes_.size()) {
    return 0;
  }
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(to.size(), bytes_.size() - from));
  std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(from), count, to.begin());
  return count;
}

}  // namespace Meseta47::host
