#pragma once

#include <gmock/gmock.h>
#include <regex>
#include <string>

/// A text that is matched whole. The framework's own expressions know no classes of characters on Windows.
MATCHER_P(MatchesPattern, pattern, "matches " + testing::PrintToString(pattern)) {
  return std::regex_match(std::string(arg), std::regex(pattern));
}
