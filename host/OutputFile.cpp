#include "host/OutputFile.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>
#include <system_error>
#include <utility>

#include "host/FileError.h"
#include "host/Paths.h"

namespace Meseta47::host {

std::string replacedBy(std::string const& name) { return DestinoFinal(CString::DesdeUtf8(name)).Utf8(); }

// Renaming onto a device would put a plain file in its place.
void requireReplaceable(std::string const& name) {
  const CDatosFichero here = lookAt(name);
  if (here.EsCarpeta()) {
    throw FileError(name, "is a folder: give the name of a file to write");
  }
  if (here.EsOtro()) {
    throw FileError(name, "is not an ordinary file: write to a file and copy it there");
  }
}

std::string_view helpFor(int failure) {
  return failure == static_cast<int>(std::errc::text_file_busy)
             ? "close the program that holds it, or give another name"
             : "write into a folder that exists and is yours, with room for the file";
}

OutputFile::OutputFile(std::string const& name, std::string shown)
    : name_(shown.empty() ? name : std::move(shown)),
      partial_((requireReplaceable(name), CString::DesdeUtf8(name))),
      file_(partial_.Fichero()) {
  if (partial_.EstaAbierto()) return;
  throw FileError(name_,
                  fmt::format("cannot be written: {}: {}", partial_.Causa().Utf8(), helpFor(partial_.CodigoError())));
}

void OutputFile::write(void const* data, std::size_t bytes) {
  if (!file_.Write(data, bytes)) {
    fail("cannot be written");
  }
}

std::size_t OutputFile::read(void* data, std::size_t bytes) {
  constexpr std::size_t kPart = std::size_t{1} << 30;  // lengths of single transfers have 32 bits
  std::size_t done = 0;
  for (std::size_t came = kPart; came == kPart && done < bytes; done += came) {
    came = file_.Read(static_cast<char*>(data) + done, static_cast<unsigned>(std::min(kPart, bytes - done)));
  }
  if (file_.HayError()) {
    fail("cannot be written");
  }
  return done;
}

void OutputFile::seek(std::uint64_t position) {
  constexpr auto kLast = static_cast<std::uint64_t>(std::numeric_limits<long long>::max());
  if (position > kLast) {
    throw FileError(name_, "cannot be written: " + std::make_error_code(std::errc::file_too_large).message());
  }
  if (file_.Seek(static_cast<long long>(position), CFile::begin) < 0) {
    fail("cannot be written");
  }
}

std::uint64_t OutputFile::length() {
  const std::uint64_t bytes = file_.GetLength();
  if (file_.HayError()) {
    fail("cannot be written");
  }
  return bytes;
}

void OutputFile::resize(std::uint64_t bytes) {
  if (!file_.SetLength(bytes)) {
    fail("cannot be written");
  }
}

void OutputFile::close() {
  if (!partial_.Cierra()) {
    fail("cannot be written");
  }
}

void OutputFile::commit() {
  close();
  if (!partial_.Confirma()) {
    fail("cannot take its name");
  }
}

void OutputFile::fail(std::string_view what) {
  const std::string cause = partial_.Causa().Utf8();
  const bool held = partial_.CodigoError() == static_cast<int>(std::errc::text_file_busy);
  partial_.Descarta();
  throw FileError(name_, fmt::format("{}: {}: {} or write elsewhere; what was written has been removed", what, cause,
                                     held ? "close it there" : "free room"));
}

}  // namespace Meseta47::host
