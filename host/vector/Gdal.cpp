#include "host/vector/Gdal.h"

#include <algorithm>
#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal.h>
#include <mutex>

namespace Meseta47::host {

namespace {

constexpr char kNothingSaid[] = "no reason was given";

std::string oneLine(char const* message) {
  std::string line(message != nullptr ? message : "");
  std::replace(line.begin(), line.end(), '\n', ' ');
  while (!line.empty() && (line.back() == '.' || line.back() == ' ')) line.pop_back();
  return line.empty() ? kNothingSaid : line;
}

void CPL_STDCALL hear(CPLErr severity, CPLErrorNum, char const* message) {
  auto& failure = *static_cast<std::string*>(CPLGetErrorHandlerUserData());
  if (severity >= CE_Failure && failure.empty()) failure = oneLine(message);
}

}  // namespace

void startGdal() {
  static std::once_flag once;
  std::call_once(once, [] {
    CPLSetErrorHandler(CPLQuietErrorHandler);
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

GdalReport::GdalReport() { CPLPushErrorHandlerEx(hear, &failure_); }

GdalReport::~GdalReport() { CPLPopErrorHandler(); }

}  // namespace Meseta47::host
