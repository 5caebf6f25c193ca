// SPDX-License-Identifier: MIT
#include "app/Language.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(Language, IsHebrewForThoseWhoReadItAndWhereNobodySaid) {
  for (const char* locale :
       {"he_IL.UTF-8", "he", "he_IL@x", "iw_IL", "", "C", "C.UTF-8", "POSIX"}) {
    EXPECT_EQ(languageOf({.lang = locale}), Language::hebrew) << locale;
  }
}

TEST(Language, IsEnglishForEverybodyElse) {
  for (const char* locale : {"en_US.UTF-8", "de_DE", "ar_EG.UTF-8", "hey", "es", "chr_US"}) {
    EXPECT_EQ(languageOf({.lang = locale}), Language::english) << locale;
  }
}

TEST(Language, TheFirstOfTheVariablesThatIsSetCounts) {
  EXPECT_EQ(languageOf({.all = "en_US", .messages = "he_IL", .lang = "he_IL"}), Language::english);
  EXPECT_EQ(languageOf({.messages = "he_IL", .lang = "en_US"}), Language::hebrew);
  EXPECT_EQ(languageOf({.all = "C", .messages = "en_US", .lang = "en_US"}), Language::hebrew);
}

TEST(Language, TheDearestOfSeveralCountsBesideALocale) {
  EXPECT_EQ(languageOf({.language = "he:en", .lang = "en_IL"}), Language::hebrew);
  EXPECT_EQ(languageOf({.language = "en_GB:he", .lang = "he_IL"}), Language::english);
  EXPECT_EQ(languageOf({.language = "en", .lang = "C"}), Language::hebrew);
}

TEST(Language, TheOtherOneLeadsBack) {
  EXPECT_EQ(other(Language::hebrew), Language::english);
  EXPECT_EQ(other(Language::english), Language::hebrew);
}

}  // namespace
}  // namespace vantorel
