#include "host/laz/LayeredChunk.h"

#include <algorithm>

#include "host/las/LasCodec.h"
#include "host/laz/EntropyDecoder.h"
#include "host/laz/EntropyEncoder.h"
#include "host/laz/LayeredItems.h"
#include "host/laz/Point14.h"

namespace Meseta47::host::laz {

namespace {

unsigned layersOf(LazScheme const& scheme) {
  const unsigned format = scheme.pointFormat;
  return kPoint14Layers + (hasColour(format) ? 1U : 0U) + (hasInfrared(format) ? 1U : 0U) +
         (hasWaveform(format) ? 1U : 0U) + scheme.extraBytes;
}

/// Layers hold one field each, and those of fields that nobody wants need not be decoded.
bool isWanted(unsigned layer, LasFields fields) {
  return fields == LasFields::all || layer == kPlaceLayer || layer == kHeightLayer || layer == kClassLayer ||
         layer == kIntensityLayer;
}

/// The decoders of a chunk's layers. One that is not wanted counts as empty, as one of a field that never changes is.
class LayersIn {
 public:
  static constexpr bool kEncodes = false;

  explicit LayersIn(LasFields fields) : fields_(fields) {}

  void start(std::span<std::uint8_t const> layers, std::vector<std::uint32_t> const& sizes) {
    coders_.resize(sizes.size());
    has_.resize(sizes.size());
    for (unsigned i = 0; i < sizes.size(); ++i) {
      const auto layer = layers.first(std::min<std::size_t>(sizes[i], layers.size()));
      has_[i] = sizes[i] > 0 && isWanted(i, fields_);
      coders_[i] = EntropyDecoder(layer);
      layers = layers.subspan(layer.size());
    }
  }

  [[nodiscard]] bool has(unsigned layer) const { return has_[layer] != 0; }
  EntropyDecoder& operator[](unsigned layer) { return coders_[layer]; }

  [[nodiscard]] bool ranOut() const {
    for (unsigned i = 0; i < coders_.size(); ++i) {
      if (has(i) && coders_[i].ranOut()) return true;
    }
    return false;
  }

 private:
  LasFields fields_;
  std::vector<EntropyDecoder> coders_;
  std::vector<std::uint8_t> has_;
};

/// The encoders of a chunk's layers.
class LayersOut {
 public:
  static constexpr bool kEncodes = true;

  explicit LayersOut(unsigned count) : coders_(count) {}

  void restart() {
    for (EntropyEncoder& coder : coders_) coder.restart();
  }

  [[nodiscard]] static bool has(unsigned) { return true; }
  EntropyEncoder& operator[](unsigned layer) { return coders_[layer]; }
  [[nodiscard]] unsigned count() const { return static_cast<unsigned>(coders_.size()); }

 private:
  std::vector<EntropyEncoder> coders_;
};

class LayeredRecord {
 public:
  explicit LayeredRecord(LazScheme const& scheme, LasFields fields = LasFields::all)
      : length_(scheme.recordLength()), tellsChangesAlone_(scheme.itemVersion == 3) {
    if (fields != LasFields::all) return;
    const unsigned format = scheme.pointFormat, version = scheme.itemVersion;
    if (hasColour(format)) colour_ = std::make_unique<ColourLayers>(version, hasInfrared(format));
    if (hasWaveform(format)) wave_ = std::make_unique<WaveLayer>(version);
    if (scheme.extraBytes > 0) extra_ = std::make_unique<ExtraLayers>(version, scheme.extraBytes);
  }

  [[nodiscard]] std::size_t length() const { return length_; }
  /// Bytes of a record that are coded: less than its length where not all fields are wanted.
  [[nodiscard]] std::size_t coded() const { return colour_ || wave_ || extra_ ? length_ : Point14::kBytes; }

  void restart(std::uint8_t const* first) {
    point_.restart(first);
    std::uint8_t const* item = first + Point14::kBytes;
    restart(colour_, item);
    restart(wave_, item);
    restart(extra_, item);
  }

  template <class Layers>
  void code(Layers& layers, std::uint8_t* record) {
    point_.code(layers, record);
    // Version 3 tells the other items of a channel only when it is another than before, and calls it 0 otherwise.
    const unsigned context = tellsChangesAlone_ && !point_.changedChannel() ? 0 : point_.channel();
    unsigned layer = kPoint14Layers;
    std::uint8_t* item = record + Point14::kBytes;
    code(colour_, layers, layer, context, item);
    code(wave_, layers, layer, context, item);
    code(extra_, layers, layer, context, item);
  }

 private:
  template <class Item>
  void restart(std::unique_ptr<Item> const& item, std::uint8_t const*& first) {
    if (!item) return;
    item->restart(point_.channel(), first);
    first += item->bytes();
  }

  template <class Item, class Layers>
  static void code(std::unique_ptr<Item> const& item, Layers& layers, unsigned& layer, unsigned context,
                   std::uint8_t*& record) {
    if (!item) return;
    item->code(layers, layer, context, record);
    layer += item->layers();
    record += item->bytes();
  }

  std::size_t length_;
  bool tellsChangesAlone_;
  Point14Codec point_;
  std::unique_ptr<ColourLayers> colour_;
  std::unique_ptr<WaveLayer> wave_;
  std::unique_ptr<ExtraLayers> extra_;
};

class LayeredDecoder final : public ChunkDecoder {
 public:
  LayeredDecoder(LazScheme const& scheme, LasFields fields)
      : scheme_(scheme), record_(scheme, fields), layers_(fields) {}

  void start(std::span<std::uint8_t const> chunk) override {
    chunk_ = chunk;
    head_.reset();
  }

  std::size_t decode(std::span<std::uint8_t> records) override {
    const std::size_t length = record_.length(), count = records.size() / length;
    std::size_t done = 0;
    if (!head_ && count > 0) {
      if (!takeFirst(records.data())) return 0;
      done = 1;
    }
    for (; done < count; ++done) record_.code(layers_, records.data() + done * length);
    return layers_.ranOut() ? 0 : done;
  }

  [[nodiscard]] std::size_t bytesTaken() const override { return head_ ? static_cast<std::size_t>(head_->bytes) : 0; }

 private:
  bool takeFirst(std::uint8_t* record) {
    head_ = readLayeredHead(scheme_, chunk_);
    if (!head_) return false;
    std::copy_n(chunk_.begin(), record_.coded(), record);
    record_.restart(record);
    layers_.start(chunk_.subspan(layeredHeadBytes(scheme_)), head_->layers);
    return true;
  }

  LazScheme scheme_;
  LayeredRecord record_;
  LayersIn layers_;
  std::optional<LayeredHead> head_;
  std::span<std::uint8_t const> chunk_;
};

/// Which layers hold nothing but repetitions: they are left out.
class Repetitions {
 public:
  Repetitions(LazScheme const& scheme, std::span<std::uint8_t const> records)
      : scheme_(scheme), length_(scheme.recordLength()), changed_(length_) {
    for (std::size_t at = length_; at < records.size(); at += length_) {
      for (std::size_t i = 0; i < length_; ++i) {
        changed_[i] = static_cast<std::uint8_t>(changed_[i] | (records[at + i] ^ records[i]));
      }
    }
  }

  /// The first layer is always there.
  [[nodiscard]] std::vector<bool> layers() const {
    std::vector<bool> needed{true,       any(8, 4),  any(16, 1), flags(),   any(12, 2),
                             any(18, 2), any(17, 1), any(20, 2), any(22, 8)};
    std::size_t at = kPointBytes;
    const auto add = [&](std::size_t bytes) {
      needed.push_back(any(at, bytes));
      at += bytes;
    };
    const unsigned format = scheme_.pointFormat;
    if (hasColour(format)) add(6);
    if (hasInfrared(format)) add(2);
    if (hasWaveform(format)) add(29);
    while (at < length_) add(1);
    return needed;
  }

 private:
  static constexpr std::size_t kPointBytes = Point14::kBytes;

  [[nodiscard]] bool any(std::size_t at, std::size_t bytes) const {
    return std::any_of(changed_.begin() + static_cast<std::ptrdiff_t>(at),
                       changed_.begin() + static_cast<std::ptrdiff_t>(at + bytes), [](auto c) { return c != 0; });
  }
  [[nodiscard]] bool flags() const { return (changed_[15] & 0xcfU) != 0; }  // all of the byte but the channel

  LazScheme const& scheme_;
  std::size_t length_;
  std::vector<std::uint8_t> changed_;
};

class LayeredEncoder final : public ChunkEncoder {
 public:
  explicit LayeredEncoder(LazScheme const& scheme) : scheme_(scheme), record_(scheme), layers_(layersOf(scheme)) {}

  void encode(std::span<std::uint8_t const> records, std::vector<std::uint8_t>& chunk) override {
    const std::size_t length = record_.length();
    record_.restart(records.data());
    layers_.restart();
    scratch_.resize(length);
    for (std::size_t at = length; at < records.size(); at += length) {
      std::copy_n(records.begin() + static_cast<std::ptrdiff_t>(at), length, scratch_.begin());
      record_.code(layers_, scratch_.data());
    }
    chunk.assign(records.begin(), records.begin() + static_cast<std::ptrdiff_t>(length));
    append(chunk, static_cast<std::uint32_t>(records.size() / length));
    appendLayers(Repetitions(scheme_, records).layers(), chunk);
  }

 private:
  static void append(std::vector<std::uint8_t>& chunk, std::uint32_t number) {
    chunk.resize(chunk.size() + sizeof number);
    store(chunk.data() + chunk.size() - sizeof number, number);
  }

  void appendLayers(std::vector<bool> const& needed, std::vector<std::uint8_t>& chunk) {
    std::size_t place = chunk.size();
    chunk.resize(place + 4 * std::size_t{layers_.count()});
    for (unsigned i = 0; i < layers_.count(); ++i, place += 4) {
      if (!needed[i]) continue;
      auto const& coded = layers_[i].finish();
      store(chunk.data() + place, static_cast<std::uint32_t>(coded.size()));
      chunk.insert(chunk.end(), coded.begin(), coded.end());
    }
  }

  LazScheme scheme_;
  LayeredRecord record_;
  LayersOut layers_;
  std::vector<std::uint8_t> scratch_;
};

}  // namespace

std::size_t layeredHeadBytes(LazScheme const& scheme) {
  return scheme.recordLength() + 4 + 4 * std::size_t{layersOf(scheme)};
}

std::optional<LayeredHead> readLayeredHead(LazScheme const& scheme, std::span<std::uint8_t const> chunk) {
  const std::size_t bytes = layeredHeadBytes(scheme);
  if (chunk.size() < bytes) return std::nullopt;
  std::uint8_t const* from = chunk.data() + scheme.recordLength();
  LayeredHead head{load<std::uint32_t>(from), bytes, std::vector<std::uint32_t>(layersOf(scheme))};
  for (std::uint32_t& layer : head.layers) {
    layer = load<std::uint32_t>(from += 4);
    head.bytes += layer;
  }
  return head;
}

std::unique_ptr<ChunkDecoder> makeLayeredDecoder(LazScheme const& scheme, LasFields fields) {
  return std::make_unique<LayeredDecoder>(scheme, fields);
}

std::unique_ptr<ChunkEncoder> makeLayeredEncoder(LazScheme const& scheme) {
  return std::make_unique<LayeredEncoder>(scheme);
}

}  // namespace Meseta47::host::laz
