#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/Ficheros.h"

namespace Meseta47::host {

/// Names of files are texts in UTF-8 all over the host, and a std::filesystem::path only where the standard library is
/// takes one apart: on Windows it would take a plain text for one of the code page. What stands under a name is asked
/// of the platform layer, for whose functions no path is too long.
[[nodiscard]] inline std::filesystem::path pathOf(std::string_view name) {
  return {std::u8string(name.begin(), name.end())};
}

[[nodiscard]] inline CDatosFichero lookAt(std::string_view name) { return ExaminaFichero(CString::DesdeUtf8(name)); }

[[nodiscard]] inline std::string textOf(std::filesystem::path const& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace Meseta47::host
