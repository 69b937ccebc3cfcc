#include "support/RealClouds.h"

#include <cstdlib>
#include <system_error>

namespace Meseta47::support {

namespace {

namespace fs = std::filesystem;

fs::path expectedFolder() {
  char const* folder = std::getenv("URDIMBRE_DATA");
  return folder != nullptr && *folder != '\0' ? fs::path(folder) : fs::path(URDIMBRE_SOURCE_DIR) / "../shared/data";
}

}  // namespace

std::optional<fs::path> realCloudFolder() {
  std::error_code ignored;
  const fs::path folder = fs::weakly_canonical(expectedFolder(), ignored);
  if (!fs::is_directory(folder, ignored)) return std::nullopt;
  return folder;
}

std::optional<fs::path> fileIn(std::optional<fs::path> const& folder, std::string_view name) {
  std::error_code ignored;
  if (!folder || !fs::is_regular_file(*folder / name, ignored)) return std::nullopt;
  return *folder / name;
}

std::optional<fs::path> realCloud(std::string_view name) { return fileIn(realCloudFolder(), name); }

std::string missingCloud(std::string_view name) {
  return "the real cloud " + std::string(name) + " is not in " + expectedFolder().lexically_normal().string() +
         "; URDIMBRE_DATA names the folder of real clouds";
}

}  // namespace Meseta47::support
