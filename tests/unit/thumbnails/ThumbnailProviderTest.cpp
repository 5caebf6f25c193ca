#include "thumbnails/ThumbnailProvider.h"

#include <gmock/gmock.h>

#include <fstream>

#include "fakes/FakeFileThumbnails.h"
#include "fakes/FakeIcons.h"
#include "fakes/FakeImage.h"
#include "fakes/FakeImageDecoder.h"
#include "fakes/FakeScreens.h"
#include "fakes/TestStore.h"

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

  TestStore store_;
  FakeImageDecoder images_;
  FakeFileThumbnails thumbnails_;
  FakeIcons icons_;
  FakeScreens screens_;
  std::unique_ptr<ThumbnailProvider> provider_ = std::make_unique<ThumbnailProvider>(
      *store_,
      ThumbnailServices{store_.dispatch(), store_.files(), images_, thumbnails_, icons_, screens_});
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
  EXPECT_THAT(images_.drawn(), ElementsAre(PixelSize{572, 540}));
}

TEST_F(ThumbnailProviderTest, WithoutAScreenPicturesAreMadeForASharpOne) {
  const auto item = addImage("one", picture(4));
  screens_.setScreens({});
  requested(item);
  EXPECT_THAT(images_.drawn(), ElementsAre(PixelSize{572, 540}));
}

TEST_F(ThumbnailProviderTest, AMissingFileYieldsNothingAndNothingIsKept) {
  const auto item = addImage("one", picture(4));
  std::filesystem::remove(assetOf(item));
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
  EXPECT_EQ(provider_->cached(item.id), nullptr);
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
  store_.storage()->rotateKey();
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, AnOlderFileThatIsNotSealedIsUsedAsItIs) {
  const auto bitmap = picture(4);
  const auto item = addImage("one", picture(3));
  images_.introduce(toBytes("plain"), bitmap);
  std::ofstream(assetOf(item), std::ios::binary | std::ios::trunc) << "plain";
  EXPECT_THAT(*requested(item), ElementsAre(bitmap));
}

TEST_F(ThumbnailProviderTest, AnImageWithoutAFileYieldsNothing) {
  auto item = addImage("one", picture(4));
  item.assetFilename.reset();
  EXPECT_THAT(*requested(item), ElementsAre(nullptr));
}

TEST_F(ThumbnailProviderTest, FilesWithoutPathsYieldNothing) {
  auto item = filesItem({"/a"});
  item.filePaths.clear();
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

TEST_F(ThumbnailProviderTest, APictureThatArrivesAfterItsEntryIsGoneHarmsNothing) {
  const auto item = addImage("one", picture(4));
  const auto answers = request(item);
  store_->remove(item.id);
  store_.dispatch().runQueued();
  EXPECT_THAT(*answers, SizeIs(1));
}

}  // namespace
}  // namespace vantorel
