#include "model/storage/CNumeros.h"

#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <vector>

using namespace Meseta47;

namespace {

struct alignas(128) Block {
  std::byte places[2048 * 128];
};

TEST(CNumeros, ANumberLeadsToThePlaceInItsBlock) {
  const auto block = std::make_unique<Block>();
  const std::uint32_t b = CNumeros::Pon(block.get());
  for (const std::uint32_t place : {0U, 1U, 77U, 2047U}) {
    const std::uint32_t number = CNumeros::Numero(b, place);
    EXPECT_NE(number, 0U);
    EXPECT_EQ(CNumeros::Bloque(number), b);
    EXPECT_EQ(CNumeros::Direccion<128>(number), block->places + place * 128);
  }
  CNumeros::Quita(b);
}

TEST(CNumeros, NoTwoBlocksInUseShareANumberAndNoneHasZero) {
  std::vector<int> elements(5000);
  std::set<std::uint32_t> numbers;
  for (int& element : elements) numbers.insert(CNumeros::Pon(&element));
  EXPECT_EQ(numbers.size(), elements.size());
  EXPECT_EQ(numbers.count(0), 0U);
  for (const std::uint32_t n : numbers) CNumeros::Quita(n);
}

TEST(CNumeros, AForgottenNumberIsGivenAgain) {
  int element = 0;
  const std::uint32_t first = CNumeros::Pon(&element);
  CNumeros::Quita(first);
  std::set<std::uint32_t> seen;
  for (int i = 0; i < 10'000; ++i) {
    const std::uint32_t n = CNumeros::Pon(&element);
    seen.insert(n);
    CNumeros::Quita(n);
  }
  EXPECT_LT(seen.size(), 10'000U) << "numbers run out of use";
}

TEST(CNumeros, ThreadsGetDifferentNumbers) {
  std::vector<std::vector<std::uint32_t>> given(4);
  std::vector<int> elements(4);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < given.size(); ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 500; ++i) given[t].push_back(CNumeros::Pon(&elements[t]));
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::set<std::uint32_t> all;
  for (auto const& some : given) all.insert(some.begin(), some.end());
  EXPECT_EQ(all.size(), 2000U);
  for (const std::uint32_t n : all) CNumeros::Quita(n);
}

}  // namespace
