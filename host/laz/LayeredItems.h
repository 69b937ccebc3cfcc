#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/las/LasBytes.h"
#include "host/laz/Colour.h"
#include "host/laz/WavePacket.h"

namespace Meseta47::host::laz {

/// Which of the four contexts of an item's models is in use, and which context's last value a value is predicted from
/// and kept in. The two should be the same; version 3 of the format keeps the old value's place where it returns to a
/// context that it has had before, and its files must be read as they were written.
template <class Value>
class ItemContexts {
 public:
  explicit ItemContexts(unsigned version) : keepsPlace_(version == 3) {}

  void restart(unsigned context, Value const& first) {
    met_.fill(false);
    met_[context] = true;
    models_ = values_ = context;
    last_[context] = first;
  }

  /// Goes on in a context. True when it is met for the first time: its models must be as new.
  bool enter(unsigned context) {
    const unsigned before = values_ = models_;
    if (context == models_) return false;
    models_ = context;
    const bool isNew = !met_[context];
    if (isNew) last_[context] = last_[before];
    met_[context] = true;
    if (isNew || !keepsPlace_) values_ = context;
    return isNew;
  }

  [[nodiscard]] unsigned models() const { return models_; }
  [[nodiscard]] Value& last() { return last_[values_]; }

 private:
  std::array<Value, 4> last_{};
  std::array<bool, 4> met_{};
  unsigned models_ = 0, values_ = 0;
  bool keepsPlace_;
};

/// Colours in a layer of their own, behind them near infrared in another.
class ColourLayers {
 public:
  ColourLayers(unsigned version, bool hasInfrared) : contexts_(version), hasInfrared_(hasInfrared) {}

  [[nodiscard]] std::size_t bytes() const { return Rgb::kBytes + (hasInfrared_ ? 2U : 0U); }
  [[nodiscard]] unsigned layers() const { return hasInfrared_ ? 2 : 1; }

  void restart(unsigned context, std::uint8_t const* first) {
    contexts_.restart(context, valueOf(first));
    resetModels(context);
  }

  template <class Layers>
  void code(Layers& layers, unsigned layer, unsigned context, std::uint8_t* record) {
    if (contexts_.enter(context)) resetModels(context);
    Value& last = contexts_.last();
    Value now = Layers::kEncodes ? valueOf(record) : last;
    if (layers.has(layer)) rgb_[context].code(layers[layer], last.rgb, now.rgb);
    if (hasInfrared_ && layers.has(layer + 1)) infrared_[context].code(layers[layer + 1], last.infrared, now.infrared);
    last = now;
    if constexpr (!Layers::kEncodes) {
      now.rgb.to(record);
      if (hasInfrared_) store(record + Rgb::kBytes, now.infrared);
    }
  }

 private:
  struct Value {
    Rgb rgb;
    std::uint16_t infrared = 0;
  };

  [[nodiscard]] Value valueOf(std::uint8_t const* bytes) const {
    return {Rgb::from(bytes), hasInfrared_ ? load<std::uint16_t>(bytes + Rgb::kBytes) : std::uint16_t{0}};
  }

  void resetModels(unsigned context) {
    rgb_[context].reset();
    infrared_[context].reset();
  }

  ItemContexts<Value> contexts_;
  bool hasInfrared_;
  std::array<RgbModel, 4> rgb_;
  std::array<InfraredModel, 4> infrared_;
};

/// Wave packets in a layer.
class WaveLayer {
 public:
  explicit WaveLayer(unsigned version) : contexts_(version) {}

  [[nodiscard]] static std::size_t bytes() { return WavePacket::kBytes; }
  [[nodiscard]] static unsigned layers() { return 1; }

  void restart(unsigned context, std::uint8_t const* first) {
    contexts_.restart(context, WavePacket::from(first));
    models_[context].reset();
  }

  template <class Layers>
  void code(Layers& layers, unsigned layer, unsigned context, std::uint8_t* record) {
    if (contexts_.enter(context)) models_[context].reset();
    WavePacket& last = contexts_.last();
    WavePacket now = Layers::kEncodes ? WavePacket::from(record) : last;
    if (layers.has(layer)) models_[context].code(layers[layer], last, now);
    last = now;
    if constexpr (!Layers::kEncodes) now.to(record);
  }

 private:
  ItemContexts<WavePacket> contexts_;
  std::array<WavePacketModel, 4> models_;
};

/// Bytes beyond those of the format, each in a layer.
class ExtraLayers {
 public:
  ExtraLayers(unsigned version, unsigned count) : contexts_(version), count_(count) {}

  [[nodiscard]] std::size_t bytes() const { return count_; }
  [[nodiscard]] unsigned layers() const { return count_; }

  void restart(unsigned context, std::uint8_t const* first) {
    contexts_.restart(context, {first, first + count_});
    resetModels(context);
  }

  template <class Layers>
  void code(Layers& layers, unsigned layer, unsigned context, std::uint8_t* record) {
    if (contexts_.enter(context)) resetModels(context);
    std::vector<std::uint8_t>& last = contexts_.last();
    for (unsigned i = 0; i < count_; ++i) {
      if (layers.has(layer + i)) {
        const auto change = static_cast<std::uint8_t>(record[i] - last[i]);
        last[i] = static_cast<std::uint8_t>(last[i] + layers[layer + i].symbol(models_[context][i], change));
      }
      record[i] = last[i];
    }
  }

 private:
  void resetModels(unsigned context) {
    models_[context].resize(count_);
    for (auto& model : models_[context]) model.reset(256);
  }

  ItemContexts<std::vector<std::uint8_t>> contexts_;
  unsigned count_;
  std::array<std::vector<SymbolModel<256>>, 4> models_;
};

}  // namespace Meseta47::host::laz
