#include "platform/Memoria.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

TEST(PrefierePaginasGrandes, LeavesWhatIsThereAlone) {
  std::vector<unsigned> numbers(std::size_t{6} << 20);
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<unsigned>(i);
  // From the middle of a page to the middle of another: the neighbours share pages with the piece.
  PrefierePaginasGrandes(numbers.data() + 1001, (numbers.size() - 2002U) * sizeof(unsigned));
  std::size_t wrong = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) wrong += numbers[i] != i ? 1U : 0U;
  EXPECT_EQ(wrong, 0u);
}

TEST(PrefierePaginasGrandes, TakesAnyPiece) {
  char few[64] = "unharmed";
  PrefierePaginasGrandes(few, sizeof few);
  PrefierePaginasGrandes(nullptr, 0);
  EXPECT_STREQ(few, "unharmed");
}

}  // namespace
