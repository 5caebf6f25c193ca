// SPDX-License-Identifier: MIT
#include "store/ImportedClips.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/ContentFingerprint.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Texts = std::vector<std::string>;

const std::string png = "not looked into here";

ClipItem pin(std::string_view text, std::int64_t order, const char* name = nullptr) {
  ClipItem item = pinnedItem(textItem(text), order);
  if (name != nullptr) item.customName = name;
  return item;
}

ImportedClip picture(std::string_view bytes) {
  const std::string hash = ContentFingerprint::data(bytesOf(bytes));
  ImportedClip clip{.item = imageItem("", hash), .picture = EncodedImage{}};
  clip.item.assetFilename.reset();
  clip.picture->bytes = std::make_shared<const Bytes>(toBytes(bytes));
  clip.picture->extension = "png";
  return clip;
}

TEST(ImportedClips, StandByTheTimesAtWhichTheyWereCopied) {
  TestStore store;
  store->insert(textItem("old", testDate(1)));
  store->insert(textItem("new", testDate(5)));
  store.dispatch().setNow(testDate(10));
  EXPECT_TRUE(store->takeIn({{textItem("newest", testDate(7)), {}},
                             {textItem("between", testDate(3)), {}},
                             {textItem("oldest", testDate(0)), {}}}));
  EXPECT_EQ(store.texts(), (Texts{"newest", "new", "between", "old", "oldest"}));
  EXPECT_EQ(store.savedItems()->size(), 5U);
}

TEST(ImportedClips, KeepTheirOrderWithinASecond) {
  TestStore store;
  EXPECT_TRUE(store->takeIn({{textItem("a"), {}}, {textItem("b"), {}}, {textItem("c"), {}}}));
  EXPECT_EQ(store.texts(), (Texts{"a", "b", "c"}));
}

TEST(ImportedClips, MergeWithWhatTheyRepeat) {
  TestStore store;
  store->insert(textItem("same", testDate(1)));
  store->insert(textItem("other", testDate(2)));
  const Uuid id = store->items().at(1).id;
  EXPECT_TRUE(store->takeIn({{textItem("same", testDate(0)), {}}}));
  EXPECT_EQ(store.texts(), (Texts{"other", "same"}));
  EXPECT_EQ(store->items().at(1).id, id);
  EXPECT_TRUE(store->takeIn({{textItem("same", testDate(3)), {}}}));
  EXPECT_EQ(store.texts(), (Texts{"same", "other"}));
}

TEST(ImportedClips, PinsStayPinsBehindThoseThatAre) {
  const auto list = merged({pin("a", 0, "A")}, {pin("b", 0, "B"), textItem("c"), pin("d", 1)}, 5);
  TestStore store;
  EXPECT_TRUE(store->takeIn({{pin("a", 0, "A"), {}}}));
  EXPECT_TRUE(store->takeIn({{pin("b", 0, "B"), {}}, {textItem("c"), {}}, {pin("d", 1), {}}}));
  EXPECT_EQ(store.texts(), (Texts{"a", "b", "d", "c"}));
  EXPECT_EQ(store->items().at(1).customName, "B");
  EXPECT_EQ(store->items().at(2).pinOrder, 2);
  EXPECT_EQ(list.size(), 4U);
}

TEST(ImportedClips, APinThatIsOneHereKeepsPlaceAndName) {
  TestStore store;
  EXPECT_TRUE(store->takeIn({{pin("a", 0, "A"), {}}, {pin("b", 1, "B"), {}}}));
  EXPECT_TRUE(store->takeIn({{pin("b", 0, "another"), {}}}));
  EXPECT_EQ(store.texts(), (Texts{"a", "b"}));
  EXPECT_EQ(store->items().at(1).customName, "B");
}

TEST(ImportedClips, ATextThatIsHereBecomesThePinThatItWas) {
  TestStore store;
  store.addText("a");
  EXPECT_TRUE(store->takeIn({{pin("a", 0, "A"), {}}}));
  ASSERT_EQ(store.texts(), (Texts{"a"}));
  EXPECT_TRUE(store->items().at(0).pinned());
  EXPECT_EQ(store->items().at(0).customName, "A");
}

TEST(ImportedClips, PinsBeyondTheLimitAreEntriesLikeOthers) {
  TestStore store;
  std::vector<ImportedClip> clips;
  for (int i = 0; i < 7; ++i) clips.push_back({pin("pin " + std::to_string(i), i, "name"), {}});
  EXPECT_TRUE(store->takeIn(clips));
  const auto& items = store->items();
  ASSERT_EQ(items.size(), 7U);
  EXPECT_TRUE(items[4].pinned());
  EXPECT_FALSE(items[5].pinned());
  EXPECT_FALSE(items[5].customName);
}

TEST(ImportedClips, AreCutToTheLimits) {
  TestStore store({.maxItems = 3, .maxAge = Seconds(100)});
  store.dispatch().setNow(testDate(200));
  EXPECT_EQ(store->takeIn({{textItem("a", testDate(190)), {}},
                           {textItem("b", testDate(180)), {}},
                           {textItem("c", testDate(170)), {}},
                           {textItem("d", testDate(160)), {}},
                           {textItem("too old", testDate(90)), {}}}),
            3U);
  EXPECT_EQ(store.texts(), (Texts{"a", "b", "c"}));
}

TEST(ImportedClips, CountAsTakenInWhenTheirContentsAreHere) {
  TestStore store({.maxItems = 2});
  store.addText("here");
  EXPECT_EQ(store->takeIn({}), 0U);
  EXPECT_EQ(store->takeIn({{textItem("here", testDate(-9)), {}}}), 1U);
  EXPECT_EQ(store->takeIn({{textItem("b"), {}}, {textItem("c", testDate(-5)), {}}}), 1U);
  EXPECT_EQ(store.texts(), (Texts{"here", "b"}));
}

TEST(ImportedClips, PicturesThatWouldNotStayAreNotStored) {
  const std::string bytes(1000, 'x');
  const auto aged = [&bytes](char name, double seconds) {
    auto clip = picture(bytes + name);
    clip.item.createdAt = testDate(seconds);
    return clip;
  };
  const auto written = [](TestStore& store) {
    const auto& calls = store.files().calls();
    return std::count_if(calls.begin(), calls.end(), [](const auto& call) {
      return call.operation == FaultyFileSystem::Operation::writeNewFile &&
             call.path.parent_path().filename() == "Assets";
    });
  };
  const auto takenIn = [&](ClipStoreLimits limits) {
    TestStore store(limits);
    store.dispatch().setNow(testDate(200));
    EXPECT_EQ(store->takeIn({aged('a', 190), aged('b', 180), aged('c', 170), aged('d', 10)}), 2U);
    EXPECT_EQ(store.assetNames().size(), 2U);
    return written(store);
  };
  EXPECT_EQ(takenIn({.maxItems = 2}), 2);
  EXPECT_EQ(takenIn({.maxAge = Seconds(25)}), 2);
  EXPECT_EQ(takenIn({.maxAssetBytes = 2500}), 2);
}

TEST(ImportedClips, AStoredPictureMakesRoomForOneThatIsNewer) {
  const std::string bytes(1000, 'x');
  TestStore store({.maxItems = 1, .maxAssetBytes = 1500});
  auto old = picture(bytes + "old");
  EXPECT_EQ(store->takeIn({old}), 1U);
  auto newer = picture(bytes + "newer");
  newer.item.createdAt = testDate(5);
  store.dispatch().setNow(testDate(10));
  EXPECT_EQ(store->takeIn({newer}), 1U);
  EXPECT_EQ(store->items().front().contentHash, newer.item.contentHash);
}

TEST(ImportedClips, APictureIsStoredOnce) {
  TestStore store;
  const auto clip = picture(png);
  EXPECT_TRUE(store->takeIn({clip, clip}));
  ASSERT_EQ(store->items().size(), 1U);
  EXPECT_EQ(store->assetData(store->items().front()), toBytes(png));
  const auto names = store.assetNames();
  EXPECT_EQ(names.size(), 1U);
  EXPECT_TRUE(store->takeIn({clip}));
  EXPECT_EQ(store.assetNames(), names);
}

TEST(ImportedClips, NothingIsTakenInWhenAPictureCannotBeStored) {
  TestStore store;
  store.addText("kept");
  const int changes = store.changes();
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  EXPECT_FALSE(store->takeIn({{textItem("new"), {}}, picture("1"), picture("2")}));
  store.files().recover();
  EXPECT_EQ(store.texts(), (Texts{"kept"}));
  EXPECT_EQ(store.changes(), changes);
  EXPECT_TRUE(store.assetNames().empty());
}

TEST(ImportedClips, PicturesThatWereStoredGoWithTheOneThatCouldNotBe) {
  bool taken = false;
  int failures = 0;
  for (int step = 0; !taken; ++step) {
    TestStore store;
    auto first = picture("1");
    auto second = picture("2");
    store.files().failAt(step, std::errc::no_space_on_device);
    taken = store->takeIn({first, second}).has_value();
    store.files().recover();
    EXPECT_EQ(store.assetNames().size(), taken ? 2U : 0U) << step;
    if (!taken) ++failures;
  }
  EXPECT_GE(failures, 4) << "each picture is written and renamed";
}

TEST(ImportedClips, AreNotTakenInWhereNothingCanBeSaved) {
  TestStore store;
  store.addText("sealed");
  store.restartWithAnotherKey();
  EXPECT_FALSE(store->takeIn({{textItem("new"), {}}}));
  EXPECT_TRUE(store->items().empty());
}

}  // namespace
}  // namespace vantorel
