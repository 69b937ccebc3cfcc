#include "host/las/LasSurroundings.h"

#include <algorithm>

#include "host/FileError.h"
#include "host/las/LasBytes.h"

namespace Meseta47::host {

namespace {

constexpr std::uint64_t kBlock = std::uint64_t{1} << 20;

// Places in the header.
constexpr std::size_t kPointsPlace = 96, kVlrCount = 100, kFormat = 104, kWaveforms = 227, kEvlrPlace = 235,
                      kEvlrCount = 243;

/// Records that tell of the points' bytes in the file, which are others in the copy.
bool isOfTheBytes(LasVlr const& vlr) { return vlr.is(kLazUser, kLazRecord) || vlr.userId == "copc"; }

std::uint64_t startOf(LasVlr const& vlr) { return vlr.dataStart - (vlr.extended ? kEvlrHead : kVlrHead); }
std::uint64_t endOf(LasVlr const& vlr) { return vlr.dataStart + vlr.dataLength; }

void copyBytes(ByteSource& from, OutputFile& to, std::uint64_t begin, std::uint64_t end) {
  std::vector<std::uint8_t> block(static_cast<std::size_t>(std::min(kBlock, end - begin)));
  while (begin < end) {
    const std::size_t got = from.read(begin, std::span(block).first(std::min<std::size_t>(block.size(), end - begin)));
    if (got == 0) throw FileError(from.name(), "became shorter while it was copied: wait until it is written");
    to.write(block.data(), got);
    begin += got;
  }
}

std::uint64_t endOfPlainPoints(LasHeader const& header) {
  return header.offsetToPoints + header.pointCount * header.recordLength;
}

template <typename T>
void putAt(OutputFile& file, std::uint64_t place, T value) {
  file.seek(place);
  file.write(&value, sizeof value);
}

}  // namespace

LasSurroundings::LasSurroundings(LasReader const& reader, ByteSource& source, std::optional<LazScheme> const& scheme)
    : reader_(reader), source_(source), asItIs_(!scheme && !reader.header().compressed) {
  before_.resize(reader.header().offsetToPoints);
  if (source.read(0, before_) < before_.size()) {
    throw FileError(source.name(), "became shorter while it was copied: wait until it is written");
  }
  if (!asItIs_) recode(scheme);
}

void LasSurroundings::recode(std::optional<LazScheme> const& scheme) {
  std::uint64_t end = reader_.header().headerSize;
  const auto at = [this](std::uint64_t place) { return before_.begin() + static_cast<std::ptrdiff_t>(place); };
  std::vector<std::uint8_t> kept(at(0), at(end));
  std::uint32_t count = 0;
  for (LasVlr const& vlr : reader_.vlrs()) {
    if (vlr.extended) continue;
    end = endOf(vlr);
    if (isOfTheBytes(vlr)) continue;
    kept.insert(kept.end(), at(startOf(vlr)), at(end));
    ++count;
  }
  if (scheme) {
    const auto record = encodeVlr(encodeLazScheme(*scheme), false);
    kept.insert(kept.end(), record.begin(), record.end());
    ++count;
  }
  kept.insert(kept.end(), at(end), before_.end());  // bytes of the writer's own
  store(kept.data() + kPointsPlace, static_cast<std::uint32_t>(kept.size()));
  store(kept.data() + kVlrCount, count);
  kept[kFormat] = static_cast<std::uint8_t>(reader_.header().pointFormat | (scheme ? 0x80U : 0U));
  before_ = std::move(kept);
}

void LasSurroundings::writeBefore(OutputFile& to) const { to.write(before_.data(), before_.size()); }

void LasSurroundings::writeAfter(OutputFile& to) const {
  if (asItIs_) {
    copyBytes(source_, to, endOfPlainPoints(reader_.header()), source_.size());
  } else {
    writeRecordsAfter(to);
  }
}

void LasSurroundings::writeRecordsAfter(OutputFile& to) const {
  LasHeader const& header = reader_.header();
  const std::uint64_t start = to.position();
  std::uint64_t waveforms = header.waveformStart;
  if (header.versionMinor == 3 && waveforms > header.offsetToPoints && waveforms < source_.size()) {
    copyBytes(source_, to, waveforms, source_.size());  // the only record that 1.3 has behind the points
    putAt(to, kWaveforms, start);
  }
  if (header.versionMinor < 4) return;
  std::uint32_t count = 0;
  for (LasVlr const& vlr : reader_.vlrs()) {
    if (!vlr.extended || isOfTheBytes(vlr)) continue;
    if (startOf(vlr) == header.waveformStart) waveforms = to.position();
    copyBytes(source_, to, startOf(vlr), endOf(vlr));
    ++count;
  }
  putAt(to, kWaveforms, waveforms);
  putAt(to, kEvlrPlace, count == 0 ? std::uint64_t{0} : start);
  putAt(to, kEvlrCount, count);
}

}  // namespace Meseta47::host
