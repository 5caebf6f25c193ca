// SPDX-License-Identifier: MIT
#include "panel/RowPreview.h"

#include <gtest/gtest.h>

#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

class RowPreviewTest : public testing::Test {
 protected:
  void enterRow(Uuid id, ClipKind kind = ClipKind::text) {
    preview_->rowHoverChanged(id, Hover::entered, previewStart(kind));
  }
  void leaveRow(Uuid id, ClipKind kind = ClipKind::text) {
    preview_->rowHoverChanged(id, Hover::exited, previewStart(kind));
  }
  void wait(double seconds) { dispatch_.advance(Seconds(seconds)); }
  /// The preview on stage.
  [[nodiscard]] std::optional<Uuid> onStage() const {
    EXPECT_EQ(stage_, preview_->shown());
    return stage_;
  }

  ManualDispatch dispatch_;
  Uuid one_ = Uuid::random();
  Uuid two_ = Uuid::random();
  bool willing_ = true;
  std::optional<Uuid> stage_;
  std::unique_ptr<RowPreview> preview_ =
      std::make_unique<RowPreview>(dispatch_, RowPreview::Stage{[this](Uuid id) {
                                                                  if (willing_) stage_ = id;
                                                                  return willing_;
                                                                },
                                                                [this] { stage_.reset(); }});
};

TEST_F(RowPreviewTest, ComesWhenThePointerRestsOnATextRow) {
  enterRow(one_);
  wait(0.29);
  EXPECT_FALSE(onStage());
  EXPECT_EQ(preview_->pending(), one_);
  wait(0.01);
  EXPECT_EQ(onStage(), one_);
  EXPECT_FALSE(preview_->pending());
}

TEST_F(RowPreviewTest, OfAPictureComesFromItsThumbnailOnly) {
  for (const auto kind : {ClipKind::image, ClipKind::files}) {
    enterRow(one_, kind);
    wait(1);
    EXPECT_FALSE(onStage());
    preview_->thumbnailHoverChanged(one_, Hover::entered);
    wait(0.3);
    EXPECT_EQ(onStage(), one_);
    preview_->hidePreview();
  }
}

TEST_F(RowPreviewTest, OfAPictureStaysWhileThePointerIsOnTheRow) {
  enterRow(one_, ClipKind::image);
  preview_->thumbnailHoverChanged(one_, Hover::entered);
  wait(0.3);
  preview_->thumbnailHoverChanged(one_, Hover::exited);
  wait(1);
  EXPECT_EQ(onStage(), one_);
  leaveRow(one_, ClipKind::image);
  wait(0.35);
  EXPECT_FALSE(onStage());
}

TEST_F(RowPreviewTest, APassingPointerShowsNothing) {
  enterRow(one_);
  wait(0.29);
  leaveRow(one_);
  EXPECT_FALSE(preview_->pending());
  wait(1);
  EXPECT_FALSE(onStage());
  enterRow(two_, ClipKind::image);
  preview_->thumbnailHoverChanged(two_, Hover::entered);
  wait(0.29);
  preview_->thumbnailHoverChanged(two_, Hover::exited);
  wait(1);
  EXPECT_FALSE(onStage());
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(RowPreviewTest, GoesSomeTimeAfterThePointerHasLeft) {
  enterRow(one_);
  wait(0.3);
  leaveRow(one_);
  wait(0.34);
  EXPECT_EQ(onStage(), one_);
  wait(0.01);
  EXPECT_FALSE(onStage());
}

TEST_F(RowPreviewTest, StaysWhenThePointerGoesIntoItAndBack) {
  enterRow(one_);
  wait(0.3);
  leaveRow(one_);
  wait(0.34);
  preview_->previewHoverChanged(Hover::entered);
  wait(5);
  EXPECT_EQ(onStage(), one_);
  preview_->previewHoverChanged(Hover::exited);
  wait(0.34);
  enterRow(one_);
  wait(5);
  EXPECT_EQ(onStage(), one_);
  leaveRow(one_);
  wait(0.35);
  EXPECT_FALSE(onStage());
}

TEST_F(RowPreviewTest, StaysWhenItIsEnteredBeforeItsRowIsLeft) {
  enterRow(one_);
  wait(0.3);
  preview_->previewHoverChanged(Hover::entered);
  leaveRow(one_);
  wait(5);
  EXPECT_EQ(onStage(), one_);
}

TEST_F(RowPreviewTest, GoesWhenThePointerLeavesItForElsewhere) {
  enterRow(one_);
  wait(0.3);
  leaveRow(one_);
  preview_->previewHoverChanged(Hover::entered);
  preview_->previewHoverChanged(Hover::exited);
  wait(0.35);
  EXPECT_FALSE(onStage());
}

TEST_F(RowPreviewTest, OfTheNextRowTakesThePlaceOfTheLast) {
  enterRow(one_);
  wait(0.3);
  leaveRow(one_);
  enterRow(two_);
  wait(0.29);
  EXPECT_EQ(onStage(), one_);
  wait(0.01);
  EXPECT_EQ(onStage(), two_);
  wait(1);
  EXPECT_EQ(onStage(), two_);
}

TEST_F(RowPreviewTest, EnteringAnotherRowDoesNotKeepIt) {
  enterRow(one_);
  wait(0.3);
  leaveRow(one_);
  enterRow(two_, ClipKind::image);
  wait(0.35);
  EXPECT_FALSE(onStage());
}

TEST_F(RowPreviewTest, EnteringComesBeforeLeavingToo) {
  enterRow(one_);
  enterRow(two_);
  leaveRow(one_);
  wait(0.3);
  EXPECT_EQ(onStage(), two_);
}

TEST_F(RowPreviewTest, AskedForComesAtOnceInsteadOfTheOneToCome) {
  enterRow(one_);
  wait(0.1);
  preview_->showPreview(one_);
  EXPECT_EQ(onStage(), one_);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
  preview_->showPreview(two_);
  EXPECT_EQ(onStage(), two_);
}

TEST_F(RowPreviewTest, ThatIsShownIsNotShownAgain) {
  preview_->showPreview(one_);
  stage_.reset();
  preview_->showPreview(one_);
  EXPECT_FALSE(stage_);
}

TEST_F(RowPreviewTest, TakenAwayNeverComes) {
  enterRow(one_);
  preview_->hidePreview();
  EXPECT_FALSE(preview_->pending());
  wait(1);
  EXPECT_FALSE(onStage());
  preview_->showPreview(one_);
  preview_->hidePreview();
  EXPECT_FALSE(onStage());
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(RowPreviewTest, ThatCannotBeShownIsNotThere) {
  willing_ = false;
  enterRow(one_);
  wait(0.3);
  EXPECT_FALSE(onStage());
  willing_ = true;
  preview_->showPreview(one_);
  willing_ = false;
  preview_->showPreview(two_);
  EXPECT_EQ(onStage(), one_);
}

TEST_F(RowPreviewTest, ClosedFromOutsideIsForgotten) {
  enterRow(one_);
  wait(0.3);
  preview_->previewHoverChanged(Hover::entered);
  stage_.reset();
  preview_->previewClosed();
  preview_->previewHoverChanged(Hover::exited);
  EXPECT_FALSE(onStage());
  EXPECT_EQ(dispatch_.timerCount(), 0U);
  preview_->showPreview(one_);
  EXPECT_EQ(onStage(), one_);
}

TEST_F(RowPreviewTest, OfAnEntryThatLeavesItsRowGoesWithIt) {
  enterRow(one_);
  preview_->forget(one_);
  wait(1);
  EXPECT_FALSE(onStage());
  preview_->showPreview(one_);
  preview_->forget(two_);
  EXPECT_EQ(onStage(), one_);
  preview_->forget(one_);
  EXPECT_FALSE(onStage());
}

TEST_F(RowPreviewTest, NothingComesAfterItsEnd) {
  enterRow(one_);
  preview_.reset();
  wait(1);
  EXPECT_FALSE(stage_);
}

}  // namespace
}  // namespace vantorel
