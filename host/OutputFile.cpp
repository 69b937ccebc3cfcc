#include "host/OutputFile.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <limits>
#include <system_error>
#include <utility>

#include "host/FileError.h"
#include "platform/Ficheros.h"

namespace Meseta47::host {

namespace fs = std::filesystem;

std::string replacedBy(std::string const& name) {
  std::error_code error;
  const fs::path target = fs::is_symlink(name, error) ? fs::canonical(name, error) : fs::path(name);
  return error ? name : target.string();
}

// Renaming onto a device would put a plain file in its place.
void requireReplaceable(std::string const& name) {
  std::error_code error;
  const fs::file_status status = fs::status(name, error);
  if (fs::is_directory(status)) {
    throw FileError(name, "is a folder: give the name of a file to write");
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throw FileError(name, "is not an ordinary file: write to a file and copy it there");
  }
}

namespace {

std::string causeOf(CFile const& file) { return std::generic_category().message(file.CodigoError()); }

}  // namespace

OutputFile::OutputFile(std::string name)
    : name_(std::move(name)), target_(replacedBy(name_)), part_(target_ + ".part") {
  requireReplaceable(name_);
  if (!file_.Open(CString::DesdeUtf8(part_), CFile::modeCreate | CFile::modeReadWrite)) {
    throw FileError(name_, fmt::format("cannot be written: {}: write into a folder that exists and is yours, with room "
                                       "for the file",
                                       causeOf(file_)));
  }
  pending_ = true;
}

OutputFile::~OutputFile() { discard(); }

void OutputFile::write(void const* data, std::size_t bytes) {
  if (!file_.Write(data, bytes)) {
    fail("cannot be written", causeOf(file_));
  }
}

std::size_t OutputFile::read(void* data, std::size_t bytes) {
  constexpr std::size_t kPart = std::size_t{1} << 30;  // lengths of single transfers have 32 bits
  std::size_t done = 0;
  for (std::size_t came = kPart; came == kPart && done < bytes; done += came) {
    came = file_.Read(static_cast<char*>(data) + done, static_cast<unsigned>(std::min(kPart, bytes - done)));
  }
  if (file_.HayError()) {
    fail("cannot be written", causeOf(file_));
  }
  return done;
}

void OutputFile::seek(std::uint64_t position) {
  if (position > static_cast<std::uint64_t>(std::numeric_limits<long long>::max())) {
    fail("cannot be written", std::make_error_code(std::errc::file_too_large).message());
  }
  if (file_.Seek(static_cast<long long>(position), CFile::begin) < 0) {
    fail("cannot be written", causeOf(file_));
  }
}

std::uint64_t OutputFile::length() {
  const std::uint64_t bytes = file_.GetLength();
  if (file_.HayError()) {
    fail("cannot be written", causeOf(file_));
  }
  return bytes;
}

void OutputFile::resize(std::uint64_t bytes) {
  if (!file_.SetLength(bytes)) {
    fail("cannot be written", causeOf(file_));
  }
}

void OutputFile::close() {
  if (!file_.Close()) {
    fail("cannot be written", causeOf(file_));
  }
}

void OutputFile::commit() {
  close();
  std::error_code error;
  if (const fs::file_status old = fs::status(target_, error); fs::exists(old)) {
    fs::permissions(part_, old.permissions(), error);  // at worst the new file has the usual ones
  }
  CString cause;
  if (!RenombraFichero(CString::DesdeUtf8(part_), CString::DesdeUtf8(target_), &cause)) {
    fail("cannot take its name", cause.Utf8());
  }
  pending_ = false;
}

void OutputFile::fail(std::string_view what, std::string_view cause) {
  discard();
  throw FileError(name_,
                  fmt::format("{}: {}: free room or write elsewhere; what was written has been removed", what, cause));
}

void OutputFile::discard() {
  file_.Close();
  if (std::exchange(pending_, false)) {
    BorraFichero(CString::DesdeUtf8(part_));
  }
}

}  // namespace Meseta47::host
