// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "base/ContentFingerprint.h"
#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Texts = std::vector<std::string>;

std::filesystem::path onlyAsset(TestStore& store) {
  const auto names = store.assetNames();
  EXPECT_EQ(names.size(), 1U);
  return store.assets() / names.at(0);
}

TEST(ClipStoreInsert, PutsTheNewestFirst) {
  TestStore store;
  EXPECT_TRUE(store->insert(textItem("a", testDate(1))).isNews);
  EXPECT_TRUE(store->insert(textItem("b", testDate(2))).isNews);
  EXPECT_EQ(store.texts(), (Texts{"b", "a"}));
}

TEST(ClipStoreInsert, TheLatestTextAgainIsNoNews) {
  TestStore store;
  const ClipItem first = textItem("a", testDate(0));
  store->insert(first);
  EXPECT_FALSE(store->insert(textItem("a", testDate(5))).isNews);
  ASSERT_EQ(store->items().size(), 1U);
  EXPECT_EQ(store->items()[0].id, first.id);
  EXPECT_EQ(store->items()[0].createdAt, testDate(0));
  EXPECT_EQ(store->items()[0].lastCopiedAt, testDate(5));
  EXPECT_EQ(store.changes(), 2);
}

TEST(ClipStoreInsert, AnOlderTextAgainComesToTheTopUnderItsIdentity) {
  TestStore store;
  const Uuid a = store.addText("a");
  store.addText("b");
  store.tick();
  const auto capture = store->insert(textItem("a", store.dispatch().now()));
  EXPECT_TRUE(capture.isNews);
  EXPECT_EQ(capture.id, a);
  EXPECT_EQ(store.texts(), (Texts{"a", "b"}));
  EXPECT_EQ(store->items()[0].id, a);
}

TEST(ClipStoreInsert, APinStaysAPinWithItsNameAndPlace) {
  TestStore store;
  const Uuid a = store.addText("a");
  const Uuid b = store.addText("b");
  store.addText("c");
  store->togglePinned(a);
  store->togglePinned(b);
  store->renamePinned(b, "name");
  store.addText("b");
  EXPECT_EQ(store.texts(), (Texts{"a", "b", "c"}));
  EXPECT_EQ(store.item(b).customName, "name");
  EXPECT_EQ(store.item(b).pinOrder, 1);
  EXPECT_TRUE(store.item(b).pinned());
}

TEST(ClipStoreInsert, TakesAnEntryOfItsOwnList) {
  TestStore store;
  store.addText("a");
  store.addText("b");
  EXPECT_TRUE(store->insert(store->items()[1]).isNews);
  EXPECT_EQ(store->items().size(), 2U);
}

TEST(ClipStoreInsert, KeepsTheTextAsItIs) {
  TestStore store;
  const std::string text = "  \n spaced \t " + std::string(100'000, 'x') + std::string(1, '\0');
  const ClipItem item = textItem(text);
  store->insert(item);
  store.restart();
  EXPECT_EQ(store.item(item.id).text->get(), text);
}

TEST(ClipStoreFiles, AnEmptyListIsRefused) {
  TestStore store;
  EXPECT_FALSE(store->captureFiles({}, {}));
  EXPECT_EQ(store.changes(), 0);
}

TEST(ClipStoreFiles, CarryTheirPathsAndTheirSource) {
  TestStore store;
  const auto capture =
      store->captureFiles({"/home/u/a.txt", "/home/u/b.txt"}, {"Files", "org.files"});
  ASSERT_TRUE(capture);
  EXPECT_TRUE(capture->isNews);
  const ClipItem item = store.item(capture->id);
  EXPECT_EQ(item.kind, ClipKind::files);
  EXPECT_EQ(item.title, "2 files");
  EXPECT_EQ(item.preview, "a.txt, b.txt");
  EXPECT_EQ(item.filePaths, (Texts{"/home/u/a.txt", "/home/u/b.txt"}));
  EXPECT_EQ(item.sourceAppName, "Files");
  EXPECT_EQ(item.sourceBundleIdentifier, "org.files");
  EXPECT_EQ(item.createdAt, testDate());
  EXPECT_EQ(item.isPinned, false);
  EXPECT_EQ(item.lastCopiedAt, std::nullopt);
  EXPECT_FALSE(store->captureFiles({"/home/u/a.txt", "/home/u/b.txt"}, {}).value().isNews);
  EXPECT_TRUE(store->captureFiles({"/home/u/b.txt", "/home/u/a.txt"}, {}).value().isNews);
  EXPECT_EQ(store->items().size(), 2U);
}

TEST(ClipStoreFiles, ANameThatIsNoTextDoesNotSpoilTheHistory) {
  TestStore store;
  EXPECT_TRUE(store->captureFiles({std::filesystem::path("/home/u/br\xFFken")}, {}));
  EXPECT_EQ(store->items()[0].filePaths[0], "/home/u/br\xFFken");
  store.restart();
  ASSERT_EQ(store->items().size(), 1U);
  EXPECT_EQ(store->items()[0].filePaths[0], "/home/u/br\xEF\xBF\xBDken");
}

TEST(ClipStoreImages, AreSealedUnderANameOfTheirOwn) {
  TestStore store;
  const auto capture =
      store->captureImage(FakeImage({1920, 1080}, "pixels"), {"Shots", "org.shots"});
  ASSERT_TRUE(capture);
  EXPECT_TRUE(capture->isNews);
  const ClipItem item = store.item(capture->id);
  EXPECT_EQ(item.kind, ClipKind::image);
  EXPECT_EQ(item.title, "Image");
  EXPECT_EQ(item.preview, "1920 × 1080 px");
  EXPECT_EQ(item.contentHash, ContentFingerprint::data(bytesOf("pixels")));
  EXPECT_EQ(item.sourceAppName, "Shots");
  EXPECT_EQ(item.sourceBundleIdentifier, "org.shots");
  EXPECT_EQ(item.isPinned, false);
  EXPECT_EQ(item.text, std::nullopt);
  const auto path = onlyAsset(store);
  EXPECT_EQ(path.filename(), item.assetFilename);
  EXPECT_EQ(path.extension(), ".png");
  EXPECT_TRUE(Uuid::parse(path.stem().string()));
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path).permissions()), 0600U);
  const auto bytes = store.disk().readFile(path, 1000).value();
  EXPECT_TRUE(SecureStorage::isSealed(bytes));
  EXPECT_EQ(textOf(bytes).find("pixels"), std::string_view::npos);
  EXPECT_EQ(store->assetData(item), toBytes("pixels"));
}

TEST(ClipStoreImages, TheSameAgainWritesNoSecondFile) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  const auto name = store->items()[0].assetFilename;
  const Uuid id = store->items()[0].id;
  store.tick();
  const auto before = store.files().calls().size();
  const auto capture = store->captureImage(FakeImage({1, 1}, "one"), {});
  ASSERT_TRUE(capture);
  EXPECT_FALSE(capture->isNews);
  for (auto i = before; i < store.files().calls().size(); ++i) {
    EXPECT_EQ(store.files().calls()[i].path.string().find("Assets"), std::string::npos);
  }
  EXPECT_EQ(capture->id, id);
  EXPECT_EQ(store->items().size(), 1U);
  EXPECT_EQ(store->items()[0].id, id);
  EXPECT_EQ(store->items()[0].assetFilename, name);
  EXPECT_EQ(store->items()[0].lastCopiedAt, testDate(1));
  EXPECT_EQ(store.assetNames(), Texts{*name});
}

TEST(ClipStoreImages, ALostFileIsWrittenAgainUnderANewName) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  const ClipItem before = store->items()[0];
  std::filesystem::remove(store.assets() / *before.assetFilename);
  store->captureImage(FakeImage({1, 1}, "one"), {});
  EXPECT_EQ(store->items().size(), 1U);
  EXPECT_EQ(store->items()[0].id, before.id);
  EXPECT_NE(store->items()[0].assetFilename, before.assetFilename);
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("one"));
}

TEST(ClipStoreImages, AFileThatDoesNotOpenIsReplaced) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  const ClipItem before = store->items()[0];
  const auto foreign = SecureStorage::ephemeral()->seal(bytesOf("one"));
  std::filesystem::remove(onlyAsset(store));
  ASSERT_FALSE(store.disk().writeNewFile(store.assets() / *before.assetFilename, foreign, 0600));
  EXPECT_EQ(store->assetData(before), std::nullopt);
  store->captureImage(FakeImage({1, 1}, "one"), {});
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("one"));
  EXPECT_EQ(store.assetNames().size(), 1U);
}

TEST(ClipStoreImages, AnUnsealedFileIsTakenAsItIs) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  const ClipItem before = store->items()[0];
  std::filesystem::remove(onlyAsset(store));
  ASSERT_FALSE(
      store.disk().writeNewFile(store.assets() / *before.assetFilename, toBytes("one"), 0600));
  store->captureImage(FakeImage({1, 1}, "one"), {});
  EXPECT_EQ(store->items()[0].assetFilename, before.assetFilename);
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("one"));
}

TEST(ClipStoreImages, ThatWereExchangedOnTheDiskAreNotAvailable) {
  TestStore store;
  for (const char* bytes : {"green", "red"}) {
    store.tick();
    store->captureImage(FakeImage({1, 1}, bytes), {});
  }
  const ClipItem red = store->items()[0];
  const ClipItem green = store->items()[1];
  std::filesystem::rename(store.assets() / *red.assetFilename, store.base() / "between");
  std::filesystem::rename(store.assets() / *green.assetFilename,
                          store.assets() / *red.assetFilename);
  std::filesystem::rename(store.base() / "between", store.assets() / *green.assetFilename);
  EXPECT_EQ(store->assetData(red), std::nullopt);
  EXPECT_EQ(store->assetData(green), std::nullopt);
  store.tick();
  EXPECT_TRUE(store->captureImage(FakeImage({1, 1}, "red"), {}));
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("red"));
}

TEST(ClipStoreImages, ThatSomebodyPlantedAreNotAvailable) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  ClipItem item = store->items()[0];
  const auto path = onlyAsset(store);
  std::filesystem::remove(path);
  ASSERT_FALSE(store.disk().writeNewFile(path, toBytes("planted"), 0600));
  EXPECT_EQ(store->assetData(item), std::nullopt);
  item.contentHash.reset();
  EXPECT_EQ(store->assetData(item), std::nullopt);
  EXPECT_EQ(store.disk().readFile(path, 1000), toBytes("planted"));
}

TEST(ClipStoreImages, WithoutAHashAreTheirSealsWord) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  ClipItem item = store->items()[0];
  item.contentHash.reset();
  EXPECT_EQ(store->assetData(item), toBytes("one"));
}

TEST(ClipStoreImages, ThatAreNotSealedAreSealedWhenTheyAreFirstRead) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  const auto path = onlyAsset(store);
  std::filesystem::remove(path);
  ASSERT_FALSE(store.disk().writeNewFile(path, toBytes("one"), 0644));
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(store->assetData(store->items()[0]), toBytes("one"));
    EXPECT_TRUE(SecureStorage::isSealed(store.disk().readFile(path, 1000).value()));
  }
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path).permissions()), 0600U);
}

TEST(ClipStoreImages, TakeTheRecognizedTextOfTheSameImageOver) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "one"), {});
  ClipItem known = store->items()[0];
  known.recognizedText = "Invoice 2024";
  store->insert(known);
  store->captureImage(FakeImage({1, 1}, "one"), {});
  EXPECT_EQ(store->items()[0].recognizedText, "Invoice 2024");
}

TEST(ClipStoreImages, AreTakenAsJpegWhenThePngIsTooLarge) {
  ClipStoreLimits limits;
  limits.maxSingleImageBytes = 10;
  TestStore store(limits);
  FakeImage image({4, 4}, "12345678901");
  image.setJpeg("1234567890");
  EXPECT_TRUE(store->captureImage(image, {}));
  EXPECT_EQ(image.jpegCompressions(), std::vector<double>{0.86});
  EXPECT_EQ(onlyAsset(store).extension(), ".jpg");
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("1234567890"));
}

TEST(ClipStoreImages, OfExactlyTheLimitAreTakenAsPng) {
  ClipStoreLimits limits;
  limits.maxSingleImageBytes = 10;
  TestStore store(limits);
  const FakeImage image({4, 4}, "1234567890");
  EXPECT_TRUE(store->captureImage(image, {}));
  EXPECT_TRUE(image.jpegCompressions().empty());
  EXPECT_EQ(onlyAsset(store).extension(), ".png");
}

TEST(ClipStoreImages, TooLargeInEveryFormAreNotCaptured) {
  ClipStoreLimits limits;
  limits.maxSingleImageBytes = 10;
  TestStore store(limits);
  FakeImage image({4, 4}, "12345678901");
  image.setJpeg("12345678901");
  EXPECT_FALSE(store->captureImage(image, {}));
  EXPECT_EQ(store.changes(), 0);
  EXPECT_TRUE(store->items().empty());
  EXPECT_TRUE(store.assetNames().empty());
}

TEST(ClipStoreImages, WithoutPixelsAreNotCaptured) {
  TestStore store;
  const FakeImage image({4, 4});
  EXPECT_FALSE(store->captureImage(image, {}));
  EXPECT_EQ(image.jpegCompressions().size(), 1U);
}

TEST(ClipStoreImages, ThatCannotBeWrittenChangeNothing) {
  for (const auto operation :
       {FaultyFileSystem::Operation::writeNewFile, FaultyFileSystem::Operation::rename}) {
    TestStore store;
    store.addText("a");
    store.files().fail(operation, std::errc::no_space_on_device);
    EXPECT_FALSE(store->captureImage(FakeImage({1, 1}, "one"), {}));
    EXPECT_EQ(store.texts(), Texts{"a"});
    EXPECT_EQ(store.changes(), 1);
    EXPECT_TRUE(store.assetNames().empty());
  }
}

TEST(ClipStoreImages, WithoutAKeyAreNotCapturedWhileTextsAndFilesAre) {
  TestStore store;
  FakeKeychain keychain;
  keychain.fail(FakeKeychain::Backend::dataProtection, keychainStatus::userCanceled);
  const TemporaryDirectory directory;
  AbsentTextRecognition recognition;
  const auto recognitionQueue = store.dispatch().serialQueue("test.recognition");
  ClipStore keyless(
      {store.dispatch(), store.disk(), keychain, directory.path(), recognition, *recognitionQueue},
      std::nullopt, nullptr, {});
  EXPECT_FALSE(keyless.captureImage(FakeImage({1, 1}, "one"), {}));
  EXPECT_TRUE(keyless.captureFiles({"/a"}, {}));
  EXPECT_TRUE(keyless.insert(textItem("a")).isNews);
  EXPECT_EQ(keyless.items().size(), 2U);
  EXPECT_TRUE(std::filesystem::is_empty(keyless.assetsUrl()));
}

TEST(ClipStoreImages, AreNotReadFromOutsideTheAssets) {
  TestStore store;
  ASSERT_FALSE(store.disk().writeNewFile(store.base() / "outside.png", toBytes("x"), 0600));
  for (const std::string name : {"../outside.png", "..", ".", "", "/etc/hostname", "a/../b"}) {
    EXPECT_EQ(store->assetData(imageItem(name, "h")), std::nullopt) << name;
  }
  EXPECT_EQ(store->assetData(textItem("no image")), std::nullopt);
}

}  // namespace
}  // namespace vantorel
