#include "host/mesh/SpaceReader.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <fmt/format.h>
#include <limits>
#include <string_view>

#include "host/FileError.h"
#include "host/Parsing.h"
#include "host/las/ByteSource.h"
#include "host/mesh/SharedPrecision.h"

namespace Meseta47::host {

namespace {

using Places = std::vector<std::array<double, 3>>;

struct RawMesh {
  Places places;
  std::vector<Tetrahedron> tetrahedra;
};

/// A file in memory, taken from front to back. Whatever it lacks is a FileError.
class Content {
 public:
  explicit Content(std::string const& path) : file_(path) {
    FileSource source(path);
    bytes_.resize(source.size());
    const std::size_t count = source.read(0, std::span(reinterpret_cast<std::uint8_t*>(bytes_.data()), bytes_.size()));
    bytes_.resize(count);
  }

  [[noreturn]] void fail(std::string const& what) const {
    throw FileError(file_, fmt::format("{}: {}", what, kDamaged));
  }
  [[nodiscard]] std::string const& file() const { return file_; }
  [[nodiscard]] std::string_view all() const { return bytes_; }

  /// The next word; empty at the end.
  std::string_view word() {
    while (at_ < bytes_.size() && isBlank(bytes_[at_])) ++at_;
    const std::size_t from = at_;
    while (at_ < bytes_.size() && !isBlank(bytes_[at_])) ++at_;
    return std::string_view(bytes_).substr(from, at_ - from);
  }
  template <class T>
  T number() {
    const std::string_view text = word();
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
      fail(fmt::format("\"{}\" stands where a number should", text.substr(0, 40)));
    }
    return value;
  }
  /// A count of things that take so many bytes each at least.
  std::size_t count(std::size_t bytesEach) {
    const auto n = number<std::uint64_t>();
    if (n > bytes_.size() / bytesEach) fail(fmt::format("it announces {} items, more than it has room for", n));
    return n;
  }
  void expect(std::string_view wanted) {
    if (const std::string_view found = word(); found != wanted) {
      fail(fmt::format("\"{}\" stands where {} should", found.substr(0, 40), wanted));
    }
  }

 private:
  static bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
  std::string file_, bytes_;
  std::size_t at_ = 0;
};

std::uint32_t vertexOf(Content& in, std::size_t vertices) {
  const auto n = in.number<std::uint64_t>();
  if (n < 1 || n > vertices) in.fail(fmt::format("a tetrahedron names vertex {} of {}", n, vertices));
  return static_cast<std::uint32_t>(n - 1);
}

Tetrahedron cornersOf(Content& in, std::size_t vertices) {
  Tetrahedron t{};
  for (std::uint32_t& v : t) v = vertexOf(in, vertices);
  return t;
}

void readPlaces(Content& in, RawMesh& mesh, std::size_t count, bool numbered) {
  mesh.places.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (numbered && in.number<std::uint64_t>() != i + 1) in.fail("its nodes are not numbered from 1 up");
    for (double& c : mesh.places[i]) c = in.number<double>();
    if (!numbered) in.word();  // what the vertex refers to
  }
}

RawMesh readMedit(Content& in) {
  RawMesh mesh;
  in.expect("MeshVersionFormatted");
  in.word();
  in.expect("Dimension");
  in.expect("3");
  for (std::string_view word = in.word(); !word.empty() && word != "End"; word = in.word()) {
    if (word == "Vertices" && mesh.places.empty()) {
      readPlaces(in, mesh, in.count(8), false);
    } else if (word == "Tetrahedra" && mesh.tetrahedra.empty()) {
      mesh.tetrahedra.resize(in.count(10));
      for (Tetrahedron& t : mesh.tetrahedra) {
        t = cornersOf(in, mesh.places.size());
        in.word();
      }
    } else if (word == "Vertices" || word == "Tetrahedra") {
      in.fail(fmt::format("it has {} twice", word));  // tetrahedra would name vertices of the wrong one
    } else {
      throw FileError(in.file(),
                      fmt::format("it holds {}: only vertices and tetrahedra can be proved", word.substr(0, 40)));
    }
  }
  return mesh;
}

RawMesh readGmsh(Content& in) {
  RawMesh mesh;
  in.expect("$MeshFormat");
  if (const std::string_view version = in.word(); !version.starts_with("2")) {
    throw FileError(in.file(), fmt::format("its version is {}: write it as version 2.2", version.substr(0, 40)));
  }
  if (in.word() != "0") throw FileError(in.file(), "it is binary: write it as text");
  in.word();
  in.expect("$EndMeshFormat");
  in.expect("$Nodes");
  readPlaces(in, mesh, in.count(8), true);
  in.expect("$EndNodes");
  in.expect("$Elements");
  const std::size_t elements = in.count(10);
  for (std::size_t i = 0; i < elements; ++i) {
    in.word();
    constexpr unsigned kTetrahedron = 4;
    if (const auto type = in.number<unsigned>(); type != kTetrahedron) {
      throw FileError(in.file(),
                      fmt::format("it holds elements of type {}: only tetrahedra, type 4, can be proved", type));
    }
    for (auto tags = in.number<unsigned>(); tags > 0; --tags) in.number<std::int64_t>();
    mesh.tetrahedra.push_back(cornersOf(in, mesh.places.size()));
  }
  in.expect("$EndElements");
  return mesh;
}

// --- VTU

/// The value of an attribute in a tag; empty when it has none.
std::string_view attribute(std::string_view tag, std::string const& name) {
  const std::size_t at = tag.find(" " + name + "=\"");
  if (at == std::string_view::npos) return {};
  const std::string_view rest = tag.substr(at + name.size() + 3);
  return rest.substr(0, rest.find('"'));
}

class Vtu {
 public:
  explicit Vtu(Content& in) : in_(in) {
    const std::size_t appended = in.all().find("<AppendedData");
    const std::size_t begin = in.all().find('_', appended);
    if (appended == std::string_view::npos || begin == std::string_view::npos) {
      throw FileError(in.file(), "it is no VTU file with raw appended arrays: write it as urdimbre tetra does");
    }
    head_ = in.all().substr(0, begin);
    data_ = in.all().substr(begin + 1);
    const std::string_view file = tag("<VTKFile"), arrays = tag("<AppendedData");
    if (attribute(file, "header_type") != "UInt64" || attribute(file, "byte_order") != "LittleEndian" ||
        !attribute(file, "compressor").empty() || attribute(arrays, "encoding") != "raw") {
      throw FileError(in.file(),
                      "only VTU files with raw, little-endian, uncompressed arrays behind lengths of 64 bits "
                      "can be proved: write it as urdimbre tetra does");
    }
  }

  RawMesh read() {
    RawMesh mesh;
    const std::string_view places = array("Points", "Float64");
    if (places.size() % sizeof(mesh.places[0]) != 0) in_.fail("its points are not three coordinates each");
    mesh.places.resize(places.size() / sizeof(mesh.places[0]));
    if (!places.empty()) std::memcpy(mesh.places.data(), places.data(), places.size());
    for (const char type : array("types", "UInt8")) {
      constexpr char kTetra = 10;
      if (type != kTetra) {
        throw FileError(in_.file(), fmt::format("it holds cells of type {}: only tetrahedra can be proved", int{type}));
      }
    }
    const std::string_view corners = array("connectivity", "Int64");
    constexpr std::size_t kCell = 4 * sizeof(std::int64_t);
    const std::size_t cells = array("types", "UInt8").size();
    if (corners.size() != cells * kCell) in_.fail("its cells have not four corners each");
    requireOffsets(cells);
    mesh.tetrahedra.resize(cells);
    for (std::size_t i = 0; i < 4 * cells; ++i) {
      const auto v = at<std::int64_t>(corners, i);
      if (v < 0 || static_cast<std::uint64_t>(v) >= mesh.places.size()) {
        in_.fail(fmt::format("a tetrahedron names vertex {} of {}, counted from 0", v, mesh.places.size()));
      }
      mesh.tetrahedra[i / 4][i % 4] = static_cast<std::uint32_t>(v);
    }
    return mesh;
  }

 private:
  template <class T>
  static T at(std::string_view bytes, std::size_t i) {
    T value;
    std::memcpy(&value, bytes.data() + i * sizeof value, sizeof value);
    return value;
  }
  void requireOffsets(std::size_t cells) const {
    const std::string_view offsets = array("offsets", "Int64");
    bool good = offsets.size() == cells * sizeof(std::int64_t);
    for (std::size_t i = 0; good && i < cells; ++i) good = at<std::uint64_t>(offsets, i) == 4 * (i + 1);
    if (!good) in_.fail("its cells do not end where tetrahedra would");
  }
  [[nodiscard]] std::string_view tag(std::string_view begin) const {
    const std::size_t from = head_.find(begin);
    if (from == std::string_view::npos) in_.fail(fmt::format("its head has no {}>", begin));
    return head_.substr(from, head_.find('>', from) - from);
  }
  /// The bytes of an array.
  [[nodiscard]] std::string_view array(std::string const& name, std::string_view type) const {
    for (std::size_t at = head_.find("<DataArray"); at != std::string_view::npos;
         at = head_.find("<DataArray", at + 1)) {
      const std::string_view line = head_.substr(at, head_.find('>', at) - at);
      if (attribute(line, "Name") != name) continue;
      if (attribute(line, "type") != type || attribute(line, "format") != "appended") break;
      std::uint64_t from = 0;
      const std::string_view text = attribute(line, "offset");
      std::from_chars(text.data(), text.data() + text.size(), from);
      if (from > data_.size() || data_.size() - from < sizeof from) {
        in_.fail(fmt::format("its array {} is cut short", name));
      }
      const auto bytes = Vtu::at<std::uint64_t>(data_.substr(from), 0);
      if (bytes > data_.size() - from - sizeof from) in_.fail(fmt::format("its array {} is cut short", name));
      return data_.substr(from + sizeof from, bytes);
    }
    throw FileError(in_.file(),
                    fmt::format("it has no appended array {} of {}: write it as urdimbre tetra does", name, type));
  }

  Content& in_;
  std::string_view head_, data_;
};

RawMesh readRaw(std::string const& path) {
  Content in(path);
  const std::string extension = extensionOf(path);
  RawMesh mesh = extension == ".vtu" ? Vtu(in).read() : extension == ".msh" ? readGmsh(in) : readMedit(in);
  constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max() / 6;
  if (mesh.tetrahedra.empty()) throw FileError(path, "it holds no tetrahedra: there is nothing to prove");
  if (mesh.tetrahedra.size() > kMost) throw FileError(path, "it has too many tetrahedra to number their faces");
  for (auto const& place : mesh.places) {
    for (const double c : place) {
      if (!std::isfinite(c)) throw FileError(path, fmt::format("a vertex has the coordinate {}: {}", c, kDamaged));
    }
  }
  return mesh;
}

}  // namespace

std::string ExactSpaceMesh::place(std::uint32_t vertex) const {
  const double units = std::pow(10.0, precision);
  CCoor3D<int> const& v = vertices[vertex];
  return fmt::format("{:.{}f} {:.{}f} {:.{}f}", origin[0] + v.x / units, precision, origin[1] + v.y / units, precision,
                     origin[2] + v.z / units, precision);
}

bool isSpaceMesh(std::string const& path) {
  const std::string extension = extensionOf(path);
  return extension == ".vtu" || extension == ".mesh" || extension == ".msh";
}

ExactSpaceMesh readSpaceMesh(std::string const& path) {
  RawMesh raw = readRaw(path);
  const SharedPrecision precision(raw.places, 3, path);
  ExactSpaceMesh mesh;
  mesh.precision = precision.decimals();
  auto& at = mesh.vertices;
  at.resize(raw.places.size());
  mesh.origin = {precision.fillAxis(raw.places, 0, [&at](std::size_t i, int x) { at[i].x = x; }),
                 precision.fillAxis(raw.places, 1, [&at](std::size_t i, int y) { at[i].y = y; }),
                 precision.fillAxis(raw.places, 2, [&at](std::size_t i, int z) { at[i].z = z; })};
  mesh.tetrahedra = std::move(raw.tetrahedra);
  return mesh;
}

}  // namespace Meseta47::host
