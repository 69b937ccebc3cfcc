#pragma once

#include <filesystem>

#include "platform/CString.h"

/// A test's own current folder, while it lives: a run that is refused a temporary name takes one there, the same in
/// every run, and several tests run at a time.
class WorkingFolder {
 public:
  explicit WorkingFolder(CString const& folder) : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.Utf8());
  }
  WorkingFolder(WorkingFolder const&) = delete;
  WorkingFolder& operator=(WorkingFolder const&) = delete;
  ~WorkingFolder() { std::filesystem::current_path(before_); }

 private:
  std::filesystem::path before_;
};
