// SPDX-License-Identifier: MIT
#include "text/CaseFolding.h"

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <random>
#include <string>
#include <string_view>

namespace vantorel {
namespace {

bool finds(std::string_view haystack, std::string_view needle,
           CaseRules rules = CaseRules::general) {
  return containsFolded(foldedForSearch(haystack, rules), foldedForSearch(needle, rules));
}

/// Sets ICU's default locale for one test.
class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name) : before_(uloc_getDefault()) { set(name); }
  ~ScopedLocale() { set(before_.c_str()); }
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

 private:
  static void set(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    uloc_setDefault(name, &status);
  }
  std::string before_;
};

TEST(CaseFolding, IgnoresTheCaseOfAsciiAtEveryPosition) {
  for (std::size_t before = 0; before < 100; ++before) {
    std::string text(before, '-');
    text += "RePort@[`{Z";
    std::string expected(before, '-');
    expected += "report@[`{z";
    EXPECT_EQ(foldedForSearch(text, CaseRules::general), expected);
  }
}

TEST(CaseFolding, IgnoresTheCaseOfOtherScripts) {
  EXPECT_TRUE(finds("ПРИВЕТ мир", "привет МИР"));
  EXPECT_TRUE(finds("ΟΔΥΣΣΕΥΣ", "οδυσσευς"));
  EXPECT_TRUE(finds("Ångström", "ÅNGSTRÖM"));
  EXPECT_TRUE(finds("Straße", "STRASSE"));
  EXPECT_TRUE(finds("\u1E9E", "ss"));
  EXPECT_TRUE(finds("\U00010400", "\U00010428"));
  EXPECT_TRUE(finds("\u212A", "k"));
}

TEST(CaseFolding, TakesDiacriticsAsWritten) {
  EXPECT_FALSE(finds("café", "cafe"));
  EXPECT_FALSE(finds("cafe", "café"));
  EXPECT_FALSE(finds("cafe\u0301", "cafe"));
  EXPECT_FALSE(finds("x\u0302y", "x"));
  EXPECT_TRUE(finds("x\u0302yx", "x"));
  EXPECT_TRUE(finds("x\u0302y", "X\u0302"));
  EXPECT_FALSE(finds("\u05E9\u05C1\u05B8\u05DC\u05D5\u05B9\u05DD", "\u05E9\u05DC\u05D5\u05DD"));
}

TEST(CaseFolding, DoesNotMindHowACharacterIsComposed) {
  EXPECT_TRUE(finds("cafe\u0301", "caf\u00E9"));
  EXPECT_TRUE(finds("CAF\u00C9", "cafe\u0301"));
  EXPECT_TRUE(finds("q\u0307\u0323", "Q\u0323\u0307"));
  EXPECT_TRUE(finds("\u1112\u1161\u11AB", "\uD55C"));
  EXPECT_TRUE(finds("\u212B", "A\u030A"));
  EXPECT_TRUE(finds("\u05E9\u05B8\u05C1", "\u05E9\u05C1\u05B8"));
}

TEST(CaseFolding, PairsTheTurkicLettersWhereTheLocaleSaysSo) {
  EXPECT_TRUE(finds("INDIRIM", "ındırım", CaseRules::turkic));
  EXPECT_TRUE(finds("İNDİRİM", "indirim", CaseRules::turkic));
  EXPECT_TRUE(finds("I\u0307NDI\u0307RI\u0307M", "indirim", CaseRules::turkic));
  EXPECT_FALSE(finds("INDIRIM", "indirim", CaseRules::turkic));
  EXPECT_TRUE(finds("INDIRIM", "indirim"));
  EXPECT_FALSE(finds("INDIRIM", "ındırım"));
  EXPECT_TRUE(finds("a long run of plain text and THEN ITS END, as long again as it was before",
                    "ıts end", CaseRules::turkic));
}

TEST(CaseFolding, FollowsTheLocaleOfTheUser) {
  {
    const ScopedLocale turkish("tr_TR");
    EXPECT_EQ(currentCaseRules(), CaseRules::turkic);
    EXPECT_EQ(foldedForSearch("I"), "ı");
  }
  for (const auto* name : {"en_US", "he_IL", "trv_TW", "en_US_POSIX", ""}) {
    const ScopedLocale other(name);
    EXPECT_EQ(currentCaseRules(), CaseRules::general) << name;
    EXPECT_EQ(foldedForSearch("I"), "i");
  }
}

TEST(CaseFolding, FoldsBrokenBytesAsTheyWillBeShown) {
  EXPECT_EQ(foldedForSearch("CAF\xC9", CaseRules::general), "caf\uFFFD");
  EXPECT_EQ(foldedForSearch("\xE2\x82", CaseRules::general), "\uFFFD");
}

TEST(CaseFolding, KeepsEmptyAndNulBytes) {
  EXPECT_EQ(foldedForSearch("", CaseRules::general), "");
  EXPECT_EQ(foldedForSearch(std::string_view("A\0B", 3), CaseRules::general),
            std::string_view("a\0b", 3));
}

/// The same by the library alone, on the whole text.
std::string foldedPlainly(const std::string& text, CaseRules rules) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* form = icu::Normalizer2::getNFCInstance(status);
  auto folded = form->normalize(icu::UnicodeString::fromUTF8(text), status);
  folded.foldCase(rules == CaseRules::turkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
  std::string result;
  form->normalize(folded, status).toUTF8String(result);
  return result;
}

class EveryRule : public testing::TestWithParam<CaseRules> {};

TEST_P(EveryRule, GivesWhatTheLibraryGivesForEveryCharacter) {
  for (UChar32 c = 1; c < 0x20000; ++c) {
    if (U_IS_SURROGATE(c)) continue;
    std::string text;
    icu::UnicodeString(c).toUTF8String(text);
    ASSERT_EQ(foldedForSearch(text, GetParam()), foldedPlainly(text, GetParam())) << std::hex << c;
    text.insert(0, "e").append("\u0323\u0301");
    ASSERT_EQ(foldedForSearch(text, GetParam()), foldedPlainly(text, GetParam())) << std::hex << c;
  }
}

TEST_P(EveryRule, GivesWhatTheLibraryGivesForAnyMixture) {
  const std::u32string_view letters =
      U"aAIiıİ \n~éÉßẞſŉΐΰΣςǅ\u0301\u0307\u0323\u0345\u05D0\u05B8\u05C1\u05E9ÅA\u030A한\u1112\u1161"
      U"\u11AB漢“—ﬁЖж\U00010400\U0001F600\U0001F3FD\u0E01\u0E38ก\u0E48\u212A\u1E9B";
  std::mt19937 random(20250314);
  for (int round = 0; round < 4000; ++round) {
    icu::UnicodeString text;
    const auto length = random() % 200;
    const auto plainness = random() % 10;
    for (std::size_t i = 0; i < length; ++i) {
      text.append(random() % 10 < plainness
                      ? static_cast<UChar32>(' ' + random() % 95)
                      : static_cast<UChar32>(letters[random() % letters.size()]));
    }
    std::string utf8;
    text.toUTF8String(utf8);
    ASSERT_EQ(foldedForSearch(utf8, GetParam()), foldedPlainly(utf8, GetParam())) << utf8;
  }
}

TEST_P(EveryRule, FoldsPiecesThatBeginWithASpaceAsTheWhole) {
  const std::string first = "Caf\u00C9 e\u0301I";
  const std::string second = " \u0301I\u0307 END";
  EXPECT_EQ(foldedForSearch(first, GetParam()) + foldedForSearch(second, GetParam()),
            foldedForSearch(first + second, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(CaseFolding, EveryRule,
                         testing::Values(CaseRules::general, CaseRules::turkic));

TEST(Narrowing, HoldsForWhatIsTypedOnwards) {
  EXPECT_TRUE(narrows("invoice", "inv"));
  EXPECT_TRUE(narrows("inv", "inv"));
  EXPECT_TRUE(narrows("inv", ""));
  EXPECT_FALSE(narrows("inv", "invoice"));
  EXPECT_FALSE(narrows("voice", "inv"));
  EXPECT_FALSE(narrows("x\u0302", "x"));
}

}  // namespace
}  // namespace vantorel
