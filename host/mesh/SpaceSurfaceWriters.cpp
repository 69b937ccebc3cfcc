// Surfaces in space as PLY, OBJ, STL and glTF 2.0.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <fmt/format.h>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/Failure.h"
#include "host/Parsing.h"
#include "host/mesh/BlockOutput.h"
#include "host/mesh/SpaceSurface.h"

namespace Meseta47::host {

namespace {

static_assert(std::endian::native == std::endian::little, "values are put into the file as they stand");

void writePly(SpaceSurface const& s, BlockOutput& out) {
  out.print(
      "ply\nformat binary_little_endian 1.0\nelement vertex {}\nproperty double x\nproperty double y\nproperty double "
      "z\n{}element face {}\nproperty list uchar uint vertex_indices\nend_header\n",
      s.vertices.size(), s.colours.empty() ? "" : "property uchar red\nproperty uchar green\nproperty uchar blue\n",
      s.faces.size());
  for (std::uint32_t v = 0; v < s.vertices.size(); ++v) {
    out.put(s.place(v));
    if (!s.colours.empty()) out.put(s.colours[v]);
  }
  for (SpaceSurface::Face const& f : s.faces) {
    out.put(std::uint8_t{3});
    out.put(f);
  }
}

void writeObj(SpaceSurface const& s, BlockOutput& out) {
  const int decimals = std::max<int>(0, s.seed.precision);
  for (std::uint32_t v = 0; v < s.vertices.size(); ++v) {
    const auto p = s.place(v);
    out.print("v {:.{}f} {:.{}f} {:.{}f}", p[0], decimals, p[1], decimals, p[2], decimals);
    if (!s.colours.empty()) {
      auto const& c = s.colours[v];
      out.print(" {:.3f} {:.3f} {:.3f}", c[0] / 255.0, c[1] / 255.0, c[2] / 255.0);
    }
    out.print("\n");
  }
  for (SpaceSurface::Face const& f : s.faces) out.print("f {} {} {}\n", f[0] + 1, f[1] + 1, f[2] + 1);
}

/// Single precision from the origin of the cloud: with it, a place on the Earth would lose its decimetres.
std::array<float, 3> local(SpaceSurface const& s, std::uint32_t v) {
  const double units = s.seed.Precision();
  CCoor3D<int> const& p = s.vertices[v];
  return {static_cast<float>(p.x / units), static_cast<float>(p.y / units), static_cast<float>(p.z / units)};
}

void writeStl(SpaceSurface const& s, BlockOutput& out) {
  std::array<char, 80> head{};
  const std::string text = fmt::format("surface; add {:.17g} {:.17g} {:.17g} to its coordinates", s.seed.origen[0],
                                       s.seed.origen[1], s.seed.origen[2]);
  std::copy_n(text.begin(), std::min(text.size(), head.size()), head.begin());
  out.put(head);
  out.put(static_cast<std::uint32_t>(s.faces.size()));
  for (SpaceSurface::Face const& f : s.faces) {
    // Of the points themselves: what single precision drops would show in a normal.
    CCoor3D<int> const &a = s.vertices[f[0]], &b = s.vertices[f[1]], &c = s.vertices[f[2]];
    const double u[3] = {double(b.x) - a.x, double(b.y) - a.y, double(b.z) - a.z};
    const double v[3] = {double(c.x) - a.x, double(c.y) - a.y, double(c.z) - a.z};
    const double n[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
    const double length = std::hypot(n[0], n[1], n[2]);
    for (const double axis : n) out.put(static_cast<float>(length > 0 ? axis / length : 0));
    for (const std::uint32_t corner : f) out.put(local(s, corner));
    out.put(std::uint16_t{0});
  }
}

std::string base64(std::string const& bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t three = 0;
    const std::size_t has = std::min<std::size_t>(3, bytes.size() - i);
    for (std::size_t k = 0; k < 3; ++k) {
      three = three << 8 | (k < has ? static_cast<std::uint8_t>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) text += k <= has ? kDigits[three >> (18 - 6 * k) & 63U] : '=';
  }
  return text;
}

template <class T>
void append(std::string& bytes, T const& value) {
  bytes.append(reinterpret_cast<char const*>(&value), sizeof value);
}

/// One file, its arrays within it. The node turns heights, which are its y, and puts the origin back in doubles.
void writeGltf(SpaceSurface const& s, BlockOutput& out) {
  using Json = nlohmann::ordered_json;
  constexpr int kFloat = 5126, kUnsigned = 5125, kByte = 5121, kVertices = 34962, kIndices = 34963;
  std::string bytes;
  std::array<float, 3> least{}, greatest{};
  least.fill(std::numeric_limits<float>::max());
  greatest.fill(std::numeric_limits<float>::lowest());
  for (std::uint32_t v = 0; v < s.vertices.size(); ++v) {
    const auto p = local(s, v);
    for (std::size_t i = 0; i < 3; ++i) {
      least[i] = std::min(least[i], p[i]);
      greatest[i] = std::max(greatest[i], p[i]);
    }
    append(bytes, p);
  }
  const std::size_t places = bytes.size();
  for (auto const& c : s.colours) append(bytes, std::array<std::uint8_t, 4>{c[0], c[1], c[2], 255});
  const std::size_t colours = bytes.size() - places;
  for (auto const& f : s.faces) append(bytes, f);
  const std::size_t indices = bytes.size() - places - colours;

  Json attributes{{"POSITION", 0}};
  Json views{{{"buffer", 0}, {"byteOffset", 0}, {"byteLength", places}, {"target", kVertices}},
             {{"buffer", 0}, {"byteOffset", places + colours}, {"byteLength", indices}, {"target", kIndices}}};
  Json accessors{{{"bufferView", 0},
                  {"componentType", kFloat},
                  {"count", s.vertices.size()},
                  {"type", "VEC3"},
                  {"min", least},
                  {"max", greatest}},
                 {{"bufferView", 1}, {"componentType", kUnsigned}, {"count", 3 * s.faces.size()}, {"type", "SCALAR"}}};
  if (!s.colours.empty()) {
    attributes["COLOR_0"] = 2;
    views.push_back({{"buffer", 0}, {"byteOffset", places}, {"byteLength", colours}, {"target", kVertices}});
    accessors.push_back({{"bufferView", 2},
                         {"componentType", kByte},
                         {"normalized", true},
                         {"count", s.vertices.size()},
                         {"type", "VEC4"}});
  }
  double const(&o)[3] = s.seed.origen;
  const Json root{
      {"asset", {{"version", "2.0"}, {"generator", "urdimbre"}}},
      {"scene", 0},
      {"scenes", Json::array({{{"nodes", {0}}}})},
      // By columns: x stays, heights become y, north becomes -z.
      {"nodes", Json::array({{{"mesh", 0}, {"matrix", {1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, o[0], o[2], -o[1], 1}}}})},
      {"meshes",
       Json::array({{{"primitives", Json::array({{{"attributes", attributes}, {"indices", 1}, {"material", 0}}})}}})},
      {"materials", Json::array({{{"pbrMetallicRoughness", {{"metallicFactor", 0}, {"roughnessFactor", 1}}},
                                  {"doubleSided", true}}})},
      {"bufferViews", views},
      {"accessors", accessors},
      {"buffers", Json::array({{{"byteLength", bytes.size()},
                                {"uri", "data:application/octet-stream;base64," + base64(bytes)}}})}};
  out.print("{}\n", root.dump());
}

using Writer = void (*)(SpaceSurface const&, BlockOutput&);
Writer writerFor(std::string const& output) {
  const std::string extension = extensionOf(output);
  if (extension == ".ply") return writePly;
  if (extension == ".obj") return writeObj;
  if (extension == ".stl") return writeStl;
  if (extension == ".gltf") return writeGltf;
  throw UsageError(
      fmt::format("{}: no surface has the extension \"{}\": use .ply, .obj, .stl or .gltf", output, extension));
}

}  // namespace

void requireSurfaceFormat(std::string const& output) { static_cast<void>(writerFor(output)); }

void writeSurface(SpaceSurface const& surface, std::string const& output) {
  OutputFile file(output);
  BlockOutput out(file);
  writerFor(output)(surface, out);
  out.flush();
  file.commit();
}

}  // namespace Meseta47::host
