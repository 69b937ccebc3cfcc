#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/CloudPoint.h"
#include "model/terrain/CModeloDigital.h"

namespace Meseta47::host {

/// Whether a file that begins so, or is called so, is a native model.
[[nodiscard]] bool isNativeModel(std::string_view beginning, std::string const& path);

/// Reads the native model; its triangles are sorted. Throws FileError, Failure or Cancelled.
[[nodiscard]] CModeloDigital readNativeModel(std::string const& path);

/// The points of a native model as a cloud, in the order of the model. They are read when they are first asked for, and
/// triangles not at all. What is read throws as readNativeModel does. Used by one thread at a time.
class ModelPoints {
 public:
  /// Throws FileError for a file that cannot be opened.
  explicit ModelPoints(std::string path);

  /// Replaces `points` by the next ones and returns how many: 0 at the end.
  std::size_t readBatch(std::vector<CloudPoint>& points, std::size_t max);
  void rewind() { next_ = 0; }
  /// How many points there are.
  [[nodiscard]] std::uint64_t count() const { return tin().puntos.size(); }
  /// Decimals of the coordinates, from 0 up.
  [[nodiscard]] int precision() const;
  [[nodiscard]] std::string const& name() const { return path_; }

 private:
  [[nodiscard]] CTIN const& tin() const;

  std::string path_;
  mutable std::unique_ptr<CModeloDigital> model_;
  unsigned next_ = 0;
};

}  // namespace Meseta47::host
