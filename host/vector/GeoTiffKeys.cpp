// GeoTIFF keys are read by GDAL as part of an image alone. So it is given one: a TIFF of a single pixel that carries
// the keys of the LAS file, in memory.
#include "host/vector/GeoTiffKeys.h"

#include <algorithm>
#include <atomic>
#include <cpl_conv.h>
#include <cpl_vsi.h>
#include <cstdint>
#include <fmt/format.h>
#include <gdal_frmts.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <optional>
#include <vector>

#include "host/FileError.h"
#include "host/las/LasBytes.h"
#include "host/vector/Gdal.h"

namespace Meseta47::host {

namespace {

constexpr std::uint16_t kProjected = 3072, kGeographic = 2048, kVertical = 4096, kVerticalUnit = 4099;
constexpr std::uint16_t kUserDefined = 32767;
constexpr std::uint16_t kModelType = 1024, kModelProjected = 1, kModelGeographic = 2;

enum Kind : std::uint16_t { kAscii = 2, kShort = 3, kLong = 4, kDouble = 12 };

/// The directory of a TIFF in the making, behind which the values follow that do not fit its entries.
class TinyTiff {
 public:
  void add(std::uint16_t tag, Kind kind, std::uint32_t value) { entries_.push_back({tag, kind, 1, value, {}}); }
  void add(std::uint16_t tag, Kind kind, std::size_t count, void const* values, std::size_t bytes) {
    auto const* const from = static_cast<std::uint8_t const*>(values);
    entries_.push_back({tag, kind, static_cast<std::uint32_t>(count), 0, {from, from + bytes}});
  }

  /// The entries must have been added by ascending tags.
  [[nodiscard]] std::vector<std::uint8_t> bytes() const {
    constexpr std::size_t kHead = 8, kEntry = 12;
    const std::size_t values = kHead + 2 + entries_.size() * kEntry + 4;
    std::vector<std::uint8_t> all(values);
    store(all.data(), std::uint32_t{0x002A4949});  // "II", 42
    store(all.data() + 4, static_cast<std::uint32_t>(kHead));
    store(all.data() + kHead, static_cast<std::uint16_t>(entries_.size()));
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      Entry const& e = entries_[i];
      std::uint8_t const* const data = e.values.data();
      const bool inPlace = e.values.size() <= sizeof(std::uint32_t);
      const auto place = static_cast<std::uint32_t>(all.size());
      if (!inPlace) all.insert(all.end(), e.values.begin(), e.values.end());
      std::uint8_t* const to = all.data() + kHead + 2 + i * kEntry;
      store(to, e.tag);
      store(to + 2, static_cast<std::uint16_t>(e.kind));
      store(to + 4, e.count);
      store(to + 8, inPlace ? e.value : place);
      if (inPlace) std::copy_n(data, e.values.size(), to + 8);
    }
    return all;
  }

 private:
  struct Entry {
    std::uint16_t tag;
    Kind kind;
    std::uint32_t count, value;
    std::vector<std::uint8_t> values;
  };
  std::vector<Entry> entries_;
};

std::vector<std::uint8_t> imageWith(GeoKeys const& keys) {
  TinyTiff tiff;
  tiff.add(256, kShort, 1);  // width, height, bits a sample, no compression, black is zero
  tiff.add(257, kShort, 1);
  tiff.add(258, kShort, 8);
  tiff.add(259, kShort, 1);
  tiff.add(262, kShort, 1);
  tiff.add(273, kLong, 0);  // the pixel: a byte of the head serves
  tiff.add(277, kShort, 1);
  tiff.add(278, kShort, 1);
  tiff.add(279, kLong, 1);
  tiff.add(34735, kShort, keys.directory.size(), keys.directory.data(), 2 * keys.directory.size());
  if (!keys.doubles.empty()) {
    tiff.add(34736, kDouble, keys.doubles.size(), keys.doubles.data(), 8 * keys.doubles.size());
  }
  if (!keys.ascii.empty()) tiff.add(34737, kAscii, keys.ascii.size() + 1, keys.ascii.c_str(), keys.ascii.size() + 1);
  return tiff.bytes();
}

/// A file in GDAL's memory for as long as this stands.
class MemoryImage {
 public:
  explicit MemoryImage(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {
    static std::atomic<unsigned> count{0};
    name_ = fmt::format("/vsimem/urdimbre_keys_{}.tif", ++count);
    VSIFCloseL(VSIFileFromMemBuffer(name_.c_str(), bytes_.data(), bytes_.size(), FALSE));
  }
  ~MemoryImage() { VSIUnlink(name_.c_str()); }
  MemoryImage(MemoryImage const&) = delete;
  MemoryImage& operator=(MemoryImage const&) = delete;
  [[nodiscard]] char const* name() const { return name_.c_str(); }

 private:
  std::vector<std::uint8_t> bytes_;
  std::string name_;
};

std::string wktOf(OGRSpatialReference const& system) {
  constexpr char const* kForm[] = {"FORMAT=WKT2_2019", nullptr};
  char* text = nullptr;
  system.exportToWkt(&text, kForm);
  std::string wkt(text != nullptr ? text : "");
  CPLFree(text);
  return wkt;
}

std::optional<OGRSpatialReference> planIn(MemoryImage const& image) {
  constexpr char const* kDrivers[] = {"GTiff", nullptr};
  const GDALDatasetUniquePtr dataset(
      GDALDataset::Open(image.name(), GDAL_OF_RASTER | GDAL_OF_READONLY, kDrivers, nullptr, nullptr));
  OGRSpatialReference const* const found = dataset ? dataset->GetSpatialRef() : nullptr;
  return found != nullptr ? std::optional(*found) : std::nullopt;
}

/// The code of today for heights: the first edition of GeoTIFF had other ones, and told the unit of some apart.
int heightsCode(std::uint16_t code, std::uint16_t unit) {
  constexpr int kNavd88 = 5703, kNavd88SurveyFeet = 6360, kNavd88Feet = 8228, kNgvd29 = 7968, kNgvd29SurveyFeet = 5702;
  constexpr std::uint16_t kFoot = 9002, kSurveyFoot = 9003;
  if (code == 5103 || code == kNavd88) {
    return unit == kSurveyFoot ? kNavd88SurveyFeet : unit == kFoot ? kNavd88Feet : kNavd88;
  }
  if (code == 5102) return unit == kSurveyFoot ? kNgvd29SurveyFeet : kNgvd29;
  return code;
}

/// The system with that of the heights, where the keys name one that is known.
OGRSpatialReference withHeights(OGRSpatialReference const& plan, GeoKeys const& keys) {
  const std::uint16_t code = keys.shortValue(kVertical).value_or(0);
  OGRSpatialReference heights;
  if (code == 0 || code == kUserDefined ||
      heights.importFromEPSG(heightsCode(code, keys.shortValue(kVerticalUnit).value_or(0))) != OGRERR_NONE ||
      heights.IsVertical() == 0) {
    return plan;
  }
  OGRSpatialReference both;
  const std::string name = std::string(plan.GetName()) + " + " + heights.GetName();
  both.SetCompoundCS(name.c_str(), &plan, &heights);
  return both;
}

bool isInRegister(GeoKeys const& keys) {
  const std::uint16_t projected = keys.shortValue(kProjected).value_or(0);
  const std::uint16_t code = projected != 0 ? projected : keys.shortValue(kGeographic).value_or(0);
  OGRSpatialReference known;
  return code == kUserDefined || known.importFromEPSG(code) == OGRERR_NONE;
}

/// Writers are seen that leave out the key that says which of the two kinds of system the others describe.
GeoKeys withModelType(GeoKeys keys) {
  if (keys.directory.size() < 4 || keys.shortValue(kModelType)) return keys;
  const std::uint16_t model = keys.shortValue(kProjected) ? kModelProjected : kModelGeographic;
  keys.directory.insert(keys.directory.begin() + 4, {kModelType, 0, 1, model});
  ++keys.directory[3];
  return keys;
}

/// Entries of zeros fill up the directories of some files; GeoTIFF has its keys ascend.
GeoKeys withoutBlanks(GeoKeys keys) {
  auto& d = keys.directory;
  while (d.size() >= 8 && d.size() % 4 == 0 && d[d.size() - 4] == 0) d.resize(d.size() - 4);
  if (d.size() >= 4) d[3] = static_cast<std::uint16_t>((d.size() - 4) / 4);
  return keys;
}

}  // namespace

std::string wktOfGeoKeys(GeoKeys const& keys, std::string const& file) {
  if (!keys.shortValue(kProjected) && !keys.shortValue(kGeographic)) return {};
  startGdalFormat(GDALRegister_GTiff);
  const GdalReport report;
  const auto plan =
      isInRegister(keys) ? planIn(MemoryImage(imageWith(withModelType(withoutBlanks(keys))))) : std::nullopt;
  report.check();
  if (!plan) {
    throw FileError(file,
                    fmt::format("its GeoTIFF keys name no reference system that is known (projected {}, "
                                "geographic {}): name it with --a-srs",
                                keys.shortValue(kProjected).value_or(0), keys.shortValue(kGeographic).value_or(0)));
  }
  const OGRSpatialReference whole = withHeights(*plan, keys);
  report.check();
  return wktOf(whole);
}

}  // namespace Meseta47::host
