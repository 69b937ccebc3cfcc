#include "host/mesh/PlyHeader.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <sstream>
#include <utility>

#include "host/FileError.h"

namespace Meseta47::host {

namespace {

/// What is wrong with a line; add() says where.
struct BadLine {
  std::string why;
};

PlyType typeOf(std::string const& name) {
  static const std::vector<std::pair<std::string_view, PlyType>> kNames{
      {"char", PlyType::int8},      {"uchar", PlyType::uint8},    {"short", PlyType::int16},
      {"ushort", PlyType::uint16},  {"int", PlyType::int32},      {"uint", PlyType::uint32},
      {"float", PlyType::float32},  {"double", PlyType::float64}, {"int8", PlyType::int8},
      {"uint8", PlyType::uint8},    {"int16", PlyType::int16},    {"uint16", PlyType::uint16},
      {"int32", PlyType::int32},    {"uint32", PlyType::uint32},  {"float32", PlyType::float32},
      {"float64", PlyType::float64}};
  const auto found = std::find_if(kNames.begin(), kNames.end(), [&name](auto& entry) { return entry.first == name; });
  if (found == kNames.end()) throw BadLine{fmt::format("there is no type \"{}\"", name)};
  return found->second;
}

std::vector<std::string> wordsOf(std::string_view line) {
  std::istringstream stream{std::string(line)};
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

bool isAscii(std::vector<std::string> const& words) {
  if (words.size() == 3 && words[0] == "format" && words[2] == "1.0") {
    if (words[1] == "ascii") return true;
    if (words[1] == "binary_little_endian") return false;
  }
  throw BadLine{"write the file as \"format binary_little_endian 1.0\" or \"format ascii 1.0\""};
}

}  // namespace

std::size_t sizeOf(PlyType type) {
  switch (type) {
    case PlyType::int8:
    case PlyType::uint8:
      return 1;
    case PlyType::int16:
    case PlyType::uint16:
      return 2;
    case PlyType::float64:
      return 8;
    default:
      return 4;
  }
}

std::uint64_t PlyElement::leastBytes(bool ascii) const {
  if (ascii) return 2 * properties.size();  // a digit and what parts it from the next
  std::uint64_t bytes = 0;
  for (PlyProperty const& property : properties) bytes += sizeOf(property.countType.value_or(property.type));
  return bytes;
}

void PlyHeader::addElement(std::string const& name, std::string const& count) {
  PlyElement& element = elements.emplace_back();
  element.name = name;
  const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), element.count);
  if (error != std::errc() || end != count.data() + count.size()) {
    throw BadLine{fmt::format("\"{}\" is no number of elements", count)};
  }
}

void PlyHeader::addProperty(std::vector<std::string> const& words) {
  if (elements.empty()) throw BadLine{"a property before the first element"};
  auto& properties = elements.back().properties;
  if (words.size() == 5 && words[1] == "list") {
    properties.push_back({words[4], typeOf(words[3]), typeOf(words[2])});
  } else if (words.size() == 3) {
    properties.push_back({words[2], typeOf(words[1]), std::nullopt});
  } else {
    throw BadLine{"a property is a type and a name, or a list, two types and a name"};
  }
}

bool PlyHeader::add(std::string_view line, std::string const& file) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  try {
    const auto words = wordsOf(line);
    switch (lines_++) {
      case 0:
        if (line != "ply") throw FileError(file, "is no PLY file: it does not begin with the line \"ply\"");
        return true;
      case 1:
        ascii = isAscii(words);
        return true;
      default:
        break;
    }
    if (words.empty() || words[0] == "comment" || words[0] == "obj_info") return true;
    if (words[0] == "end_header") return false;
    if (words[0] == "element" && words.size() == 3) {
      addElement(words[1], words[2]);
    } else if (words[0] == "property") {
      addProperty(words);
    } else {
      throw BadLine{"no line of a PLY header looks like that"};
    }
  } catch (BadLine const& bad) {
    throw FileError(file, fmt::format("line {} of its header, \"{}\": {}", lines_, line.substr(0, 60), bad.why));
  }
  return true;
}

}  // namespace Meseta47::host
