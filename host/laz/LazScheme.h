#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/las/LasHeader.h"
#include "host/las/LasVlr.h"

namespace Meseta47::host {

/// The variable length record that tells how points are compressed.
inline constexpr std::string_view kLazUser = "laszip encoded";
inline constexpr std::uint16_t kLazRecord = 22204;

/// How the points of a file are compressed.
struct LazScheme {
  enum class Kind : std::uint8_t {
    pointwise,  ///< records one after the other in one stream; the whole file is one chunk
    chunked,    ///< the same, begun anew every so many points
    layered,    ///< chunks in which each group of fields has a stream of its own: formats 6 to 10 alone
  };
  static constexpr std::uint32_t kVariable = 0xffffffffU;
  static constexpr std::uint32_t kUsualChunk = 50000;

  Kind kind = Kind::chunked;
  std::uint32_t chunkPoints = kUsualChunk;  ///< in each chunk but the last; kVariable: the chunk table tells
  unsigned pointFormat = 0;
  unsigned extraBytes = 0;   ///< of each record, beyond those of the format
  unsigned itemVersion = 2;  ///< of the way in which fields are coded: 1 or 2, for layers 3 or 4

  [[nodiscard]] unsigned recordLength() const;
  [[nodiscard]] bool isChunked() const { return kind != Kind::pointwise; }
  [[nodiscard]] bool isVariable() const { return isChunked() && chunkPoints == kVariable; }
};

/// Reads the record's data. Throws FileError for a scheme that is not known, or that does not fit the header.
[[nodiscard]] LazScheme decodeLazScheme(std::string const& file, LasHeader const& header,
                                        std::span<std::uint8_t const> data);

/// The scheme in which this program writes points of a format.
[[nodiscard]] LazScheme lazSchemeFor(unsigned pointFormat, unsigned extraBytes);

/// The record of a scheme.
[[nodiscard]] LasVlrRecord encodeLazScheme(LazScheme const& scheme);

}  // namespace Meseta47::host
