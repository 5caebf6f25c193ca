// SPDX-License-Identifier: MIT
#include "platform/linux/settings/JsonUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "unit/platform/linux/start/MemoryFiles.h"

namespace vantorel {
namespace {

using namespace std::chrono;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

const std::filesystem::path directory = "/home/u/.config/vantorel";
const std::filesystem::path path = directory / "defaults.json";
const std::filesystem::path copyPath = directory / "defaults.json.last-good";
const std::filesystem::path aside1 = directory / "defaults.json.damaged-1";
const std::filesystem::path aside2 = directory / "defaults.json.damaged-2";

class JsonUserDefaultsTest : public testing::Test {
 protected:
  JsonUserDefaults open() { return {files, path}; }
  void store(const std::string& text) { files.files[path] = {text, 0600}; }
  std::string stored() { return files.files.contains(path) ? files.files[path].text : "none"; }

  MemoryFiles files;
};

TEST_F(JsonUserDefaultsTest, AnAbsentFileHoldsNothingAndIsNotCreatedByReading) {
  const auto defaults = open();
  EXPECT_FALSE(defaults.contains("a.b"));
  EXPECT_FALSE(defaults.boolean("a.b"));
  EXPECT_FALSE(defaults.date("a.b"));
  EXPECT_TRUE(files.files.empty());
}

TEST_F(JsonUserDefaultsTest, KeepsEveryTypeOverARestart) {
  using namespace std::string_literals;
  const std::string unusual = "שלום \"x\"\n\0y"s;
  const Date date = sys_days(year(2025) / 3 / 14) + hours(9) + milliseconds(125);
  {
    auto defaults = open();
    defaults.set("a.bool", false);
    defaults.set("a.int", std::int64_t{-9007199254740993});
    defaults.set("a.double", 0.5);
    defaults.set("a.text", unusual);
    defaults.set("a.date", date);
    defaults.set("a.list", std::vector<std::string>{"one", "", "שתיים"});
  }
  const auto defaults = open();
  EXPECT_EQ(defaults.boolean("a.bool"), false);
  EXPECT_EQ(defaults.integer("a.int"), -9007199254740993);
  EXPECT_TRUE(defaults.contains("a.double"));
  EXPECT_EQ(defaults.string("a.text"), unusual);
  EXPECT_EQ(defaults.date("a.date"), date);
  EXPECT_THAT(defaults.stringArray("a.list"), Optional(ElementsAre("one", "", "שתיים")));
  EXPECT_THAT(stored(), HasSubstr(R"("2025-03-14T09:00:00.125Z")"));
}

TEST_F(JsonUserDefaultsTest, AnswersAbsentForAnotherType) {
  store(R"({"t": "text", "i": 1, "b": true, "d": 1.5, "n": null, "mixed": ["a", 1], "o": {}})");
  const auto defaults = open();
  EXPECT_FALSE(defaults.boolean("i"));
  EXPECT_FALSE(defaults.boolean("t"));
  EXPECT_FALSE(defaults.integer("b"));
  EXPECT_FALSE(defaults.integer("d"));
  EXPECT_FALSE(defaults.integer("t"));
  EXPECT_FALSE(defaults.string("i"));
  EXPECT_FALSE(defaults.date("t"));
  EXPECT_FALSE(defaults.date("i"));
  EXPECT_FALSE(defaults.stringArray("mixed"));
  EXPECT_FALSE(defaults.stringArray("t"));
  EXPECT_FALSE(defaults.string("o"));
  EXPECT_FALSE(defaults.contains("n"));
  EXPECT_TRUE(defaults.contains("o"));
}

TEST_F(JsonUserDefaultsTest, ReadsDatesWithAndWithoutAFraction) {
  store(R"({"a": "2025-03-14T09:26:53Z", "b": "2025-03-14T09:26:53.250Z"})");
  const auto defaults = open();
  const Date whole = sys_days(year(2025) / 3 / 14) + hours(9) + minutes(26) + seconds(53);
  EXPECT_EQ(defaults.date("a"), whole);
  EXPECT_EQ(defaults.date("b"), whole + milliseconds(250));
}

TEST_F(JsonUserDefaultsTest, KeepsWhatItDoesNotKnowToTheLetter) {
  const std::vector<std::string> values = {"null",
                                           "[1, [2, {\"a\": [] }], \"\\u05d0\"]",
                                           "{ \"x\" : { } }",
                                           "123456789012345678901234567890.000000000000000000001",
                                           "-0.0",
                                           "\"\\/\""};
  for (const std::string& value : values) {
    store("{\"other.key\" :\n " + value + " , \"mine\": 1}");
    auto defaults = open();
    defaults.set("mine", std::int64_t{2});
    EXPECT_THAT(stored(), HasSubstr("\"other.key\": " + value)) << value;
    EXPECT_EQ(open().integer("mine"), 2) << value;
  }
}

TEST_F(JsonUserDefaultsTest, RemovesOneKeyOnly) {
  store(R"({"a": 1, "b": 2})");
  auto defaults = open();
  defaults.remove("a");
  defaults.remove("never there");
  EXPECT_FALSE(open().contains("a"));
  EXPECT_EQ(open().integer("b"), 2);
}

TEST_F(JsonUserDefaultsTest, FileAndDirectoryAreForTheirOwnerOnly) {
  files.directories[directory] = 0755;
  auto defaults = open();
  defaults.set("a", true);
  EXPECT_EQ(files.files[path].permissions, 0600U);
  EXPECT_EQ(files.directories[directory], 0700U);
}

TEST_F(JsonUserDefaultsTest, NeverWritesIntoTheStoredFileItself) {
  store(R"({"a": 1})");
  auto defaults = open();
  defaults.set("a", std::int64_t{2});
  EXPECT_FALSE(files.written.contains(path));
  EXPECT_EQ(open().integer("a"), 2);
}

TEST_F(JsonUserDefaultsTest, SetsADamagedFileAsideWhenItBeginsAnew) {
  const std::string deep(100'000, '[');
  const std::string nested = R"({"a":)" + std::string(65, '[') + std::string(65, ']') + "}";
  for (const std::string& text : std::vector<std::string>{"",
                                                          "not json",
                                                          R"({"\udedd": 1, "\udede": 2})",
                                                          R"({"a": "\udedd"})",
                                                          "[]",
                                                          "[1, 2]",
                                                          "1",
                                                          "\"text\"",
                                                          "null",
                                                          "{",
                                                          "{\"a\": 1",
                                                          "{\"a\" 1}",
                                                          R"({"a": 1, "a": 2})",
                                                          "{}{}",
                                                          "{} x",
                                                          "{\"a\": \"\xff\"}",
                                                          "{\"\xc3\": 1}",
                                                          "{\"a\": \"\xed\xa0\x80\"}",
                                                          R"({"a": "\ud800"})",
                                                          R"({'a': 1})",
                                                          R"({"a": 01})",
                                                          R"({"a": 1,})",
                                                          R"({"a": 1e999})",
                                                          std::string("{}\0{}", 5),
                                                          std::string("{\"a\":\0 1}", 9),
                                                          deep,
                                                          R"({"a":)" + deep,
                                                          nested,
                                                          std::string((1U << 20) + 1, ' ')}) {
    files = {};
    store(text);
    auto defaults = open();
    EXPECT_FALSE(defaults.contains("a")) << text.substr(0, 40);
    EXPECT_EQ(stored(), text) << text.substr(0, 40);
    defaults.set("a", true);
    EXPECT_EQ(open().boolean("a"), true) << text.substr(0, 40);
    EXPECT_EQ(files.files[aside1].text, text) << text.substr(0, 40);
  }
}

TEST_F(JsonUserDefaultsTest, ASecondDamagedFileDoesNotReplaceTheFirst) {
  files.files[aside1] = {"earlier", 0600};
  store("damaged");
  open().set("a", true);
  EXPECT_EQ(files.files[aside1].text, "earlier");
  EXPECT_EQ(files.files[aside2].text, "damaged");
}

TEST_F(JsonUserDefaultsTest, ADamagedFileStaysUntilItsSuccessorCanTakeItsPlace) {
  store("damaged");
  auto defaults = open();
  files.failing.insert(MemoryFiles::Operation::rename);
  defaults.set("a", false);
  EXPECT_EQ(stored(), "damaged");
  files.failing.clear();
  defaults.set("a", true);
  EXPECT_EQ(open().boolean("a"), true);
  EXPECT_EQ(files.files[aside1].text, "damaged");
}

TEST_F(JsonUserDefaultsTest, AnUnreadableFileIsNotOverwritten) {
  store(R"({"a": false})");
  files.unreadable.insert(path);
  auto defaults = open();
  EXPECT_FALSE(defaults.contains("a"));
  defaults.set("a", true);
  EXPECT_EQ(defaults.boolean("a"), true);
  EXPECT_EQ(stored(), R"({"a": false})");
  EXPECT_FALSE(files.files.contains(aside1));
}

TEST_F(JsonUserDefaultsTest, AFailedWriteLeavesTheStoredSettingsAndTheNextOneTriesAgain) {
  for (const auto operation :
       {MemoryFiles::Operation::createDirectories, MemoryFiles::Operation::writeNewFile,
        MemoryFiles::Operation::rename}) {
    files = {};
    store(R"({"a": 1})");
    auto defaults = open();
    files.failing.insert(operation);
    defaults.set("a", std::int64_t{2});
    EXPECT_EQ(defaults.integer("a"), 2);
    EXPECT_EQ(stored(), R"({"a": 1})");
    EXPECT_EQ(files.files.size(), 2U) << "a failed write leaves nothing behind";
    files.failing.clear();
    defaults.set("b", std::int64_t{3});
    EXPECT_EQ(open().integer("a"), 2);
    EXPECT_EQ(open().integer("b"), 3);
  }
}

TEST_F(JsonUserDefaultsTest, TheLastGoodFileIsReadWhereTheFirstMakesNoSense) {
  open().set("a", std::int64_t{7});
  const std::string damaged = stored().substr(0, stored().size() - 5);
  store(damaged);
  EXPECT_EQ(open().integer("a"), 7);
  EXPECT_EQ(files.files[aside1].text, damaged);
  EXPECT_EQ(stored(), files.files[copyPath].text);
  EXPECT_EQ(files.files[copyPath].permissions, 0600U);
  EXPECT_FALSE(open().areLost());
}

TEST_F(JsonUserDefaultsTest, WhatOthersWroteIsCopiedWhenItIsRead) {
  store(R"({"a": 1})");
  (void)open();
  store("damaged");
  EXPECT_EQ(open().integer("a"), 1);
}

TEST_F(JsonUserDefaultsTest, ASoundFileCountsBeforeItsCopy) {
  open().set("a", std::int64_t{1});
  store(R"({"a": 2})");
  EXPECT_EQ(open().integer("a"), 2);
}

TEST_F(JsonUserDefaultsTest, TheCopyIsReadWhereTheFirstIsUnreadable) {
  open().set("a", std::int64_t{7});
  files.unreadable.insert(path);
  auto defaults = open();
  EXPECT_EQ(defaults.integer("a"), 7);
  EXPECT_FALSE(defaults.areLost());
  const std::string before = stored();
  defaults.set("a", std::int64_t{8});
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(open().integer("a"), 8);
}

TEST_F(JsonUserDefaultsTest, WhatWasSetWhileTheFileWasUnreadableIsTakenOverByIt) {
  store(R"({"changed": 1, "removed": 2, "others": 3})");
  (void)open();
  files.unreadable.insert(path);
  {
    auto defaults = open();
    defaults.set("changed", std::int64_t{10});
    defaults.remove("removed");
  }
  open().set("new", true);  // another start without it
  files.unreadable.clear();
  store(R"({"changed": 1, "removed": 2, "others": 4})");
  for (int start = 0; start < 2; ++start) {
    const auto defaults = open();
    EXPECT_EQ(defaults.integer("changed"), 10);
    EXPECT_FALSE(defaults.contains("removed"));
    EXPECT_EQ(defaults.boolean("new"), true);
    EXPECT_EQ(defaults.integer("others"), 4);
    EXPECT_FALSE(defaults.contains(JsonUserDefaults::changedKey));
  }
  EXPECT_EQ(stored(), files.files[copyPath].text);
  store(R"({"changed": 1})");
  EXPECT_EQ(open().integer("changed"), 1) << "only once";
}

TEST_F(JsonUserDefaultsTest, WhatWasSetWithoutAnyReadableFileIsAllThatIsTakenOver) {
  store(R"({"changed": 1, "removed": 2, "others": 3})");
  files.unreadable.insert(path);
  {
    auto defaults = open();
    defaults.set("changed", std::int64_t{10});
    defaults.remove("removed");
  }
  files.unreadable.clear();
  const auto defaults = open();
  EXPECT_EQ(defaults.integer("changed"), 10);
  EXPECT_FALSE(defaults.contains("removed"));
  EXPECT_EQ(defaults.integer("others"), 3);
}

TEST_F(JsonUserDefaultsTest, ACopyThatCannotBeReadForAMomentIsLeftAlone) {
  store(R"({"changed": 1})");
  files.unreadable.insert(path);
  open().set("changed", std::int64_t{10});
  files.unreadable = {copyPath};
  {
    auto defaults = open();
    EXPECT_EQ(defaults.integer("changed"), 1);
    defaults.set("meanwhile", true);
  }
  files.unreadable.clear();
  const auto defaults = open();
  EXPECT_EQ(defaults.integer("changed"), 10);
  EXPECT_EQ(defaults.boolean("meanwhile"), true);
}

TEST_F(JsonUserDefaultsTest, WhatCannotBeTakenOverYetIsNotForgotten) {
  open().set("a", std::int64_t{1});
  files.unreadable.insert(path);
  open().set("a", std::int64_t{2});
  files.unreadable.clear();
  files.failing.insert(MemoryFiles::Operation::rename);
  EXPECT_EQ(open().integer("a"), 2);
  files.failing.clear();
  EXPECT_EQ(open().integer("a"), 2);
  EXPECT_THAT(stored(), HasSubstr("2"));
}

TEST_F(JsonUserDefaultsTest, ADamagedFileStandsUntilTheNextOneTakesItsPlace) {
  open().set("a", std::int64_t{7});
  store("damaged");
  auto defaults = open();
  defaults.set("a", std::int64_t{8});
  EXPECT_EQ(files.files[aside1].text, "damaged");
  EXPECT_EQ(open().integer("a"), 8);
  EXPECT_TRUE(files.written.contains(aside1)) << "no moment without a file";
}

TEST_F(JsonUserDefaultsTest, WhoTakesTheFileAwayBeginsAnew) {
  open().set("a", std::int64_t{7});
  files.files.erase(path);
  EXPECT_FALSE(open().contains("a"));
  EXPECT_FALSE(open().areLost());
}

TEST_F(JsonUserDefaultsTest, SettingsAreLostUntilTheFirstIsSet) {
  EXPECT_FALSE(open().areLost()) << "a first start";
  store("damaged");
  EXPECT_TRUE(open().areLost());
  EXPECT_TRUE(open().areLost()) << "the start before wrote nothing";
  files.files[copyPath] = {"damaged too", 0600};
  EXPECT_TRUE(open().areLost());
  auto defaults = open();
  defaults.set("a", true);
  EXPECT_FALSE(defaults.areLost());
  EXPECT_FALSE(open().areLost());
}

TEST_F(JsonUserDefaultsTest, SettingsInAnUnreadableFileAreLost) {
  store(R"({"a": 1})");
  files.unreadable.insert(path);
  EXPECT_TRUE(open().areLost());
}

TEST_F(JsonUserDefaultsTest, ALeftoverOfAnInterruptedWriteIsNoObstacle) {
  files.files[directory / "defaults.json.new"] = {"half", 0600};
  auto defaults = open();
  defaults.set("a", true);
  EXPECT_EQ(open().boolean("a"), true);
}

TEST_F(JsonUserDefaultsTest, WhatJsonCannotSayLeavesTheStoredValue) {
  auto defaults = open();
  defaults.set("text", std::string("good"));
  defaults.set("text", std::string("\xff"));
  defaults.set("list", std::vector<std::string>{"good"});
  defaults.set("list", std::vector<std::string>{"good", "\xc3"});
  defaults.set("number", 1.5);
  defaults.set("number", std::numeric_limits<double>::quiet_NaN());
  defaults.set("date", Date::max());
  defaults.set("\xff", true);
  EXPECT_EQ(defaults.string("text"), "good");
  EXPECT_THAT(defaults.stringArray("list"), Optional(ElementsAre("good")));
  EXPECT_FALSE(defaults.contains("date"));
  EXPECT_FALSE(defaults.contains("\xff"));
  EXPECT_EQ(open().string("text"), "good");
  EXPECT_THAT(stored(), HasSubstr("\"number\": 1.5"));
}

TEST_F(JsonUserDefaultsTest, UnusualKeysSurvive) {
  const std::string key = "q\"\\\n.שלום";
  auto defaults = open();
  defaults.set(key, true);
  defaults.set("", std::int64_t{1});
  EXPECT_EQ(open().boolean(key), true);
  EXPECT_EQ(open().integer(""), 1);
}

TEST_F(JsonUserDefaultsTest, KeysOfNestedObjectsAreNotSettings) {
  store(R"({"a": {"b": true, "b": false}, "a.b": 7})");
  const auto defaults = open();
  EXPECT_EQ(defaults.integer("a.b"), 7);
  EXPECT_FALSE(defaults.contains("b"));
}

}  // namespace
}  // namespace vantorel
