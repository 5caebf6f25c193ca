// SPDX-License-Identifier: MIT
#include "text/SubstringScan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace vantorel {
namespace {

TEST(SubstringScan, AgreesWithThePlainSearchOnRandomTexts) {
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    const auto letters = 1 + random() % 3;
    const auto text = [&](std::size_t length) {
      std::string made;
      for (std::size_t i = 0; i < length; ++i) made += static_cast<char>('a' + random() % letters);
      return made;
    };
    const auto haystack = text(random() % 300);
    const auto needle = text(random() % (round % 2 == 0 ? 6 : 200));
    const auto from = random() % 40;
    ASSERT_EQ(findBytes(haystack, needle, from), haystack.find(needle, from))
        << haystack << " / " << needle << " / " << from;
  }
}

TEST(SubstringScan, FindsANeedleAtEveryPosition) {
  for (const std::string needle : {"q", "qz", "\xD7\x90\xD7\x91", "needle"}) {
    for (std::size_t before = 0; before < 200; ++before) {
      for (const std::size_t after : {0U, 1U, 63U, 64U, 100U}) {
        std::string haystack(before, '.');
        haystack += needle;
        haystack.append(after, '.');
        ASSERT_EQ(findBytes(haystack, needle), before);
        ASSERT_EQ(findBytes(haystack, needle, before + 1), std::string_view::npos);
      }
    }
  }
}

TEST(SubstringScan, FindsTheEmptyNeedleWherever) {
  EXPECT_EQ(findBytes("", ""), 0U);
  EXPECT_EQ(findBytes("abc", "", 3), 3U);
  EXPECT_EQ(findBytes("abc", "", 4), std::string_view::npos);
}

TEST(SubstringScan, FindsNoNeedleThatIsLongerThanTheText) {
  EXPECT_EQ(findBytes("ab", "abc"), std::string_view::npos);
  EXPECT_EQ(findBytes("abc", "bcd", 1), std::string_view::npos);
  EXPECT_EQ(findBytes("", "a"), std::string_view::npos);
}

TEST(SubstringScan, IsNotTrappedByALongNeedleThatAlmostMatchesEverywhere) {
  std::string needle(100'000, 'a');
  needle[50'000] = 'b';
  const std::string haystack(2'000'000, 'a');
  EXPECT_EQ(findBytes(haystack, needle), std::string_view::npos);
}

}  // namespace
}  // namespace vantorel
