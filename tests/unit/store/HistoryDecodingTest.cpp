// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "fakes/TestStore.h"
#include "store/HistoryFile.h"

namespace vantorel {
namespace {

constexpr std::string_view required =
    R"("id": "0a1b2c3d-4e5f-6789-abcd-ef0123456789", "kind": "text",)"
    R"( "createdAt": "2025-03-14T11:26:53+02:00", "title": "Text", "preview": "p",)"
    R"( "filePaths": [])";

/// An array of one entry: the required keys, and `more`.
std::string entry(std::string_view more) {
  return "[{" + std::string(required) + (more.empty() ? "" : ", ") + std::string(more) + "}]";
}

std::optional<std::vector<ClipItem>> decoded(std::string_view json) {
  return decodeHistory(toBytes(json));
}

/// `entry("")` with one required key given another value, or none when `value` is empty.
std::string withRequired(std::string_view key, std::string_view value) {
  const std::pair<std::string_view, std::string_view> members[] = {
      {"id", R"("0a1b2c3d-4e5f-6789-abcd-ef0123456789")"},
      {"kind", R"("text")"},
      {"createdAt", R"("2025-03-14T11:26:53+02:00")"},
      {"title", R"("Text")"},
      {"preview", R"("p")"},
      {"filePaths", "[]"}};
  std::string json;
  for (const auto& [name, usual] : members) {
    const auto given = name == key ? value : usual;
    if (given.empty()) continue;
    json += (json.empty() ? "\"" : ", \"") + std::string(name) + "\": " + std::string(given);
  }
  return "[{" + json + "}]";
}

TEST(HistoryDecoding, AnEmptyArrayIsAnEmptyHistory) {
  EXPECT_EQ(decoded("[]"), std::vector<ClipItem>());
  EXPECT_EQ(decoded(" [ ] \n"), std::vector<ClipItem>());
}

TEST(HistoryDecoding, TheRequiredKeysAreEnoughAndTheOthersStayAbsent) {
  const auto items = decoded(entry(""));
  ASSERT_TRUE(items);
  ASSERT_EQ(items->size(), 1U);
  ClipItem expected;
  expected.id = *Uuid::parse("0A1B2C3D-4E5F-6789-ABCD-EF0123456789");
  expected.createdAt = testDate();
  expected.title = "Text";
  expected.preview = "p";
  EXPECT_EQ(items->at(0), expected);
  EXPECT_FALSE(items->at(0).isPinned.has_value());
}

TEST(HistoryDecoding, AnEntryTakesNothingFromTheOneBefore) {
  const std::string two = "[{" + std::string(required) + R"(, "text": "t", "isPinned": true}, {)" +
                          std::string(required) + "}]";
  const auto items = decoded(two);
  ASSERT_TRUE(items);
  EXPECT_EQ(items->at(1).text, std::nullopt);
  EXPECT_EQ(items->at(1).isPinned, std::nullopt);
  EXPECT_FALSE(decoded("[{" + std::string(required) + "}, {}]"));
}

class RequiredKey : public ::testing::TestWithParam<const char*> {};

TEST_P(RequiredKey, MustBeThereAndOfItsType) {
  EXPECT_TRUE(decoded(withRequired("", "")));
  for (const char* value : {"", "null", "1", "true", "{}", "[1]", "[null]", "[[]]", "[{}]"}) {
    EXPECT_FALSE(decoded(withRequired(GetParam(), value))) << value;
  }
}

INSTANTIATE_TEST_SUITE_P(Keys, RequiredKey,
                         ::testing::Values("id", "kind", "createdAt", "title", "preview",
                                           "filePaths"));

class OptionalKey : public ::testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(OptionalKey, MayBeAbsentOrNullButNotOfAnotherType) {
  const std::string key = "\"" + std::string(GetParam().first) + "\": ";
  EXPECT_TRUE(decoded(entry(key + GetParam().second)));
  EXPECT_EQ(decoded(entry(key + "null")), decoded(entry("")));
  EXPECT_EQ(decoded(entry(key + GetParam().second + ", " + key + "null")), decoded(entry("")));
  for (const char* value : {"1", "1.5", "true", "\"text\"", "{}", "[]", "[\"\"]"}) {
    if (std::string_view(value) == GetParam().second) continue;
    EXPECT_FALSE(decoded(entry(key + value))) << value;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Keys, OptionalKey,
    ::testing::Values(std::pair("text", "\"text\""), std::pair("assetFilename", "\"text\""),
                      std::pair("sourceAppName", "\"text\""),
                      std::pair("sourceBundleIdentifier", "\"text\""),
                      std::pair("contentHash", "\"text\""), std::pair("customName", "\"text\""),
                      std::pair("recognizedText", "\"text\""), std::pair("isPinned", "true"),
                      std::pair("pinOrder", "1")));

INSTANTIATE_TEST_SUITE_P(CodedKeys, OptionalKey,
                         ::testing::Values(std::pair("lastCopiedAt", "\"2025-03-14T09:26:53Z\"")));

TEST(HistoryDecoding, BytesAreStrictBase64) {
  for (const std::string key : {"\"rtfData\": ", "\"htmlData\": "}) {
    const auto items = decoded(entry(key + "\"Zm9v\""));
    ASSERT_TRUE(items);
    const ClipItem& item = items->at(0);
    EXPECT_EQ(key == "\"rtfData\": " ? item.rtfData : item.htmlData, SharedBytes(toBytes("foo")));
    EXPECT_TRUE(decoded(entry(key + "\"\"")));
    EXPECT_EQ(decoded(entry(key + "null")), decoded(entry("")));
    for (const char* value : {"\"Zm9\"", "\"Zm9v\\n\"", "\"Zm9!\"", "1", "[]", "true"}) {
      EXPECT_FALSE(decoded(entry(key + value))) << key << value;
    }
  }
}

TEST(HistoryDecoding, ReadsEveryFieldWhereItBelongs) {
  const auto items = decoded(entry(
      R"("text": "t", "assetFilename": "f", "sourceAppName": "n", "sourceBundleIdentifier": "b",
         "contentHash": "h", "isPinned": true, "customName": "c", "pinOrder": 3,
         "lastCopiedAt": "2025-03-14T09:26:54Z", "recognizedText": "r", "rtfData": "Zg==",
         "htmlData": "Zm8=")"));
  ASSERT_TRUE(items);
  const ClipItem& item = items->at(0);
  EXPECT_EQ(item.text, SharedText("t"));
  EXPECT_EQ(item.assetFilename, "f");
  EXPECT_EQ(item.sourceAppName, "n");
  EXPECT_EQ(item.sourceBundleIdentifier, "b");
  EXPECT_EQ(item.contentHash, "h");
  EXPECT_EQ(item.isPinned, true);
  EXPECT_EQ(item.customName, "c");
  EXPECT_EQ(item.pinOrder, 3);
  EXPECT_EQ(item.lastCopiedAt, testDate(1));
  EXPECT_EQ(item.recognizedText, "r");
  EXPECT_EQ(item.rtfData, SharedBytes(toBytes("f")));
  EXPECT_EQ(item.htmlData, SharedBytes(toBytes("fo")));
}

TEST(HistoryDecoding, KnowsThreeKinds) {
  EXPECT_EQ(decoded(withRequired("kind", "\"text\""))->at(0).kind, ClipKind::text);
  EXPECT_EQ(decoded(withRequired("kind", "\"image\""))->at(0).kind, ClipKind::image);
  EXPECT_EQ(decoded(withRequired("kind", "\"files\""))->at(0).kind, ClipKind::files);
  for (const char* kind : {"\"video\"", "\"Text\"", "\"\"", "\"text \""}) {
    EXPECT_FALSE(decoded(withRequired("kind", kind))) << kind;
  }
}

TEST(HistoryDecoding, RefusesAMalformedIdentityOrDate) {
  EXPECT_FALSE(decoded(withRequired("id", "\"0a1b2c3d-4e5f-6789-abcd\"")));
  EXPECT_FALSE(decoded(withRequired("createdAt", "\"2025-03-14T11:26:53.5Z\"")));
  EXPECT_FALSE(decoded(withRequired("createdAt", "\"2025-02-30T11:26:53Z\"")));
  EXPECT_FALSE(decoded(entry(R"("lastCopiedAt": "yesterday")")));
}

TEST(HistoryDecoding, OneBadEntrySpoilsTheWhole) {
  const std::string good = "{" + std::string(required) + "}";
  EXPECT_TRUE(decoded("[" + good + ", " + good + "]"));
  for (const char* bad : {"{}", "null", "1", "\"\"", "[]", "true"}) {
    EXPECT_FALSE(decoded("[" + good + ", " + bad + "]")) << bad;
    EXPECT_FALSE(decoded("[" + std::string(bad) + ", " + good + "]")) << bad;
  }
}

TEST(HistoryDecoding, PinOrdersAreWholeNumbersOfSixtyFourBits) {
  const auto pinOrder = [](std::string_view number) -> std::optional<std::int64_t> {
    const auto items = decoded(entry("\"pinOrder\": " + std::string(number)));
    return items ? items->at(0).pinOrder : std::nullopt;
  };
  EXPECT_EQ(pinOrder("0"), 0);
  EXPECT_EQ(pinOrder("-7"), -7);
  EXPECT_EQ(pinOrder("4294967296"), 4294967296);
  EXPECT_EQ(pinOrder("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(pinOrder("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(pinOrder("1.0"), 1);
  EXPECT_EQ(pinOrder("1e3"), 1000);
  EXPECT_EQ(pinOrder("-0.0"), 0);
  for (const char* number :
       {"1.5", "1e300", "-1e300", "1e400", "9223372036854775808", "-9223372036854775809",
        "18446744073709551615", "99999999999999999999", "NaN", "Infinity", "01", "+1", "0x10"}) {
    EXPECT_FALSE(decoded(entry("\"pinOrder\": " + std::string(number)))) << number;
  }
}

TEST(HistoryDecoding, IgnoresUnknownKeysWhateverTheyHold) {
  const auto usual = decoded(entry(""));
  for (const char* unknown :
       {R"("x": null)", R"("x": true)", R"("x": -1.5e10)", R"("x": 18446744073709551615)",
        R"("x": "s")", R"("x": [])", R"("x": {})", R"("": 1)", R"("Text": 1)",
        R"("x": [[1, {"id": 1, "kind": "video"}, []], "a", null, 2.5, {"y": [true]}])",
        R"("x": {"id": 5, "filePaths": {"a": [1]}}, "y": 1)"}) {
    EXPECT_EQ(decoded(entry(unknown)), usual) << unknown;
  }
}

TEST(HistoryDecoding, OfAKeyGivenTwiceTheLastValueCounts) {
  const auto items =
      decoded(entry(R"("text": "a", "text": "b", "filePaths": ["/a", "/b"], "filePaths": ["/c"])"));
  ASSERT_TRUE(items);
  EXPECT_EQ(items->at(0).text, SharedText("b"));
  EXPECT_EQ(items->at(0).filePaths, std::vector<std::string>{"/c"});
}

TEST(HistoryDecoding, RefusesWhatIsNoJsonArray) {
  for (const std::string_view json :
       {"", " ", "{}", "null", "1", "\"\"", "[", "]", "[]]", "[] []", "[]x", "[,]", "[{},]",
        "//c\n[]", "/**/[]", "['a']", "\xEF\xBB\xBF[]", "VNTL1"}) {
    EXPECT_FALSE(decoded(json)) << json;
  }
  const std::string good = entry("");
  for (std::size_t length = 0; length < good.size(); ++length) {
    EXPECT_FALSE(decoded(std::string_view(good).substr(0, length))) << length;
  }
}

TEST(HistoryDecoding, RefusesNulAndWhatFollowsIt) {
  EXPECT_FALSE(decoded(std::string_view("[]\0", 3)));
  EXPECT_FALSE(decoded(std::string_view("[]\0[]", 5)));
  EXPECT_FALSE(decoded(std::string_view("\0[]", 3)));
  EXPECT_FALSE(decoded(entry("\"text\": \"a" + std::string(1, '\0') + "b\"")));
}

TEST(HistoryDecoding, ReadsEscapesAndPairsOfSurrogates) {
  const auto items = decoded(
      entry(R"("text": "\u0000\"\\\/\b\f\n\r\t\u05E9\uD83D\uDE42", "customName": "\u00e9")"));
  ASSERT_TRUE(items);
  EXPECT_EQ(items->at(0).text->get(), std::string(1, '\0') + "\"\\/\b\f\n\r\tש🙂");
  EXPECT_EQ(items->at(0).customName, "é");
}

TEST(HistoryDecoding, RefusesTextThatIsNoUnicode) {
  for (const char* text :
       {"\\uD83D", "\\uDE42", "\\uDE42\\uD83D", "\\uD83Dx", "\\uD83D\\n", "\\uD83D\\uD83D", "\\u12",
        "\\uGGGG", "\\x41", "\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
        "\xE2\x82", "a\nb", "a\tb", "\x01"}) {
    const std::string quoted = "\"" + std::string(text) + "\"";
    EXPECT_FALSE(decoded(entry("\"text\": " + quoted))) << text;
    EXPECT_FALSE(decoded(entry("\"unknown\": [" + quoted + "]"))) << text;
    EXPECT_FALSE(decoded(entry(quoted + ": 1"))) << text;
    EXPECT_FALSE(decoded(withRequired("filePaths", "[" + quoted + "]"))) << text;
  }
}

TEST(HistoryDecoding, RefusesDeepNestingInsteadOfFollowingIt) {
  const auto nested = [](std::size_t depth) {
    return entry("\"x\": " + std::string(depth, '[') + std::string(depth, ']'));
  };
  EXPECT_TRUE(decoded(nested(64)));
  EXPECT_FALSE(decoded(nested(65)));
  EXPECT_FALSE(decoded(nested(5'000'000)));
  EXPECT_FALSE(decoded(std::string(10'000'000, '[')));
  std::string objects;
  for (int i = 0; i < 1'000'000; ++i) objects += "{\"a\":";
  EXPECT_FALSE(decoded(entry("\"x\": " + objects)));
}

TEST(HistoryDecoding, ReadsManyEntries) {
  std::vector<ClipItem> items;
  for (int i = 0; i < 5000; ++i) items.push_back(textItem(std::to_string(i)));
  EXPECT_EQ(decodeHistory(encodeHistory(items)), items);
}

}  // namespace
}  // namespace vantorel
