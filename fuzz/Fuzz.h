#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "host/FileError.h"
#include "host/las/ByteSource.h"

namespace Meseta47::fuzz {

/// What libFuzzer made up, as a source for readers.
inline std::unique_ptr<host::ByteSource> sourceOf(std::uint8_t const* data, std::size_t size) {
  return std::make_unique<host::MemorySource>("fuzz", std::vector<std::uint8_t>(data, data + size));
}

/// The same as a file, for readers that open their own. One name a process and extension.
inline std::string fileOf(std::uint8_t const* data, std::size_t size, std::string const& extension = "") {
  static const std::string name =
      (std::filesystem::temp_directory_path() / ("urdimbre_fuzz_" + std::to_string(std::random_device()()))).string();
  const std::string path = name + extension;
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
  return path;
}

/// Readers may refuse a file with a FileError, and in no other way.
template <class Read>
void reading(Read read) {
  try {
    read();
  } catch (host::FileError const&) {
  }
}

/// What a reader promises of all that it lets through; libFuzzer keeps the input that breaks it.
inline void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace Meseta47::fuzz
