// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xinput.h>

#include <QApplication>
#include <QWindow>
#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <vector>

#include "app/ShortcutPanel.h"
#include "desktop/x11/DesktopFixture.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "platform/linux/windows/KeyCodeTable.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/toolkit/X11KeyboardGrabs.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr X11KeyCode keyV = 55;
constexpr X11KeyCode keyB = 56;
constexpr X11KeyCode keyK = 45;
constexpr X11KeyCode spaceKey = 65;
constexpr X11KeyCode superKey = 133;
constexpr X11KeyCode shiftKey = 50;
constexpr X11KeyCode controlKey = 37;
constexpr X11KeyCode altKey = 64;
constexpr std::uint16_t superShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;
constexpr HotKeyModifiers commandShift = hotkeys::command | hotkeys::shift;
constexpr HotKeyModifiers commandOption = hotkeys::command | hotkeys::option;
constexpr HotKeyId ours{0x564e544c, 1};
constexpr Seconds aMoment{0.01};

/// The toolkit on the test's own display.
class Toolkit {
 public:
  explicit Toolkit(const std::string& display) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("DISPLAY", QByteArray::fromStdString(display));
    qputenv("NO_AT_BRIDGE", "1");
    application_ = std::make_unique<QApplication>(count_, arguments_.data());
    QApplication::setQuitOnLastWindowClosed(false);
  }

 private:
  std::string name_ = "recorder_test";
  std::vector<char*> arguments_{name_.data(), nullptr};
  int count_ = 1;
  std::unique_ptr<QApplication> application_;
};

class RecorderTest : public DesktopFixture {
 protected:
  RecorderTest() : toolkit_(display()) {
    hotKeys = X11HotKeys::open(dispatch, display());
    if (!hotKeys) throw std::runtime_error("no hot keys");
    EXPECT_TRUE(hotKeys->installHandler([this](HotKeyId) { ++presses; }));
  }

  void open() {
    panel = std::make_unique<ShortcutPanel>(
        ChromeServices{dispatch, screens_, accessibility_, &backdrops_}, grabs_, keyCodeFromX11,
        "⌘⇧V");
    panel->onRecorded = [this](const HotKeyShortcut& shortcut) { recorded.push_back(shortcut); };
    panel->onCancel = [this] { cancelled = true; };
    panel->makeKeyAndOrderFront();
  }
  void openWithKeyboard() {
    open();
    happens("the recorder is in front", [this] { return panel->isActiveWindow(); });
    happens("the recorder has the keyboard", [this] { return !keyboardIsFree(); });
  }
  /// The toolkit's and the fake main queue's turns until the condition holds.
  bool happens(const std::string& name, const std::function<bool()>& condition) {
    return waitUntil(name, [&] {
      QCoreApplication::processEvents();
      dispatch.advance(aMoment);
      return condition();
    });
  }
  /// Strikes the keys and answers what was recorded.
  std::optional<HotKeyShortcut> record(const std::vector<X11KeyCode>& keys) {
    recorded.clear();
    fingers().strike(keys);
    happens("something is recorded", [this] { return !recorded.empty(); });
    return recorded.empty() ? std::nullopt : std::optional(recorded.front());
  }
  /// Everything that was pressed has been dealt with by everybody: a cancelling key that came last
  /// was heard.
  void settle() {
    cancelled = false;
    constexpr X11KeyCode escapeKey = 9;
    fingers().strike({escapeKey});
    happens("the last key is heard", [this] { return cancelled; });
  }
  /// Whether another client could have the whole keyboard now; it is given back at once.
  bool keyboardIsFree() { return takeKeyboard(*rival, GrabUse::giveBack); }

  enum class GrabUse { keep, giveBack };
  static bool takeKeyboard(X11Connection& client, GrabUse use) {
    const auto grab = client.reply(
        xcb_grab_keyboard_reply, xcb_grab_keyboard(client.xcb(), 0, client.root(), XCB_CURRENT_TIME,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool taken = grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
    if (taken && use == GrabUse::giveBack) giveKeyboardBack(client);
    return taken;
  }
  static void giveKeyboardBack(X11Connection& client) {
    xcb_ungrab_keyboard(client.xcb(), XCB_CURRENT_TIME);
    const auto done = client.reply(xcb_get_input_focus_reply, xcb_get_input_focus(client.xcb()));
  }
  /// Another program's shortcut, as a window manager has them.
  void rivalTakes(X11KeyCode key, std::uint16_t modifiers) {
    ASSERT_FALSE(rival->error(xcb_grab_key_checked(rival->xcb(), 0, rival->root(), modifiers, key,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
  }
  int rivalsKeys() {
    int count = 0;
    const auto done = rival->reply(xcb_get_input_focus_reply, xcb_get_input_focus(rival->xcb()));
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(rival->xcb())}) {
      if ((event->response_type & 0x7FU) == XCB_KEY_PRESS) ++count;
    }
    return count;
  }
  void setVariant(const std::string& layout, const std::string& variant) {
    const auto setting = run({"setxkbmap", "-layout", layout, "-variant", variant});
    waitUntil("the layout is set", [&] { return setting->ended(); });
  }

  std::unique_ptr<X11HotKeys> hotKeys;
  std::unique_ptr<X11Connection> rival = X11Connection::open(display());
  std::unique_ptr<ShortcutPanel> panel;
  std::vector<HotKeyShortcut> recorded;
  bool cancelled = false;
  int presses = 0;

 private:
  Toolkit toolkit_;
  FakeScreens screens_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  X11KeyboardGrabs grabs_;

 protected:
  // The panel goes before the toolkit.
  ~RecorderTest() override { panel.reset(); }
};

TEST_F(RecorderTest, HearsWhatAnotherProgramHasAUseFor) {
  rivalTakes(keyB, superShift);
  openWithKeyboard();
  EXPECT_EQ(record({superKey, shiftKey, keyB}), (HotKeyShortcut{11, commandShift, "B"}));
  EXPECT_EQ(rivalsKeys(), 0);
  EXPECT_EQ(hotKeys->registerHotKey({11, commandShift}, ours), std::nullopt)
      << "it is the rival's nonetheless";
}

TEST_F(RecorderTest, HearsThisProgramsOwnShortcut) {
  ASSERT_TRUE(hotKeys->registerHotKey({keys::v, commandShift}, ours));
  openWithKeyboard();
  EXPECT_EQ(record({superKey, shiftKey, keyV}), (HotKeyShortcut{9, commandShift, "V"}));
  settle();
  EXPECT_EQ(presses, 0);
}

TEST_F(RecorderTest, TellsEveryModifierApart) {
  openWithKeyboard();
  EXPECT_EQ(record({controlKey, altKey, keyK}), (HotKeyShortcut{40, 0x1800, "K"}));
  EXPECT_EQ(record({superKey, controlKey, keyK}), (HotKeyShortcut{40, 0x1100, "K"}));
  EXPECT_EQ(record({superKey, altKey, spaceKey}), (HotKeyShortcut{49, commandOption, "Space"}));
  EXPECT_EQ(record({superKey, shiftKey, altKey, controlKey, keyK}),
            (HotKeyShortcut{40, 0x1B00, "K"}));
}

TEST_F(RecorderTest, RefusesWhatIsNoShortcut) {
  openWithKeyboard();
  const auto before = panel->prompt();
  fingers().strike({superKey});
  fingers().strike({shiftKey});
  settle();
  EXPECT_EQ(panel->prompt(), before) << "modifiers alone are nothing yet";
  constexpr X11KeyCode functionKey5 = 71;
  for (const auto& keys : std::vector<std::vector<X11KeyCode>>{
           {superKey, keyK}, {shiftKey, keyK}, {keyK}, {superKey, altKey, functionKey5}}) {
    panel->setPrompt("");
    fingers().strike(keys);
    settle();
    EXPECT_EQ(panel->prompt(), "Use two modifiers and a letter, number or Space");
  }
  EXPECT_THAT(recorded, IsEmpty());
}

TEST_F(RecorderTest, GivesTheKeyboardBackWhenItCloses) {
  ASSERT_TRUE(hotKeys->registerHotKey({keys::v, commandShift}, ours));
  openWithKeyboard();
  panel->hide();
  EXPECT_TRUE(happens("the keyboard is free", [this] { return keyboardIsFree(); }));
  fingers().strike({superKey, shiftKey, keyV});
  EXPECT_TRUE(happens("the shortcut works", [this] { return presses == 1; }));
  EXPECT_THAT(recorded, IsEmpty());
}

TEST_F(RecorderTest, GetsTheKeyboardWhenWhoeverHasItLetsGo) {
  ASSERT_TRUE(takeKeyboard(*rival, GrabUse::keep));
  open();
  fingers().strike({superKey, shiftKey, keyK});
  happens("the rival has the keys", [this] { return rivalsKeys() > 0; });
  EXPECT_THAT(recorded, IsEmpty());
  giveKeyboardBack(*rival);
  happens("the recorder has the keyboard", [this] { return !keyboardIsFree(); });
  EXPECT_EQ(record({superKey, shiftKey, keyK}), (HotKeyShortcut{40, commandShift, "K"}));
}

TEST_F(RecorderTest, KeepsTheKeyboardWhenItsLayoutChanges) {
  rivalTakes(keyB, superShift);
  openWithKeyboard();
  setLayout("fr");
  EXPECT_EQ(record({superKey, shiftKey, keyB}), (HotKeyShortcut{11, commandShift, "B"}));
  setLayout("us,il");
  setActiveLayout(1);
  EXPECT_EQ(record({superKey, shiftKey, keyB}), (HotKeyShortcut{11, commandShift, "B"}));
  EXPECT_EQ(rivalsKeys(), 0);
}

TEST_F(RecorderTest, KeepsTheKeyboardWhenAnotherIsPluggedIn) {
  rivalTakes(keyB, superShift);
  openWithKeyboard();
  // A pair of a pointer and a keyboard more, as far as programs can tell.
  struct AddMaster {
    xcb_input_add_master_t head;
    char name[4];
  } change{};
  constexpr auto size = sizeof(change) / 4;
  change.head = {XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, size, 4, 1, 1};
  std::copy_n("more", 4, change.name);
  const auto version = rival->reply(xcb_input_xi_query_version_reply,
                                    xcb_input_xi_query_version(rival->xcb(), 2, 2));
  ASSERT_FALSE(rival->error(xcb_input_xi_change_hierarchy_checked(
      rival->xcb(), 1, reinterpret_cast<const xcb_input_hierarchy_change_t*>(&change))));
  sync();
  EXPECT_EQ(record({superKey, shiftKey, keyB}), (HotKeyShortcut{11, commandShift, "B"}));
  EXPECT_EQ(rivalsKeys(), 0);
}

TEST_F(RecorderTest, GivesTheKeyboardToAnotherWindowThatComesToTheFront) {
  startWindowManager();
  openWithKeyboard();
  const auto other = play({{"class=other,Other"}});
  bringToFront(other.windows[0]);
  EXPECT_TRUE(happens("the keyboard is free", [this] { return keyboardIsFree(); }));
  bringToFront(static_cast<xcb_window_t>(panel->winId()));
  EXPECT_TRUE(happens("the recorder has it again", [this] { return !keyboardIsFree(); }));
  EXPECT_EQ(record({superKey, shiftKey, keyK}), (HotKeyShortcut{40, commandShift, "K"}));
}

struct Layout {
  const char* layout;
  const char* variant;
  const char* label;  // of the key where a US keyboard has k

  friend void PrintTo(const Layout& layout, std::ostream* out) {
    *out << layout.layout << ' ' << layout.variant;
  }
};

class RecorderOnLayouts : public RecorderTest, public testing::WithParamInterface<Layout> {};

TEST_P(RecorderOnLayouts, WhatIsRecordedWorksAfterTheLayoutIsSwitched) {
  const auto [layout, variant, label] = GetParam();
  setVariant(layout, variant);
  openWithKeyboard();
  const auto shortcut = record({superKey, shiftKey, keyK});
  ASSERT_TRUE(shortcut);
  EXPECT_EQ(shortcut->keyCode, KeyCode{40}) << "the place on the keyboard";
  EXPECT_EQ(shortcut->keyLabel, label);
  panel->hide();
  happens("the keyboard is free", [this] { return keyboardIsFree(); });

  ASSERT_TRUE(hotKeys->registerHotKey({shortcut->keyCode, shortcut->modifiers}, ours));
  for (const auto& other : {layout, "us", "fr", "il", "ru"}) {
    presses = 0;
    setVariant(other, "");
    fingers().strike({superKey, shiftKey, keyK});
    EXPECT_TRUE(happens("the shortcut works", [this] { return presses == 1; })) << other;
  }
}

INSTANTIATE_TEST_SUITE_P(Layouts, RecorderOnLayouts,
                         testing::Values(Layout{"us", "", "K"}, Layout{"il", "", "K"},
                                         Layout{"ru", "", "K"}, Layout{"us", "dvorak", "T"},
                                         Layout{"fr", "", "K"}, Layout{"us,il", "", "K"}));

}  // namespace
}  // namespace vantorel
