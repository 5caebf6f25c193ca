// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <fstream>

#include "chrome/VantorelPanel.h"
#include "fakes/FakeImage.h"
#include "panel/ClipRowView.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

SharedBitmap bitmap(std::uint32_t colour) {
  return std::make_shared<const Bitmap>(Bitmap{{8, 8}, {8, 8}, std::vector(64, colour)});
}

class PanelPictures : public HistoryPanelTest {
 protected:
  Uuid addImage(const std::string& bytes, const SharedBitmap& picture) {
    images_.introduce(toBytes(bytes), picture);
    store_.tick();
    store_->captureImage(FakeImage({10, 10}, bytes), {});
    return store_->items().front().id;
  }
  Uuid addFile(const std::string& path) {
    store_.tick();
    ClipItem item = filesItem({path}, dispatch_.now());
    store_->insert(item);
    return item.id;
  }
  std::string existingFile(const std::string& name) {
    const auto path = store_.base() / name;
    std::ofstream(path) << "x";
    return path.string();
  }
  void addFrom(const std::string& text, const std::string& identifier) {
    store_.tick();
    ClipItem item = textItem(text, dispatch_.now());
    item.sourceBundleIdentifier = identifier;
    store_->insert(item);
  }
  [[nodiscard]] SourceIconView::State icon(std::size_t row) const {
    return rows().at(row)->sourceIconState();
  }
};

TEST_F(PanelPictures, AnImageComesWhenItHasBeenDecodedAndIsThereAtOnceLater) {
  const auto picture = bitmap(0xFFFF0000);
  addImage("one", picture);
  open();
  EXPECT_EQ(rows()[0]->thumbnail(), nullptr);
  dispatch_.runQueued();
  EXPECT_EQ(rows()[0]->thumbnail(), picture);
  controller_->hide();
  controller_->toggle(target_);
  EXPECT_EQ(rows()[0]->thumbnail(), picture);
  EXPECT_THAT(images_.drawn(), SizeIs(1));
}

TEST_F(PanelPictures, TheFirstOpeningBeginsWithItsPictures) {
  std::vector<SharedBitmap> pictures;
  for (std::uint32_t i = 0; i < 12; ++i) {
    pictures.push_back(bitmap(0xFF000000 + i));
    addImage("picture " + std::to_string(i), pictures.back());
  }
  dispatch_.advance(Seconds(1));
  dispatch_.runQueued();
  EXPECT_THAT(images_.drawn(), SizeIs(9)) << "no more than is seen";
  controller_->toggle(target_);
  for (std::size_t row = 0; row < 9; ++row) {
    EXPECT_EQ(rows()[row]->thumbnail(), pictures[11 - row]) << row;
  }
}

TEST_F(PanelPictures, ANewEntryOnTopHasItsPictureMadeAndAnOldOneIsNotMadeAgain) {
  addImage("one", bitmap(0xFFFF0000));
  dispatch_.advance(Seconds(1));
  dispatch_.runQueued();
  const auto picture = bitmap(0xFF00FF00);
  addImage("two", picture);
  dispatch_.advance(Seconds(1));
  dispatch_.runQueued();
  EXPECT_THAT(images_.drawn(), SizeIs(2));
  controller_->toggle(target_);
  EXPECT_EQ(rows()[0]->thumbnail(), picture);
}

TEST_F(PanelPictures, WhatCameUnderThePointerHasItsPictureMadeOnceThePanelIsHidden) {
  addTexts({"a"});
  dispatch_.advance(Seconds(1));
  open();
  screens_.setMouseLocation({960, 555});
  const auto picture = bitmap(0xFF00FF00);
  addImage("one", picture);
  dispatch_.advance(Seconds(1));
  dispatch_.runQueued();
  ASSERT_THAT(titles(), ElementsAre("a"));
  controller_->hide();
  dispatch_.advance(Seconds(1));
  dispatch_.runQueued();
  controller_->toggle(target_);
  EXPECT_EQ(rows()[0]->thumbnail(), picture);
}

TEST_F(PanelPictures, AFileHasItsPictureMadeOnceTheDiskHasAnswered) {
  const auto picture = bitmap(0xFF0000FF);
  const auto path = existingFile("a.png");
  addFile(path);
  addFile("/nonexistent/lost.png");
  dispatch_.advance(Seconds(1));
  dispatch_.runQueued();
  ASSERT_THAT(thumbnails_.requests(), SizeIs(1));
  thumbnails_.answer(0, picture);
  dispatch_.runQueued();
  controller_->toggle(target_);
  EXPECT_EQ(rows()[1]->thumbnail(), picture);
  EXPECT_EQ(rows()[0]->thumbnail(), nullptr);
}

TEST_F(PanelPictures, APictureGoesToTheRowThatNowShowsItsEntry) {
  const auto picture = bitmap(0xFF00FF00);
  addTexts({"zebra"});
  addImage("one", picture);
  open();
  addTexts({"new on top"});
  dispatch_.runQueued();
  EXPECT_EQ(rows()[0]->thumbnail(), nullptr);
  EXPECT_EQ(rows()[1]->thumbnail(), picture);
}

TEST_F(PanelPictures, APictureWhoseEntryIsFilteredAwayIsDropped) {
  addTexts({"zebra"});
  addImage("one", bitmap(0xFF00FF00));
  open();
  type("zeb");
  dispatch_.runQueued();
  EXPECT_THAT(titles(), ElementsAre("zebra"));
  EXPECT_EQ(rows()[0]->thumbnail(), nullptr);
}

TEST_F(PanelPictures, AnImageThatCannotBeReadIsTriedOncePerShowing) {
  addImage("one", nullptr);
  open();
  dispatch_.runQueued();
  type("i");
  dispatch_.runQueued();
  EXPECT_THAT(images_.drawn(), SizeIs(1));
  controller_->hide();
  open();
  dispatch_.runQueued();
  EXPECT_THAT(images_.drawn(), SizeIs(2));
}

TEST_F(PanelPictures, AFileIsAskedForOnceItsDiskHasAnswered) {
  const auto picture = bitmap(0xFF0000FF);
  addFile(existingFile("a.pdf"));
  open();
  EXPECT_THAT(thumbnails_.requests(), IsEmpty());
  dispatch_.runQueued();
  ASSERT_THAT(thumbnails_.requests(), SizeIs(1));
  thumbnails_.answer(0, picture);
  dispatch_.runQueued();
  EXPECT_EQ(rows()[0]->thumbnail(), picture);
}

TEST_F(PanelPictures, APictureThatTakesLongIsAskedForOnceHoweverOftenThePanelIsShown) {
  const auto picture = bitmap(0xFF0000FF);
  addFile(existingFile("a.pdf"));
  for (int showings = 0; showings < 3; ++showings) {
    open();
    dispatch_.runQueued();
    controller_->hide();
  }
  EXPECT_THAT(thumbnails_.requests(), SizeIs(1));
  open();
  thumbnails_.answer(0, picture);
  dispatch_.runQueued();
  EXPECT_EQ(rows()[0]->thumbnail(), picture) << "it comes to the showing of now";
}

TEST_F(PanelPictures, APictureThatArrivesAfterHidingIsThereAtTheNextShowing) {
  const auto picture = bitmap(0xFF0000FF);
  addFile(existingFile("a.pdf"));
  open();
  dispatch_.runQueued();
  controller_->hide();
  thumbnails_.answer(0, picture);
  dispatch_.runQueued();
  controller_->toggle(target_);
  EXPECT_EQ(rows()[0]->thumbnail(), picture) << "at once";
}

TEST_F(PanelPictures, AFileThatIsGoneHasTheIconOfItsType) {
  const auto icon = bitmap(0xFF123456);
  icons_.setType("pdf", icon);
  addFile("/nonexistent/a.pdf");
  open();
  dispatch_.runQueued();
  EXPECT_EQ(rows()[0]->thumbnail(), icon);
  EXPECT_FALSE(rows()[0]->content().available);
}

TEST_F(PanelPictures, TheIconOfATypeMayComeAfterTheRow) {
  const auto icon = bitmap(0xFF123456);
  icons_.setType("pdf", icon);
  icons_.holdAnswers();
  addFile("/nonexistent/a.pdf");
  open();
  dispatch_.runQueued();
  EXPECT_EQ(rows()[0]->thumbnail(), nullptr);
  icons_.answerHeld();
  EXPECT_EQ(rows()[0]->thumbnail(), icon);
}

TEST_F(PanelPictures, FilesWhoseFirstIsThereHaveItsPictureThoughOthersAreGone) {
  store_.tick();
  store_->insert(filesItem({existingFile("a.pdf"), "/nonexistent/b.pdf"}, dispatch_.now()));
  open();
  dispatch_.runQueued();
  EXPECT_FALSE(rows()[0]->content().available);
  ASSERT_THAT(thumbnails_.requests(), SizeIs(1));
  EXPECT_THAT(icons_.askedTypes(), IsEmpty());
}

TEST_F(PanelPictures, ARowHasTheIconOfItsApplication) {
  icons_.setApplication("org.notes", bitmap(0xFFFFFF00));
  addFrom("known", "org.notes");
  addFrom("gone", "org.gone");
  addTexts({"nobody's"});
  open();
  EXPECT_EQ(icon(0), SourceIconView::State::unknown);
  EXPECT_EQ(icon(1), SourceIconView::State::unknown);
  EXPECT_EQ(icon(2), SourceIconView::State::icon);
}

TEST_F(PanelPictures, AnIconThatTakesItsTimeIsNotKnownUntilThen) {
  icons_.setApplication("org.notes", bitmap(0xFFFFFF00));
  icons_.holdAnswers();
  addFrom("known", "org.notes");
  open();
  EXPECT_EQ(icon(0), SourceIconView::State::pending);
  icons_.answerHeld();
  EXPECT_EQ(icon(0), SourceIconView::State::icon);
}

TEST_F(PanelPictures, WhatArrivesAfterHidingIsNotKeptByRows) {
  icons_.setApplication("org.notes", bitmap(0xFFFFFF00));
  icons_.holdAnswers();
  addFrom("known", "org.notes");
  addImage("one", bitmap(0xFF00FF00));
  addFile(existingFile("a.pdf"));
  open();
  dispatch_.runQueued();
  const auto all = rows();
  controller_->hide();
  icons_.answerHeld();
  thumbnails_.answer(0, bitmap(0xFF0000FF));
  dispatch_.runQueued();
  ASSERT_THAT(all, SizeIs(3));
  for (const auto* row : all) {
    EXPECT_EQ(row->thumbnail(), nullptr);
    EXPECT_EQ(row->sourceIconState(), SourceIconView::State::unknown);
  }
}

TEST_F(PanelPictures, EachApplicationIsAskedForOnceInAList) {
  addFrom("one", "org.notes");
  addFrom("two", "org.notes");
  open();
  EXPECT_THAT(icons_.asked(), ElementsAre("org.notes"));
}

TEST_F(PanelPictures, PicturesThatArriveAfterThePanelsEndHarmNothing) {
  addImage("one", bitmap(0xFF00FF00));
  addFrom("two", "org.notes");
  icons_.holdAnswers();
  open();
  store_->onChange = nullptr;
  store_->onSearchIndexChange = nullptr;
  controller_.reset();
  icons_.answerHeld();
  dispatch_.runQueued();
}

}  // namespace
}  // namespace vantorel
