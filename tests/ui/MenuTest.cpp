// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QHelpEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>

#include "chrome/PopoverWindow.h"
#include "chrome/ReadableGlassView.h"
#include "chrome/ToolTipPanel.h"
#include "chrome/VantorelMenu.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

class MenuTest : public testing::Test {
 protected:
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  VantorelMenu menu_{accessibility_, &backdrops_};
};

TEST_F(MenuTest, OpensWithoutWaitingAndTellsOnceWhenItHasGone) {
  int closed = 0;
  int chosen = 0;
  menu_.onClosed = [&] { ++closed; };
  QObject::connect(menu_.addAction("First"), &QAction::triggered, [&] { ++chosen; });
  menu_.popup({40, 40});
  EXPECT_TRUE(menu_.isVisible());
  EXPECT_EQ(closed, 0);
  QTest::keyClick(&menu_, Qt::Key_Down);
  QTest::keyClick(&menu_, Qt::Key_Return);
  EXPECT_FALSE(menu_.isVisible());
  EXPECT_EQ(chosen, 1);
  EXPECT_EQ(closed, 1);
}

TEST_F(MenuTest, TheKeysBesideATitleChooseItsRow) {
  int quit = 0;
  int closed = 0;
  menu_.onClosed = [&] { ++closed; };
  menu_.addAction("First");
  auto* row = menu_.addAction("Quit");
  row->setShortcut(QKeySequence("Ctrl+q"));
  QObject::connect(row, &QAction::triggered, [&] { ++quit; });
  menu_.popup({40, 40});
  QTest::keyClick(&menu_, Qt::Key_Q);
  EXPECT_EQ(quit, 0);
  QTest::keyClick(&menu_, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quit, 1);
  EXPECT_EQ(closed, 1);
  EXPECT_FALSE(menu_.isVisible());
  row->setEnabled(false);
  menu_.popup({40, 40});
  QTest::keyClick(&menu_, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quit, 1);
}

TEST_F(MenuTest, TheKeysBesideATitleChooseItsRowFromASubmenuToo) {
  int quit = 0;
  int closed = 0;
  menu_.onClosed = [&] { ++closed; };
  auto& submenu = menu_.addSubmenu("More");
  submenu.addAction("Inner");
  auto* row = menu_.addAction("Quit");
  row->setShortcut(QKeySequence("Ctrl+q"));
  QObject::connect(row, &QAction::triggered, [&] { quit += closed; });
  menu_.popup({40, 40});
  QTest::keyClick(&menu_, Qt::Key_Down);
  QTest::keyClick(&menu_, Qt::Key_Right);
  ASSERT_TRUE(submenu.isVisible());
  QTest::keyClick(&submenu, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quit, 1) << "after the menu has gone";
  EXPECT_FALSE(submenu.isVisible());
  EXPECT_FALSE(menu_.isVisible());
  EXPECT_EQ(closed, 1);
}

TEST_F(MenuTest, AWordAboutARowGoesWhenThePointerLeavesTheRow) {
  auto* first = menu_.addAction("First");
  first->setToolTip("What the first is for");
  auto* second = menu_.addAction("Second");
  menu_.popup({40, 40});
  const auto rest = [this](const QPoint& at) {
    QHelpEvent help(QEvent::ToolTip, at, menu_.mapToGlobal(at));
    QApplication::sendEvent(&menu_, &help);
  };
  const auto moveTo = [this](const QPoint& at) {
    QMouseEvent move(QEvent::MouseMove, QPointF(at), menu_.mapToGlobal(QPointF(at)), Qt::NoButton,
                     {}, {});
    QApplication::sendEvent(&menu_, &move);
  };
  const auto word = [this] {
    const auto panels = menu_.findChildren<ToolTipPanel*>();
    return std::any_of(panels.begin(), panels.end(),
                       [](const ToolTipPanel* panel) { return panel->isVisible(); });
  };
  const auto there = menu_.actionGeometry(first).center();
  const auto below = menu_.actionGeometry(second).center();
  rest(there);
  ASSERT_TRUE(word());
  moveTo(there + QPoint(2, 1));
  EXPECT_TRUE(word());
  moveTo(below);
  EXPECT_FALSE(word());
  rest(there);
  ASSERT_TRUE(word());
  rest(below);
  EXPECT_FALSE(word()) << "that row has nothing to say";
  menu_.close();
}

TEST_F(MenuTest, EscapeClosesItWithoutAChoice) {
  int closed = 0;
  int chosen = 0;
  menu_.onClosed = [&] { ++closed; };
  QObject::connect(menu_.addAction("First"), &QAction::triggered, [&] { ++chosen; });
  menu_.popup({40, 40});
  QTest::keyClick(&menu_, Qt::Key_Escape);
  EXPECT_EQ(chosen, 0);
  EXPECT_EQ(closed, 1);
}

TEST_F(MenuTest, IsShapedWhereNothingIsSeenThroughWindows) {
  backdrops_.setAvailable(Backdrop::none);
  menu_.addAction("First");
  menu_.popup({40, 40});
  EXPECT_FALSE(menu_.mask().isEmpty());
  EXPECT_FALSE(menu_.mask().contains(QPoint(0, 0)));
  EXPECT_TRUE(menu_.mask().contains(menu_.rect().center()));
  menu_.close();
}

TEST_F(MenuTest, ASubmenuIsOfTheSameKindAndBelongsToIt) {
  auto& submenu = menu_.addSubmenu("More");
  submenu.addAction("Inner");
  EXPECT_EQ(submenu.parent(), &menu_);
  EXPECT_EQ(menu_.actions().size(), 1);
  EXPECT_EQ(menu_.actions().first()->text(), "More");
}

TEST_F(MenuTest, TimersGoOnWhileItIsOpen) {
  menu_.addAction("First");
  menu_.popup({40, 40});
  bool ran = false;
  QTimer::singleShot(0, &menu_, [&] { ran = true; });
  EXPECT_TRUE(QTest::qWaitFor([&] { return ran; }));
  EXPECT_TRUE(menu_.isVisible());
  menu_.close();
}

TEST_F(MenuTest, ADisabledRowCannotBeChosen) {
  int chosen = 0;
  auto* disabled = menu_.addAction("First");
  disabled->setEnabled(false);
  QObject::connect(disabled, &QAction::triggered, [&] { ++chosen; });
  QObject::connect(menu_.addAction("Second"), &QAction::triggered, [&] { chosen += 10; });
  menu_.popup({40, 40});
  QTest::mouseClick(&menu_, Qt::LeftButton, {}, menu_.actionGeometry(disabled).center());
  EXPECT_EQ(chosen, 0);
  EXPECT_TRUE(menu_.isVisible());
  QTest::keyClick(&menu_, Qt::Key_Down);
  QTest::keyClick(&menu_, Qt::Key_Return);
  EXPECT_EQ(chosen, 10);
}

TEST_F(MenuTest, AMarkStandsWhereReadingBegins) {
  menu_.addAction("A row with a long enough title")->setCheckable(true);
  const auto inked = [this] {
    const auto image = menu_.grab().toImage();
    const QRect row = menu_.actionGeometry(menu_.actions().first());
    const auto dark = [&](int from, int to) {
      for (int x = from; x < to; ++x) {
        for (int y = row.top(); y < row.bottom(); ++y) {
          if (image.pixelColor(x, y).lightness() < 100) return true;
        }
      }
      return false;
    };
    return std::pair(dark(row.left(), row.left() + 20), dark(row.right() - 20, row.right()));
  };
  menu_.popup({40, 40});
  EXPECT_EQ(inked(), std::pair(false, false));
  menu_.actions().first()->setChecked(true);
  EXPECT_EQ(inked(), std::pair(true, false));
  menu_.setLayoutDirection(Qt::RightToLeft);
  EXPECT_EQ(inked(), std::pair(false, true));
  menu_.close();
}

TEST_F(MenuTest, ScreenReadersFindTheMenuAndItsRows) {
  menu_.addAction("First && last");
  menu_.popup({40, 40});
  auto* accessible = QAccessible::queryAccessibleInterface(&menu_);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::PopupMenu);
  ASSERT_EQ(accessible->childCount(), 1);
  EXPECT_EQ(accessible->child(0)->role(), QAccessible::MenuItem);
  EXPECT_EQ(accessible->child(0)->text(QAccessible::Name), "First & last");
  menu_.close();
}

TEST_F(MenuTest, RowsHaveRoomForTheirTitles) {
  auto* shortRow = menu_.addAction("A");
  auto* longRow = menu_.addAction("A title that is a good deal longer");
  menu_.popup({40, 40});
  EXPECT_EQ(menu_.actionGeometry(shortRow).height(), menu_.actionGeometry(longRow).height());
  EXPECT_GT(menu_.actionGeometry(longRow).width(),
            menu_.fontMetrics().horizontalAdvance(longRow->text()));
  menu_.close();
}

class PopoverTest : public testing::Test {
 protected:
  ManualDispatch dispatch_;
  FakeScreens screens_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  PopoverWindow popover_{
      "Preview", {200, 100}, 14, ChromeServices{dispatch_, screens_, accessibility_, &backdrops_}};
};

TEST_F(PopoverTest, StandsBesideItsAnchorAndTakesNoKeyboard) {
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  EXPECT_TRUE(popover_.isVisible());
  EXPECT_EQ(popover_.geometry(), QRect(408, 70, 200, 100));
  EXPECT_TRUE(popover_.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
  EXPECT_EQ(popover_.windowTitle(), "Preview");
}

TEST_F(PopoverTest, FadesInWhereMotionIsWelcome) {
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  EXPECT_LT(popover_.windowOpacity(), 1);
  EXPECT_TRUE(QTest::qWaitFor([this] { return popover_.windowOpacity() == 1; }));
}

TEST_F(PopoverTest, IsWholeAtOnceWhereNothingIsSeenThroughIt) {
  backdrops_.setAvailable(Backdrop::none);
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  EXPECT_EQ(popover_.windowOpacity(), 1);
}

TEST_F(PopoverTest, StandsOnTheScreenOfItsAnchor) {
  screens_.setScreens(
      {{{0, 0, 1000, 800}, {0, 0, 1000, 800}, 1}, {{1000, 0, 1000, 800}, {1000, 0, 1000, 760}, 1}});
  popover_.show({1500, 700, 300, 40}, PopoverEdge::left);
  EXPECT_EQ(popover_.geometry(), QRect(1292, 654, 200, 100));
}

TEST_F(PopoverTest, TellsWhenTheDesktopHasTakenItAwayButNotWhenItIsHidden) {
  int closed = 0;
  popover_.onClosed = [&] { ++closed; };
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  popover_.hide();
  EXPECT_EQ(closed, 0);
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  QCloseEvent event;
  QApplication::sendEvent(popover_.windowHandle(), &event);
  EXPECT_EQ(closed, 1);
  EXPECT_FALSE(popover_.isVisible());
}

TEST_F(PopoverTest, LetsTheMouseSelectAndScroll) {
  auto* text = new QPlainTextEdit(&popover_.glass());
  text->setReadOnly(true);
  text->setGeometry(popover_.rect());
  text->setPlainText(QStringLiteral("one\n").repeated(50));
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  QTest::mousePress(text->viewport(), Qt::LeftButton, {}, {2, 10});
  QTest::mouseMove(text->viewport(), {60, 60});
  QMouseEvent drag(QEvent::MouseMove, QPointF(60, 60),
                   text->viewport()->mapToGlobal(QPointF(60, 60)), Qt::NoButton, Qt::LeftButton,
                   {});
  QApplication::sendEvent(text->viewport(), &drag);
  QTest::mouseRelease(text->viewport(), Qt::LeftButton, {}, {60, 60});
  EXPECT_FALSE(text->textCursor().selectedText().isEmpty());
  QWheelEvent wheel(QPointF(50, 50), text->mapToGlobal(QPointF(50, 50)), {}, {0, -240},
                    Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(text->viewport(), &wheel);
  EXPECT_GT(text->verticalScrollBar()->value(), 0);
}

TEST_F(PopoverTest, AppearsAtOnceForWhoWantsLittleMotion) {
  accessibility_.setReduceMotion(true);
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  EXPECT_EQ(popover_.windowOpacity(), 1);
}

}  // namespace
}  // namespace vantorel
