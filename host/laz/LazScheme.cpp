#include "host/laz/LazScheme.h"

#include <algorithm>
#include <fmt/format.h>

#include "host/FileError.h"
#include "host/las/LasBytes.h"
#include "host/las/LasCodec.h"

namespace Meseta47::host {

namespace {

constexpr std::size_t kHead = 34;
constexpr std::size_t kItemBytes = 6;

enum ItemType : std::uint16_t {
  kBytes = 0,
  kPoint10 = 6,
  kGpsTime11 = 7,
  kRgb12 = 8,
  kWavePacket13 = 9,
  kPoint14 = 10,
  kRgb14 = 11,
  kRgbNir14 = 12,
  kWavePacket14 = 13,
  kBytes14 = 14,
};

struct Item {
  std::uint16_t type = 0, bytes = 0, version = 0;
  bool operator==(Item const&) const = default;
};

/// The items of a record, in their order.
std::vector<Item> itemsOf(LazScheme const& scheme) {
  const unsigned format = scheme.pointFormat;
  const auto version = static_cast<std::uint16_t>(scheme.itemVersion);
  const auto extra = static_cast<std::uint16_t>(scheme.extraBytes);
  std::vector<Item> items;
  if (isExtended(format)) {
    items.push_back({kPoint14, 30, version});
    if (hasInfrared(format)) items.push_back({kRgbNir14, 8, version});
    if (hasColour(format) && !hasInfrared(format)) items.push_back({kRgb14, 6, version});
    if (hasWaveform(format)) items.push_back({kWavePacket14, 29, version});
    if (extra > 0) items.push_back({kBytes14, extra, version});
    return items;
  }
  items.push_back({kPoint10, 20, version});
  if (hasGpsTime(format)) items.push_back({kGpsTime11, 8, version});
  if (hasColour(format)) items.push_back({kRgb12, 6, version});
  if (hasWaveform(format)) items.push_back({kWavePacket13, 29, 1});
  if (extra > 0) items.push_back({kBytes, extra, version});
  return items;
}

[[noreturn]] void fail(std::string const& file, std::string const& what) {
  throw FileError(file, fmt::format("{}: convert it to LAS, or compress it anew", what));
}

LazScheme::Kind kindOf(std::string const& file, unsigned compressor) {
  if (compressor < 1 || compressor > 3) {
    fail(file, fmt::format("its points are compressed in a way that is not known (compressor {})", compressor));
  }
  return static_cast<LazScheme::Kind>(compressor - 1);
}

std::vector<Item> readItems(std::span<std::uint8_t const> data, std::size_t count) {
  std::vector<Item> items(count);
  for (std::size_t i = 0; i < count; ++i) {
    std::uint8_t const* const from = data.data() + kHead + i * kItemBytes;
    items[i] = {load<std::uint16_t>(from), load<std::uint16_t>(from + 2), load<std::uint16_t>(from + 4)};
  }
  return items;
}

void requireItems(std::string const& file, LazScheme const& scheme, std::vector<Item> const& items) {
  const bool layered = scheme.kind == LazScheme::Kind::layered;
  if (layered != isExtended(scheme.pointFormat)) {
    fail(file, fmt::format("points of format {} are never compressed {} layers, as its record says", scheme.pointFormat,
                           layered ? "in" : "without"));
  }
  if (items == itemsOf(scheme)) return;
  const bool known =
      layered ? scheme.itemVersion == 3 || scheme.itemVersion == 4 : scheme.itemVersion == 1 || scheme.itemVersion == 2;
  if (known) {
    fail(file, fmt::format("its compressed fields are not those of point format {} with {} extra bytes",
                           scheme.pointFormat, scheme.extraBytes));
  }
  fail(file, fmt::format("its points are compressed by a version that is not known ({})", scheme.itemVersion));
}

}  // namespace

unsigned LazScheme::recordLength() const { return lasRecordLength(pointFormat) + extraBytes; }

LazScheme decodeLazScheme(std::string const& file, LasHeader const& header, std::span<std::uint8_t const> data) {
  const std::size_t count = data.size() < kHead ? 0 : load<std::uint16_t>(data.data() + 32);
  if (count == 0 || data.size() < kHead + count * kItemBytes) {
    throw FileError(file, fmt::format("the record that tells how points are compressed is cut short ({} bytes): {}",
                                      data.size(), kDamaged));
  }
  const std::vector<Item> items = readItems(data, count);
  LazScheme scheme;
  scheme.kind = kindOf(file, load<std::uint16_t>(data.data()));
  if (load<std::uint16_t>(data.data() + 2) != 0) {
    fail(file, fmt::format("its points are compressed with a coder that is not known ({})",
                           load<std::uint16_t>(data.data() + 2)));
  }
  scheme.chunkPoints = load<std::uint32_t>(data.data() + 12);
  if (scheme.chunkPoints == 0) scheme.chunkPoints = LazScheme::kVariable;
  scheme.pointFormat = header.pointFormat;
  scheme.extraBytes = header.recordLength - lasRecordLength(header.pointFormat);
  scheme.itemVersion = items.front().version;
  requireItems(file, scheme, items);
  return scheme;
}

LazScheme lazSchemeFor(unsigned pointFormat, unsigned extraBytes) {
  LazScheme scheme;
  scheme.kind = isExtended(pointFormat) ? LazScheme::Kind::layered : LazScheme::Kind::chunked;
  scheme.pointFormat = pointFormat;
  scheme.extraBytes = extraBytes;
  scheme.itemVersion = isExtended(pointFormat) ? 3 : 2;
  return scheme;
}

LasVlrRecord encodeLazScheme(LazScheme const& scheme) {
  const std::vector<Item> items = itemsOf(scheme);
  LasVlrRecord record{std::string(kLazUser), kLazRecord, "compressed by urdimbre", {}};
  record.data.resize(kHead + items.size() * kItemBytes);
  std::uint8_t* const to = record.data.data();
  store(to, static_cast<std::uint16_t>(static_cast<unsigned>(scheme.kind) + 1));
  to[4] = scheme.kind == LazScheme::Kind::layered ? 3 : 2;  // the first version that reads it: 3.4, 2.2
  to[5] = scheme.kind == LazScheme::Kind::layered ? 4 : 2;
  store(to + 12, scheme.isChunked() ? scheme.chunkPoints : 0);
  store(to + 16, std::int64_t{-1});  // no special extended records, and no place for them
  store(to + 24, std::int64_t{-1});
  store(to + 32, static_cast<std::uint16_t>(items.size()));
  for (std::size_t i = 0; i < items.size(); ++i) {
    std::uint8_t* const item = to + kHead + i * kItemBytes;
    store(item, items[i].type);
    store(item + 2, items[i].bytes);
    store(item + 4, items[i].version);
  }
  return record;
}

}  // namespace Meseta47::host
