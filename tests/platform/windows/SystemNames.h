#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

/// What tests know by another name, or otherwise, on each system.
constexpr char const* kSettingsVariable = "APPDATA";
/// A file that is gone with its last holder has one until then.
constexpr bool kTemporaryFilesHaveNames = true;

inline void SetVariable(char const* name, std::optional<std::string> const& value) {
  ::_putenv_s(name, value.value_or("").c_str());  // an empty one is none
}

/// What all threads of the process have had of the processors. std::clock() tells the time of the wall there.
inline double ProcessorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}
