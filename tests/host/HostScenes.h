#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "host/FileError.h"
#include "host/las/LasCodec.h"
#include "host/las/LasHeader.h"
#include "host/las/LasPoint.h"

namespace Meseta47::host {

using Bytes = std::vector<std::uint8_t>;

/// A folder for the files of one test, gone with it.
class Folder {
 public:
  Folder() {
    static std::random_device device;
    do {
      path_ = std::filesystem::temp_directory_path() / ("urdimbre_test_" + std::to_string(device()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;

  [[nodiscard]] std::string file(std::string const& name) const { return (path_ / name).string(); }
  [[nodiscard]] std::string path() const { return path_.string(); }
  [[nodiscard]] std::string make(std::string const& name, std::string const& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
    return file(name);
  }
  [[nodiscard]] std::string make(std::string const& name, Bytes const& content) const {
    return make(name, std::string(content.begin(), content.end()));
  }
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (auto const& entry : std::filesystem::directory_iterator(path_)) {
      found.push_back(entry.path().filename().string());
    }
    return found;
  }

 private:
  std::filesystem::path path_;
};

/// Whether the system makes symbolic links for whoever asks; then there is this one now.
inline bool linked(std::string const& target, std::string const& link) {
  std::error_code refused;
  std::filesystem::create_symlink(target, link, refused);
  return !refused;
}
inline constexpr char const* kNoLinks = "this system makes no symbolic links here";

inline Bytes bytesOf(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

/// The message of the FileError that an action ends with; empty when it ends well.
template <typename Action>
std::string errorOf(Action action) {
  try {
    action();
  } catch (FileError const& error) {
    return error.what();
  }
  return {};
}

/// A point whose every field differs from its neighbours', within what all formats can hold.
inline LasPoint somePoint(int i) {
  LasPoint p;
  p.x = 1000 * i - 5;
  p.y = -77 * i;
  p.z = i % 1000 * (i % 1000);
  p.intensity = static_cast<std::uint16_t>(40000 + i);
  p.returnNumber = static_cast<std::uint8_t>(1 + i % 5);
  p.returns = 5;
  p.classification = static_cast<std::uint8_t>(i % 32);
  p.flags = static_cast<std::uint8_t>(i % 8);
  p.scanDirection = i % 2 != 0;
  p.edgeOfFlightLine = i % 3 == 0;
  p.userData = static_cast<std::uint8_t>(i * 7);
  p.scanAngle = static_cast<std::int16_t>((i % 30 - 15) * 500);  // whole degrees
  p.sourceId = static_cast<std::uint16_t>(300 + i);
  p.gpsTime = 123456.75 + i;
  p.red = static_cast<std::uint16_t>(65535 - i);
  p.green = static_cast<std::uint16_t>(256 * i);
  p.blue = static_cast<std::uint16_t>(i);
  p.nir = static_cast<std::uint16_t>(9 * i);
  return p;
}

/// The point as a file of the format gives it back: what the format lacks is zero.
inline LasPoint asHeldBy(unsigned format, LasPoint p) {
  if (!hasGpsTime(format)) {
    p.gpsTime = 0;
  }
  if (!hasColour(format)) {
    p.red = p.green = p.blue = 0;
  }
  if (!hasInfrared(format)) {
    p.nir = 0;
  }
  return p;
}

inline auto fieldsOf(LasPoint const& p) {
  return std::make_tuple(p.x, p.y, p.z, p.intensity, int{p.returnNumber}, int{p.returns}, int{p.classification},
                         int{p.flags}, int{p.channel}, p.scanDirection, p.edgeOfFlightLine, int{p.userData},
                         p.scanAngle, p.sourceId, p.gpsTime, p.red, p.green, p.blue, p.nir);
}

/// A LAS file put together in memory, whole and sound until a test says otherwise.
struct LasScene {
  LasHeader header;
  std::vector<LasPoint> points;

  explicit LasScene(unsigned format = 1, int count = 10, unsigned versionMinor = 2) {
    header.versionMinor = static_cast<std::uint8_t>(versionMinor);
    header.headerSize = lasHeaderSize(versionMinor);
    header.offsetToPoints = header.headerSize;
    header.pointFormat = static_cast<std::uint8_t>(format);
    header.recordLength = lasRecordLength(format);
    header.pointCount = static_cast<std::uint64_t>(count);
    for (int i = 0; i < count; ++i) {
      points.push_back(somePoint(i));
    }
  }

  [[nodiscard]] Bytes bytes() const {
    const auto head = encodeLasHeader(header);
    Bytes all(head.begin(), head.begin() + lasHeaderSize(header.versionMinor));
    for (LasPoint const& point : points) {
      Bytes record(lasRecordLength(header.pointFormat));
      encodeLasPoint(header.pointFormat, point, record.data());
      all.insert(all.end(), record.begin(), record.end());
    }
    return all;
  }
};

/// The folder of real clouds, or an empty text where there is none.
inline std::string realClouds() {
  char const* const wanted = std::getenv("URDIMBRE_DATA");
  const std::string folder = wanted != nullptr ? wanted : URDIMBRE_DATA_DEFAULT;
  return std::filesystem::exists(folder + "/README.md") ? folder : std::string();
}

}  // namespace Meseta47::host
