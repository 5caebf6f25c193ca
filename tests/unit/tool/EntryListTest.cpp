// SPDX-License-Identifier: MIT
#include "tool/EntryList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using testing::HasSubstr;
using testing::Not;

using Form = ToolLine::Form;

std::vector<NumberedEntry> entries() {
  ClipItem pin = pinnedItem(textItem("a pin"), 0);
  pin.customName = "Greeting";
  pin.sourceAppName = "Editor";
  pin.sourceBundleIdentifier = "org.example.editor";
  pin.lastCopiedAt = testDate(7);
  ClipItem picture = imageItem("6FA459EA-EE8A-4CA4-894E-DB77E160355E.png", "00");
  picture.preview = "64 × 48 px";
  return numbered({pin, textItem("plain"), picture, filesItem({"/home/a/one", "/home/a/two"})});
}

std::vector<std::size_t> numbersOf(const std::vector<NumberedEntry>& list) {
  std::vector<std::size_t> numbers;
  numbers.reserve(list.size());
  for (const auto& entry : list) numbers.push_back(entry.number);
  return numbers;
}

TEST(EntryList, NumbersFromOneInTheOrderOfTheHistory) {
  EXPECT_EQ(numbersOf(entries()), (std::vector<std::size_t>{1, 2, 3, 4}));
  EXPECT_TRUE(numbered({}).empty());
}

TEST(EntryList, ALineHasNumberKindAndTitle) {
  EXPECT_EQ(entryList(entries(), Form::lines),
            "1\ttext\tGreeting\n"
            "2\ttext\tplain\n"
            "3\timage\t64 × 48 px\n"
            "4\tfiles\tone, two\n");
  EXPECT_EQ(entryList({}, Form::lines), "");
}

TEST(EntryList, ANulMayEndEachLine) {
  const std::string list = entryList(numbered({textItem("a"), textItem("b")}), Form::null);
  EXPECT_EQ(list, std::string("1\ttext\ta\0002\ttext\tb\0", 18));
}

TEST(EntryList, ATitleIsOneLineThatATerminalMayShow) {
  ClipItem item = textItem("x");
  item.preview = "a\tb\u2028c\x1b[31md\x07\u202E\u009Be";
  EXPECT_EQ(entryList(numbered({item}), Form::lines), "1\ttext\ta b c [31md e\n");
  item.preview = std::string(1000, 'x');
  EXPECT_LT(entryList(numbered({item}), Form::lines).size(), 200U);
}

TEST(EntryList, TheTitleOfATextIsItsFirstLine) {
  for (const char* const end : {"\n", "\r\n", "\r"}) {
    const auto list = numbered({textItem("first" + std::string(end) + "second")});
    EXPECT_EQ(entryList(list, Form::lines), "1\ttext\tfirst\n");
    EXPECT_THAT(entryList(list, Form::json), HasSubstr(R"("title": "first")"));
  }
  ClipItem pin = pinnedItem(textItem("x"), 0);
  pin.customName = "a\nb";
  EXPECT_EQ(entryList(numbered({pin, filesItem({"/a\nb", "/c"})}), Form::lines),
            "1\ttext\ta b\n2\tfiles\ta b, c\n");
}

TEST(EntryList, JsonSaysWhatIsKnownButNoContents) {
  const std::string json = entryList(entries(), Form::json);
  EXPECT_EQ(json.front(), '[');
  EXPECT_EQ(json.substr(json.size() - 2), "]\n");
  for (const char* const part :
       {R"("number": 1)", R"("kind": "text")", R"("title": "Greeting")", R"("pinned": true)",
        R"("name": "Greeting")", R"("source": "Editor")", R"("sourceId": "org.example.editor")",
        R"("firstCopied": "2025-03-14T09:26:53Z")", R"("lastCopied": "2025-03-14T09:27:00Z")",
        R"("pinned": false)"}) {
    EXPECT_THAT(json, HasSubstr(part));
  }
  EXPECT_THAT(json, Not(HasSubstr("a pin")));
  EXPECT_EQ(entryList({}, Form::json), "[]\n");
}

TEST(EntryList, JsonIsUtf8WhateverWasCopied) {
  ClipItem item = textItem("x");
  item.sourceAppName = "\xff";
  EXPECT_THAT(entryList(numbered({item}), Form::json), HasSubstr("\"source\": \"\uFFFD\""));
}

TEST(EntryList, FindsUnderTheNumbersOfTheWholeList) {
  EXPECT_EQ(numbersOf(found(entries(), "PLAIN")), (std::vector<std::size_t>{2}));
  EXPECT_EQ(numbersOf(found(entries(), "/home/a")), (std::vector<std::size_t>{4}));
  EXPECT_EQ(numbersOf(found(entries(), "greeting")), (std::vector<std::size_t>{1}));
  EXPECT_TRUE(found(entries(), "nowhere").empty());
}

TEST(EntryList, AnEntryIsCalledByNumberOrIdentity) {
  const auto list = entries();
  EXPECT_EQ(entryCalled(list, "2"), &list[1]);
  EXPECT_EQ(entryCalled(list, "002"), &list[1]);
  EXPECT_EQ(entryCalled(list, list[3].item.id.string()), &list[3]);
  for (const char* const none :
       {"5", "999", "99999999999999999999999", "", "3f2504e0-4f89-41d3-9a0c-0305e82c3301"}) {
    EXPECT_EQ(entryCalled(list, none), nullptr) << none;
  }
}

TEST(EntryList, EachPathHasItsEnd) {
  const ClipItem item = filesItem({"/a b", "/c"});
  EXPECT_EQ(pathList(item, Form::lines), "/a b\n/c\n");
  EXPECT_EQ(pathList(item, Form::null), std::string("/a b\0/c\0", 8));
}

}  // namespace
}  // namespace vantorel
