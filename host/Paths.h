#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/Ficheros.h"

namespace Meseta47::host {

/// Names of files are texts in UTF-8 all over the host, and a std::filesystem::path only where the standard library is
/// asked about one: on Windows it would take a plain text for one of the code page.
[[nodiscard]] inline std::filesystem::path pathOf(std::string_view name) {
  const std::string text = RutaSistema(CString::DesdeUtf8(name)).Utf8();
  return {std::u8string(text.begin(), text.end())};
}

[[nodiscard]] inline std::string textOf(std::filesystem::path const& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace Meseta47::host
