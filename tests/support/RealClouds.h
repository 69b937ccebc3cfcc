#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Meseta47::support {

/// The folder of real clouds: the environment variable URDIMBRE_DATA, or `../shared/data` beside the sources. Nothing
/// when it does not exist.
[[nodiscard]] std::optional<std::filesystem::path> realCloudFolder();

/// The path of a file in a folder; nothing when either is missing.
[[nodiscard]] std::optional<std::filesystem::path> fileIn(std::optional<std::filesystem::path> const& folder,
                                                          std::string_view name);

/// A file of the folder of real clouds, such as "bcts_1.las" or "isprs/samp11.las"; nothing when it is not there.
[[nodiscard]] std::optional<std::filesystem::path> realCloud(std::string_view name);

/// What a test says as it is skipped for want of a cloud.
[[nodiscard]] std::string missingCloud(std::string_view name);

}  // namespace Meseta47::support
