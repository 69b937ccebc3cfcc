#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Meseta47::host {

enum class PlyType { int8, uint8, int16, uint16, int32, uint32, float32, float64 };

/// Bytes of a value in the binary form.
[[nodiscard]] std::size_t sizeOf(PlyType type);

struct PlyProperty {
  std::string name;
  PlyType type = PlyType::float32;
  std::optional<PlyType> countType;  ///< of a list: what its length is written as
};

struct PlyElement {
  std::string name;
  std::uint64_t count = 0;
  std::vector<PlyProperty> properties;

  /// The fewest bytes that one of these can take.
  [[nodiscard]] std::uint64_t leastBytes(bool ascii) const;
};

/// What a PLY file says of itself, line by line.
class PlyHeader {
 public:
  bool ascii = false;  ///< otherwise binary, little-endian
  std::vector<PlyElement> elements;

  /// Takes the next line, without its end. False for the last one. Throws FileError, naming `file` and the line.
  bool add(std::string_view line, std::string const& file);

 private:
  void addElement(std::string const& name, std::string const& count);
  void addProperty(std::vector<std::string> const& words);

  int lines_ = 0;
};

}  // namespace Meseta47::host
