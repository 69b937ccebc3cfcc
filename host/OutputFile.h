#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/CFicheroParcial.h"

namespace Meseta47::host {

/// The file that one written under a name stands in for: the name itself, or where it points to as a symbolic link.
[[nodiscard]] std::string replacedBy(std::string const& name);

/// Throws a FileError for a name that no new file can take: that of a folder or a device.
void requireReplaceable(std::string const& name);

/// What helps when a file cannot be made or take its name, by the number of the failure in std::errc: the end of a
/// message.
[[nodiscard]] std::string_view helpFor(int failure);

/// A file in the making. It is written as NAME.part and takes its name in one step in commit(): until then whatever
/// stands under that name is untouched, and without a commit() nothing is left behind. Links, permissions and other
/// runs that write the same file are as CFicheroParcial has them.
///
/// Every failure, a full disk included, is a FileError that names the file and the cause. Used by one thread at a time.
class OutputFile {
 public:
  /// Opens NAME.part. Throws when the name is a folder or a device, or when the folder cannot be written. Messages call
  /// the file `shown`, for one that belongs to another; when that is empty, by its own name.
  explicit OutputFile(std::string const& name, std::string shown = {});
  OutputFile(OutputFile const&) = delete;
  OutputFile& operator=(OutputFile const&) = delete;

  /// Writes at the position, which advances.
  void write(void const* data, std::size_t bytes);
  void write(std::string_view text) { write(text.data(), text.size()); }

  /// Reads back from the position, which advances, and returns how many bytes came: fewer at the end of the file.
  [[nodiscard]] std::size_t read(void* data, std::size_t bytes);

  /// Moves the position, from the start of the file. What is written beyond the end has zeros before it.
  void seek(std::uint64_t position);
  [[nodiscard]] std::uint64_t position() const { return file_.GetPosition(); }

  /// Bytes written so far, the file's end.
  [[nodiscard]] std::uint64_t length();
  /// Cuts the file off at a length, or fills it up with zeros. The position stays.
  void resize(std::uint64_t bytes);

  /// Hands everything to the disk: of all that may fail, only the name is left. Nothing may be written afterwards.
  void close();

  /// Closes the file and gives it its name.
  void commit();

  [[nodiscard]] std::string const& name() const { return name_; }

 private:
  [[noreturn]] void fail(std::string_view what);

  std::string name_;  // as the user knows it
  CFicheroParcial partial_;
  CFile& file_;
};

}  // namespace Meseta47::host
