#include "host/laz/EntropyModel.h"

#include <gtest/gtest.h>
#include <random>

using namespace Meseta47::host::laz;

namespace {

/// The last symbol whose shares begin at this one or below it.
template <unsigned Capacity>
unsigned foundOneByOne(SymbolModel<Capacity> const& model, std::uint32_t share) {
  unsigned symbol = 0;
  while (symbol < model.last() && model.start(symbol + 1) <= share) ++symbol;
  return symbol;
}

template <unsigned Capacity>
void findsAll(SymbolModel<Capacity> const& model) {
  constexpr std::uint32_t kMostAsked = (1U << 15) + 63;  // rounding leaves so many behind the shares
  for (std::uint32_t share = 0; share <= kMostAsked; ++share) {
    ASSERT_EQ(model.find(share), foundOneByOne(model, share)) << share << " of " << model.last() + 1 << " symbols";
  }
}

/// A model as new, after a symbol that came nearly always, and after symbols at random.
template <unsigned Capacity>
void findsAllInEveryState(unsigned symbols) {
  SymbolModel<Capacity> model(symbols);
  findsAll(model);
  for (int i = 0; i < 60000; ++i) model.note(i % 1000 == 0 ? 0 : model.last() / 2);  // the others share few buckets
  findsAll(model);
  std::mt19937 random(5);
  for (int i = 0; i < 60000; ++i) model.note(static_cast<unsigned>(random() % symbols));
  findsAll(model);
}

}  // namespace

TEST(SymbolModel, FindsTheSymbolOfEachShareHoweverFewOthersHave) {
  findsAllInEveryState<16>(3);
  findsAllInEveryState<16>(16);
  findsAllInEveryState<48>(33);
  findsAllInEveryState<64>(64);
  findsAllInEveryState<128>(128);
  findsAllInEveryState<256>(256);
  findsAllInEveryState<515>(515);
}
