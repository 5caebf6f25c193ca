// SPDX-License-Identifier: MIT
// What is on the disk after a disk that is full, or a process that is killed, at any step.
#include <gtest/gtest.h>

#include <fstream>

#include "base/ContentFingerprint.h"
#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"
#include "store/HistoryFile.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;
using Progress = FaultyFileSystem::Progress;
using Texts = std::vector<std::string>;
enum class Images { allThere, perhapsLost };

void writeFile(const fs::path& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

struct Scenario {
  std::string name;
  std::function<void(TestStore&)> prepare;
  std::function<void(TestStore&)> act;
  bool losesImages = false;  // on purpose
};

const ClipItem* firstImage(ClipStore& store) {
  for (const ClipItem& item : store.items()) {
    if (item.kind == ClipKind::image) return &item;
  }
  return nullptr;
}

void fill(TestStore& store) {
  store.addText("a");
  store->captureImage(FakeImage({1, 1}, "picture"), {});
  store.addText("b");
  store->togglePinned(store.addText("pin"));
}

void plainHistory(TestStore& store) {
  store.quit();
  fs::remove(store.base() / "history.vntl");
  std::vector<ClipItem> items = {textItem("a"), textItem("b"), textItem("c")};
  for (const std::string id : {"1", "2"}) {
    const std::string name = id + "0000000-0000-4000-8000-000000000000.png";
    writeFile(store.assets() / name, name);
    items.push_back(imageItem(name, ContentFingerprint::data(bytesOf(name))));
  }
  const auto json = encodeHistory(items);
  writeFile(store.base() / "history.json", textOf(json));
}

ClipStoreLimits smallLimits() {
  ClipStoreLimits limits;
  limits.maxItems = 5;
  return limits;
}

std::vector<Scenario> scenarios() {
  return {
      {"InsertText", fill, [](TestStore& store) { store.addText("new"); }},
      {"InsertThatDropsAnImage",
       [](TestStore& store) {
         fill(store);
         for (const char* text : {"c", "d", "e"}) store.addText(text);
       },
       [](TestStore& store) { store.addText("new"); }, true},
      {"CaptureImage", fill,
       [](TestStore& store) {
         store->captureImage(FakeImage({1, 1}, "new picture"), {});
       }},
      {"CaptureTheSameImage", fill,
       [](TestStore& store) {
         store->captureImage(FakeImage({1, 1}, "picture"), {});
       }},
      {"TogglePin", fill, [](TestStore& store) { store->togglePinned(store->items().back().id); }},
      {"RemoveImage", fill, [](TestStore& store) { store->remove(firstImage(store.store())->id); },
       true},
      {"ClearUnpinned", fill, [](TestStore& store) { (void)store->clear(false); }, true},
      {"ClearEverything", fill, [](TestStore& store) { (void)store->clear(true); }, true},
      {"ClearEverythingBesideALegacyHistory",
       [](TestStore& store) {
         fill(store);
         writeFile(store.base() / "history.json", textOf(encodeHistory({textItem("legacy")})));
       },
       [](TestStore& store) { (void)store->clear(true); }, true},
      {"Restart", fill, [](TestStore& store) { store.restart(); }},
      {"Migration", plainHistory, [](TestStore& store) { store.restart(); }},
  };
}

class ClipStoreDisaster : public ::testing::TestWithParam<Scenario> {
 protected:
  /// How many changing operations the act takes when nothing goes wrong.
  static int operationCount() {
    TestStore store(smallLimits());
    GetParam().prepare(store);
    const std::size_t before = store.files().calls().size();
    GetParam().act(store);
    return static_cast<int>(store.files().calls().size() - before);
  }

  /// The list as the user knows it.
  static Texts described(ClipStore& store) {
    Texts texts;
    for (const ClipItem& item : store.items()) {
      texts.push_back((item.pinned() ? "pinned " : "") + item.preview +
                      item.contentHash.value_or(""));
    }
    return texts;
  }

  static void expectWholeHistory(TestStore& store, Images images, const std::string& where) {
    ASSERT_TRUE(store->persistenceIsReady()) << where;
    for (const ClipItem& item : store->items()) {
      if (item.kind != ClipKind::image || images == Images::perhapsLost) continue;
      EXPECT_TRUE(store->assetData(item)) << where << ' ' << *item.assetFilename;
    }
    // Nothing but what belongs there.
    std::size_t named = 0;
    for (const ClipItem& item : store->items()) named += item.assetFilename ? 1 : 0;
    EXPECT_LE(store.assetNames().size(), named) << where;
    const auto listed = store.disk().list(store.base()).value();
    for (const auto& name : listed) {
      EXPECT_TRUE(name == "Assets" || name == "history.vntl" || name == "history.json")
          << where << ' ' << name;
    }
  }
};

TEST_P(ClipStoreDisaster, DeathAtAnyStepLeavesTheListBeforeOrAfter) {
  const int count = operationCount();
  ASSERT_GT(count, 0);
  TestStore undisturbed(smallLimits());
  GetParam().prepare(undisturbed);
  const bool hasBefore = undisturbed.isOpen();
  const Texts before = hasBefore ? described(*undisturbed) : Texts();
  GetParam().act(undisturbed);
  const Texts after = described(*undisturbed);
  for (int step = 0; step <= count; ++step) {
    for (const Progress progress : {Progress::none, Progress::half, Progress::whole}) {
      const std::string where =
          "step " + std::to_string(step) + ", progress " + std::to_string(int(progress));
      TestStore store(smallLimits());
      GetParam().prepare(store);
      store.files().dieAt(step, progress);
      GetParam().act(store);
      store.quit();
      EXPECT_EQ(store.files().isDead(), step < count) << where;
      store.files().recover();
      store.restart();
      expectWholeHistory(store, Images::allThere, where);
      const Texts found = described(*store);
      EXPECT_TRUE(found == after || (hasBefore && found == before))
          << where << ": " << testing::PrintToString(found);
    }
  }
}

TEST_P(ClipStoreDisaster, AFullDiskAtAnyStepCostsNothingOnceThereIsRoom) {
  const int count = operationCount();
  for (int step = 0; step < count; ++step) {
    const std::string where = "step " + std::to_string(step);
    TestStore store(smallLimits());
    GetParam().prepare(store);
    store.files().failAt(step, std::errc::no_space_on_device);
    GetParam().act(store);
    store.dispatch().advance(Seconds(600));
    if (!store->persistenceIsReady()) store.restart();  // a start that failed is made again
    const auto inMemory = store->items();
    EXPECT_EQ(store.dispatch().timerCount(), 0U) << where;
    store.restart();
    expectWholeHistory(store, GetParam().losesImages ? Images::perhapsLost : Images::allThere,
                       where);
    ASSERT_EQ(store->items().size(), inMemory.size()) << where;
    for (std::size_t i = 0; i < inMemory.size(); ++i) {
      EXPECT_EQ(store->items()[i].id, inMemory[i].id) << where;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ClipStoreDisaster, ::testing::ValuesIn(scenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

TEST(ClipStoreDisk, ReturnsToSavingAfterEveryKindOfFailure) {
  using Operation = FaultyFileSystem::Operation;
  for (const Operation operation :
       {Operation::writeNewFile, Operation::rename, Operation::syncDirectory}) {
    TestStore store;
    store.files().fail(operation, std::errc::io_error);
    store.addText("a");
    store.addText("b");
    store.files().recover();
    store.dispatch().advance(Seconds(60));
    EXPECT_EQ(store.savedItems()->size(), 2U);
    EXPECT_EQ(store.dispatch().timerCount(), 0U);
  }
}

TEST(ClipStoreDisk, AStoreThatStartsOnAFullDiskKeepsItsHistoryAndSavesLater) {
  TestStore store;
  store.addText("a");
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.restart();
  EXPECT_TRUE(store->persistenceIsReady());
  EXPECT_EQ(store.texts(), Texts{"a"});
  store.addText("b");
  store.files().recover();
  store.dispatch().advance(Seconds(60));
  EXPECT_EQ(store.savedItems()->size(), 2U);
}

}  // namespace
}  // namespace vantorel
