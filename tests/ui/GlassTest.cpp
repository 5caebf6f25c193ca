// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "chrome/Symbols.h"
#include "chrome/VantorelPanel.h"
#include "chrome/VantorelTheme.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeWindowBackdrops.h"

namespace vantorel {
namespace {

class GlassTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<VantorelPanel> makePanel() const {
    return std::make_unique<VantorelPanel>(QStringLiteral("Test"), QSize(200, 100), 18,
                                           accessibility_, &backdrops_);
  }
  static QImage picture(VantorelPanel& panel) {
    QImage image(panel.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    panel.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
  }

  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
};

TEST_F(GlassTest, SharpBackdropsAreCovered) {
  EXPECT_EQ(glassFinish(accessibility_, &backdrops_),
            (GlassFinish{1, GlassFinish::Outline::blended}));
}

TEST_F(GlassTest, BlurredBackdropsShowThrough) {
  backdrops_.setAvailable(Backdrop::blurrable);
  EXPECT_EQ(glassFinish(accessibility_, &backdrops_),
            (GlassFinish{1 - (1 - 0.62) * (1 - 0.7), GlassFinish::Outline::blended,
                         GlassFinish::Behind::blurred}));
  accessibility_.setReduceTransparency(true);
  EXPECT_EQ(glassFinish(accessibility_, &backdrops_),
            (GlassFinish{1, GlassFinish::Outline::blended, GlassFinish::Behind::asItIs}));
}

TEST_F(GlassTest, ReducedTransparencyIsOpaqueButKeepsSmoothCorners) {
  accessibility_.setReduceTransparency(true);
  EXPECT_EQ(glassFinish(accessibility_, &backdrops_),
            (GlassFinish{1, GlassFinish::Outline::blended}));
}

TEST_F(GlassTest, WithoutABackdropItIsOpaqueAndShaped) {
  const GlassFinish opaque{1, GlassFinish::Outline::shaped};
  backdrops_.setAvailable(Backdrop::none);
  EXPECT_EQ(glassFinish(accessibility_, &backdrops_), opaque);
  EXPECT_EQ(glassFinish(accessibility_, nullptr), opaque);
}

TEST_F(GlassTest, ThePanelIsBorderlessFloatsAndTakesTheKeyboard) {
  const auto panel = makePanel();
  EXPECT_TRUE(panel->windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_TRUE(panel->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_NE(panel->windowHandle(), nullptr);
  panel->makeKeyAndOrderFront();
  EXPECT_TRUE(QTest::qWaitForWindowActive(panel.get()));
}

TEST_F(GlassTest, CornersAreSeenThroughAndTheMiddleIsAVeil) {
  const auto panel = makePanel();
  panel->makeKeyAndOrderFront();
  const auto image = picture(*panel);
  EXPECT_EQ(qAlpha(image.pixel(1, 1)), 0);
  EXPECT_NEAR(qAlpha(image.pixel(100, 50)), 255, 2);
  EXPECT_TRUE(panel->mask().isEmpty());
}

TEST_F(GlassTest, AnOpaquePanelFillsItsOutline) {
  backdrops_.setAvailable(Backdrop::none);
  const auto panel = makePanel();
  panel->makeKeyAndOrderFront();
  const auto image = picture(*panel);
  EXPECT_EQ(qAlpha(image.pixel(100, 50)), 255);
  EXPECT_FALSE(panel->mask().contains(QPoint(0, 0)));
  EXPECT_FALSE(panel->mask().contains(QPoint(199, 99)));
  EXPECT_TRUE(panel->mask().contains(QPoint(100, 0)));
  EXPECT_TRUE(panel->mask().contains(QPoint(0, 50)));
}

TEST_F(GlassTest, TheOutlineIsTheSameAtEveryCorner) {
  backdrops_.setAvailable(Backdrop::none);
  const auto panel = makePanel();
  panel->makeKeyAndOrderFront();
  for (int y = 0; y < 20; ++y) {
    for (int x = 0; x < 20; ++x) {
      const bool inside = panel->mask().contains(QPoint(x, y));
      EXPECT_EQ(panel->mask().contains(QPoint(199 - x, y)), inside) << x << "," << y;
      EXPECT_EQ(panel->mask().contains(QPoint(x, 99 - y)), inside) << x << "," << y;
      EXPECT_EQ(panel->mask().contains(QPoint(199 - x, 99 - y)), inside) << x << "," << y;
    }
  }
}

TEST_F(GlassTest, TheOutlineFollowsTheSizeAndTheCompositor) {
  backdrops_.setAvailable(Backdrop::none);
  const auto panel = makePanel();
  panel->makeKeyAndOrderFront();
  panel->resize(200, 300);
  EXPECT_TRUE(panel->mask().contains(QPoint(100, 299)));
  panel->hide();
  backdrops_.setAvailable(Backdrop::translucent);
  panel->makeKeyAndOrderFront();
  EXPECT_TRUE(panel->mask().isEmpty());
}

TEST_F(GlassTest, HoverIsReported) {
  const auto panel = makePanel();
  std::vector<bool> hovers;
  panel->glass().onHoverChanged = [&](bool inside) { hovers.push_back(inside); };
  QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
  QApplication::sendEvent(&panel->glass(), &enter);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&panel->glass(), &leave);
  EXPECT_EQ(hovers, (std::vector{true, false}));
}

TEST_F(GlassTest, ClosingByTheWindowManagerIsOnlyReported) {
  const auto panel = makePanel();
  int requests = 0;
  panel->onCloseRequested = [&] { ++requests; };
  panel->makeKeyAndOrderFront();
  panel->close();
  EXPECT_EQ(requests, 1);
  EXPECT_TRUE(panel->isVisible());
}

TEST(Theme, AccentsAreTheirFixedColours) {
  EXPECT_EQ(VantorelTheme::gold().rgba(), qRgba(237, 168, 41, 255));
  EXPECT_NEAR(VantorelTheme::goldSoft().alphaF(), 0.18, 0.005);
  EXPECT_NEAR(VantorelTheme::goldStrong().alphaF(), 0.14, 0.005);
}

TEST(Theme, SmallTextIsLegibleOnLightAndDarkWindows) {
  const auto luminance = [](const QColor& color) {
    const auto linear = [](double c) {
      return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
  };
  for (const auto& [window, text] : {std::pair(QColor(239, 239, 239), QColor(0, 0, 0)),
                                     std::pair(QColor(35, 35, 38), QColor(255, 255, 255)),
                                     std::pair(QColor(246, 245, 244), QColor(46, 52, 54)),
                                     std::pair(QColor(53, 53, 53), QColor(238, 238, 236))}) {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    const QColor over = VantorelTheme::secondaryLabel(palette);
    const auto mixed = [&](double top, double below) {
      return static_cast<float>(top * over.alphaF() + below * (1 - over.alphaF()));
    };
    const QColor seen =
        QColor::fromRgbF(mixed(over.redF(), window.redF()), mixed(over.greenF(), window.greenF()),
                         mixed(over.blueF(), window.blueF()));
    const double a = luminance(seen) + 0.05;
    const double b = luminance(window) + 0.05;
    EXPECT_GE(std::max(a, b) / std::min(a, b), 4.5) << window.name().toStdString();
    EXPECT_EQ(VantorelTheme::isDark(palette), window.lightness() < 128);
  }
}

TEST(SymbolsTest, EverySymbolExistsAndIsTintedAndSharp) {
  for (const char* name :
       {"text.alignleft", "photo", "film", "doc", "pin", "pin.fill", "questionmark.circle",
        "magnifyingglass", "xmark.circle.fill", "line.3.horizontal.decrease",
        "line.3.horizontal.decrease.circle.fill", "app", "app.fill", "pencil",
        "checkmark.circle.fill", "exclamationmark.circle.fill"}) {
    const auto picture = Symbols::pixmap(name, 16, Qt::red, 2);
    ASSERT_FALSE(picture.isNull()) << name;
    EXPECT_EQ(picture.size(), QSize(32, 32));
    EXPECT_EQ(picture.devicePixelRatio(), 2);
    const auto image = picture.toImage();
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const auto pixel = image.pixelColor(x, y);
        if (pixel.alpha() < 200) continue;
        ++inked;
        ASSERT_EQ(pixel.rgb(), QColor(Qt::red).rgb()) << name;
      }
    }
    EXPECT_GT(inked, 20) << name;
  }
}

TEST(SymbolsTest, AnUnknownNameIsNull) {
  EXPECT_TRUE(Symbols::pixmap("no.such.symbol", 16, Qt::red, 1).isNull());
}

}  // namespace
}  // namespace vantorel
