#include "host/laz/ChunkCodec.h"

#include "host/laz/EntropyDecoder.h"
#include "tests/host/laz/LazScenes.h"

using namespace Meseta47::host;

namespace {

Bytes encoded(LazScheme const& scheme, Bytes const& records) {
  Bytes chunk;
  laz::makeChunkEncoder(scheme)->encode(records, chunk);
  return chunk;
}

/// Starts on a copy of a chunk that has the room behind it.
class Decoding {
 public:
  Decoding(LazScheme const& scheme, Bytes const& chunk, LasFields fields = LasFields::all)
      : decoder_(laz::makeChunkDecoder(scheme, fields)), bytes_(chunk), length_(scheme.recordLength()) {
    bytes_.resize(chunk.size() + laz::kDecoderSlack, 0xa5);
    decoder_->start(std::span(bytes_).first(chunk.size()));
  }

  /// The next whole records.
  Bytes next(std::size_t points) {
    Bytes records(points * length_);
    records.resize(decoder_->decode(records) * length_);
    return records;
  }
  [[nodiscard]] std::size_t taken() const { return decoder_->bytesTaken(); }

 private:
  std::unique_ptr<laz::ChunkDecoder> decoder_;
  Bytes bytes_;
  std::size_t length_;
};

}  // namespace

class ChunkCodec : public testing::TestWithParam<LazKind> {};

TEST_P(ChunkCodec, EveryFamilyOfRecordsComesBackAsItWas) {
  LazScheme const& scheme = GetParam().scheme;
  for (const Family family : kFamilies) {
    for (const std::size_t points : {1U, 2U, 3U, 100U, 2500U}) {
      SCOPED_TRACE(testing::Message() << "family " << static_cast<int>(family) << ", " << points << " points");
      const Bytes records = recordsOf(scheme, family, points, static_cast<unsigned>(points));
      const Bytes chunk = encoded(scheme, records);
      Decoding decoding(scheme, chunk);
      ASSERT_TRUE(decoding.next(points) == records);
      EXPECT_EQ(decoding.taken(), chunk.size()) << "the next chunk is found where this one ends";
    }
  }
}

TEST_P(ChunkCodec, PiecesOfAChunkDecodeAsTheWhole) {
  LazScheme const& scheme = GetParam().scheme;
  const Bytes records = recordsOf(scheme, Family::strips, 1000, 5);
  Decoding decoding(scheme, encoded(scheme, records));
  Bytes all;
  for (const std::size_t points : {1U, 1U, 7U, 300U, 691U}) {
    const Bytes piece = decoding.next(points);
    all.insert(all.end(), piece.begin(), piece.end());
  }
  EXPECT_TRUE(all == records);
}

TEST_P(ChunkCodec, TheFieldsOfASurfaceComeWithoutTheOthers) {
  LazScheme const& scheme = GetParam().scheme;
  for (const Family family : kFamilies) {
    SCOPED_TRACE(testing::Message() << "family " << static_cast<int>(family));
    const Bytes records = recordsOf(scheme, family, 1500, 4), chunk = encoded(scheme, records);
    const auto pointsOf = [&](Bytes const& from) {
      std::vector<LasPoint> points(from.size() / scheme.recordLength());
      decodeLasPoints(scheme.pointFormat, from.data(), scheme.recordLength(), points);
      return points;
    };
    Decoding decoding(scheme, chunk, LasFields::surface);
    const auto wanted = pointsOf(records), found = pointsOf(decoding.next(1500));
    ASSERT_EQ(found.size(), wanted.size());
    const auto surface = [](LasPoint const& p) {
      return std::tuple(p.x, p.y, p.z, p.intensity, p.classification, p.returnNumber, p.returns, p.channel);
    };
    for (std::size_t i = 0; i < wanted.size(); ++i) ASSERT_EQ(surface(found[i]), surface(wanted[i])) << "point " << i;
    EXPECT_EQ(decoding.taken(), chunk.size());
  }
}

TEST_P(ChunkCodec, ACodecThatWasUsedBeforeGivesTheSameBytes) {
  LazScheme const& scheme = GetParam().scheme;
  const Bytes first = recordsOf(scheme, Family::wild, 200, 1), second = recordsOf(scheme, Family::strips, 300, 2);
  const auto encoder = laz::makeChunkEncoder(scheme);
  Bytes chunk;
  encoder->encode(first, chunk);
  encoder->encode(second, chunk);
  EXPECT_TRUE(chunk == encoded(scheme, second));
}

TEST_P(ChunkCodec, AChunkThatIsCutShortShowsIt) {
  LazScheme const& scheme = GetParam().scheme;
  const Bytes records = recordsOf(scheme, Family::walk, 2000, 3);
  const Bytes chunk = encoded(scheme, records);
  for (const std::size_t kept : {std::size_t{0}, std::size_t{10}, chunk.size() / 3, chunk.size() - 8}) {
    Decoding decoding(scheme, Bytes(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(kept)));
    const Bytes found = decoding.next(2000);
    ASSERT_LT(found.size(), records.size()) << kept << " of " << chunk.size() << " bytes";
    EXPECT_TRUE(std::equal(found.begin(),
                           found.end() - static_cast<std::ptrdiff_t>(found.empty() ? 0 : 1 + found.size() / 100),
                           records.begin()))
        << "what came before the cut is sound";
  }
}

TEST_P(ChunkCodec, AnyBytesDecodeWithoutHarm) {
  LazScheme const& scheme = GetParam().scheme;
  std::mt19937 random(11);
  for (int round = 0; round < 20; ++round) {
    Bytes chunk(200 + random() % 3000);
    for (std::uint8_t& byte : chunk) byte = static_cast<std::uint8_t>(random());
    Decoding decoding(scheme, chunk);
    EXPECT_LE(decoding.next(500).size(), 500 * scheme.recordLength());
  }
}

INSTANTIATE_TEST_SUITE_P(EveryKind, ChunkCodec, testing::ValuesIn(everyLazKind()),
                         [](auto const& kind) { return kind.param.name; });
