#include "model/storage/Reservado.h"

#include <gtest/gtest.h>
#include <vector>

#include "platform/CWinApp.h"

namespace Meseta47 {
namespace {

TEST(Reservado, IsEmptyAndHasRoomWithoutMoving) {
  CWinApp application;
  application.PonProcesadores(2);
  constexpr std::size_t kMany = 3'000'000;  // three stretches of memory, and a bit
  std::vector<int> numbers = Reservado<int>(kMany);
  EXPECT_TRUE(numbers.empty());
  ASSERT_GE(numbers.capacity(), kMany);
  int const* const place = numbers.data();
  for (std::size_t i = 0; i < kMany; ++i) numbers.push_back(static_cast<int>(i));
  EXPECT_EQ(numbers.data(), place);
  EXPECT_EQ(numbers.back(), static_cast<int>(kMany) - 1);
}

TEST(Reservado, OfNothingAsksForNothing) { EXPECT_EQ(Reservado<double>(0).capacity(), 0U); }

TEST(Puebla, ChangesNoContentsWhateverTheAddress) {
  std::vector<char> bytes(100'000, 'u');
  for (const std::size_t from : {std::size_t{0}, std::size_t{1}, std::size_t{4095}, std::size_t{99'999}}) {
    Puebla(bytes.data() + from, bytes.size() - from);
  }
  Puebla(nullptr, 1000);
  EXPECT_EQ(bytes, std::vector<char>(100'000, 'u'));
}

}  // namespace
}  // namespace Meseta47
