#include "host/las/LasVlr.h"

#include <algorithm>

#include "host/las/LasBytes.h"

namespace Meseta47::host {

LasVlr decodeVlrHead(std::span<std::uint8_t const> head, std::uint64_t place) {
  LasVlr vlr;
  std::uint8_t const* const bytes = head.data();
  vlr.extended = head.size() == kEvlrHead;
  vlr.reserved = load<std::uint16_t>(bytes);
  vlr.userId = loadText(bytes + 2, 16);
  vlr.recordId = load<std::uint16_t>(bytes + 18);
  vlr.dataLength = vlr.extended ? load<std::uint64_t>(bytes + 20) : load<std::uint16_t>(bytes + 20);
  vlr.description = loadText(bytes + head.size() - 32, 32);
  vlr.dataStart = place + head.size();
  return vlr;
}

std::vector<std::uint8_t> encodeVlr(LasVlrRecord const& record, bool extended) {
  const std::size_t head = extended ? kEvlrHead : kVlrHead;
  std::vector<std::uint8_t> bytes(head + record.data.size());
  storeText(bytes.data() + 2, 16, record.userId);
  store(bytes.data() + 18, record.recordId);
  if (extended) {
    store(bytes.data() + 20, std::uint64_t{record.data.size()});
  } else {
    store(bytes.data() + 20, static_cast<std::uint16_t>(record.data.size()));
  }
  storeText(bytes.data() + head - 32, 32, record.description);
  std::copy(record.data.begin(), record.data.end(), bytes.begin() + static_cast<std::ptrdiff_t>(head));
  return bytes;
}

std::optional<std::uint16_t> GeoKeys::shortValue(std::uint16_t key) const {
  for (std::size_t entry = 4; entry + 4 <= directory.size(); entry += 4) {
    const bool storedInPlace = directory[entry + 1] == 0;
    if (directory[entry] == key && storedInPlace) {
      return directory[entry + 3];
    }
  }
  return std::nullopt;
}

}  // namespace Meseta47::host
