#include "host/vector/Gdal.h"

#include <algorithm>
#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal.h>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace Meseta47::host {

namespace {

constexpr char kNothingSaid[] = "no reason was given";

std::string oneLine(char const* message) {
  std::string line(message != nullptr ? message : "");
  std::replace(line.begin(), line.end(), '\n', ' ');
  while (!line.empty() && (line.back() == '.' || line.back() == ' ')) line.pop_back();
  return line.empty() ? kNothingSaid : line;
}

/// GDAL's own number for it is rarely given: the register of systems and the databases beneath say it in their words.
bool isOfMemory(CPLErrorNum number, std::string_view message) {
  return number == CPLE_OutOfMemory || message.find("bad_alloc") != std::string_view::npos ||
         message.find("ut of memory") != std::string_view::npos;  // with a capital or without
}

/// After a fatal error GDAL ends the program where it stands. An exception gets past that, so that unfinished outputs
/// are removed and the user gets his line; GDAL is done for, but so is the run.
void CPL_STDCALL getAway(CPLErr severity, CPLErrorNum number, char const* message) {
  if (severity != CE_Fatal) return;
  if (isOfMemory(number, message)) throw std::bad_alloc();
  throw std::runtime_error("GDAL failed: " + oneLine(message));
}

void CPL_STDCALL hear(CPLErr severity, CPLErrorNum number, char const* message) {
  getAway(severity, number, message);
  if (severity < CE_Failure) return;
  std::string line = oneLine(message);
  const bool ofMemory = isOfMemory(number, line);
  static_cast<GdalReport*>(CPLGetErrorHandlerUserData())->add(std::move(line), ofMemory);
}

}  // namespace

void startGdal() {
  static std::once_flag once;
  std::call_once(once, [] {
    CPLSetErrorHandler(getAway);
    // Eastings come first whatever a system's authority says, as in every file of this trade.
    CPLSetConfigOption("OSR_DEFAULT_AXIS_MAPPING_STRATEGY", "TRADITIONAL_GIS_ORDER");
    CPLSetConfigOption("GTIFF_REPORT_COMPD_CS", "NO");  // it loses the code of the heights
    // Equal runs give equal bytes: the clock is not written.
    CPLSetConfigOption("OGR_CURRENT_DATE", "2000-01-01T00:00:00.000Z");
    // A collection of hundreds of megabytes is still a file to read.
    CPLSetConfigOption("OGR_GEOJSON_MAX_OBJ_SIZE", "0");
  });
}

void startGdalFormats() {
  startGdal();
  static std::once_flag once;
  std::call_once(once, [] { GDALAllRegister(); });
}

void startGdalFormat(void (*registers)()) {
  startGdal();
  static std::mutex one;
  const std::scoped_lock lock(one);
  registers();
}

GdalReport::GdalReport() { CPLPushErrorHandlerEx(hear, this); }

GdalReport::~GdalReport() { CPLPopErrorHandler(); }

std::string const& GdalReport::failure() const {
  check();
  return failure_;
}

void GdalReport::check() const {
  if (memoryGaveOut_) throw std::bad_alloc();
}

void GdalReport::add(std::string line, bool ofMemory) {
  memoryGaveOut_ |= ofMemory;
  if (failure_.empty()) failure_ = std::move(line);
}

}  // namespace Meseta47::host
