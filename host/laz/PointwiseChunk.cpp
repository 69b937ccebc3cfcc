#include "host/laz/PointwiseChunk.h"

#include <algorithm>

#include "host/las/LasCodec.h"
#include "host/laz/Colour.h"
#include "host/laz/EntropyDecoder.h"
#include "host/laz/EntropyEncoder.h"
#include "host/laz/ExtraBytes.h"
#include "host/laz/GpsTime.h"
#include "host/laz/Point10.h"
#include "host/laz/WavePacket.h"

namespace Meseta47::host::laz {

namespace {

/// The items of a record under one version.
struct Version1 {
  using Point = Point10V1;
  using Time = GpsTimeV1;
  using Colour = RgbV1;
  using Extra = ExtraBytesV1;
};
struct Version2 {
  using Point = Point10V2;
  using Time = GpsTimeSeries<true>;
  using Colour = RgbV2;
  using Extra = ExtraBytesV2;
};

template <class Version>
class PointwiseRecord {
 public:
  explicit PointwiseRecord(LazScheme const& scheme)
      : length_(scheme.recordLength()), extra_(scheme.extraBytes), hasExtra_(scheme.extraBytes > 0) {
    const unsigned format = scheme.pointFormat;
    if (hasGpsTime(format)) time_ = std::make_unique<typename Version::Time>();
    if (hasColour(format)) colour_ = std::make_unique<typename Version::Colour>();
    if (hasWaveform(format)) wave_ = std::make_unique<WavePackets>();
  }

  [[nodiscard]] std::size_t length() const { return length_; }

  void restart(std::uint8_t const* first) {
    point_.restart(first);
    first += Point10::kBytes;
    restart(time_, first);
    restart(colour_, first);
    restart(wave_, first);
    if (hasExtra_) extra_.restart(first);
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    point_.code(coder, record);
    record += Point10::kBytes;
    code(time_, coder, record);
    code(colour_, coder, record);
    code(wave_, coder, record);
    if (hasExtra_) extra_.code(coder, record);
  }

 private:
  template <class Item>
  static void restart(std::unique_ptr<Item> const& item, std::uint8_t const*& first) {
    if (!item) return;
    item->restart(first);
    first += Item::kBytes;
  }

  template <class Item, class Coder>
  static void code(std::unique_ptr<Item> const& item, Coder& coder, std::uint8_t*& record) {
    if (!item) return;
    item->code(coder, record);
    record += Item::kBytes;
  }

  std::size_t length_;
  typename Version::Point point_;
  std::unique_ptr<typename Version::Time> time_;
  std::unique_ptr<typename Version::Colour> colour_;
  std::unique_ptr<WavePackets> wave_;
  typename Version::Extra extra_;
  bool hasExtra_;
};

template <class Version>
class PointwiseDecoder final : public ChunkDecoder {
 public:
  explicit PointwiseDecoder(LazScheme const& scheme) : record_(scheme) {}

  void start(std::span<std::uint8_t const> chunk) override {
    chunk_ = chunk;
    started_ = false;
  }

  std::size_t decode(std::span<std::uint8_t> records) override {
    const std::size_t length = record_.length(), count = records.size() / length;
    std::size_t done = 0;
    if (!started_ && count > 0) {
      if (!takeFirst(records.data())) return 0;
      done = 1;
    }
    EntropyDecoder coder = coder_;  // a local one stays in registers: nobody else can see it
    while (done < count) {
      record_.code(coder, records.data() + done * length);
      if (coder.ranOut()) break;
      ++done;
    }
    coder_ = coder;
    return done;
  }

  [[nodiscard]] std::size_t bytesTaken() const override {
    return static_cast<std::size_t>(coder_.position() - chunk_.data());
  }

 private:
  bool takeFirst(std::uint8_t* record) {
    const std::size_t length = record_.length();
    if (chunk_.size() < length) return false;
    std::copy_n(chunk_.begin(), length, record);
    record_.restart(record);
    coder_ = EntropyDecoder(chunk_.subspan(length));
    started_ = true;
    return true;
  }

  PointwiseRecord<Version> record_;
  EntropyDecoder coder_;
  std::span<std::uint8_t const> chunk_;
  bool started_ = false;
};

template <class Version>
class PointwiseEncoder final : public ChunkEncoder {
 public:
  explicit PointwiseEncoder(LazScheme const& scheme) : record_(scheme) {}

  void encode(std::span<std::uint8_t const> records, std::vector<std::uint8_t>& chunk) override {
    const std::size_t length = record_.length();
    const auto first = records.first(length);
    chunk.assign(first.begin(), first.end());
    record_.restart(first.data());
    coder_.restart();
    scratch_.resize(length);
    for (std::size_t at = length; at < records.size(); at += length) {
      std::copy_n(records.begin() + static_cast<std::ptrdiff_t>(at), length, scratch_.begin());
      record_.code(coder_, scratch_.data());
    }
    auto const& coded = coder_.finish();
    chunk.insert(chunk.end(), coded.begin(), coded.end());
  }

 private:
  PointwiseRecord<Version> record_;
  EntropyEncoder coder_;
  std::vector<std::uint8_t> scratch_;
};

}  // namespace

std::unique_ptr<ChunkDecoder> makePointwiseDecoder(LazScheme const& scheme) {
  if (scheme.itemVersion == 1) return std::make_unique<PointwiseDecoder<Version1>>(scheme);
  return std::make_unique<PointwiseDecoder<Version2>>(scheme);
}

std::unique_ptr<ChunkEncoder> makePointwiseEncoder(LazScheme const& scheme) {
  if (scheme.itemVersion == 1) return std::make_unique<PointwiseEncoder<Version1>>(scheme);
  return std::make_unique<PointwiseEncoder<Version2>>(scheme);
}

}  // namespace Meseta47::host::laz
