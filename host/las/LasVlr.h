#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Meseta47::host {

/// Bytes before the data of a variable length record, and of an extended one.
inline constexpr std::size_t kVlrHead = 54;
inline constexpr std::size_t kEvlrHead = 60;

/// Where a variable length record stands in its file. Its data stay there until they are asked for: an extended one may
/// hold gigabytes of waveforms.
struct LasVlr {
  std::uint16_t reserved = 0;
  std::string userId;
  std::uint16_t recordId = 0;
  std::string description;
  bool extended = false;
  std::uint64_t dataStart = 0;   ///< from the start of the file
  std::uint64_t dataLength = 0;  ///< within the file: checked on opening

  [[nodiscard]] bool is(std::string_view user, unsigned record) const { return userId == user && recordId == record; }
};

/// Reads what stands before the data; `head` holds kVlrHead or kEvlrHead bytes and stands at `place` in its file.
[[nodiscard]] LasVlr decodeVlrHead(std::span<std::uint8_t const> head, std::uint64_t place);

/// A variable length record to be written.
struct LasVlrRecord {
  std::string userId;
  std::uint16_t recordId = 0;
  std::string description;
  std::vector<std::uint8_t> data;
};

/// All the bytes of a record as a file holds it. Plain ones hold 65,535 bytes of data at most.
[[nodiscard]] std::vector<std::uint8_t> encodeVlr(LasVlrRecord const& record, bool extended);

/// The keys of GeoTIFF by which older files name their reference system.
struct GeoKeys {
  std::vector<std::uint16_t> directory;  ///< four numbers a key after a head of four
  std::vector<double> doubles;
  std::string ascii;

  /// Value of a key that is a short number: 3072 is the EPSG code of a projected system, 2048 of a geographic one, 3076
  /// and 4099 the units in plan and height, 4096 the vertical system. None when the file lacks it.
  [[nodiscard]] std::optional<std::uint16_t> shortValue(std::uint16_t key) const;
};

}  // namespace Meseta47::host
