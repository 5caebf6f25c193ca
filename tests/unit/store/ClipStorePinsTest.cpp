// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"
#include "security/SecureStorageError.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

std::vector<std::optional<std::int64_t>> pinOrders(TestStore& store) {
  std::vector<std::optional<std::int64_t>> orders;
  for (const ClipItem& item : store->items()) orders.push_back(item.pinOrder);
  return orders;
}

TEST(ClipStorePins, APinComesAfterThePinsBeforeIt) {
  TestStore store;
  const Uuid a = store.addText("a");
  const Uuid b = store.addText("b");
  store.addText("c");
  EXPECT_EQ(store->togglePinned(a), PinResult::toggled);
  EXPECT_EQ(store->togglePinned(b), PinResult::toggled);
  EXPECT_EQ(store.texts(), (Texts{"a", "b", "c"}));
  EXPECT_EQ(store.item(a).pinOrder, 0);
  EXPECT_EQ(store.item(b).pinOrder, 1);
}

TEST(ClipStorePins, ANewPinComesLastAlsoWhereOneWasDeleted) {
  TestStore store;
  std::vector<Uuid> ids;
  for (const char* text : {"a", "b", "c", "d"}) ids.push_back(store.addText(text));
  for (int i = 0; i < 3; ++i) store->togglePinned(ids[i]);
  store->remove(ids[0]);
  store->togglePinned(ids[3]);
  EXPECT_EQ(store.texts(), (Texts{"b", "c", "d"}));
  EXPECT_THAT(pinOrders(store), ElementsAre(0, 1, 2));
}

TEST(ClipStorePins, ANewPinComesLastAmongFiveOfWhichTwoWereDeleted) {
  TestStore store;
  std::vector<Uuid> ids;
  for (const char* text : {"1", "2", "3", "4", "5", "6"}) ids.push_back(store.addText(text));
  for (int i = 0; i < 5; ++i) store->togglePinned(ids[i]);
  store->remove(ids[0]);
  store->remove(ids[1]);
  store->togglePinned(ids[5]);
  EXPECT_EQ(store.texts(), (Texts{"3", "4", "5", "6"}));
  EXPECT_THAT(pinOrders(store), ElementsAre(0, 1, 2, 3));
}

TEST(ClipStorePins, NoMoreThanFive) {
  TestStore store;
  std::vector<Uuid> ids;
  for (const char* text : {"a", "b", "c", "d", "e", "f"}) ids.push_back(store.addText(text));
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(store->canPinMore());
    EXPECT_EQ(store->togglePinned(ids[i]), PinResult::toggled);
  }
  EXPECT_FALSE(store->canPinMore());
  const int changes = store.changes();
  const auto before = store->items();
  EXPECT_EQ(store->togglePinned(ids[5]), PinResult::limitReached);
  EXPECT_EQ(store->items(), before);
  EXPECT_EQ(store.changes(), changes);
  EXPECT_EQ(store->togglePinned(ids[2]), PinResult::toggled);
  EXPECT_FALSE(store.item(ids[2]).pinned());
  EXPECT_TRUE(store->canPinMore());
}

TEST(ClipStorePins, AnUnknownEntryIsNotFound) {
  TestStore store;
  EXPECT_EQ(store->togglePinned(Uuid::random()), PinResult::notFound);
  EXPECT_EQ(store.changes(), 0);
}

TEST(ClipStorePins, UnpinningTheMiddleOneRenumbersTheOthersAtOnce) {
  TestStore store;
  const Uuid a = store.addText("a");
  const Uuid b = store.addText("b");
  const Uuid c = store.addText("c");
  for (Uuid id : {a, b, c}) store->togglePinned(id);
  store->togglePinned(b);
  EXPECT_EQ(store.texts(), (Texts{"a", "c", "b"}));
  EXPECT_EQ(pinOrders(store), (std::vector<std::optional<std::int64_t>>{0, 1, std::nullopt}));
  EXPECT_EQ(store.item(b).isPinned, false);
}

TEST(ClipStorePins, KeepTheirNameWhileUnpinned) {
  TestStore store;
  const Uuid a = store.addText("a");
  store->togglePinned(a);
  store->renamePinned(a, "name");
  store->togglePinned(a);
  EXPECT_EQ(store.item(a).customName, "name");
  store->togglePinned(a);
  EXPECT_EQ(store.item(a).customName, "name");
}

TEST(ClipStorePins, UnpinningAnOldEntryLetsItGo) {
  TestStore store;
  const Uuid a = store.addText("a");
  store->togglePinned(a);
  store.dispatch().setNow(testDate(604'800 + 10));
  store->togglePinned(a);
  EXPECT_TRUE(store->items().empty());
}

TEST(ClipStorePins, ANameIsTrimmedAndCutToEightyCharacters) {
  TestStore store;
  const Uuid a = store.addText("a");
  store->togglePinned(a);
  EXPECT_TRUE(store->renamePinned(a, " \n name\t "));
  EXPECT_EQ(store.item(a).customName, "name");
  EXPECT_TRUE(store->renamePinned(a, std::string(100, 'x')));
  EXPECT_EQ(store.item(a).customName, std::string(80, 'x'));
  std::string accents;  // each a letter and a combining mark: one character
  for (int i = 0; i < 100; ++i) accents += "e\u0301";
  EXPECT_TRUE(store->renamePinned(a, accents));
  EXPECT_EQ(store.item(a).customName, accents.substr(0, 80 * 3));
  const int changes = store.changes();
  EXPECT_TRUE(store->renamePinned(a, "   "));
  EXPECT_EQ(store.item(a).customName, std::nullopt);
  EXPECT_EQ(store.changes(), changes + 1);
}

TEST(ClipStorePins, MayBeRenamedToTheirOwnName) {
  TestStore store;
  const Uuid a = store.addText("a");
  store->togglePinned(a);
  store->renamePinned(a, "a name that is too long for the small string buffer");
  EXPECT_TRUE(store->renamePinned(a, *store->items()[0].customName));
  EXPECT_EQ(store.item(a).customName, "a name that is too long for the small string buffer");
}

TEST(ClipStorePins, OnlyPinsHaveNames) {
  TestStore store;
  const Uuid a = store.addText("a");
  EXPECT_FALSE(store->renamePinned(a, "name"));
  EXPECT_FALSE(store->renamePinned(Uuid::random(), "name"));
  EXPECT_EQ(store.item(a).customName, std::nullopt);
  EXPECT_EQ(store.changes(), 1);
}

class ClipStoreMoving : public ::testing::Test {
 protected:
  ClipStoreMoving() {
    for (Uuid id : {a, b, c}) store->togglePinned(id);
    changes = store.changes();
  }
  TestStore store;
  Uuid a = store.addText("A");
  Uuid b = store.addText("B");
  Uuid c = store.addText("C");
  Uuid d = store.addText("D");
  int changes = 0;
};

TEST_F(ClipStoreMoving, BeforeAnother) {
  EXPECT_TRUE(store->movePinned(c, a, true));
  EXPECT_EQ(store.texts(), (Texts{"C", "A", "B", "D"}));
  EXPECT_EQ(pinOrders(store), (std::vector<std::optional<std::int64_t>>{0, 1, 2, std::nullopt}));
  EXPECT_EQ(store.changes(), changes + 1);
}

TEST_F(ClipStoreMoving, AfterAnother) {
  EXPECT_TRUE(store->movePinned(a, c, false));
  EXPECT_EQ(store.texts(), (Texts{"B", "C", "A", "D"}));
}

TEST_F(ClipStoreMoving, LastsBeyondTheNextInsertionAndTheNextStart) {
  store->movePinned(c, a, true);
  store.addText("E");
  EXPECT_EQ(store.texts(), (Texts{"C", "A", "B", "E", "D"}));
  store.restart();
  EXPECT_EQ(store.texts(), (Texts{"C", "A", "B", "E", "D"}));
}

TEST_F(ClipStoreMoving, IsRefusedToItselfAndAmongEntriesThatAreNotPinned) {
  EXPECT_FALSE(store->movePinned(a, a, true));
  EXPECT_FALSE(store->movePinned(d, a, true));
  EXPECT_FALSE(store->movePinned(a, d, true));
  EXPECT_FALSE(store->movePinned(Uuid::random(), a, true));
  EXPECT_EQ(store.texts(), (Texts{"A", "B", "C", "D"}));
  EXPECT_EQ(store.changes(), changes);
}

TEST_F(ClipStoreMoving, TakesIdentitiesOutOfTheListItself) {
  EXPECT_TRUE(store->movePinned(store->items()[2].id, store->items()[0].id, true));
  EXPECT_EQ(store.texts(), (Texts{"C", "A", "B", "D"}));
}

TEST(ClipStoreRemove, TakesTheEntryAndItsImageAway) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  const Uuid image = store->items()[0].id;
  store.addText("a");
  EXPECT_EQ(store.assetNames().size(), 1U);
  store->remove(store->items()[1].id);
  EXPECT_FALSE(store.has(image));
  EXPECT_TRUE(store.assetNames().empty());
  EXPECT_EQ(store.savedItems()->size(), 1U);
  EXPECT_EQ(store.changes(), 3);
}

TEST(ClipStoreRemove, AnUnknownEntryTellsNobody) {
  TestStore store;
  store.addText("a");
  const std::size_t before = store.files().calls().size();
  store->remove(Uuid::random());
  EXPECT_EQ(store.changes(), 1);
  EXPECT_EQ(store.files().calls().size(), before);
}

TEST(ClipStoreRemove, APinLeavesTheOthersNumbersUntilTheNextChange) {
  TestStore store;
  const Uuid a = store.addText("a");
  const Uuid b = store.addText("b");
  store->togglePinned(a);
  store->togglePinned(b);
  store->remove(a);
  EXPECT_EQ(store.item(b).pinOrder, 1);
  store.addText("c");
  EXPECT_EQ(store.item(b).pinOrder, 0);
}

TEST(ClipStoreRemove, LeavesAnImageThatAnotherEntryNames) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  const ClipItem image = store->items()[0];
  store.tick();
  const ClipItem other = imageItem(*image.assetFilename, "another hash", store.dispatch().now());
  store->insert(other);
  store->remove(image.id);
  EXPECT_EQ(store.assetNames().size(), 1U);
  store->remove(other.id);
  EXPECT_TRUE(store.assetNames().empty());
}

TEST(ClipStoreRemove, LeavesTheImageWhereNothingIsEverSaved) {
  TestStore store;
  store.addText("a");
  store.restartWithAnotherKey();
  ASSERT_FALSE(store->persistenceIsReady());
  store->captureImage(FakeImage({1, 1}, "one"), {});
  ASSERT_EQ(store.assetNames().size(), 1U);
  store->remove(store->items()[0].id);
  EXPECT_EQ(store.assetNames().size(), 1U);
}

TEST(ClipStoreRemove, NeverReachesOutsideTheAssets) {
  TestStore store;
  const auto outside = store.base() / "outside.png";
  ASSERT_FALSE(store.disk().writeNewFile(outside, toBytes("x"), 0600));
  const std::string withNul = std::string("../outside.png") + '\0' + "png";
  for (const std::string& name : {std::string("../outside.png"), outside.string(), withNul,
                                  std::string(".."), std::string(".")}) {
    const ClipItem item = imageItem(name, name);
    store->insert(item);
    store->remove(item.id);
  }
  EXPECT_TRUE(std::filesystem::exists(outside));
  EXPECT_TRUE(std::filesystem::exists(store.assets()));
}

}  // namespace
}  // namespace vantorel
