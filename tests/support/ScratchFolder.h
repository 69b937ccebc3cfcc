#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/CFile.h"
#include "platform/CString.h"

/// A folder of its own for one test, gone with everything in it at the end.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("urdimbre-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ScratchFolder(ScratchFolder const&) = delete;
  ScratchFolder& operator=(ScratchFolder const&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] CString Path() const { return CString::DesdeUtf8(path_.string()); }
  [[nodiscard]] CString Path(std::string const& name) const {
    return CString::DesdeUtf8((path_ / name).make_preferred().string());
  }
  [[nodiscard]] std::size_t Files() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::recursive_directory_iterator(path_), {}));
  }
  /// Files of the folder that this process has open and that have no name any more.
  [[nodiscard]] std::size_t OpenWithoutName() const {
    std::size_t found = 0;
    std::error_code gone;  // the handle of the listing itself
    for (auto const& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      const std::string target = std::filesystem::read_symlink(entry.path(), gone).string();
      if (target.starts_with(path_.string() + "/") && target.ends_with(" (deleted)")) ++found;
    }
    return found;
  }
  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(path_))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path path_;
};

inline std::filesystem::path AsPath(CString const& path) {
  const std::string name = path.Utf8();
  return std::u8string(name.begin(), name.end());
}

/// Whole files, past the classes under test.
inline std::string BytesOf(CString const& path) {
  std::ifstream file(AsPath(path), std::ios::binary);
  return (std::ostringstream() << file.rdbuf()).str();
}
/// The same of a temporary file that is still open. Some systems let it be opened by those alone who do not hold on to
/// it, as the class under test does.
inline std::string BytesOfTemporary(CString const& path) {
  CFile file(path, CFile::modeRead);
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  bytes.resize(file.Read(bytes.data(), static_cast<unsigned>(bytes.size())));
  return bytes;
}
inline void PutBytes(CString const& path, std::string const& bytes) {
  std::ofstream file(AsPath(path), std::ios::binary);
  file << bytes;
  ASSERT_TRUE(file.good()) << path;
}
inline bool Exists(CString const& path) { return std::filesystem::exists(AsPath(path)); }
