#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/CFile.h"

namespace Meseta47::host {

/// Bytes with a name and a known length: a file, or a piece of memory in the tests that feed readers with damage.
/// Used by one thread at a time.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// Copies up to `to.size()` bytes from a place into `to` and returns how many there were: fewer only at the end.
  /// Throws FileError when the disk fails.
  virtual std::size_t read(std::uint64_t from, std::span<std::uint8_t> to) = 0;

  [[nodiscard]] std::uint64_t size() const { return size_; }
  [[nodiscard]] std::string const& name() const { return name_; }

 protected:
  ByteSource(std::string name, std::uint64_t size) : name_(std::move(name)), size_(size) {}

  std::string name_;
  std::uint64_t size_;
};

/// Throws FileError for a pipe or a device. Opening one may wait for ever, and none has a length or a second reading.
void requireOrdinaryFile(std::string const& path);

/// A file on the disk. The constructor throws FileError for one that is missing, cannot be read, or is no ordinary
/// file.
class FileSource : public ByteSource {
 public:
  explicit FileSource(std::string const& path);
  std::size_t read(std::uint64_t from, std::span<std::uint8_t> to) override;

 private:
  CFile file_;
};

/// Bytes in memory; they belong to the source.
class MemorySource : public ByteSource {
 public:
  MemorySource(std::string const& name, std::vector<std::uint8_t> bytes);
  std::size_t read(std::uint64_t from, std::span<std::uint8_t> to) override;

 private:
  std::vector<std::uint8_t> bytes_;
};

}  // namespace Meseta47::host
