#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

/// What tests know by another name, or otherwise, on each system.
constexpr char const* kSettingsVariable = "XDG_CONFIG_HOME";
/// A file that is gone with its last holder has none from the beginning.
constexpr bool kTemporaryFilesHaveNames = false;

inline void SetVariable(char const* name, std::optional<std::string> const& value) {
  if (value) {
    ::setenv(name, value->c_str(), 1);
  } else {
    ::unsetenv(name);
  }
}

/// What all threads of the process have had of the processors.
inline double ProcessorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }
