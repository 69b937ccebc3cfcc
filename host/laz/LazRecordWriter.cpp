#include "host/laz/LazRecordWriter.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "host/las/LasBytes.h"
#include "model/threads/Reparto.h"
#include "platform/Procesadores.h"

namespace Meseta47::host {

LazRecordWriter::LazRecordWriter(OutputFile& file, LazScheme const& scheme)
    : file_(file),
      scheme_(scheme),
      start_(file.position()),
      chunkBytes_(scheme.isVariable() ? std::numeric_limits<std::size_t>::max()
                                      : std::size_t{scheme.chunkPoints} * scheme.recordLength()),
      groupSize_(NumeroProcesadores()),
      filling_(groupSize_),
      encoding_(groupSize_) {
  const std::uint64_t unknown = 0;
  file_.write(&unknown, sizeof unknown);  // the table's place, once it is known
}

LazRecordWriter::~LazRecordWriter() {
  if (work_.valid()) work_.wait();
}

void LazRecordWriter::add(std::span<std::uint8_t const> records) {
  while (!records.empty()) {
    std::vector<std::uint8_t>& chunk = filling_[current_].records;
    const auto now = records.first(std::min(records.size(), chunkBytes_ - chunk.size()));
    chunk.insert(chunk.end(), now.begin(), now.end());
    records = records.subspan(now.size());
    if (chunk.size() == chunkBytes_) next();
  }
}

void LazRecordWriter::endChunk() {
  if (!filling_[current_].records.empty()) next();
}

void LazRecordWriter::next() {
  if (++current_ == groupSize_) encode();
}

// Hands on what is filled, once what was handed on before is done.
void LazRecordWriter::encode() {
  writeEncoded();
  std::swap(filling_, encoding_);
  encoded_ = std::exchange(current_, 0);
  const auto one = [this](std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last; ++i) {
      Slot& slot = encoding_[i];
      if (!slot.encoder) slot.encoder = laz::makeChunkEncoder(scheme_);
      slot.encoder->encode(slot.records, slot.bytes);
    }
  };
  if (groupSize_ == 1) {
    one(0, encoded_);
  } else {
    work_ = std::async(std::launch::async | std::launch::deferred, [this, one] { Reparte(encoded_, 1, one); });
  }
}

void LazRecordWriter::writeEncoded() {
  if (work_.valid()) work_.get();
  for (std::size_t i = 0; i < encoded_; ++i) {
    Slot& slot = encoding_[i];
    const std::uint64_t points = slot.records.size() / scheme_.recordLength();
    const std::uint64_t first = chunks_.empty() ? 0 : chunks_.back().firstPoint + chunks_.back().points;
    chunks_.push_back({first, points, file_.position(), slot.bytes.size()});
    file_.write(slot.bytes.data(), slot.bytes.size());
    slot.records.clear();
  }
  encoded_ = 0;
}

void LazRecordWriter::finish() {
  endChunk();
  encode();
  writeEncoded();
  const std::uint64_t place = file_.position();
  const auto table = encodeChunkTable(chunks_, scheme_.isVariable());
  file_.write(table.data(), table.size());
  const std::uint64_t end = file_.position();
  file_.seek(start_);
  file_.write(&place, sizeof place);
  file_.seek(end);
}

}  // namespace Meseta47::host
