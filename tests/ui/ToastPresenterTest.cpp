// SPDX-License-Identifier: MIT
#include "chrome/ToastPresenter.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QWindow>

#include "chrome/ToastPanel.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

class ToastPresenterTest : public testing::Test {
 protected:
  static std::vector<ToastPanel*> toasts() {
    std::vector<ToastPanel*> result;
    const auto widgets = QApplication::topLevelWidgets();
    for (auto* widget : widgets) {
      auto* toast = qobject_cast<ToastPanel*>(widget);
      if (toast != nullptr && toast->isVisible()) result.push_back(toast);
    }
    return result;
  }
  static std::string shownText(const ToastPanel& toast) {
    return toast.findChild<QLabel*>()->text().toStdString();
  }

  ManualDispatch dispatch_;
  FakeScreens screens_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  ChromeServices services_{dispatch_, screens_, accessibility_, &backdrops_};
  ToastPresenter presenter_{services_};
};

TEST_F(ToastPresenterTest, AMessageIsShownForItsTime) {
  presenter_.show("Clipboard history resumed.");
  ASSERT_EQ(toasts().size(), 1U);
  EXPECT_EQ(shownText(*toasts()[0]), "Clipboard history resumed.");
  dispatch_.advance(Seconds(2.09));
  EXPECT_EQ(toasts().size(), 1U);
  dispatch_.advance(Seconds(0.02));
  EXPECT_TRUE(toasts().empty());
}

TEST_F(ToastPresenterTest, ASecondMessageReplacesTheFirstAndStaysItsFullTime) {
  presenter_.show("First");
  dispatch_.advance(Seconds(2));
  presenter_.show("Second");
  ASSERT_EQ(toasts().size(), 1U);
  EXPECT_EQ(shownText(*toasts()[0]), "Second");
  dispatch_.advance(Seconds(2.05));
  EXPECT_EQ(toasts().size(), 1U);
  dispatch_.advance(Seconds(0.1));
  EXPECT_TRUE(toasts().empty());
}

TEST_F(ToastPresenterTest, TwoPresentersShowAToastEach) {
  ToastPresenter other(services_);
  presenter_.show("One");
  other.show("Two");
  EXPECT_EQ(toasts().size(), 2U);
}

TEST_F(ToastPresenterTest, AToastGoesWithItsPresenter) {
  {
    ToastPresenter shortLived(services_);
    shortLived.show("Bye");
    EXPECT_EQ(toasts().size(), 1U);
  }
  EXPECT_TRUE(toasts().empty());
  dispatch_.advance(Seconds(3));
}

TEST_F(ToastPresenterTest, StandsAtTheTopOfTheVisibleFrame) {
  presenter_.show("Hello");
  EXPECT_EQ(toasts()[0]->geometry(), QRect(960 - 150, 30 + 30, 300, 48));
}

TEST_F(ToastPresenterTest, StandsOnTheScreenUnderThePointer) {
  screens_.setScreens({{{0, 0, 1920, 1080}, {0, 30, 1920, 1050}, 1},
                       {{1920, 0, 1280, 800}, {1920, 0, 1280, 760}, 2}});
  screens_.setMouseLocation({2500, 700});
  presenter_.show("Hello");
  EXPECT_EQ(toasts()[0]->geometry(), QRect(1920 + 640 - 150, 30, 300, 48));
}

TEST_F(ToastPresenterTest, StandsOnTheMainScreenWhenThePointerIsOnNone) {
  screens_.setMouseLocation({-500, -500});
  presenter_.show("Hello");
  EXPECT_EQ(toasts()[0]->geometry().topLeft(), QPoint(810, 60));
}

TEST_F(ToastPresenterTest, IsShownEvenWithoutAScreen) {
  screens_.setScreens({});
  presenter_.show("Hello");
  EXPECT_EQ(toasts().size(), 1U);
}

TEST_F(ToastPresenterTest, AMessageThatIsALittleTooLongIsCondensed) {
  presenter_.show("Saved shortcut unavailable. Using ⌘⇧V.");
  const auto* label = toasts()[0]->findChild<QLabel*>();
  EXPECT_EQ(label->text(), "Saved shortcut unavailable. Using Super+Shift+V.");
  EXPECT_LT(label->font().stretch(), 100);
  EXPECT_GE(label->font().stretch(), 80);
  EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), 272);
}

TEST_F(ToastPresenterTest, ALongMessageTakesTwoSmallerLinesAndLosesNothing) {
  for (const char* message :
       {"Secure storage is unavailable. Clipboard monitoring is paused.",
        "Shortcut unavailable. Open Keyboard Shortcut… to choose another.",
        "Settings could not be read. History is paused until you resume it."}) {
    presenter_.show(message);
    const auto* label = toasts()[0]->findChild<QLabel*>();
    const auto lines = label->text().split('\n');
    ASSERT_EQ(lines.size(), 2) << message;
    EXPECT_EQ(lines.join(' '), message);
    for (const auto& line : lines) EXPECT_LE(label->fontMetrics().horizontalAdvance(line), 272);
    EXPECT_LE(2 * label->fontMetrics().lineSpacing(), 48);
    EXPECT_EQ(toasts()[0]->accessibleName(), message);
  }
}

TEST_F(ToastPresenterTest, IsANotificationToAssistivePrograms) {
  presenter_.show("Hello");
  const auto* toast = QAccessible::queryAccessibleInterface(toasts()[0]);
  EXPECT_EQ(toast->role(), QAccessible::Notification);
  EXPECT_EQ(toast->text(QAccessible::Name), "Hello");
}

TEST_F(ToastPresenterTest, ALongMessageDoesNotMakeItGrow) {
  const std::string message =
      "A new history has begun. The old one is kept as /home/somebody/.local/share/ClipHistory/"
      "history-that-could-not-be-opened-on-a-day-long-ago and so are its pictures.";
  presenter_.show(message);
  const auto& toast = *toasts()[0];
  EXPECT_EQ(toast.size(), QSize(300, 48));
  const auto* label = toast.findChild<QLabel*>();
  EXPECT_EQ(label->geometry(), QRect(14, 0, 272, 48));
  for (const auto& line : label->text().split('\n')) {
    EXPECT_LE(label->fontMetrics().horizontalAdvance(line), 272);
  }
  EXPECT_TRUE(shownText(toast).ends_with("…"));
  EXPECT_EQ(toast.windowTitle().toStdString(), message);
}

TEST_F(ToastPresenterTest, AMessageOfSeveralLinesIsOneLine) {
  presenter_.show("Two\nlines excluded from history.");
  EXPECT_EQ(shownText(*toasts()[0]), "Two lines excluded from history.");
}

TEST_F(ToastPresenterTest, MarkupIsShownAsItIs) {
  presenter_.show("<b>App</b> excluded from history.");
  EXPECT_EQ(toasts()[0]->findChild<QLabel*>()->textFormat(), Qt::PlainText);
}

TEST_F(ToastPresenterTest, TitleAndAccessibleNameAreTheSpelledMessage) {
  presenter_.show("Copied to clipboard. Press ⌘V to paste.");
  const auto& toast = *toasts()[0];
  EXPECT_EQ(toast.windowTitle(), QStringLiteral("Copied to clipboard. Press Ctrl+V to paste."));
  EXPECT_EQ(toast.accessibleName(), toast.windowTitle());
  EXPECT_EQ(shownText(toast), "Copied to clipboard. Press Ctrl+V to paste.");
}

TEST_F(ToastPresenterTest, TakesNeitherFocusNorInput) {
  QWidget window;
  window.show();
  window.activateWindow();
  QCoreApplication::processEvents();
  presenter_.show("Hello");
  QCoreApplication::processEvents();
  const auto& toast = *toasts()[0];
  EXPECT_TRUE(toast.windowFlags().testFlag(Qt::WindowTransparentForInput));
  EXPECT_TRUE(toast.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
  EXPECT_TRUE(toast.windowHandle()->flags().testFlag(Qt::WindowTransparentForInput));
  EXPECT_FALSE(toast.isActiveWindow());
  EXPECT_EQ(QApplication::activeWindow(), &window);
}

TEST_F(ToastPresenterTest, WithoutACompositorItIsOpaqueAndShaped) {
  backdrops_.setAvailable(Backdrop::none);
  presenter_.show("Hello");
  const auto& toast = *toasts()[0];
  EXPECT_FALSE(toast.mask().isEmpty());
  EXPECT_FALSE(toast.mask().contains(QPoint(0, 0)));
  EXPECT_TRUE(toast.mask().contains(QPoint(150, 24)));
}

TEST_F(ToastPresenterTest, WithACompositorItHasNoShape) {
  presenter_.show("Hello");
  EXPECT_TRUE(toasts()[0]->mask().isEmpty());
}

}  // namespace
}  // namespace vantorel
