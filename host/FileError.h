#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Meseta47::host {

/// What is wrong with a file, as one line for a person: it names the file, the value and the way out. The program
/// prints it and ends with 1; the files named are as they were.
class FileError : public std::runtime_error {
 public:
  FileError(std::string_view file, std::string_view message)
      : std::runtime_error(std::string(file) + ": " + std::string(message)) {}
};

/// End of every message about a file that holds less than it promises.
inline constexpr std::string_view kDamaged = "the file is damaged or still being written";

/// A number as a person reads it: 812,004.
[[nodiscard]] inline std::string withThousands(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t place = text.size(); place > 3;) {
    place -= 3;
    text.insert(place, 1, ',');
  }
  return text;
}

}  // namespace Meseta47::host
