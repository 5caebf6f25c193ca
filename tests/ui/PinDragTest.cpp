// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QTest>

#include "chrome/ShadowDrawing.h"
#include "panel/ClipRowView.h"
#include "panel/PinDragGhost.h"
#include "ui/ClipListTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::Pair;

class PinDragTest : public ClipListTest {
 protected:
  [[nodiscard]] PinDragGhost* ghost() const { return window_.findChild<PinDragGhost*>(); }
  /// The row's picture within the ghost, as it lies in the window.
  [[nodiscard]] QRect card() const {
    constexpr int reach = ShadowDrawing::ofCard.reach;
    return ghost()->geometry().adjusted(reach, reach, -reach, -reach);
  }
  /// How much of what is below the ghost is seen at a point of its card, from 0 to 255.
  [[nodiscard]] int seenThrough(const QPoint& onCard) const {
    const auto on = [&](Qt::GlobalColor ground) {
      QImage image(ghost()->size(), QImage::Format_ARGB32_Premultiplied);
      image.fill(ground);
      ghost()->render(&image, {}, {}, QWidget::DrawChildren);
      return qGreen(image.pixel(onCard + card().topLeft() - ghost()->pos()));
    };
    return on(Qt::white) - on(Qt::black);
  }
  /// Presses on a row and moves far enough to drag it.
  void beginDrag(Uuid id) {
    press(id, {100, 20});
    moveTo(id, {106, 20});
  }

  Uuid one_ = addPin("one");
  Uuid two_ = addPin("two");
  Uuid three_ = addPin("three");
  Uuid rest_ = addText("rest");
};

TEST_F(PinDragTest, BeginsBeyondFivePointsAndPastesNothing) {
  show();
  press(one_, {100, 20});
  moveTo(one_, {105, 20});
  EXPECT_EQ(ghost(), nullptr);
  moveTo(one_, {106, 20});
  EXPECT_NE(ghost(), nullptr);
  release(one_, {106, 20});
  EXPECT_THAT(commands_, IsEmpty());
  EXPECT_EQ(ghost(), nullptr);
}

TEST_F(PinDragTest, ARowThatIsNotPinnedIsPastedByTheSameGesture) {
  show();
  press(rest_, {100, 20});
  moveTo(rest_, {106, 20});
  EXPECT_EQ(ghost(), nullptr);
  release(rest_, {106, 20});
  EXPECT_THAT(commands_, ElementsAre("choose rest"));
}

TEST_F(PinDragTest, DroppedOnTheUpperHalfGoesBefore) {
  show();
  beginDrag(three_);
  moveTo(one_, {100, 10});
  EXPECT_THAT(dropMark(), Optional(Pair(one_, DropPlace::before)));
  release(one_, {100, 10});
  EXPECT_THAT(commands_, ElementsAre("drop three before one"));
  EXPECT_FALSE(dropMark());
}

TEST_F(PinDragTest, DroppedOnTheLowerHalfGoesAfter) {
  show();
  beginDrag(one_);
  moveTo(two_, {100, 40});
  EXPECT_THAT(dropMark(), Optional(Pair(two_, DropPlace::after)));
  moveTo(three_, {100, 40});
  EXPECT_THAT(dropMark(), Optional(Pair(three_, DropPlace::after)));
  release(three_, {100, 40});
  EXPECT_THAT(commands_, ElementsAre("drop one after three"));
}

TEST_F(PinDragTest, FivePinsAreDraggedAsFewerAre) {
  canPinMore_ = false;
  const auto four = addPin("four");
  const auto five = addPin("five");
  show();
  beginDrag(five);
  for (const auto& id : {four, three_, two_, one_}) {
    moveTo(id, {100, 10});
    EXPECT_THAT(dropMark(), Optional(Pair(id, DropPlace::before)));
  }
  moveTo(rest_, {100, 10});
  EXPECT_FALSE(dropMark());
  moveTo(one_, {100, 10});
  release(one_, {100, 10});
  beginDrag(one_);
  moveTo(five, {100, 40});
  release(five, {100, 40});
  EXPECT_THAT(commands_, ElementsAre("drop five before one", "drop one after five"));
}

TEST_F(PinDragTest, DroppedOnItselfOrOnOthersDoesNothing) {
  show();
  beginDrag(one_);
  EXPECT_FALSE(dropMark());
  release(one_, {120, 30});
  beginDrag(one_);
  moveTo(rest_, {100, 10});
  EXPECT_FALSE(dropMark());
  release(rest_, {100, 10});
  beginDrag(one_);
  moveTo(one_, {-150, 20});
  release(one_, {-150, 20});
  EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(PinDragTest, TheRowFollowsThePointerAndStaysFaintWhereItWas) {
  show();
  const auto before = pictureOf(rowOf(one_));
  beginDrag(one_);
  const QPoint start = ghost()->pos();
  moveTo(one_, {116, 50});
  EXPECT_EQ(ghost()->pos() - start, QPoint(10, 30));
  EXPECT_NE(pictureOf(rowOf(one_)), before);
  release(one_, {116, 50});
}

TEST_F(PinDragTest, ItIsHeldWhereItWasPressedHoweverFarTheFirstMotionGoes) {
  show();
  const QPoint start = rowOf(one_).mapTo(&window_, QPoint(0, 0));
  press(one_, {100, 20});
  moveTo(one_, {120, 170});
  EXPECT_EQ(card().topLeft() - start, QPoint(20, 150));
  release(one_, {120, 170});
}

TEST_F(PinDragTest, ItStaysWholeWithinTheWindow) {
  show();
  beginDrag(one_);
  for (const QPoint& point : {QPoint(-9, -9), QPoint(396, 456)}) {
    moveTo(one_, point);
    EXPECT_TRUE(window_.rect().contains(card()));
  }
  release(one_, {-9, -9});
}

TEST_F(PinDragTest, ItIsACardThatNothingShinesThroughWithRoundCornersAndAShadow) {
  show();
  beginDrag(one_);
  moveTo(two_, {100, 40});
  EXPECT_EQ(seenThrough({150, 30}), 0);
  EXPECT_EQ(seenThrough({2, 24}), 0);
  EXPECT_GT(seenThrough({0, 0}), 100) << "no square corners";
  EXPECT_GT(seenThrough({card().width() - 1, 0}), 100);
  EXPECT_LT(seenThrough({150, card().height() + 2}), 250) << "a shadow";
  EXPECT_EQ(seenThrough({150, card().height() + 11}), 255);
  EXPECT_LT(card().width(), rowOf(one_).width() - 20) << "room for the line where it would go";
  release(one_, {-9, -9});
}

TEST_F(PinDragTest, EscapeEndsItAndMeansNothingElse) {
  show();
  list_.select(1);
  beginDrag(one_);
  moveTo(two_, {100, 40});
  pressKey(Qt::Key_Escape);
  EXPECT_EQ(ghost(), nullptr);
  EXPECT_FALSE(dropMark());
  EXPECT_FALSE(rowOf(one_).isSelected());
  EXPECT_TRUE(rowOf(two_).isSelected());
  moveTo(three_, {100, 40});
  EXPECT_EQ(ghost(), nullptr);
  release(three_, {100, 40});
  EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(PinDragTest, AfterItEscapeIsAnOrdinaryKeyAgain) {
  class Keys : public QObject {
   public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
      if (event->type() == QEvent::KeyPress) ++seen;
      return false;
    }
    int seen = 0;
  } keys;
  show();
  window_.windowHandle()->installEventFilter(&keys);
  beginDrag(one_);
  pressKey(Qt::Key_Escape);
  EXPECT_EQ(keys.seen, 0);
  release(one_, {106, 20});
  pressKey(Qt::Key_Escape);
  EXPECT_EQ(keys.seen, 1);
}

TEST_F(PinDragTest, TheOtherButtonEndsItWithoutAMenu) {
  show();
  beginDrag(one_);
  moveTo(two_, {100, 40});
  press(two_, {100, 40}, Qt::RightButton);
  EXPECT_EQ(ghost(), nullptr);
  EXPECT_EQ(menu(), nullptr);
  release(two_, {100, 40}, Qt::RightButton);
  release(two_, {100, 40});
  EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(PinDragTest, AnotherClickAfterItPastesAgain) {
  show();
  beginDrag(one_);
  release(one_, {106, 20});
  click(one_, {100, 20});
  EXPECT_THAT(commands_, ElementsAre("choose one"));
}

TEST_F(PinDragTest, AListThatChangesMeanwhileEndsItCleanly) {
  show();
  beginDrag(one_);
  moveTo(three_, {100, 40});
  std::swap(items_[0], items_[2]);
  show();
  EXPECT_EQ(ghost(), nullptr);
  EXPECT_FALSE(dropMark());
  moveTo(two_, {100, 40});
  release(two_, {100, 40});
  EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(PinDragTest, AListThatIsEmptiedOrHiddenMeanwhileEndsItToo) {
  show();
  beginDrag(one_);
  list_.setEmpty(QStringLiteral("No clips yet"));
  EXPECT_EQ(ghost(), nullptr);
  show();
  release(one_, {106, 20});
  beginDrag(one_);
  window_.hide();
  EXPECT_EQ(ghost(), nullptr);
  show();
  release(one_, {106, 20});
  EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(PinDragTest, TakesThePreviewAwayAndNoneComesBeforeTheNextPress) {
  show();
  list_.showPreview(indexOf(one_));
  ASSERT_NE(preview(), nullptr);
  beginDrag(one_);
  EXPECT_EQ(preview(), nullptr);
  release(one_, {106, 20});
  list_.showPreview(indexOf(one_));
  EXPECT_EQ(preview(), nullptr);
  press(one_, {100, 20});
  release(one_, {100, 20});
  list_.showPreview(indexOf(one_));
  EXPECT_NE(preview(), nullptr);
}

TEST_F(PinDragTest, NearAnEdgeTheListScrollsTowardsPinsThatAreOutOfSight) {
  for (int i = 0; i < 12; ++i) addText("more");
  show();
  scrollView_.scrollTo(60);
  press(three_, {100, 20});
  moveTo(three_, {100, -60});
  EXPECT_EQ(scrollView_.offset(), 60);
  const int top = static_cast<int>(scrollView_.offset()) + 10;
  const QPoint nearTop(100, top - rowOf(three_).y());
  moveTo(three_, nearTop);
  wait(0.05);
  EXPECT_LT(scrollView_.offset(), 60);
  wait(1);
  EXPECT_EQ(scrollView_.offset(), 0);
  EXPECT_THAT(dropMark(), Optional(Pair(one_, DropPlace::before)));
  EXPECT_EQ(dispatch_.timerCount(), 0U) << "There is nothing above to scroll to";
  release(one_, {100, 10});
  EXPECT_THAT(commands_, ElementsAre("drop three before one"));
}

TEST_F(PinDragTest, LetGoNearAnEdgeTheListRests) {
  for (int i = 0; i < 12; ++i) addText("more");
  show();
  scrollView_.scrollTo(60);
  press(three_, {100, 20});
  moveTo(three_, {100, static_cast<int>(scrollView_.offset()) + 10 - rowOf(three_).y()});
  release(three_, {100, static_cast<int>(scrollView_.offset()) + 10 - rowOf(three_).y()});
  EXPECT_EQ(ghost(), nullptr);
  wait(1);
  EXPECT_EQ(scrollView_.offset(), 60);
}

}  // namespace
}  // namespace vantorel
