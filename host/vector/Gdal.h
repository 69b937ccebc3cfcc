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

/// While one stands, it hears what GDAL reports on this thread and keeps the first failure. They nest. Where memory
/// gives out, GDAL and what it stands on answer as if the file or the system were at fault: failure() and check() tell
/// it as what it is.
class GdalReport {
 public:
  GdalReport();
  ~GdalReport();
  GdalReport(GdalReport const&) = delete;
  GdalReport& operator=(GdalReport const&) = delete;

  [[nodiscard]] bool failed() const { return !failure_.empty(); }
  /// The first failure in one line without a full stop; empty while there is none. Throws std::bad_alloc like check().
  [[nodiscard]] std::string const& failure() const;
  /// Throws std::bad_alloc where a failure, the first or a later one, was that memory gave out.
  void check() const;

  /// For GDAL: takes a failure down.
  void add(std::string line, bool ofMemory);

 private:
  std::string failure_;
  bool memoryGaveOut_ = false;
};

}  // namespace Meseta47::host
