// SPDX-License-Identifier: MIT
#include "thumbnails/ThumbnailProvider.h"

#include <gmock/gmock.h>

#include <fstream>
#include <thread>

#include "fakes/FakeFileThumbnails.h"
#include "fakes/FakeIcons.h"
#include "fakes/FakeImage.h"
#include "fakes/FakeImageDecoder.h"
#include "fakes/FakeScreens.h"
#include "fakes/TestStore.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/ThreadedQueue.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

SharedBitmap picture(int side) {
  const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
  const auto points = static_cast<double>(side);
  return std::make_shared<const Bitmap>(
      Bitmap{{points, points}, {side, side}, std::vector<std::uint32_t>(pixels)});
}

class ThumbnailProviderTest : public testing::Test {
 protected:
  /// An image entry whose encoded bytes are `bytes` and decode to `bitmap`.
  ClipItem addImage(const std::string& bytes, const SharedBitmap& bitmap) {
    images_.introduce(toBytes(bytes), bitmap);
    store_->captureImage(FakeImage({10, 10}, bytes), {});
    store_.tick();
    return store_->items().front();
  }
  [[nodiscard]] std::filesystem::path assetOf(const ClipItem& item) const {
    return store_.assets() / *item.assetFilename;
  }
  std::string addFile(const std::string& name) {
    const auto path = store_.base() / name;
    std::ofstream(path) << "x";
    return path.string();
  }

  /// Asks, and answers how often and with what the completion has been called so far.
  std::shared_ptr<std::vector<SharedBitmap>> request(const ClipItem& item) {
    auto answers = std::make_shared<std::vector<SharedBitmap>>();
    provider_->requestThumbnail(
        item, [answers](SharedBitmap bitmap) { answers->push_back(std::move(bitmap)); });
    return answers;
  }
  std::shared_ptr<std::vector<SharedBitmap>> requested(const ClipItem& item) {
    auto answers = request(item);
    store_.dispatch().runQueued();
    return answers;
  }

  ThumbnailServices services(Dispatch& dispatch) {
    return {dispatch, store_.files(), images_, thumbnails_, icons_, screens_, isGone};
  }
  std::unique_ptr<ThumbnailProvider> newProvider(const ClipStore& store) {
    return std::make_unique<ThumbnailProvider>(store, services(store_.dispatch()));
  }
  static bool isGone(const ClipItem& item) {
    return !std::filesystem::exists(item.filePaths.front());
  }

  TestStore store_;
  FakeImageDecoder images_;
  FakeFileThumbnails thumbnails_;
  FakeIcons icons_;
  FakeScreens screens_;
  std::unique_ptr<ThumbnailProvider> provider_ = newProvider(*store_);
};

TEST_F(ThumbnailProviderTest, ATextHasNone) {
  const auto item = textItem("a");
  EXPECT_THAT(*request(item), ElementsAre(nullptr));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
}

TEST_F(ThumbnailProviderTest, AnImageIsDecodedOnTheQueueAndAnsweredLater) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", bitmap);
  const auto answers = request(item);
  EXPECT_THAT(*answers, IsEmpty());
  EXPECT_THAT(images_.drawn(), IsEmpty());
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(bitmap));
}

TEST_F(ThumbnailProviderTest, ASecondRequestIsAnsweredAtOnce) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", bitmap);
  requested(item);
  EXPECT_THAT(*request(item), ElementsAre(bitmap));
  EXPECT_EQ(provider_->cached(item.id), bitmap);
  EXPECT_THAT(images_.drawn(), SizeIs(1));
}

TEST_F(ThumbnailProviderTest, RequestsMeanwhileWaitForTheSamePicture) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", bitmap);
  const auto first = request(item);
  const auto second = requested(item);
  EXPECT_THAT(*first, ElementsAre(bitmap));
  EXPECT_THAT(*second, ElementsAre(bitmap));
  EXPECT_THAT(images_.drawn(), SizeIs(1));
}

TEST_F(ThumbnailProviderTest, PicturesAreNoLargerThanTheyAreShown) {
  const auto item = addImage("one", picture(4));
  screens_.setScreens({{{0, 0, 800, 600}, {0, 0, 800, 600}, 2}});
  requested(item);
  EXPECT_THAT(images_.drawn(), ElementsAre(PixelSize{572, 544}));
}

TEST_F(ThumbnailProviderTest, PicturesAreMadeForTheSharpestScreenThatIsThere) {
  const auto item = addImage("one", picture(4));
  screens_.setScreens({{{0, 0, 800, 600}, {0, 0, 800, 600}, 1},
                       {{800, 0, 800, 600}, {800, 0, 800, 600}, 2},
                       {{1600, 0, 800, 600}, {1600, 0, 800, 600}, 1}});
  requested(item);
  EXPECT_THAT(images_.drawn(), ElementsAre(PixelSize{572, 544}));
}

TEST_F(ThumbnailProviderTest, WhatWasMadeBeforeASharperScreenCameIsMadeAgain) {
  const auto item = addImage("one", picture(4));
  requested(item);
  ASSERT_NE(provider_->cached(item.id), nullptr);
  screens_.setScreens({{{0, 0, 800, 600}, {0, 0, 800, 600}, 2}});
  EXPECT_EQ(provider_->cached(item.id), nullptr);
  requested(item);
  EXPECT_THAT(images_.drawn(), ElementsAre(PixelSize{286, 272}, PixelSize{572, 544}));
  screens_.setScreens({{{0, 0, 800, 600}, {0, 0, 800, 600}, 1}});
  EXPECT_NE(provider_->cached(item.id), nullptr) << "sharp enough";
}

TEST_F(ThumbnailProviderTest, WhatIsBeingMadeWhenASharperScreenComesIsNotKept) {
  const auto image = addImage("one", picture(4));
  const auto file = filesItem({addFile("a.pdf")});
  const auto ofImage = request(image);
  const auto ofFile = request(file);
  screens_.setScreens({{{0, 0, 800, 600}, {0, 0, 800, 600}, 2}});
  request(textItem("a"));
  thumbnails_.answer(0, picture(4));
  store_.dispatch().runQueued();
  EXPECT_THAT(*ofImage, SizeIs(1));
  EXPECT_THAT(*ofFile, SizeIs(1));
  EXPECT_EQ(provider_->cached(image.id), nullptr);
  EXPECT_EQ(provider_->cached(file.id), nullptr);
}

TEST_F(ThumbnailProviderTest, WithoutAScreenPicturesAreMadeForASharpOne) {
  const auto item = addImage("one", picture(4));
  screens_.setScreens({});
  requested(item);
  EXPECT_THAT(images_.drawn(), ElementsAre(PixelSize{572, 544}));
}

TEST_F(ThumbnailProviderTest, AMissingFileYieldsNothingAndNothingIsKept) {
  const auto item = addImage("one", picture(4));
  std::filesystem::remove(assetOf(item));
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
}

TEST_F(ThumbnailProviderTest, PicturesOfALongHistoryNeverPushEachOtherOut) {
  screens_.setScreens({{{0, 0, 800, 600}, {0, 0, 800, 600}, 3}});
  for (int i = 0; i < 45; ++i) addImage(std::to_string(i), picture(1));
  requested(store_->items().front());
  const PixelSize fitting = images_.drawn().front();
  EXPECT_LT(fitting.width, 572);
  const int square = std::min(fitting.width, fitting.height);
  for (int i = 0; i < 45; ++i) images_.introduce(toBytes(std::to_string(i)), picture(square));
  provider_ = newProvider(*store_);
  for (const ClipItem& item : store_->items()) requested(item);
  for (const ClipItem& item : store_->items()) EXPECT_NE(provider_->cached(item.id), nullptr);
}

TEST_F(ThumbnailProviderTest, WhatIsNoPictureYieldsNothingAndIsTriedAgain) {
  const auto item = addImage("one", nullptr);
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
  const auto bitmap = picture(4);
  images_.introduce(toBytes("one"), bitmap);
  EXPECT_THAT(*requested(item), ElementsAre(bitmap));
}

TEST_F(ThumbnailProviderTest, WithoutAKeyWhatIsSealedYieldsNothingAndPlainFilesAreShown) {
  const auto sealed = addImage("one", picture(4));
  const auto bitmap = picture(5);
  const auto plain = addImage("two", bitmap);
  store_.dispatch().runQueued();  // its text was looked for, so nobody else reads it with a key
  std::ofstream(assetOf(plain), std::ios::binary | std::ios::trunc) << "two";
  store_.keychain().fail(FakeKeychain::Backend::dataProtection, keychainStatus::notAvailable);
  store_.keychain().fail(FakeKeychain::Backend::login, keychainStatus::notAvailable);
  const ClipStore keyless(store_.services(), std::nullopt, nullptr, {});
  ASSERT_EQ(keyless.secureStorage(), nullptr);
  ASSERT_EQ(keyless.assetsUrl(), store_.assets());
  provider_ = newProvider(keyless);
  EXPECT_THAT(*requested(sealed), ElementsAre(nullptr));
  EXPECT_THAT(*requested(plain), ElementsAre(bitmap));
}

TEST_F(ThumbnailProviderTest, ANameThatLeadsOutOfTheFolderYieldsNothing) {
  auto item = addImage("one", picture(4));
  images_.introduce(toBytes("x"), picture(4));
  addFile("outside");
  item.assetFilename = "../outside";
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, ADamagedFileYieldsNothing) {
  const auto item = addImage("one", picture(4));
  std::ofstream(assetOf(item), std::ios::binary | std::ios::in | std::ios::out)
      .seekp(40)
      .write("damage", 6);
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
}

TEST_F(ThumbnailProviderTest, AFileUnderAnotherKeyYieldsNothing) {
  const auto item = addImage("one", picture(4));
  store_.storage()->beginRotation({});
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, AnOlderFileThatIsNotSealedIsUsedAsItIs) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", bitmap);
  std::ofstream(assetOf(item), std::ios::binary | std::ios::trunc) << "one";
  EXPECT_THAT(*requested(item), ElementsAre(bitmap));
}

TEST_F(ThumbnailProviderTest, AnotherPictureInItsPlaceYieldsNothing) {
  const auto item = addImage("one", picture(4));
  const auto other = addImage("two", picture(4));
  std::filesystem::copy_file(assetOf(other), assetOf(item),
                             std::filesystem::copy_options::overwrite_existing);
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, AnImageWithoutAFileYieldsNothing) {
  auto item = addImage("one", picture(4));
  item.assetFilename.reset();
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, FilesWithoutPathsYieldNothing) {
  auto item = filesItem({"/a"});
  item.filePaths = {};
  EXPECT_THAT(*request(item), ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, AFileIsShownAsTheDesktopShowsIt) {
  const auto bitmap = picture(4);
  const auto item = filesItem({addFile("a.pdf"), "/elsewhere"});
  const auto answers = request(item);
  ASSERT_THAT(thumbnails_.requests(), SizeIs(1));
  EXPECT_EQ(thumbnails_.requests()[0].file, item.filePaths[0]);
  EXPECT_EQ(thumbnails_.requests()[0].size, (Size{240, 240}));
  EXPECT_EQ(thumbnails_.requests()[0].scale, 1);
  thumbnails_.answer(0, bitmap);
  EXPECT_THAT(*answers, IsEmpty());
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(bitmap));
  EXPECT_EQ(provider_->cached(item.id), bitmap);
}

TEST_F(ThumbnailProviderTest, AFileWithoutThumbnailHasItsIconWhichIsKept) {
  const auto icon = picture(4);
  const auto item = filesItem({addFile("a.xyz")});
  icons_.setFile(item.filePaths[0], icon);
  const auto answers = request(item);
  thumbnails_.answer(0, nullptr);
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(icon));
  EXPECT_EQ(provider_->cached(item.id), icon);
}

TEST_F(ThumbnailProviderTest, AFileThatIsGoneHasTheIconOfItsTypeAtOnceUntilItIsBack) {
  const auto icon = picture(4);
  const auto bitmap = picture(5);
  icons_.setType("pdf", icon);
  const auto path = store_.base() / "a.pdf";
  const auto item = filesItem({path.string()});
  EXPECT_THAT(*request(item), ElementsAre(icon));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
  addFile("a.pdf");
  const auto answers = request(item);
  thumbnails_.answer(0, bitmap);
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(bitmap));
}

TEST_F(ThumbnailProviderTest, NoDiskIsAskedWhetherAFileIsThere) {
  class Counting : public PosixFileSystem {
   public:
    bool exists(const Path& path) override {
      ++questions;
      return PosixFileSystem::exists(path);
    }
    int questions = 0;
  };
  Counting disk;
  bool isKnownToBeGone = false;
  auto knowing = services(store_.dispatch());
  const ThumbnailServices services{knowing.dispatch,
                                   disk,
                                   knowing.images,
                                   knowing.fileThumbnails,
                                   knowing.icons,
                                   knowing.screens,
                                   [&](const ClipItem&) { return isKnownToBeGone; }};
  provider_ = std::make_unique<ThumbnailProvider>(*store_, services);
  request(filesItem({"/nonexistent/a.pdf"}));
  EXPECT_THAT(thumbnails_.requests(), SizeIs(1));
  isKnownToBeGone = true;
  EXPECT_THAT(*request(filesItem({addFile("b.pdf")})), SizeIs(1));
  EXPECT_THAT(icons_.askedTypes(), ElementsAre("pdf"));
  EXPECT_EQ(disk.questions, 0);
}

TEST_F(ThumbnailProviderTest, TheIconOfATypeMayComeLaterAndIsNotKept) {
  const auto icon = picture(4);
  icons_.setType("pdf", icon);
  icons_.holdAnswers();
  const auto item = filesItem({"/nonexistent/a.pdf"});
  const auto answers = request(item);
  EXPECT_THAT(*answers, IsEmpty());
  icons_.answerHeld();
  EXPECT_THAT(*answers, ElementsAre(icon));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
}

TEST_F(ThumbnailProviderTest, TypesAreAskedForByExtension) {
  for (const auto* name : {"a.PDF", "b.tar.gz", "none", ".hidden", "c."}) {
    EXPECT_THAT(*request(filesItem({(store_.base() / name).string()})), SizeIs(1)) << name;
  }
  EXPECT_THAT(icons_.askedTypes(), ElementsAre("PDF", "gz", "", "", ""));
  EXPECT_THAT(thumbnails_.requests(), IsEmpty());
}

TEST_F(ThumbnailProviderTest, AFileThatVanishesMeanwhileHasItsIcon) {
  const auto icon = picture(4);
  const auto item = filesItem({addFile("a.pdf")});
  icons_.setFile(item.filePaths[0], icon);
  const auto answers = request(item);
  std::filesystem::remove(item.filePaths[0]);
  thumbnails_.answer(0, nullptr);
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(icon));
}

TEST_F(ThumbnailProviderTest, WithoutAnIconThereIsNothingAndNothingIsKept) {
  const auto item = filesItem({addFile("a.xyz")});
  const auto answers = request(item);
  thumbnails_.answer(0, nullptr);
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(nullptr));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
  request(item);
  EXPECT_THAT(thumbnails_.requests(), SizeIs(2));
}

TEST_F(ThumbnailProviderTest, AnIconMayComeLater) {
  const auto icon = picture(4);
  const auto item = filesItem({addFile("a.xyz")});
  icons_.setFile(item.filePaths[0], icon);
  icons_.holdAnswers();
  const auto first = request(item);
  thumbnails_.answer(0, nullptr);
  store_.dispatch().runQueued();
  const auto second = request(item);
  EXPECT_THAT(*first, IsEmpty());
  icons_.answerHeld();
  EXPECT_THAT(*first, ElementsAre(icon));
  EXPECT_THAT(*second, ElementsAre(icon));
  EXPECT_THAT(thumbnails_.requests(), SizeIs(1));
}

TEST_F(ThumbnailProviderTest, TheAnswerComesOnTheMainThreadWhateverThreadMadeIt) {
  const auto item = filesItem({addFile("a.pdf")});
  std::thread::id answeredOn;
  provider_->requestThumbnail(
      item, [&](const SharedBitmap& /*picture*/) { answeredOn = std::this_thread::get_id(); });
  std::thread([&] { thumbnails_.answer(0, picture(4)); }).join();
  EXPECT_EQ(answeredOn, std::thread::id());
  store_.dispatch().runQueued();
  EXPECT_EQ(answeredOn, std::this_thread::get_id());
}

TEST_F(ThumbnailProviderTest, AnAnswerThatComesTwiceCountsOnce) {
  const auto item = filesItem({addFile("a.pdf")});
  const auto first = picture(4);
  const auto answers = request(item);
  thumbnails_.answer(0, first);
  thumbnails_.answer(0, picture(5));
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(first));
  EXPECT_EQ(provider_->cached(item.id), first);
}

TEST_F(ThumbnailProviderTest, NobodyNeedWait) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", bitmap);
  provider_->requestThumbnail(item, {});
  store_.dispatch().runQueued();
  EXPECT_EQ(provider_->cached(item.id), bitmap);
  provider_->requestThumbnail(item, {});
  provider_->requestThumbnail(textItem("a"), {});
}

TEST_F(ThumbnailProviderTest, ImagesAreMadeOnAQueueOfTheirOwnWithAName) {
  class NamedQueues : public ManualDispatch {
   public:
    std::unique_ptr<SerialQueue> serialQueue(const std::string& label) override {
      labels.push_back(label);
      return ManualDispatch::serialQueue(label);
    }
    std::vector<std::string> labels;
  };
  NamedQueues dispatch;
  const ThumbnailProvider provider(*store_, services(dispatch));
  EXPECT_THAT(dispatch.labels, ElementsAre("com.vantorel.thumbnail-images"));
}

TEST_F(ThumbnailProviderTest, KeepsEightyAndLetsGoOfWhatWasLookedAtLongestAgo) {
  std::vector<ClipItem> items;
  for (std::size_t i = 0; i <= ThumbnailProvider::countLimit; ++i) {
    items.push_back(filesItem({addFile(std::to_string(i))}));
    request(items.back());
    if (i == ThumbnailProvider::countLimit) {
      EXPECT_NE(provider_->cached(items[0].id), nullptr);  // a look
    }
    thumbnails_.answer(i, picture(2));
    store_.dispatch().runQueued();
  }
  EXPECT_NE(provider_->cached(items[0].id), nullptr);
  EXPECT_EQ(provider_->cached(items[1].id), nullptr);
  EXPECT_NE(provider_->cached(items[2].id), nullptr);
  EXPECT_NE(provider_->cached(items.back().id), nullptr);
}

TEST_F(ThumbnailProviderTest, KeepsNoMoreThanItsMemoryAllows) {
  const auto large = picture(1500);  // 9 MB
  std::vector<ClipItem> items;
  for (std::size_t i = 0; i < 5; ++i) {
    items.push_back(filesItem({addFile(std::to_string(i))}));
    request(items.back());
    thumbnails_.answer(i, large);
    store_.dispatch().runQueued();
  }
  EXPECT_EQ(provider_->cached(items[0].id), nullptr);
  EXPECT_EQ(provider_->cached(items[1].id), nullptr);
  EXPECT_NE(provider_->cached(items[2].id), nullptr);
  EXPECT_NE(provider_->cached(items[4].id), nullptr);
}

TEST_F(ThumbnailProviderTest, WhoWaitsIsAnsweredOnceEvenWhenTheProviderHasGone) {
  const auto image = request(addImage("one", picture(4)));
  const auto file = request(filesItem({addFile("a.pdf")}));
  provider_.reset();
  thumbnails_.answer(0, picture(4));
  store_.dispatch().runQueued();
  EXPECT_THAT(*image, ElementsAre(nullptr));
  EXPECT_THAT(*file, ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, NothingIsDecodedForAProviderThatHasGone) {
  const auto answers = request(addImage("one", picture(4)));
  provider_.reset();
  store_.dispatch().runQueued();
  EXPECT_THAT(images_.drawn(), IsEmpty());
  EXPECT_THAT(*answers, SizeIs(1));
}

TEST_F(ThumbnailProviderTest, WhoWaitsIsAnsweredOnceWhereverTheProviderGoes) {
  for (int steps = 0; steps < 3; ++steps) {
    const auto answers = request(addImage(std::to_string(steps), picture(4)));
    for (int i = 0; i < steps; ++i) store_.dispatch().runOne();
    provider_.reset();
    store_.dispatch().runQueued();
    EXPECT_THAT(*answers, SizeIs(1)) << steps;
    provider_ = newProvider(*store_);
  }
}

TEST_F(ThumbnailProviderTest, MayEndWhileAThreadMakesPictures) {
  class Threads : public ManualDispatch {
   public:
    std::unique_ptr<SerialQueue> serialQueue(const std::string& label) override {
      return std::make_unique<ThreadedQueue>(label);
    }
  };
  for (int i = 0; i < 20; ++i) addImage(std::to_string(i), picture(4));
  for (int round = 0; round < 20; ++round) {
    Threads dispatch;
    auto provider = std::make_unique<ThumbnailProvider>(*store_, services(dispatch));
    int answers = 0;
    for (const ClipItem& item : store_->items()) {
      provider->requestThumbnail(item, [&](const SharedBitmap& /*picture*/) { ++answers; });
    }
    for (int i = 0; i < round; ++i) dispatch.runOne();
    provider.reset();
    dispatch.runQueued();
    EXPECT_EQ(answers, 20) << round;
  }
}

TEST_F(ThumbnailProviderTest, WhoWaitsForAnIconIsAnsweredOnceEvenWhenTheProviderHasGone) {
  icons_.holdAnswers();
  const auto answers = request(filesItem({addFile("a.pdf")}));
  thumbnails_.answer(0, nullptr);
  store_.dispatch().runQueued();
  provider_.reset();
  icons_.answerHeld();
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, AnAnswerMayEndTheProvider) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", bitmap);
  provider_->requestThumbnail(item, [this](const SharedBitmap& /*picture*/) { provider_.reset(); });
  const auto second = request(item);
  store_.dispatch().runQueued();
  EXPECT_EQ(provider_, nullptr);
  EXPECT_THAT(*second, ElementsAre(bitmap));
}

TEST_F(ThumbnailProviderTest, AnAnswerMayAskAgain) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", bitmap);
  std::shared_ptr<std::vector<SharedBitmap>> second;
  provider_->requestThumbnail(item,
                              [&](const SharedBitmap& /*picture*/) { second = request(item); });
  store_.dispatch().runQueued();
  ASSERT_NE(second, nullptr);
  EXPECT_THAT(*second, ElementsAre(bitmap));
  EXPECT_THAT(images_.drawn(), SizeIs(1));
}

TEST_F(ThumbnailProviderTest, APictureThatArrivesAfterItsEntryIsGoneHarmsNothing) {
  const auto item = addImage("one", picture(4));
  const auto answers = request(item);
  store_->remove(item.id);
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, SizeIs(1));
}

}  // namespace
}  // namespace vantorel
