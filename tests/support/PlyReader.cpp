#include "support/PlyReader.h"

#include <bit>
#include <cmath>
#include <fstream>
#include <istream>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace Meseta47::support {

namespace {

[[noreturn]] void refuse(std::string const& why) { throw std::runtime_error("PLY: " + why); }

struct Header {
  std::size_t vertices = 0;
  std::size_t faces = 0;
  std::size_t vertexSize = 0;
  std::map<std::string, std::size_t> doubles;  ///< where in a vertex each double stands
  bool facesAreLists = false;
};

std::size_t sizeOfType(std::string const& type) {
  static const std::map<std::string, std::size_t> sizes{{"char", 1},  {"uchar", 1},  {"int8", 1},    {"uint8", 1},
                                                        {"short", 2}, {"ushort", 2}, {"int16", 2},   {"uint16", 2},
                                                        {"int", 4},   {"uint", 4},   {"int32", 4},   {"uint32", 4},
                                                        {"float", 4}, {"double", 8}, {"float32", 4}, {"float64", 8}};
  const auto found = sizes.find(type);
  if (found == sizes.end()) refuse("unknown type '" + type + "'");
  return found->second;
}

void readVertexProperty(std::istringstream& words, Header& header) {
  std::string type;
  std::string property;
  words >> type >> property;
  if (type == "double" || type == "float64") header.doubles[property] = header.vertexSize;
  header.vertexSize += sizeOfType(type);
}

void readFaceProperty(std::istringstream& words, Header& header) {
  std::string rest;
  std::getline(words >> std::ws, rest);
  if (rest != "list uchar int vertex_indices" || header.facesAreLists) {
    refuse("unexpected face property '" + rest + "'");
  }
  header.facesAreLists = true;
}

/// Elements in the order that the data follow: vertices, then faces.
void readElement(std::istringstream& words, Header& header, std::string& element) {
  std::string next;
  std::size_t count = 0;
  if (!(words >> next >> count)) refuse("an element without a count");
  const bool inOrder = (element.empty() && next == "vertex") || (element == "vertex" && next == "face");
  if (!inOrder) refuse("unexpected element '" + next + "'");
  (next == "vertex" ? header.vertices : header.faces) = count;
  element = next;
}

Header readHeader(std::istream& in) {
  Header header;
  std::string line;
  std::string element;
  if (!std::getline(in, line) || line != "ply") refuse("the file does not begin with 'ply'");
  if (!std::getline(in, line) || line != "format binary_little_endian 1.0") refuse("unexpected format '" + line + "'");
  while (std::getline(in, line) && line != "end_header") {
    std::istringstream words(line);
    std::string keyword;
    words >> keyword;
    if (keyword == "comment" || keyword == "obj_info") continue;
    if (keyword == "element") {
      readElement(words, header, element);
    } else if (keyword == "property" && element == "vertex") {
      readVertexProperty(words, header);
    } else if (keyword == "property" && element == "face") {
      readFaceProperty(words, header);
    } else {
      refuse("unexpected header line '" + line + "'");
    }
  }
  if (!in) refuse("the header has no end");
  if (element != "face" || !header.facesAreLists) refuse("no faces are declared");
  for (char const* axis : {"x", "y", "z"}) {
    if (!header.doubles.contains(axis)) refuse(std::string("vertices have no double ") + axis);
  }
  return header;
}

std::uint64_t littleEndian(char const* bytes, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = size; i > 0; --i) value = value << 8 | static_cast<unsigned char>(bytes[i - 1]);
  return value;
}

void readVertices(std::istream& in, Header const& header, PlyMesh& mesh) {
  std::vector<char> record(header.vertexSize);
  const std::array<std::size_t, 3> at{header.doubles.at("x"), header.doubles.at("y"), header.doubles.at("z")};
  for (std::size_t i = 0; i < header.vertices; ++i) {
    if (!in.read(record.data(), static_cast<std::streamsize>(record.size()))) {
      refuse("vertex " + std::to_string(i) + " is cut short");
    }
    auto& vertex = mesh.vertices.emplace_back();
    for (std::size_t k = 0; k < 3; ++k) vertex[k] = std::bit_cast<double>(littleEndian(&record[at[k]], 8));
  }
}

void readFaces(std::istream& in, Header const& header, PlyMesh& mesh) {
  std::array<char, 13> record{};
  for (std::size_t i = 0; i < header.faces; ++i) {
    if (!in.read(record.data(), record.size())) refuse("face " + std::to_string(i) + " is cut short");
    if (record[0] != 3) refuse("face " + std::to_string(i) + " is not a triangle");
    auto& face = mesh.faces.emplace_back();
    for (std::size_t k = 0; k < 3; ++k) {
      const auto index = static_cast<std::uint32_t>(littleEndian(&record[1 + 4 * k], 4));
      if (index >= header.vertices) {
        refuse("face " + std::to_string(i) + " names vertex " + std::to_string(static_cast<std::int32_t>(index)));
      }
      face[k] = static_cast<std::int32_t>(index);
    }
  }
}

std::int32_t toUnits(double value) {
  const double nearest = std::floor(value + 0.5);
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(nearest >= Limits::min() && nearest <= Limits::max())) {
    refuse("coordinate " + std::to_string(value) + " is too large");
  }
  return static_cast<std::int32_t>(nearest);
}

}  // namespace

PlyMesh readPly(std::istream& in) {
  const Header header = readHeader(in);
  PlyMesh mesh;
  readVertices(in, header, mesh);
  readFaces(in, header, mesh);
  if (in.peek() != std::istream::traits_type::eof()) refuse("bytes follow the last face");
  return mesh;
}

PlyMesh readPly(std::filesystem::path const& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) refuse("cannot open " + file.string());
  return readPly(in);
}

Mesh scaled(PlyMesh const& ply, double unitsPerMetre, std::array<double, 3> const& origin) {
  Mesh mesh;
  mesh.points.reserve(ply.vertices.size());
  for (auto const& v : ply.vertices) {
    mesh.points.push_back({toUnits((v[0] - origin[0]) * unitsPerMetre), toUnits((v[1] - origin[1]) * unitsPerMetre),
                           toUnits((v[2] - origin[2]) * unitsPerMetre)});
  }
  mesh.triangles = numberedFromOne(ply.faces);
  return mesh;
}

}  // namespace Meseta47::support
