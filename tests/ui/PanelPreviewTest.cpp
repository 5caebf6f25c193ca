// SPDX-License-Identifier: MIT
#include <QtTest/qtestspontaneevent.h>
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QWheelEvent>

#include "chrome/ElasticScrollView.h"
#include "chrome/VantorelPanel.h"
#include "panel/ClipRowView.h"
#include "panel/SearchField.h"
#include "panel/TextPreview.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

/// When the preview in the whole panel comes and goes.
class PanelPreview : public HistoryPanelTest {
 protected:
  void SetUp() override { QCursor::setPos(5, 5); }

  [[nodiscard]] bool isInSight(const ClipRowView& row) const {
    return row.y() >= scrollView().offset() &&
           row.geometry().bottom() < scrollView().offset() + scrollView().height();
  }
  [[nodiscard]] static TextPreview* preview() {
    const auto widgets = QApplication::allWidgets();
    for (auto* widget : widgets) {
      auto* text = qobject_cast<TextPreview*>(widget);
      if (text != nullptr && text->isVisible()) return text;
    }
    return nullptr;
  }
  /// By one notch, downwards, as the window system tells it.
  static void turnWheelOver(QWidget& widget) {
    const QPointF place(20, 20);
    QWheelEvent turn(place, widget.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&turn);
    qApp->notify(&widget, &turn);
  }
  static void moveTo(const ClipRowView& row) {
    QCursor::setPos(row.mapToGlobal(QPoint(200, 20)));
    QCoreApplication::processEvents();
  }
  using Titles = std::vector<std::string>;
};

TEST_F(PanelPreview, SpaceShowsItAndSpaceTakesItAway) {
  addTexts({"one", "two"});
  open();
  press(Qt::Key_Space);
  EXPECT_EQ(previewed(), "one");
  press(Qt::Key_Space);
  EXPECT_EQ(previewed(), "");
  press(Qt::Key_Space);
  EXPECT_EQ(previewed(), "one");
}

TEST_F(PanelPreview, EscapeTakesItAwayFirst) {
  addTexts({"one"});
  open();
  press(Qt::Key_Space);
  press(Qt::Key_Escape);
  EXPECT_EQ(previewed(), "");
  EXPECT_TRUE(controller_->isVisible());
  press(Qt::Key_Escape);
  EXPECT_FALSE(controller_->isVisible());
}

TEST_F(PanelPreview, GoesAlongWithTheSelection) {
  addNumbered(20);
  open();
  press(Qt::Key_Space);
  press(Qt::Key_Down);
  EXPECT_EQ(previewed(), "entry 2");
  for (int i = 0; i < 10; ++i) press(Qt::Key_Down);
  EXPECT_EQ(previewed(), "entry 12");
  press(Qt::Key_Up);
  EXPECT_EQ(previewed(), "entry 11");
  press(Qt::Key_Space);
  press(Qt::Key_Up);
  EXPECT_EQ(previewed(), "");
}

TEST_F(PanelPreview, SpaceBringsTheSelectionIntoSightFirst) {
  addNumbered(20);
  open();
  scrollView().scrollTo(400);
  press(Qt::Key_Space);
  EXPECT_TRUE(isInSight(*rows()[0]));
  EXPECT_EQ(previewed(), "entry 1");
}

TEST_F(PanelPreview, GoesWhenTheListScrolls) {
  addNumbered(20);
  open();
  press(Qt::Key_Space);
  scrollView().scrollTo(10);
  EXPECT_EQ(previewed(), "");
}

TEST_F(PanelPreview, GoesWhenThePanelIsMoved) {
  addTexts({"one"});
  open();
  press(Qt::Key_Space);
  QCoreApplication::processEvents();
  EXPECT_EQ(previewed(), "one") << "What the window system says late is no news";
  panel().move(panel().pos() + QPoint(0, 40));
  EXPECT_EQ(previewed(), "");
}

TEST_F(PanelPreview, GoesWhenTheSearchIsOpenedOrUsed) {
  addTexts({"one", "two"});
  open();
  press(Qt::Key_Space);
  press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(previewed(), "");
  press(Qt::Key_Tab);
  press(Qt::Key_Space);
  EXPECT_EQ(previewed(), "one");
  searchField().setFocus();
  type("o");
  EXPECT_EQ(titles().size(), 2U);
  EXPECT_EQ(previewed(), "");
}

TEST_F(PanelPreview, GoesWithEveryNewLookAtTheHistory) {
  addTexts({"one", "two"});
  open();
  press(Qt::Key_Space);
  press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(titles(), (Titles{"one", "two"}));
  EXPECT_EQ(previewed(), "");
}

TEST_F(PanelPreview, CtrlCCopiesWhatIsMarkedThereAlsoWhileTyping) {
  addTexts({"one", "two"});
  auto& clipboard = *QGuiApplication::clipboard();
  open();
  press(Qt::Key_Space);
  preview()->selectAll();
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard.text(), QStringLiteral("one"));
  EXPECT_EQ(previewed(), "one");
  type("tw");
  moveTo(*rows()[0]);
  dispatch_.advance(Seconds(0.3));
  preview()->selectAll();
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard.text(), QStringLiteral("two"));
  searchField().selectAll();
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard.text(), QStringLiteral("tw")) << "The field's own comes first";
}

TEST_F(PanelPreview, AnEmptyListStaysWhereItIs) {
  open();
  turnWheelOver(*panel().childAt(100, 30));
  EXPECT_EQ(scrollView().rubberBandOffset(), 0);
}

TEST_F(PanelPreview, AListIsScrolledByThreeRowsANotch) {
  accessibility_.setReduceMotion(true);
  addNumbered(20);
  open();
  turnWheelOver(*rows()[0]);
  EXPECT_EQ(scrollView().offset(), 3 * 49);
}

TEST_F(PanelPreview, OneThatWasToComeDoesNotComeAfterTyping) {
  addTexts({"one", "two"});
  open();
  moveTo(*rows()[1]);
  dispatch_.advance(Seconds(0.2));
  type("o");
  dispatch_.advance(Seconds(1));
  EXPECT_EQ(previewed(), "");
}

}  // namespace
}  // namespace vantorel
