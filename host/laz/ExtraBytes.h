#pragma once

#include <cstdint>
#include <vector>

#include "host/laz/IntegerModel.h"

namespace Meseta47::host::laz {

/// Bytes beyond those of the format, each by its difference from that of the last point: as compressors of version 1
/// do.
class ExtraBytesV1 {
 public:
  explicit ExtraBytesV1(std::size_t count) : count_(count) {}

  void restart(std::uint8_t const* first) {
    bytes_.resize(count_);  // not before there is a record of so many
    for (Byte& byte : bytes_) {
      byte.last = *first++;
      byte.length.reset(9);
    }
    corrections_.reset();
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    for (Byte& byte : bytes_) {
      const std::int32_t now = corrections_.code(coder, byte.length, byte.last, *record);
      byte.last = static_cast<std::uint8_t>(now);
      *record++ = byte.last;
    }
  }

 private:
  struct Byte {
    std::uint8_t last = 0;
    IntegerModel<8>::Length length;
  };
  std::size_t count_;
  std::vector<Byte> bytes_;
  IntegerModel<8> corrections_;
};

/// The same as compressors of version 2 do.
class ExtraBytesV2 {
 public:
  explicit ExtraBytesV2(std::size_t count) : count_(count) {}

  void restart(std::uint8_t const* first) {
    bytes_.resize(count_);
    for (Byte& byte : bytes_) {
      byte.last = *first++;
      byte.changes.reset(256);
    }
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    for (Byte& byte : bytes_) {
      const auto change = static_cast<std::uint8_t>(*record - byte.last);
      byte.last = static_cast<std::uint8_t>(byte.last + coder.symbol(byte.changes, change));
      *record++ = byte.last;
    }
  }

 private:
  struct Byte {
    std::uint8_t last = 0;
    SymbolModel<256> changes;
  };
  std::size_t count_;
  std::vector<Byte> bytes_;
};

}  // namespace Meseta47::host::laz
