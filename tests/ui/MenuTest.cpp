#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>

#include "chrome/PopoverWindow.h"
#include "chrome/ReadableGlassView.h"
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

TEST_F(PopoverTest, AppearsAtOnceForWhoWantsLittleMotion) {
  accessibility_.setReduceMotion(true);
  popover_.show({100, 100, 300, 40}, PopoverEdge::right);
  EXPECT_EQ(popover_.windowOpacity(), 1);
}

}  // namespace
}  // namespace vantorel
