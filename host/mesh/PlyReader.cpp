#include "host/mesh/PlyReader.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fmt/format.h>
#include <limits>

#include "host/CloudPoint.h"
#include "host/FileError.h"
#include "host/mesh/PlyHeader.h"

namespace Meseta47::host {

namespace {

static_assert(std::endian::native == std::endian::little, "values are taken from the file as they stand");

constexpr std::size_t kLongestLine = 4096;  // of a header; what is longer is no header

struct CutShort {};

struct NoNumber {
  std::string word;
};

/// The bytes of a source from front to back, a block at a time.
class ForwardReader {
 public:
  explicit ForwardReader(ByteSource& source) : source_(source), block_(std::size_t{1} << 18) {}

  [[nodiscard]] std::uint64_t left() const { return source_.size() - std::min(source_.size(), start_ + at_); }

  /// The next `count` bytes, at most a block. Throws CutShort.
  std::uint8_t const* take(std::size_t count) {
    if (filled_ - at_ < count) fill();
    if (filled_ - at_ < count) throw CutShort{};
    at_ += count;
    return block_.data() + at_ - count;
  }
  /// The next byte; -1 at the end.
  int peek() {
    if (at_ == filled_) fill();
    return at_ == filled_ ? -1 : block_[at_];
  }

 private:
  void fill() {
    std::copy(block_.begin() + static_cast<std::ptrdiff_t>(at_), block_.begin() + static_cast<std::ptrdiff_t>(filled_),
              block_.begin());
    start_ += at_;
    filled_ -= at_;
    at_ = 0;
    filled_ += source_.read(start_ + filled_, std::span(block_).subspan(filled_));
  }

  ByteSource& source_;
  std::vector<std::uint8_t> block_;
  std::uint64_t start_ = 0;  // of the block, in the source
  std::size_t at_ = 0, filled_ = 0;
};

class BinaryValues {
 public:
  explicit BinaryValues(ForwardReader& in) : in_(in) {}

  double next(PlyType type) {
    switch (type) {
      case PlyType::int8:
        return as<std::int8_t>();
      case PlyType::uint8:
        return as<std::uint8_t>();
      case PlyType::int16:
        return as<std::int16_t>();
      case PlyType::uint16:
        return as<std::uint16_t>();
      case PlyType::int32:
        return as<std::int32_t>();
      case PlyType::uint32:
        return as<std::uint32_t>();
      case PlyType::float32:
        return static_cast<double>(as<float>());
      default:
        return as<double>();
    }
  }
  void finish() {}

 private:
  template <class T>
  T as() {
    T value;
    std::memcpy(&value, in_.take(sizeof value), sizeof value);
    return value;
  }

  ForwardReader& in_;
};

class TextValues {
 public:
  explicit TextValues(ForwardReader& in) : in_(in) {}

  double next(PlyType) {
    word_.clear();
    finish();
    for (int c = in_.peek(); c > ' ' && word_.size() < kLongestLine; c = in_.peek()) {
      word_ += static_cast<char>(*in_.take(1));
    }
    if (word_.empty()) throw CutShort{};
    double value = 0;
    const auto [end, error] = std::from_chars(word_.data(), word_.data() + word_.size(), value);
    if (error != std::errc() || end != word_.data() + word_.size()) throw NoNumber{word_.substr(0, 40)};
    return value;
  }
  void finish() {
    for (int c = in_.peek(); c >= 0 && c <= ' '; c = in_.peek()) in_.take(1);
  }

 private:
  ForwardReader& in_;
  std::string word_;
};

PlyHeader readHeader(ForwardReader& in, std::string const& file) {
  PlyHeader header;
  std::string line;
  for (bool more = true; more;) {
    line.clear();
    for (int c = in.peek(); c >= 0 && c != '\n' && line.size() < kLongestLine; c = in.peek()) {
      line += static_cast<char>(*in.take(1));
    }
    const bool whole = in.peek() == '\n';
    if (whole) in.take(1);
    more = header.add(line, file);
    if (more && !whole) throw FileError(file, fmt::format("its header has no end: {}", kDamaged));
  }
  return header;
}

/// Reads the elements one after another and says where the file goes wrong.
template <class Values>
class Elements {
 public:
  Elements(ForwardReader& in, PlyHeader const& header, std::string const& file)
      : in_(in), values_(in), header_(header), file_(file) {}

  Surface read() {
    for (PlyElement const& element : header_.elements) {
      requireRoom(element);
      try {
        readOne(element);
      } catch (CutShort const&) {
        fail(element, fmt::format("is cut short: {}", kDamaged));
      } catch (NoNumber const& wrong) {
        fail(element, fmt::format("holds \"{}\" where a number should stand", wrong.word));
      }
    }
    values_.finish();
    if (in_.left() != 0) {
      throw FileError(file_, fmt::format("{} bytes follow its last element: {}", withThousands(in_.left()), kDamaged));
    }
    return std::move(surface_);
  }

 private:
  void requireRoom(PlyElement const& element) const {
    const std::uint64_t least = element.leastBytes(header_.ascii);
    if (element.count == 0 || (least != 0 && element.count <= in_.left() / least)) return;
    if (least == 0) throw FileError(file_, fmt::format("its element \"{}\" has no properties", element.name));
    throw FileError(
        file_, fmt::format("it announces {} of the element \"{}\", which take {} bytes each at least, but "
                           "{} bytes are left: {}",
                           withThousands(element.count), element.name, least, withThousands(in_.left()), kDamaged));
  }

  [[noreturn]] void fail(PlyElement const& element, std::string const& what) const {
    throw FileError(file_, fmt::format("{} {} {}", element.name, withThousands(index_), what));
  }

  void readOne(PlyElement const& element) {
    index_ = 0;
    if (element.name == "vertex") return readVertices(element);
    if (element.name == "face") return readFaces(element);
    for (; index_ < element.count; ++index_) {
      for (PlyProperty const& property : element.properties) skip(property);
    }
  }

  void skip(PlyProperty const& property) {
    const double values = property.countType ? values_.next(*property.countType) : 1;
    for (double i = 0; i < values; ++i) values_.next(property.type);
  }

  /// Which number of a vertex a property is: 0 to 2 a coordinate, 3 to 5 a colour, 6 nothing of ours.
  static std::size_t roleOf(PlyProperty const& property) {
    constexpr std::string_view kNames[] = {"x", "y", "z", "red", "green", "blue"};
    const auto role =
        static_cast<std::size_t>(std::find(std::begin(kNames), std::end(kNames), property.name) - std::begin(kNames));
    const bool fits = !property.countType && (role < 3 || property.type == PlyType::uint8);
    return fits ? role : std::size(kNames);
  }

  void readVertices(PlyElement const& element) {
    std::vector<std::size_t> roles;
    for (PlyProperty const& property : element.properties) roles.push_back(roleOf(property));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (std::count(roles.begin(), roles.end(), axis) != 1) {
        throw FileError(file_, fmt::format("its vertices have no {}: a surface needs x, y and z", "xyz"[axis]));
      }
    }
    bool coloured = true;
    for (std::size_t role = 3; role < 6; ++role) {
      coloured = coloured && std::count(roles.begin(), roles.end(), role) == 1;
    }
    surface_.vertices.reserve(surface_.vertices.size() + element.count);
    for (; index_ < element.count; ++index_) {
      std::array<double, 6> values{};
      for (std::size_t i = 0; i < roles.size(); ++i) {
        if (roles[i] < values.size()) {
          values[roles[i]] = values_.next(element.properties[i].type);
        } else {
          skip(element.properties[i]);
        }
      }
      for (std::size_t axis = 0; axis < 3; ++axis) {
        if (!(std::abs(values[axis]) <= kFarthestPlace)) {
          fail(element, fmt::format("has the coordinate {:g}, which no place has: {}", values[axis], kDamaged));
        }
      }
      surface_.vertices.push_back({values[0], values[1], values[2]});
      if (!coloured) continue;
      const auto byte = [&](std::size_t role) {
        return static_cast<std::uint8_t>(std::clamp(values[role], 0.0, 255.0));
      };
      surface_.colours.push_back({byte(3), byte(4), byte(5)});
    }
  }

  static bool namesCorners(PlyProperty const& property) {
    return property.countType && (property.name == "vertex_indices" || property.name == "vertex_index");
  }

  void readFaces(PlyElement const& element) {
    if (std::count_if(element.properties.begin(), element.properties.end(), namesCorners) != 1) {
      throw FileError(file_, "its faces have no list vertex_indices: they name no vertices");
    }
    surface_.triangles.reserve(element.count);
    for (; index_ < element.count; ++index_) {
      for (PlyProperty const& property : element.properties) {
        if (namesCorners(property)) {
          surface_.triangles.push_back(readTriangle(element, property));
        } else {
          skip(property);
        }
      }
    }
  }

  Surface::Triangle readTriangle(PlyElement const& element, PlyProperty const& property) {
    const double corners = values_.next(*property.countType);
    if (corners != 3) {
      fail(element, fmt::format("has {:g} corners: only triangles make a surface; split it before", corners));
    }
    Surface::Triangle triangle{};
    for (std::uint32_t& corner : triangle) {
      const double index = values_.next(property.type);
      if (!(index >= 0 && index < vertices() && index == std::floor(index))) {
        fail(element, fmt::format("names vertex {:.16g}, but there are {}, counted from 0: {}", index,
                                  withThousands(static_cast<std::uint64_t>(vertices())), kDamaged));
      }
      corner = static_cast<std::uint32_t>(index);
    }
    return triangle;
  }

  /// How many the header announces: faces may stand before the vertices.
  [[nodiscard]] double vertices() const {
    double count = 0;
    for (PlyElement const& element : header_.elements) {
      if (element.name == "vertex") count += static_cast<double>(element.count);
    }
    return std::min(count, static_cast<double>(std::numeric_limits<std::uint32_t>::max()));
  }

  ForwardReader& in_;
  Values values_;
  PlyHeader const& header_;
  std::string const& file_;
  Surface surface_;
  std::uint64_t index_ = 0;  // of the vertex or face that is being read
};

}  // namespace

Surface readPly(ByteSource& source) {
  ForwardReader in(source);
  const PlyHeader header = readHeader(in, source.name());
  Surface surface = header.ascii ? Elements<TextValues>(in, header, source.name()).read()
                                 : Elements<BinaryValues>(in, header, source.name()).read();
  if (surface.triangles.empty()) {
    throw FileError(source.name(), "it holds no faces: points alone are no surface; give them as a cloud");
  }
  return surface;
}

Surface readPly(std::string const& path) {
  FileSource source(path);
  return readPly(source);
}

}  // namespace Meseta47::host
