#pragma once

#include <string>

namespace Meseta47::host {

/// Readies GDAL: what concerns every use of it is set here, and it says nothing by itself from then on. Cheap after the
/// first time; from any thread.
void startGdal();

/// Readies GDAL with all its formats. Takes some hundredths of a second, which runs without a vector file are spared.
void startGdalFormats();

/// While one stands, it hears what GDAL reports on this thread and keeps the first failure. They nest.
class GdalReport {
 public:
  GdalReport();
  ~GdalReport();
  GdalReport(GdalReport const&) = delete;
  GdalReport& operator=(GdalReport const&) = delete;

  [[nodiscard]] bool failed() const { return !failure_.empty(); }
  /// The first failure in one line without a full stop; empty while there is none.
  [[nodiscard]] std::string const& failure() const { return failure_; }

 private:
  std::string failure_;
};

}  // namespace Meseta47::host
