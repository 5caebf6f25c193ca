// SPDX-License-Identifier: MIT
#include "app/ShortcutPanel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>
#include <QWindow>
#include <vector>

#include "app/ShortcutPill.h"
#include "chrome/PushButton.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeKeyboardGrabs.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto pressPrompt = "Press a shortcut with two modifier keys";
constexpr auto refusedPrompt = "Use two modifiers and a letter, number or Space";

class ShortcutPanelTest : public testing::Test {
 protected:
  ShortcutPanelTest() {
    panel.onRecorded = [this](const HotKeyShortcut& shortcut) { recorded.push_back(shortcut); };
    panel.onReset = [this] { ++resets; };
    panel.onCancel = [this] { ++cancels; };
  }

  void open() {
    panel.makeKeyAndOrderFront();
    QCoreApplication::processEvents();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(panel.windowHandle(), key, modifiers);
  }
  [[nodiscard]] std::vector<std::string> labels() const {
    std::vector<std::string> all;
    const auto found = panel.findChildren<QLabel*>();
    for (const auto* label : found) all.push_back(label->text().toStdString());
    return all;
  }
  [[nodiscard]] PushButton& button(const QString& title) const {
    const auto found = panel.findChildren<PushButton*>();
    for (auto* each : found) {
      if (each->text() == title) return *each;
    }
    throw std::runtime_error("no such button");
  }

  ManualDispatch dispatch;
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  FakeKeyboardGrabs grabs;
  ShortcutPanel panel{ChromeServices{dispatch, screens, accessibility, &backdrops}, grabs, nullptr,
                      "⌘⇧V"};
  std::vector<HotKeyShortcut> recorded;
  int resets = 0;
  int cancels = 0;
};

TEST_F(ShortcutPanelTest, SaysWhatToDoAndShowsTheShortcutAsThisDesktopsKeys) {
  EXPECT_EQ(panel.windowTitle(), "Keyboard Shortcut");
  EXPECT_EQ(panel.size(), QSize(350, 164));
  EXPECT_EQ(panel.glass().cornerRadius(), 18);
  EXPECT_THAT(labels(), ElementsAre("Keyboard Shortcut", pressPrompt, "Super+Shift+V"));
  EXPECT_EQ(panel.findChild<ShortcutPill*>()->size(), QSize(160, 29));
}

TEST_F(ShortcutPanelTest, TwoModifiersAndALetterAreRecorded) {
  open();
  press(Qt::Key_K, Qt::AltModifier | Qt::ControlModifier);
  EXPECT_THAT(recorded, ElementsAre(HotKeyShortcut{40, 0x1800, "K"}));
}

TEST_F(ShortcutPanelTest, SuperIsCommandAndControlIsControl) {
  open();
  press(Qt::Key_K, Qt::MetaModifier | Qt::ControlModifier);
  press(Qt::Key_Space, Qt::MetaModifier | Qt::AltModifier);
  EXPECT_THAT(recorded,
              ElementsAre(HotKeyShortcut{40, 0x1100, "K"}, HotKeyShortcut{49, 0x900, "Space"}));
}

TEST_F(ShortcutPanelTest, TooFewModifiersAreRefusedAndSaidSo) {
  open();
  for (const auto modifiers : {Qt::ShiftModifier, Qt::MetaModifier, Qt::NoModifier}) {
    panel.setPrompt(pressPrompt);
    press(Qt::Key_K, modifiers);
    EXPECT_EQ(panel.prompt(), refusedPrompt);
  }
  EXPECT_THAT(recorded, IsEmpty());
  EXPECT_EQ(cancels, 0);
}

TEST_F(ShortcutPanelTest, KeysThatAreNoLetterNumberOrSpaceAreRefused) {
  open();
  for (const auto key : {Qt::Key_F5, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Comma, Qt::Key_Left}) {
    panel.setPrompt(pressPrompt);
    press(key, Qt::MetaModifier | Qt::AltModifier);
    EXPECT_EQ(panel.prompt(), refusedPrompt) << key;
  }
  EXPECT_THAT(recorded, IsEmpty());
}

TEST_F(ShortcutPanelTest, HoldingModifiersIsNotAKeyYet) {
  open();
  for (const auto key : {Qt::Key_Meta, Qt::Key_Super_L, Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt,
                         Qt::Key_AltGr, Qt::Key_CapsLock}) {
    QTest::simulateEvent(panel.windowHandle(), true, key, Qt::MetaModifier, QString(), false);
    EXPECT_EQ(panel.prompt(), pressPrompt) << key;
  }
}

TEST_F(ShortcutPanelTest, ARepeatedKeyIsRecordedOnce) {
  open();
  QTest::simulateEvent(panel.windowHandle(), true, Qt::Key_K, Qt::MetaModifier | Qt::ShiftModifier,
                       "K", true);
  EXPECT_THAT(recorded, IsEmpty());
}

TEST_F(ShortcutPanelTest, EscapeCancelsWithWhateverModifiers) {
  open();
  press(Qt::Key_Escape, Qt::NoModifier);
  EXPECT_EQ(cancels, 1);
  press(Qt::Key_Escape, Qt::MetaModifier | Qt::ShiftModifier);
  EXPECT_EQ(cancels, 2);
  EXPECT_THAT(recorded, IsEmpty());
}

TEST_F(ShortcutPanelTest, TheButtonsDoWhatTheySay) {
  open();
  button("Reset").click();
  EXPECT_EQ(resets, 1);
  button("Cancel").click();
  EXPECT_EQ(cancels, 1);
}

TEST_F(ShortcutPanelTest, NoKeyPressesAButton) {
  open();
  press(Qt::Key_Tab, Qt::NoModifier);
  press(Qt::Key_Space, Qt::NoModifier);
  press(Qt::Key_Return, Qt::NoModifier);
  EXPECT_EQ(resets, 0);
  EXPECT_EQ(cancels, 0);
}

TEST_F(ShortcutPanelTest, HasTheKeyboardWhileItIsInFront) {
  EXPECT_EQ(grabs.holder(), std::nullopt);
  open();
  EXPECT_EQ(grabs.holder(), WindowNumber{panel.winId()});
  panel.hide();
  EXPECT_EQ(grabs.holder(), std::nullopt);
}

TEST_F(ShortcutPanelTest, GivesTheKeyboardBackWhenAnotherWindowComesToTheFront) {
  open();
  {
    QWidget other;
    other.show();
    other.activateWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(grabs.holder(), std::nullopt);
  }
  panel.activateWindow();
  QCoreApplication::processEvents();
  EXPECT_EQ(grabs.holder(), WindowNumber{panel.winId()});
}

TEST_F(ShortcutPanelTest, AsksAgainForAKeyboardThatAnotherProgramHas) {
  grabs.setAvailable(false);
  open();
  EXPECT_EQ(grabs.attempts(), 1);
  dispatch.advance(Seconds(0.11));
  EXPECT_EQ(grabs.attempts(), 3);
  grabs.setAvailable(true);
  dispatch.advance(Seconds(0.05));
  EXPECT_EQ(grabs.holder(), WindowNumber{panel.winId()});
}

TEST_F(ShortcutPanelTest, RecordsWithoutTheKeyboardToo) {
  grabs.setAvailable(false);
  open();
  dispatch.advance(Seconds(60));
  EXPECT_EQ(grabs.attempts(), ShortcutPanel::grabAttempts);
  press(Qt::Key_K, Qt::AltModifier | Qt::ControlModifier);
  EXPECT_THAT(recorded, ElementsAre(HotKeyShortcut{40, 0x1800, "K"}));
}

TEST_F(ShortcutPanelTest, ForgottenItGivesTheKeyboardBackUntilAKeyIsPressed) {
  open();
  dispatch.advance(Seconds(59));
  press(Qt::Key_K, Qt::NoModifier);
  dispatch.advance(Seconds(59));
  EXPECT_NE(grabs.holder(), std::nullopt);
  dispatch.advance(Seconds(2));
  EXPECT_EQ(grabs.holder(), std::nullopt);
  press(Qt::Key_K, Qt::NoModifier);
  EXPECT_NE(grabs.holder(), std::nullopt);
}

TEST_F(ShortcutPanelTest, NothingIsAskedForOnceItIsHidden) {
  grabs.setAvailable(false);
  open();
  panel.hide();
  dispatch.advance(Seconds(5));
  EXPECT_EQ(grabs.attempts(), 1);
}

TEST_F(ShortcutPanelTest, TheWindowManagersCloseCancels) {
  open();
  panel.close();
  EXPECT_EQ(cancels, 1);
}

TEST(ShortcutPill, AnyShortcutIsLegible) {
  const ShortcutPill pill("⌘⇧⌥⌃Space", nullptr);
  EXPECT_EQ(pill.text(), "Super+Shift+Alt+Ctrl+Space");
  EXPECT_GT(pill.width(), pill.fontMetrics().horizontalAdvance(pill.text()));
  EXPECT_EQ(pill.height(), 29);
}

}  // namespace
}  // namespace vantorel
