#pragma once

#include "platform/CFile.h"
#include "platform/CString.h"

namespace Meseta47::host {

/// The folder for temporary files; the current one where its path is too long.
[[nodiscard]] CString temporaryFolder();

/// A file in the folder for temporary files, of which nothing is left however the run ends.
class TemporaryFile {
 public:
  /// Throws Failure when the folder takes none. `name` begins the file's name.
  explicit TemporaryFile(CString const& name);

  [[nodiscard]] CFile* file() { return &file_; }
  /// Throws Failure when the disk refused something.
  void check() const;

 private:
  CString folder_;
  CFile file_;
};

}  // namespace Meseta47::host
