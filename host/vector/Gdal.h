#pragma once

#include <string>

namespace Meseta47::host {

/// Readies GDAL: what concerns every use of it is set here, and it says nothing by itself from then on. Cheap after the
/// first time; from any thread.
void startGdal();

/// Readies GDAL with all its formats, for files of which nobody knows what they are. Takes some hundredths of a second
/// and 8 MB, since every library that any format needs is woken up.
void startGdalFormats();

/// Readies GDAL with one format, by the function of GDAL's that registers it. Cheap; from any thread.
void startGdalFormat(void (*registers)());

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
