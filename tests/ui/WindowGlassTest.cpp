// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QTest>
#include <QWindow>

#include "chrome/PopoverWindow.h"
#include "chrome/ReadableGlassView.h"
#include "chrome/ShadowDrawing.h"
#include "chrome/SheetWindow.h"
#include "chrome/ToastPanel.h"
#include "chrome/VantorelMenu.h"
#include "chrome/VantorelPanel.h"
#include "chrome/VantorelTheme.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

bool contains(const std::vector<PixelRect>& pixels, int x, int y) {
  for (const auto& each : pixels) {
    if (QRect(each.x, each.y, each.width, each.height).contains(x, y)) return true;
  }
  return false;
}

class WindowGlassTest : public testing::Test {
 protected:
  [[nodiscard]] std::vector<PixelRect> blurred(const QWidget& window) const {
    return backdrops_.blurred(window.internalWinId());
  }
  static int alphaInTheMiddle(QWidget& window) {
    QImage image(window.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    window.render(&image, {}, {}, QWidget::DrawChildren);
    return qAlpha(image.pixel(window.width() / 2, window.height() - 4));
  }
  static constexpr int behindVeil(double alpha) { return static_cast<int>(alpha * 255 + 0.5); }

  ManualDispatch dispatch_;
  FakeScreens screens_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  ChromeServices services_{dispatch_, screens_, accessibility_, &backdrops_};
  VantorelPanel panel_{"Test", {200, 100}, 18, accessibility_, &backdrops_};
};

TEST_F(WindowGlassTest, WithinItsRoundedOutlineThePanelIsBlurred) {
  backdrops_.setAvailable(Backdrop::blurrable);
  panel_.makeKeyAndOrderFront();
  const auto pixels = blurred(panel_);
  const int right = static_cast<int>(panel_.width() * panel_.devicePixelRatioF()) - 1;
  EXPECT_TRUE(contains(pixels, right / 2, 0));
  EXPECT_TRUE(contains(pixels, 0, 50));
  EXPECT_TRUE(contains(pixels, right, 50));
  EXPECT_FALSE(contains(pixels, 0, 0));
  EXPECT_FALSE(contains(pixels, right, 0));
  EXPECT_FALSE(contains(pixels, right, 99));
  EXPECT_NEAR(alphaInTheMiddle(panel_), behindVeil(0.886), 2);
}

TEST_F(WindowGlassTest, TheBlurFollowsTheSize) {
  backdrops_.setAvailable(Backdrop::blurrable);
  panel_.makeKeyAndOrderFront();
  EXPECT_FALSE(contains(blurred(panel_), 100, 250));
  panel_.resize(200, 300);
  EXPECT_TRUE(contains(blurred(panel_), 100, 250));
  EXPECT_FALSE(contains(blurred(panel_), 0, 299));
}

TEST_F(WindowGlassTest, NothingIsAskedOfACompositorThatCannotBlur) {
  panel_.makeKeyAndOrderFront();
  panel_.resize(200, 300);
  panel_.hide();
  EXPECT_EQ(backdrops_.requests(), 0);
}

TEST_F(WindowGlassTest, WithoutBackdropsThePanelIsOpaque) {
  VantorelPanel alone("Alone", {200, 100}, 18, accessibility_, nullptr);
  alone.makeKeyAndOrderFront();
  EXPECT_FALSE(alone.mask().isEmpty());
  EXPECT_EQ(alphaInTheMiddle(alone), 255);
}

TEST_F(WindowGlassTest, AShownPanelFollowsTheCompositor) {
  panel_.makeKeyAndOrderFront();
  EXPECT_NEAR(alphaInTheMiddle(panel_), behindVeil(1), 2);
  backdrops_.setAvailable(Backdrop::none);
  EXPECT_FALSE(panel_.mask().contains(QPoint(0, 0)));
  EXPECT_FALSE(panel_.mask().isEmpty());
  EXPECT_EQ(alphaInTheMiddle(panel_), 255);
  backdrops_.setAvailable(Backdrop::blurrable);
  EXPECT_TRUE(panel_.mask().isEmpty());
  EXPECT_FALSE(blurred(panel_).empty());
  EXPECT_NEAR(alphaInTheMiddle(panel_), behindVeil(0.886), 2);
  backdrops_.setAvailable(Backdrop::translucent);
  EXPECT_TRUE(blurred(panel_).empty());
  EXPECT_NEAR(alphaInTheMiddle(panel_), behindVeil(1), 2);
}

TEST_F(WindowGlassTest, AShownPanelFollowsTheUsersWishForLessTransparency) {
  backdrops_.setAvailable(Backdrop::blurrable);
  panel_.makeKeyAndOrderFront();
  accessibility_.setReduceTransparency(true);
  EXPECT_EQ(alphaInTheMiddle(panel_), 255);
  EXPECT_TRUE(blurred(panel_).empty());
  EXPECT_TRUE(panel_.mask().isEmpty()) << "corners stay smooth";
  accessibility_.setReduceTransparency(false);
  EXPECT_FALSE(blurred(panel_).empty());
}

TEST_F(WindowGlassTest, AHiddenPanelLearnsOfChangesWhenItIsShown) {
  panel_.makeKeyAndOrderFront();
  panel_.hide();
  backdrops_.setAvailable(Backdrop::blurrable);
  EXPECT_EQ(backdrops_.requests(), 0);
  panel_.makeKeyAndOrderFront();
  EXPECT_FALSE(blurred(panel_).empty());
}

class WindowShadowTest : public WindowGlassTest {
 protected:
  WindowShadowTest() {
    panel_.setGeometry(300, 200, 200, 100);
    panel_.makeKeyAndOrderFront();
    EXPECT_TRUE(QTest::qWaitFor([] { return shadow() != nullptr; }));
  }
  [[nodiscard]] static QWindow* shadow() {
    const auto windows = QGuiApplication::topLevelWindows();
    for (auto* window : windows) {
      if (window->title() == "Shadow" && window->isVisible()) return window;
    }
    return nullptr;
  }
  [[nodiscard]] static int alphaAt(const QPoint& fromPanel) {
    constexpr int reach = ShadowDrawing::ofWindow.reach;
    QImage image(200 + 2 * reach, 100 + 2 * reach, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    ShadowDrawing::draw(painter, image.size(), ShadowDrawing::tile(ShadowDrawing::ofWindow, 18, 1));
    painter.end();
    return qAlpha(image.pixel(fromPanel + QPoint(reach, reach)));
  }
};

TEST_F(WindowShadowTest, ThePanelHasOneAroundItThatIsNoPartOfIt) {
  ASSERT_NE(shadow(), nullptr);
  constexpr int reach = ShadowDrawing::ofWindow.reach;
  EXPECT_EQ(shadow()->geometry(), QRect(300, 200, 200, 100).adjusted(-reach, -reach, reach, reach));
  EXPECT_EQ(panel_.geometry(), QRect(300, 200, 200, 100));
  EXPECT_TRUE(shadow()->flags().testFlag(Qt::WindowTransparentForInput));
  EXPECT_TRUE(shadow()->flags().testFlag(Qt::WindowDoesNotAcceptFocus));
  EXPECT_EQ(backdrops_.below(panel_.internalWinId()), shadow()->winId());
}

TEST_F(WindowShadowTest, ItFollowsThePanel) {
  panel_.setGeometry(310, 190, 200, 300);
  QCoreApplication::processEvents();
  constexpr int reach = ShadowDrawing::ofWindow.reach;
  EXPECT_EQ(shadow()->geometry(), QRect(310, 190, 200, 300).adjusted(-reach, -reach, reach, reach));
  panel_.hide();
  EXPECT_EQ(shadow(), nullptr);
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(QTest::qWaitFor([] { return shadow() != nullptr; }));
}

TEST_F(WindowShadowTest, ItIsKeptForTheNextShowing) {
  const QPointer<QWindow> first = shadow();
  panel_.hide();
  EXPECT_EQ(shadow(), nullptr);
  panel_.setGeometry(320, 220, 200, 120);
  panel_.makeKeyAndOrderFront();
  EXPECT_TRUE(QTest::qWaitFor([] { return shadow() != nullptr; }));
  EXPECT_EQ(shadow(), first);
  constexpr int reach = ShadowDrawing::ofWindow.reach;
  EXPECT_EQ(shadow()->geometry(), QRect(320, 220, 200, 120).adjusted(-reach, -reach, reach, reach));
  EXPECT_EQ(backdrops_.below(panel_.internalWinId()), shadow()->winId());
}

TEST_F(WindowShadowTest, ThereIsNoneWhereNothingIsSeenThroughOrTheCompositorShades) {
  backdrops_.setShadesWindows(true);
  EXPECT_EQ(shadow(), nullptr);
  backdrops_.setShadesWindows(false);
  EXPECT_NE(shadow(), nullptr);
  backdrops_.setAvailable(Backdrop::none);
  EXPECT_EQ(shadow(), nullptr);
}

TEST_F(WindowShadowTest, ItIsDarkestBelowThePanelAndEndsWithinItsReach) {
  EXPECT_GT(alphaAt({100, 101}), 60);
  EXPECT_GT(alphaAt({-2, 50}), 60);
  EXPECT_GT(alphaAt({100, -2}), 20);
  EXPECT_LT(alphaAt({100, -2}), alphaAt({100, 101}));
  EXPECT_GT(alphaAt({100, 110}), alphaAt({100, 125}));
  EXPECT_EQ(alphaAt({100, 139}), 0);
  EXPECT_EQ(alphaAt({-39, 50}), 0);
  EXPECT_EQ(alphaAt({100, 50}), 0) << "nothing where the panel is";
  EXPECT_EQ(alphaAt({100, 97}), 0);
  EXPECT_EQ(alphaAt({3, 50}), 0);
}

TEST_F(WindowGlassTest, EveryKindOfWindowStandsOnTheSameGlass) {
  backdrops_.setAvailable(Backdrop::blurrable);
  ToastPanel toast("Hello", services_);
  PopoverWindow popover("Preview", {200, 100}, 14, services_);
  SheetWindow sheet({"Name it", "", "Save", "Cancel"}, services_, nullptr);
  VantorelMenu menu(accessibility_, &backdrops_);
  menu.addAction("First");
  toast.orderFrontRegardless();
  popover.show({100, 100, 300, 40}, PopoverEdge::right);
  sheet.begin();
  menu.popup({40, 40});
  for (const QWidget* window : {static_cast<QWidget*>(&toast), static_cast<QWidget*>(&popover),
                                static_cast<QWidget*>(&sheet), static_cast<QWidget*>(&menu)}) {
    SCOPED_TRACE(window->metaObject()->className());
    EXPECT_FALSE(blurred(*window).empty());
    EXPECT_FALSE(contains(blurred(*window), 0, 0));
    backdrops_.setAvailable(Backdrop::none);
    EXPECT_TRUE(blurred(*window).empty());
    EXPECT_FALSE(window->mask().isEmpty());
    EXPECT_FALSE(window->mask().contains(QPoint(0, 0)));
    backdrops_.setAvailable(Backdrop::blurrable);
  }
  menu.close();
}

TEST_F(WindowGlassTest, ShownWindowsFollowTheDesktopIntoTheDark) {
  SheetWindow sheet({"Name it", "What it is called.", "Save", "Cancel"}, services_, nullptr);
  backdrops_.setAvailable(Backdrop::none);
  sheet.begin();
  panel_.makeKeyAndOrderFront();
  const auto lightness = [](QWidget& window) {
    return window.grab().toImage().pixelColor(window.width() / 2, window.height() - 4).lightness();
  };
  const QPalette light = QApplication::palette();
  QPalette dark = light;
  dark.setColor(QPalette::Window, QColor(0x20, 0x20, 0x22));
  dark.setColor(QPalette::WindowText, Qt::white);
  EXPECT_GT(lightness(panel_), 128);
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  EXPECT_LT(lightness(panel_), 128);
  EXPECT_LT(lightness(sheet), 128);
  const auto labels = sheet.findChildren<QLabel*>();
  ASSERT_EQ(labels.size(), 2);
  for (const auto* label : labels) {
    EXPECT_GT(label->palette().color(QPalette::WindowText).lightness(), 128);
  }
  QApplication::setPalette(light);
}

}  // namespace
}  // namespace vantorel
