// SPDX-License-Identifier: MIT
#include <QCursor>
#include <QEnterEvent>
#include <QTest>
#include <QWindow>

#include "chrome/ElasticScrollView.h"
#include "chrome/VantorelPanel.h"
#include "panel/ClipRowView.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

/// What a pointer does that rests while the list moves under it.
class PanelPointer : public HistoryPanelTest {
 protected:
  void SetUp() override { QCursor::setPos(5, 5); }

  /// Lets the pointer come to this place of the row.
  static void moveTo(const ClipRowView& row, QPoint point = {200, 20}) {
    QCursor::setPos(row.mapToGlobal(point));
    QCoreApplication::processEvents();
  }
  void settle() {
    QCoreApplication::processEvents();
    dispatch_.advance(Seconds(1));
  }
  /// The rows drawn as those under the pointer.
  [[nodiscard]] std::vector<std::string> washed() const {
    std::vector<std::string> titles;
    for (auto* row : rows()) {
      QImage image(row->size(), QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::white);
      row->render(&image, {}, {}, QWidget::DrawChildren);
      if (!row->isSelected() && image.pixel(200, 3) != QColor(Qt::white).rgba()) {
        titles.push_back(row->content().title);
      }
    }
    return titles;
  }
  using Titles = std::vector<std::string>;
};

TEST_F(PanelPointer, TheRowUnderThePointerIsMarkedAfterScrolling) {
  addNumbered(20);
  open();
  moveTo(*rows()[3]);
  settle();
  ASSERT_EQ(washed(), Titles{"entry 4"});
  scrollView().scrollTo(2 * 49);
  settle();
  EXPECT_EQ(washed(), Titles{"entry 6"});
  for (int i = 0; i < 12; ++i) press(Qt::Key_Down);
  settle();
  EXPECT_EQ(washed().size(), 1U);
  EXPECT_TRUE(rows()[7]->underMouse() || rows()[8]->underMouse());
  EXPECT_FALSE(rows()[5]->underMouse());
}

TEST_F(PanelPointer, TheRowUnderThePointerIsMarkedWhenTheListHasChanged) {
  addNumbered(20);
  open();
  scrollView().scrollTo(3 * 49);
  moveTo(*rows()[5]);
  settle();
  ASSERT_EQ(washed(), Titles{"entry 6"});
  press(Qt::Key_P, Qt::ControlModifier);  // which brings the list to its top
  settle();
  EXPECT_EQ(washed(), Titles{"entry 3"});
}

TEST_F(PanelPointer, OfARowThatCameToThePointerWaitsForItsMotion) {
  addNumbered(20);
  open();
  moveTo(*rows()[3]);
  settle();
  ASSERT_EQ(previewed(), "entry 4");
  scrollView().scrollTo(2 * 49);
  settle();
  EXPECT_EQ(previewed(), "");
  moveTo(*rows()[5], {201, 20});
  settle();
  EXPECT_EQ(previewed(), "entry 6");
}

/// The pointer rests in the middle of the screen before the panel comes.
class PointerUnderThePanel : public PanelPointer {
 protected:
  void SetUp() override {
    addNumbered(9);
    QCursor::setPos(middle_);
    open();
    enter(middle_);
    settle();
  }
  /// What the window system says of a window that comes to the pointer, or has it come.
  void enter(QPoint pointer) const {
    QEnterEvent event(panel().mapFromGlobal(pointer), panel().mapFromGlobal(pointer), pointer);
    QCoreApplication::sendEvent(panel().windowHandle(), &event);
  }
  QPoint middle_{960, 555};
};

TEST_F(PointerUnderThePanel, MarksNothingAndShowsNothing) {
  EXPECT_EQ(washed(), Titles{});
  EXPECT_EQ(previewed(), "");
  press(Qt::Key_Down);
  settle();
  EXPECT_EQ(washed(), Titles{});
}

TEST_F(PointerUnderThePanel, CountsFromItsFirstMotionOn) {
  QCursor::setPos(middle_ + QPoint(1, 0));
  settle();
  EXPECT_EQ(washed(), Titles{"entry 5"});
  EXPECT_EQ(previewed(), "entry 5");
}

TEST_F(PointerUnderThePanel, CanPressWithoutMoving) {
  QTest::mouseClick(panel().windowHandle(), Qt::LeftButton, {}, panel().mapFromGlobal(middle_));
  EXPECT_EQ(pasted(), "entry 5");
}

TEST_F(PointerUnderThePanel, ThatGrowsOverItAgainIsNotEnteredByIt) {
  QCursor::setPos(middle_ + QPoint(1, 0));
  settle();
  press(Qt::Key_Escape);
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(panel().windowHandle(), &leave);
  enter(middle_ + QPoint(1, 0));
  settle();
  EXPECT_EQ(washed(), Titles{});
  EXPECT_EQ(previewed(), "");
}

}  // namespace
}  // namespace vantorel
