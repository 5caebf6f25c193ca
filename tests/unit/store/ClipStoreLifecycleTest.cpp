// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "base/ContentFingerprint.h"
#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;

unsigned permissions(const fs::path& path) {
  return static_cast<unsigned>(fs::status(path).permissions());
}

void writeFile(const fs::path& path, std::string_view text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string unfinishedWriteOf(const std::string& name) {
  return "." + name + ".0A1B2C3D-0000-4000-8000-000000000000.tmp";
}

std::string legacyJson(const std::vector<ClipItem>& items) {
  return std::string(textOf(encodeHistory(items)));
}

/// A directory and what a store needs, without a store yet.
struct Place {
  TemporaryDirectory directory;
  ManualDispatch dispatch;
  PosixFileSystem disk;
  FaultyFileSystem files{disk};
  FakeKeychain keychain;
  AbsentTextRecognition recognition;
  std::unique_ptr<SerialQueue> recognitionQueue = dispatch.serialQueue("test.recognition");
  std::shared_ptr<SecureStorage> storage = SecureStorage::ephemeral();

  fs::path base() const { return directory.path() / "ClipHistory"; }
  fs::path assets() const { return base() / "Assets"; }
  fs::path index() const { return base() / "history.vntl"; }
  fs::path legacy() const { return base() / "history.json"; }
  ClipStoreServices services() {
    return {dispatch, files, keychain, directory.path(), recognition, *recognitionQueue};
  }
  std::unique_ptr<ClipStore> open(ClipStoreLimits limits = {}) {
    return std::make_unique<ClipStore>(services(), base(), storage, limits);
  }
};

TEST(ClipStoreStart, MakesAnEmptyHistoryReadableByItsOwnerAlone) {
  Place place;
  std::vector<fs::path> excluded;
  PosixFileSystem disk([&](const fs::path& path) {
    excluded.push_back(path);
    return std::error_code();
  });
  const ClipStore store({place.dispatch, disk, place.keychain, place.directory.path(),
                         place.recognition, *place.recognitionQueue},
                        place.base(), place.storage, {});
  EXPECT_TRUE(store.persistenceIsReady());
  EXPECT_TRUE(store.items().empty());
  EXPECT_EQ(permissions(place.base()), 0700U);
  EXPECT_EQ(permissions(place.assets()), 0700U);
  EXPECT_EQ(permissions(place.index()), 0600U);
  EXPECT_EQ(excluded, std::vector<fs::path>{place.base()});
}

TEST(ClipStoreStart, GivesExactPermissionsUnderAnyUmask) {
  for (const mode_t mask : {0000, 0022, 0077, 0277, 0777}) {
    Place place;
    const mode_t before = ::umask(mask);
    {
      const auto store = place.open();
      store->insert(textItem("a"));
    }
    ::umask(before);
    EXPECT_EQ(permissions(place.base()), 0700U) << mask;
    EXPECT_EQ(permissions(place.assets()), 0700U) << mask;
    EXPECT_EQ(permissions(place.index()), 0600U) << mask;
  }
}

TEST(ClipStoreStart, TakesPermissionsOfOthersAwayFromDirectoriesThatStoodThere) {
  Place place;
  fs::create_directories(place.assets());
  fs::permissions(place.base(), fs::perms(0755));
  fs::permissions(place.assets(), fs::perms(0777));
  (void)place.open();
  EXPECT_EQ(permissions(place.base()), 0700U);
  EXPECT_EQ(permissions(place.assets()), 0700U);
}

TEST(ClipStoreStart, StandsInApplicationSupportWithTheKeychainsKeyByDefault) {
  Place place;
  {
    ClipStore store(place.services(), std::nullopt, nullptr, {});
    EXPECT_EQ(store.baseUrl(), place.directory.path() / "ClipHistory");
    EXPECT_TRUE(store.persistenceIsReady());
    store.insert(textItem("kept"));
  }
  EXPECT_EQ(place.keychain.itemCount(), 1U);
  const ClipStore again(place.services(), std::nullopt, nullptr, {});
  ASSERT_EQ(again.items().size(), 1U);
  EXPECT_EQ(again.items()[0].text->get(), "kept");
}

TEST(ClipStoreStart, IsWithoutPersistenceWhenTheKeychainRefuses) {
  Place place;
  place.keychain.fail(FakeKeychain::Backend::dataProtection, keychainStatus::missingEntitlement);
  place.keychain.fail(FakeKeychain::Backend::login, keychainStatus::userCanceled);
  ClipStore store(place.services(), std::nullopt, nullptr, {});
  EXPECT_EQ(store.secureStorage(), nullptr);
  EXPECT_FALSE(store.persistenceIsReady());
  int changes = 0;
  store.onChange = [&] { ++changes; };
  EXPECT_TRUE(store.insert(textItem("in memory")).isNews);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(store.items().size(), 1U);
  EXPECT_FALSE(fs::exists(place.index()));
  EXPECT_EQ(place.dispatch.timerCount(), 0U);
}

TEST(ClipStoreStart, KeepsTheHistoryAndItsImagesWhenTheKeychainRefuses) {
  Place place;
  fs::path image;
  {
    ClipStore store(place.services(), std::nullopt, nullptr, {});
    store.insert(textItem("kept"));
    image = store.assetsUrl() / "11111111-2222-4333-8444-555555555555.png";
    writeFile(image, "sealed, as far as anyone can tell");
    store.insert(imageItem(image.filename().string(), "hash"));
  }
  const std::string before = readFile(place.index());
  place.keychain.fail(FakeKeychain::Backend::dataProtection, keychainStatus::userCanceled);
  {
    ClipStore store(place.services(), std::nullopt, nullptr, {});
    EXPECT_FALSE(store.persistenceIsReady());
    EXPECT_TRUE(store.items().empty());
    store.insert(textItem("in memory"));
    store.togglePinned(store.items()[0].id);
    EXPECT_FALSE(store.clear(false));
    EXPECT_FALSE(store.clear(true));
    EXPECT_EQ(store.setAside().outcome, ClipStore::SetAside::failed);
  }
  EXPECT_EQ(readFile(place.index()), before);
  EXPECT_TRUE(fs::exists(image));
  place.keychain.recover(FakeKeychain::Backend::dataProtection);
  const ClipStore store(place.services(), std::nullopt, nullptr, {});
  EXPECT_EQ(store.items().size(), 2U);
}

TEST(ClipStoreStart, MakesNoKeyWhileASealedHistoryHasOneElsewhere) {
  Place place;
  ClipStore(place.services(), std::nullopt, nullptr, {}).insert(textItem("kept"));
  const std::string before = readFile(place.index());
  FakeKeychain another;
  ClipStoreServices services{place.dispatch,         place.files,       another,
                             place.directory.path(), place.recognition, *place.recognitionQueue};
  {
    ClipStore store(services, std::nullopt, nullptr, {});
    EXPECT_EQ(another.itemCount(), 0U);
    EXPECT_EQ(store.obstacle(), ClipStore::Obstacle::keyMissing);
    EXPECT_FALSE(store.clear(true));
  }
  EXPECT_EQ(readFile(place.index()), before);
  EXPECT_EQ(ClipStore(place.services(), std::nullopt, nullptr, {}).items().size(), 1U);
  const std::string later = readFile(place.index());
  {
    ClipStore store(services, std::nullopt, nullptr, {});
    const auto aside = store.setAside();
    EXPECT_EQ(aside.outcome, ClipStore::SetAside::done);
    EXPECT_EQ(readFile(aside.history), later);
    EXPECT_EQ(another.itemCount(), 0U);
  }
  const ClipStore store(services, std::nullopt, nullptr, {});
  EXPECT_TRUE(store.persistenceIsReady());
  EXPECT_EQ(another.itemCount(), 1U);
}

TEST(ClipStoreStart, NamesWhatStandsInTheWay) {
  using Obstacle = ClipStore::Obstacle;
  Place place;
  EXPECT_EQ(place.open()->obstacle(), Obstacle::none);
  place.files.fail(FaultyFileSystem::Operation::claim, std::errc::device_or_resource_busy);
  EXPECT_EQ(place.open()->obstacle(), Obstacle::directory);
  place.files.recover();
  place.storage = SecureStorage::ephemeral();
  EXPECT_EQ(place.open()->obstacle(), Obstacle::unreadable);
  place.keychain.fail(FakeKeychain::Backend::dataProtection, keychainStatus::userCanceled);
  EXPECT_EQ(ClipStore(place.services(), std::nullopt, nullptr, {}).obstacle(), Obstacle::noKey);
}

TEST(ClipStoreStart, MakesAKeyWhereNothingIsSealed) {
  for (const std::string standing : {"", "[]", "VNTL"}) {
    Place place;
    writeFile(place.index(), standing);
    const ClipStore store(place.services(), std::nullopt, nullptr, {});
    EXPECT_EQ(place.keychain.itemCount(), 1U) << standing;
  }
}

TEST(ClipStoreStart, MakesNoKeyForAHistoryThatCannotBeLookedInto) {
  Place place;
  writeFile(place.index(), "VNTL1 and something");
  place.files.makeUnreadable(place.index());
  const ClipStore store(place.services(), std::nullopt, nullptr, {});
  EXPECT_EQ(place.keychain.itemCount(), 0U);
}

TEST(ClipStoreStart, WithoutAnyDirectoryEndsTheProgram) {
  Place place;
  EXPECT_DEATH(ClipStore({place.dispatch,
                          place.files,
                          place.keychain,
                          {},
                          place.recognition,
                          *place.recognitionQueue},
                         std::nullopt, nullptr, ClipStoreLimits()),
               "no directory to keep the history in");
}

TEST(ClipStoreStart, InADirectoryOfItsOwnTouchesNoKeychainAndNobodyElseCanRead) {
  Place place;
  {
    ClipStore store(place.services(), place.base(), nullptr, {});
    ASSERT_NE(store.secureStorage(), nullptr);
    store.insert(textItem("secret"));
  }
  const ClipStore again(place.services(), place.base(), nullptr, {});
  EXPECT_FALSE(again.persistenceIsReady());
  EXPECT_TRUE(again.items().empty());
  EXPECT_TRUE(place.keychain.calls().empty());
}

TEST(ClipStoreStart, LoadsWhatAnEarlierStoreSaved) {
  TestStore store;
  const Uuid first = store.addText("first");
  store.addText("second");
  store.restart();
  EXPECT_TRUE(store->persistenceIsReady());
  EXPECT_EQ(store.texts(), (std::vector<std::string>{"second", "first"}));
  EXPECT_TRUE(store.has(first));
  EXPECT_EQ(store.changes(), 0);
}

TEST(ClipStoreStart, TruncatesDatesToTheSecondOnlyOnTheWayThroughTheFile) {
  TestStore store;
  ClipItem item = textItem("a", testDate(-10.25));
  item.lastCopiedAt = testDate(-1.75);
  store->insert(item);
  EXPECT_EQ(store.item(item.id).createdAt, testDate(-10.25));
  store.restart();
  EXPECT_EQ(store.item(item.id).createdAt, testDate(-11));
  EXPECT_EQ(store.item(item.id).lastCopiedAt, testDate(-2));
}

TEST(ClipStoreStart, ListsEntriesOfTheSameSecondAsTheyStoodInTheFile) {
  TestStore store;
  store->insert(textItem("older", testDate(-10.9)));
  store->insert(textItem("newer", testDate(-10.1)));
  EXPECT_EQ(store.texts(), (std::vector<std::string>{"newer", "older"}));
  store.restart();
  EXPECT_EQ(store.texts(), (std::vector<std::string>{"newer", "older"}));
}

class ClipStoreDamage : public ::testing::TestWithParam<std::string> {};

TEST_P(ClipStoreDamage, SwitchesPersistenceOffAndLeavesTheFileAlone) {
  Place place;
  writeFile(place.index(), GetParam());
  writeFile(place.assets() / "picture.png", "of the unreadable history");
  const auto store = place.open();
  EXPECT_FALSE(store->persistenceIsReady());
  EXPECT_TRUE(store->items().empty());
  int changes = 0;
  store->onChange = [&] { ++changes; };
  store->insert(textItem("a"));
  EXPECT_EQ(changes, 1);
  const Uuid id = store->items()[0].id;
  EXPECT_EQ(store->togglePinned(id), PinResult::toggled);
  EXPECT_TRUE(store->renamePinned(id, "name"));
  store->remove(id);
  EXPECT_EQ(changes, 4);
  place.dispatch.advance(Seconds(3600));
  EXPECT_EQ(readFile(place.index()), GetParam());
  EXPECT_TRUE(fs::exists(place.assets() / "picture.png"));
}

INSTANTIATE_TEST_SUITE_P(Files, ClipStoreDamage,
                         ::testing::Values("[]", "", "VNTL", "VNTL1", "VNTL1 and something",
                                           std::string("VNTL1") + std::string(100, '\0')));

TEST(ClipStoreStart, RefusesAHistoryWithAnyFlippedBit) {
  TestStore store;
  store.addText("a");
  store.quit();
  const fs::path index = store.base() / "history.vntl";
  const std::string whole = readFile(index);
  for (std::size_t i = 0; i < whole.size(); i += 1 + whole.size() / 50) {
    std::string damaged = whole;
    damaged[i] = static_cast<char>(damaged[i] ^ 1);
    writeFile(index, damaged);
    store.restart();
    EXPECT_FALSE(store->persistenceIsReady()) << i;
    EXPECT_EQ(readFile(index), damaged) << i;
  }
  writeFile(index, whole);
  store.restart();
  EXPECT_EQ(store.texts(), std::vector<std::string>{"a"});
}

TEST(ClipStoreStart, RefusesASealedFileThatIsNoHistory) {
  Place place;
  fs::create_directories(place.base());
  ASSERT_TRUE(writeSealed(place.disk, place.index(), *place.storage, bytesOf("[{}]")));
  const std::string before = readFile(place.index());
  const auto store = place.open();
  EXPECT_FALSE(store->persistenceIsReady());
  EXPECT_EQ(readFile(place.index()), before);
}

TEST(ClipStoreStart, RefusesAHistoryThatCannotBeRead) {
  Place place;
  place.open()->insert(textItem("a"));
  const std::string before = readFile(place.index());
  place.files.makeUnreadable(place.index());
  const auto store = place.open();
  EXPECT_FALSE(store->persistenceIsReady());
  store->insert(textItem("b"));
  EXPECT_EQ(readFile(place.index()), before);
}

TEST(ClipStoreStart, RefusesAHistoryOfAbsurdSizeWithoutReadingIt) {
  Place place;
  writeFile(place.index(), "VNTL1");
  fs::resize_file(place.index(), std::uintmax_t{1} << 40U);  // sparse
  EXPECT_FALSE(place.open()->persistenceIsReady());
}

TEST(ClipStoreStart, IsWithoutPersistenceWhenAnyStepOfThePreparationFails) {
  for (int step = 0; step < 5; ++step) {
    Place place;
    fs::create_directories(place.assets());
    place.files.failAt(step, std::errc::permission_denied);
    const auto store = place.open();
    EXPECT_FALSE(store->persistenceIsReady()) << step;
    store->insert(textItem("a"));
    EXPECT_EQ(store->items().size(), 1U) << step;
    EXPECT_FALSE(fs::exists(place.index())) << step;
  }
}

TEST(ClipStoreStart, LeavesWhatABaseLinksToAsItIsAndDeletesNothingOfOthersThere) {
  Place place;
  const fs::path documents = place.directory.path() / "Documents";
  writeFile(documents / "Assets" / "thesis.odt", "mine");
  fs::permissions(documents, fs::perms(0755));
  fs::permissions(documents / "Assets", fs::perms(0755));
  fs::create_directory_symlink(documents, place.base());
  {
    const auto store = place.open();
    EXPECT_TRUE(store->persistenceIsReady());
    EXPECT_TRUE(store->captureImage(FakeImage({1, 1}, "picture"), {}));
    (void)store->clear(true);
    store->insert(textItem("a"));
    EXPECT_TRUE(store->captureImage(FakeImage({1, 1}, "picture"), {}));
  }
  EXPECT_EQ(readFile(documents / "Assets" / "thesis.odt"), "mine");
  EXPECT_EQ(permissions(documents), 0755U);
  EXPECT_EQ(permissions(documents / "Assets"), 0755U);
  EXPECT_EQ(permissions(documents / "history.vntl"), 0600U);
  EXPECT_TRUE(fs::is_symlink(place.base()));
  const auto store = place.open();
  ASSERT_EQ(store->items().size(), 2U);
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("picture"));
}

TEST(ClipStoreStart, KeepsTextsButNoPicturesWhereTheAssetsAreALink) {
  Place place;
  const fs::path pictures = place.directory.path() / "Pictures";
  const fs::path foreign = pictures / "0A1B2C3D-0000-4000-8000-000000000000.jpg";
  writeFile(foreign, "mine");
  fs::permissions(pictures, fs::perms(0755));
  fs::create_directory(place.base());
  fs::create_directory_symlink(pictures, place.assets());
  testing::internal::CaptureStderr();
  {
    const auto store = place.open();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("symbolic link"), std::string::npos);
    EXPECT_TRUE(store->persistenceIsReady());
    EXPECT_FALSE(store->captureImage(FakeImage({1, 1}, "picture"), {}));
    store->insert(textItem("a"));
  }
  EXPECT_EQ(readFile(foreign), "mine");
  EXPECT_EQ(permissions(pictures), 0755U);
  EXPECT_EQ(permissions(place.base()), 0700U);
  EXPECT_EQ(place.open()->items().size(), 1U);
}

TEST(ClipStoreStart, IsWithoutPersistenceWhereAFileStandsInTheWay) {
  Place place;
  writeFile(place.base(), "a file");
  EXPECT_FALSE(place.open()->persistenceIsReady());
  EXPECT_EQ(readFile(place.base()), "a file");
}

TEST(ClipStoreStart, RemovesUnfinishedWritesOfItsOwnAndNothingElse) {
  TestStore store;
  const std::string picture = "0A1B2C3D-0000-4000-8000-000000000001.png";
  const auto leftover = store.base() / ".history.vntl.0A1B2C3D-0000-4000-8000-000000000000.tmp";
  const auto others = store.base() / ".history.vntl.backup.tmp";
  writeFile(leftover, "half a histo");
  writeFile(others, "somebody's");
  writeFile(store.assets() / unfinishedWriteOf(picture), "half");
  store.restart();
  EXPECT_FALSE(fs::exists(leftover));
  EXPECT_TRUE(fs::exists(others));
  EXPECT_TRUE(store.assetNames().empty());
}

TEST(ClipStoreStart, SeparatesEntriesThatShareAnIdentity) {
  Place place;
  const ClipItem first = textItem("first", testDate(-5));
  ClipItem second = textItem("second", testDate(-3));
  second.id = first.id;
  fs::create_directories(place.base());
  ASSERT_TRUE(
      writeSealed(place.disk, place.index(), *place.storage, encodeHistory({first, second})));
  const auto store = place.open();
  ASSERT_EQ(store->items().size(), 2U);
  EXPECT_NE(store->items()[0].id, store->items()[1].id);
  EXPECT_EQ(store->items()[1].id, first.id);
}

TEST(ClipStoreStart, CoalescesPrunesNumbersAndSavesWhatItLoaded) {
  Place place;
  const ClipItem old = textItem("old", testDate(-700'000));
  const ClipItem once = textItem("twice", testDate(-20));
  const ClipItem again = textItem("twice", testDate(-10));
  const ClipItem pin = pinnedItem(textItem("pin", testDate(-800'000)), 17);
  fs::create_directories(place.assets());
  const auto orphan = place.assets() / "0A1B2C3D-0000-4000-8000-000000000000.png";
  writeFile(orphan, "x");
  ASSERT_TRUE(writeSealed(place.disk, place.index(), *place.storage,
                          encodeHistory({pin, old, once, again})));
  { (void)place.open(); }
  EXPECT_FALSE(fs::exists(orphan));
  const auto json = opened(*place.storage, *place.disk.readFile(place.index(), 1 << 20U));
  const auto saved = decodeHistory(json.value());
  ASSERT_TRUE(saved);
  ASSERT_EQ(saved->size(), 2U);
  EXPECT_EQ((*saved)[0].id, pin.id);
  EXPECT_EQ((*saved)[0].pinOrder, 0);
  EXPECT_EQ((*saved)[1].id, again.id);
}

TEST(ClipStoreMigration, SealsTheHistoryAndItsImagesAndRemovesThePlainOne) {
  Place place;
  writeFile(place.assets() / "plain.png", "picture one");
  fs::create_directories(place.assets());
  ASSERT_TRUE(writeSealed(place.disk, place.assets() / "sealed.png", *place.storage,
                          bytesOf("picture two")));
  const ClipItem plain = imageItem("plain.png", ContentFingerprint::data(bytesOf("picture one")));
  const ClipItem sealed = imageItem("sealed.png", ContentFingerprint::data(bytesOf("picture two")));
  const ClipItem missing = imageItem("missing.png", "h3");
  writeFile(place.legacy(), legacyJson({plain, sealed, missing, textItem("text")}));
  const auto store = place.open();
  EXPECT_TRUE(store->persistenceIsReady());
  ASSERT_EQ(store->items().size(), 4U);
  EXPECT_FALSE(fs::exists(place.legacy()));
  EXPECT_TRUE(readFile(place.index()).starts_with("VNTL1"));
  EXPECT_TRUE(readFile(place.assets() / "plain.png").starts_with("VNTL1"));
  EXPECT_EQ(permissions(place.assets() / "plain.png"), 0600U);
  EXPECT_EQ(permissions(place.index()), 0600U);
  EXPECT_EQ(store->assetData(plain), toBytes("picture one"));
  EXPECT_EQ(store->assetData(sealed), toBytes("picture two"));
  EXPECT_EQ(store->assetData(missing), std::nullopt);
}

TEST(ClipStoreMigration, TheSealedHistoryWinsAndThePlainOneIsLeftAlone) {
  Place place;
  place.open()->insert(textItem("sealed"));
  writeFile(place.legacy(), legacyJson({textItem("plain")}));
  const std::string before = readFile(place.legacy());
  const auto store = place.open();
  ASSERT_EQ(store->items().size(), 1U);
  EXPECT_EQ(store->items()[0].text->get(), "sealed");
  EXPECT_EQ(readFile(place.legacy()), before);
}

TEST(ClipStoreMigration, LeavesAPlainHistoryThatIsNoneAndStaysWithoutPersistence) {
  Place place;
  writeFile(place.legacy(), R"([{"id": 1}])");
  const auto store = place.open();
  EXPECT_FALSE(store->persistenceIsReady());
  EXPECT_FALSE(fs::exists(place.index()));
  EXPECT_EQ(readFile(place.legacy()), R"([{"id": 1}])");
}

TEST(ClipStoreMigration, LeavesEverythingAloneWhileThePlainHistoryCannotBeRead) {
  const std::string name = "0A1B2C3D-0000-4000-8000-000000000000.png";
  Place place;
  writeFile(place.assets() / name, "picture");
  writeFile(place.legacy(), legacyJson({imageItem(name, "h"), textItem("plain")}));
  const std::string before = readFile(place.legacy());
  place.files.makeUnreadable(place.legacy());
  {
    const auto store = place.open();
    EXPECT_FALSE(store->persistenceIsReady());
    store->insert(textItem("in memory"));
  }
  EXPECT_FALSE(fs::exists(place.index()));
  EXPECT_EQ(readFile(place.legacy()), before);
  EXPECT_EQ(readFile(place.assets() / name), "picture");
  place.files.recover();
  const auto store = place.open();
  EXPECT_EQ(store->items().size(), 2U);
  EXPECT_FALSE(fs::exists(place.legacy()));
  EXPECT_TRUE(fs::exists(place.assets() / name));
}

TEST(ClipStoreMigration, LeavesWhatStandsInThePlainHistorysPlace) {
  Place place;
  fs::create_directories(place.legacy());
  const auto store = place.open();
  EXPECT_FALSE(store->persistenceIsReady());
  EXPECT_FALSE(fs::exists(place.index()));
  EXPECT_TRUE(fs::exists(place.legacy()));
}

TEST(ClipStoreMigration, IsPutOffWithoutAKey) {
  Place place;
  writeFile(place.legacy(), legacyJson({textItem("plain")}));
  place.keychain.fail(FakeKeychain::Backend::dataProtection, keychainStatus::userCanceled);
  {
    const ClipStore store(place.services(), std::nullopt, nullptr, {});
    EXPECT_FALSE(store.persistenceIsReady());
    EXPECT_TRUE(store.items().empty());
    EXPECT_TRUE(fs::exists(place.legacy()));
  }
  place.keychain.recover(FakeKeychain::Backend::dataProtection);
  const ClipStore store(place.services(), std::nullopt, nullptr, {});
  ASSERT_EQ(store.items().size(), 1U);
  EXPECT_FALSE(fs::exists(place.legacy()));
}

TEST(ClipStoreMigration, IsTriedAgainAtTheNextStartWhenItFailed) {
  for (int step = 5; step < 11; ++step) {  // every operation after the preparation's five
    Place place;
    const std::string hash = ContentFingerprint::data(bytesOf("picture"));
    writeFile(place.assets() / "plain.png", "picture");
    writeFile(place.legacy(), legacyJson({imageItem("plain.png", hash), textItem("text")}));
    place.files.failAt(step, std::errc::no_space_on_device);
    {
      const auto store = place.open();
      EXPECT_FALSE(store->persistenceIsReady()) << step;
      EXPECT_EQ(store->items().size(), 2U) << step;
      EXPECT_TRUE(fs::exists(place.legacy())) << step;
      store->togglePinned(store->items()[1].id);
    }
    place.files.recover();
    const auto store = place.open();
    EXPECT_TRUE(store->persistenceIsReady()) << step;
    ASSERT_EQ(store->items().size(), 2U) << step;
    for (const ClipItem& item : store->items()) {
      if (item.kind != ClipKind::image) continue;
      EXPECT_EQ(store->assetData(item), toBytes("picture")) << step;
    }
  }
}

TEST(ClipStoreMigration, DeletesNothingForAListThatWasNotSaved) {
  const std::string name = "0A1B2C3D-0000-4000-8000-000000000000.png";
  Place place;
  writeFile(place.assets() / name, "picture");
  writeFile(place.legacy(), legacyJson({imageItem(name, "h"), textItem("text")}));
  place.files.fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  {
    const auto store = place.open();
    ASSERT_FALSE(store->persistenceIsReady());
    ASSERT_EQ(store->items().size(), 2U);
    store->remove(store->items()[store->items()[0].kind == ClipKind::image ? 0 : 1].id);
    EXPECT_EQ(store->items().size(), 1U);
    EXPECT_EQ(readFile(place.assets() / name), "picture");
  }
  place.files.recover();
  EXPECT_EQ(place.open()->items().size(), 2U);
  EXPECT_TRUE(fs::exists(place.assets() / name));
}

TEST(ClipStoreSaving, NothingOfTheContentsCanBeReadInTheFiles) {
  TestStore store;
  ClipItem item = textItem("confidential words");
  item.rtfData = toBytes("{\\rtf1 confidential words}");
  item.sourceAppName = "Confidential Editor";
  store->insert(item);
  store.quit();
  for (const auto& file : fs::recursive_directory_iterator(store.base())) {
    if (!file.is_regular_file()) continue;
    const std::string bytes = readFile(file.path());
    EXPECT_TRUE(bytes.starts_with("VNTL1")) << file.path();
    for (const char* word : {"onfidential", "text", "kind", "createdAt", "rtf", "Editor"}) {
      EXPECT_EQ(bytes.find(word), std::string::npos) << file.path() << ' ' << word;
    }
  }
}

TEST(ClipStoreSaving, TellsOfEveryChangeOnceAlsoWhenItCannotBeSaved) {
  TestStore store;
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.addText("a");
  EXPECT_EQ(store.changes(), 1);
  store->onChange = nullptr;
  store.addText("b");
  EXPECT_EQ(store->items().size(), 2U);
}

TEST(ClipStoreSaving, TriesAgainByItselfOnceTheDiskHasRoom) {
  TestStore store;
  EXPECT_EQ(store.dispatch().timerCount(), 0U);
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.addText("a");
  EXPECT_EQ(store.dispatch().timerCount(), 1U);
  store.addText("b");
  EXPECT_EQ(store.dispatch().timerCount(), 1U);
  store.dispatch().advance(Seconds(60));
  EXPECT_EQ(store.savedItems()->size(), 0U);
  EXPECT_EQ(store.dispatch().timerCount(), 1U);
  store.files().recover();
  store.dispatch().advance(Seconds(60));
  EXPECT_EQ(store.savedItems()->size(), 2U);
  EXPECT_EQ(store.dispatch().timerCount(), 0U);
  EXPECT_EQ(store.changes(), 2);
}

TEST(ClipStoreSaving, ASuccessfulChangeMakesTheRetryNeedless) {
  TestStore store;
  store.files().fail(FaultyFileSystem::Operation::rename, std::errc::no_space_on_device);
  store.addText("a");
  store.files().recover();
  store.addText("b");
  EXPECT_EQ(store.dispatch().timerCount(), 0U);
  EXPECT_EQ(store.savedItems()->size(), 2U);
}

std::size_t attempts(TestStore& store) {
  std::size_t count = 0;
  for (const auto& call : store.files().calls()) {
    count += call.operation == FaultyFileSystem::Operation::writeNewFile ? 1 : 0;
  }
  return count;
}

TEST(ClipStoreSaving, TriesLessOftenTheLongerItFails) {
  TestStore store;
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.addText("a");
  const std::size_t before = attempts(store);
  store.dispatch().advance(Seconds(4.9));
  EXPECT_EQ(attempts(store), before);
  store.dispatch().advance(Seconds(0.1));
  EXPECT_EQ(attempts(store), before + 1);
  store.dispatch().advance(Seconds(24 * 3600));
  EXPECT_GT(attempts(store), before + 250);
  EXPECT_LT(attempts(store), before + 310);
}

TEST(ClipStoreSaving, TriesAgainSoonAfterTheFirstFailureOfAnotherOutage) {
  TestStore store;
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.addText("a");
  store.dispatch().advance(Seconds(3600));
  store.files().recover();
  store.addText("b");
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.addText("c");
  const std::size_t before = attempts(store);
  store.dispatch().advance(Seconds(5));
  EXPECT_EQ(attempts(store), before + 1);
}

TEST(ClipStoreSaving, ChangesDuringAnOutageDoNotPutTheNextTryOff) {
  TestStore store;
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.addText("a");
  store.dispatch().advance(Seconds(4));
  store->insert(textItem("b", store.dispatch().now()));
  const std::size_t before = attempts(store);
  store.dispatch().advance(Seconds(1));
  EXPECT_EQ(attempts(store), before + 1);
}

TEST(ClipStoreSaving, DirectoriesThatWereTakenAwayAreMadeAgain) {
  for (const bool all : {true, false}) {
    TestStore store;
    store.addText("a");
    fs::remove_all(all ? store.base() : store.assets());
    store.addText("b");
    ASSERT_TRUE(store.savedItems());
    EXPECT_EQ(store.savedItems()->size(), 2U);
    EXPECT_EQ(permissions(store.base()), 0700U);
    EXPECT_EQ(permissions(store.assets()), 0700U);
    EXPECT_EQ(store.dispatch().timerCount(), 0U);
  }
}

TEST(ClipStoreSaving, APictureIsKeptAlsoAfterTheDirectoriesWereTakenAway) {
  TestStore store;
  store.addText("a");
  fs::remove_all(store.base());
  EXPECT_TRUE(store->captureImage(FakeImage({1, 1}, "picture"), {}));
  store.restart();
  ASSERT_EQ(store->items().size(), 2U);
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("picture"));
}

TEST(ClipStoreSaving, DirectoriesThatCannotBeMadeAgainAreTriedAgain) {
  TestStore store;
  store.addText("a");
  fs::remove_all(store.base());
  store.files().fail(FaultyFileSystem::Operation::createDirectories, std::errc::io_error);
  store.addText("b");
  EXPECT_FALSE(store.savedItems());
  store.files().recover();
  store.dispatch().advance(Seconds(5));
  ASSERT_TRUE(store.savedItems());
  EXPECT_EQ(store.savedItems()->size(), 2U);
}

TEST(ClipStoreSaving, AStoreThatEndsMakesALastAttemptAtWhatFailed) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "picture"), {});
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store->remove(store->items()[0].id);
  store.addText("a");
  store.files().recover();
  store.quit();
  ASSERT_TRUE(store.savedItems());
  EXPECT_EQ(store.savedItems()->size(), 1U);
  EXPECT_TRUE(store.assetNames().empty());
}

TEST(ClipStoreSaving, AStoreThatEndsWithItsListOnTheDiskWritesNothing) {
  TestStore store;
  store.addText("a");
  const std::size_t before = store.files().calls().size();
  store.quit();
  EXPECT_EQ(store.files().calls().size(), before);
}

TEST(ClipStoreSaving, AStoreThatIsGoneTriesNothing) {
  TestStore store;
  store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  store.addText("a");
  store.quit();
  const std::size_t before = store.files().calls().size();
  store.dispatch().advance(Seconds(3600));
  EXPECT_EQ(store.files().calls().size(), before);
}

TEST(ClipStoreSaving, AFailedSaveLeavesTheLastOneWholeAndNoOtherFile) {
  for (const auto operation :
       {FaultyFileSystem::Operation::writeNewFile, FaultyFileSystem::Operation::rename}) {
    TestStore store;
    store.addText("saved");
    store.files().fail(operation, std::errc::no_space_on_device);
    store.addText("not saved");
    EXPECT_EQ(store.savedItems()->size(), 1U);
    EXPECT_EQ(store.disk().list(store.base())->size(), 2U);  // the history and "Assets"
  }
}

}  // namespace
}  // namespace vantorel
