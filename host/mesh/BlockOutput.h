#pragma once

#include <cstdint>
#include <fmt/format.h>
#include <iterator>
#include <string_view>
#include <utility>

#include "host/OutputFile.h"

namespace Meseta47::host {

/// Text and values on their way to a file, which gets them a block at a time.
class BlockOutput {
 public:
  explicit BlockOutput(OutputFile& file) : file_(file) {}
  BlockOutput(BlockOutput const&) = delete;
  BlockOutput& operator=(BlockOutput const&) = delete;

  template <class... Args>
  void print(fmt::format_string<Args...> text, Args&&... args) {
    fmt::format_to(std::back_inserter(buffer_), text, std::forward<Args>(args)...);
    if (buffer_.size() > kBlock) flush();
  }
  /// The bytes of a value as they stand in memory, little-endian.
  template <class T>
  void put(T const& value) {
    auto const* bytes = reinterpret_cast<char const*>(&value);
    buffer_.append(bytes, bytes + sizeof value);
    if (buffer_.size() > kBlock) flush();
  }
  /// To be called at the end.
  void flush() {
    file_.write(buffer_.data(), buffer_.size());
    buffer_.clear();
  }

 private:
  static constexpr std::size_t kBlock = 1 << 16;
  OutputFile& file_;
  fmt::memory_buffer buffer_;
};

}  // namespace Meseta47::host
