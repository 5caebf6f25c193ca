// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>

#include "desktop/x11/DesktopFixture.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11Keyboard.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr X11KeyCode keyV = 55;
constexpr X11KeyCode keyB = 56;
constexpr X11KeyCode superKey = 133;
constexpr X11KeyCode shiftKey = 50;
constexpr X11KeyCode controlKey = 37;
constexpr X11KeyCode altKey = 64;
constexpr X11KeyCode capsLockKey = 66;
constexpr X11KeyCode numLockKey = 77;
constexpr std::uint16_t superShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;
constexpr HotKeyModifiers commandShift = hotkeys::command | hotkeys::shift;
constexpr HotKeyId paste{0x564e544c, 1};
constexpr HotKeyId other{0x564e544c, 2};

class HotKeysTest : public DesktopFixture {
 protected:
  HotKeysTest() { open(); }

  void open() {
    hotKeys = X11HotKeys::open(dispatch, display());
    if (!hotKeys) throw std::runtime_error("no hot keys");
    EXPECT_TRUE(hotKeys->installHandler([this](HotKeyId id) { pressed.push_back(id.id); }));
  }
  std::optional<HotKeyRef> registerPaste() {
    return hotKeys->registerHotKey({keys::v, commandShift}, paste);
  }
  /// Presses the shortcut's keys, and tells how often it was heard. A second shortcut, pressed
  /// afterwards, tells that everything before it has been dealt with.
  std::size_t heardWhen(const std::function<void()>& act) {
    if (!marker_) marker_ = hotKeys->registerHotKey({keys::v + 2, hotkeys::control}, other);
    EXPECT_TRUE(marker_);
    pressed.clear();
    act();
    fingers().strike({controlKey, keyB});
    waitUntil("the marker is heard",
              [&] { return std::find(pressed.begin(), pressed.end(), other.id) != pressed.end(); });
    return static_cast<std::size_t>(std::count(pressed.begin(), pressed.end(), paste.id));
  }
  std::size_t heardWhenStruck(const std::vector<X11KeyCode>& keys) {
    return heardWhen([&] { fingers().strike(keys); });
  }
  /// Whether another client could take the key.
  bool takenByOther(std::uint16_t modifiers, X11KeyCode key, X11Connection& client) {
    return client.error(xcb_grab_key_checked(client.xcb(), 0, client.root(), modifiers, key,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)) == nullptr;
  }

  std::unique_ptr<X11HotKeys> hotKeys;
  std::vector<std::uint32_t> pressed;

 private:
  std::optional<HotKeyRef> marker_;
};

TEST_F(HotKeysTest, APressIsHeardOnce) {
  ASSERT_TRUE(registerPaste());
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
  EXPECT_EQ(heardWhenStruck({shiftKey, superKey, keyV}), 1U);
}

TEST_F(HotKeysTest, EachPressIsHeard) {
  ASSERT_TRUE(registerPaste());
  EXPECT_EQ(heardWhen([&] {
              for (int i = 0; i < 20; ++i) fingers().strike({superKey, shiftKey, keyV});
            }),
            20U);
}

TEST_F(HotKeysTest, RepeatsOfAHeldKeyAreNotHeard) {
  using Clock = std::chrono::steady_clock;
  ASSERT_TRUE(registerPaste());
  const auto rate = run({"xset", "r", "rate", "20", "200"});
  waitUntil("the rate is set", [&] { return rate->ended(); });
  // How long this server takes to repeat a key ten times, by a window that counts.
  const auto window = play({{"class=counter,Counter"}});
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_PARENT, window.windows[0], XCB_CURRENT_TIME);
  auto began = Clock::now();
  fingers().press(keyV, Keyboard::hardware);
  waitUntil("the key has repeated", [&] {
    const auto& output = window.process->output();
    return std::count(output.begin(), output.end(), 'p') > 20;  // "mapped", and the presses
  });
  fingers().release(keyV, Keyboard::hardware);
  const auto tenRepeats = Clock::now() - began;

  const auto act = [&] {
    for (const auto key : {superKey, shiftKey, keyV}) fingers().press(key, Keyboard::hardware);
    began = Clock::now();
    waitUntil("the shortcut has repeated", [&] { return Clock::now() - began > tenRepeats; });
    for (const auto key : {keyV, shiftKey, superKey}) fingers().release(key, Keyboard::hardware);
  };
  EXPECT_EQ(heardWhen(act), 1U);
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

TEST_F(HotKeysTest, AKeyThatIsHeldWhileItIsRegisteredIsHeardWhenItIsPressedAgain) {
  const auto rate = run({"xset", "r", "rate", "20", "200"});
  waitUntil("the rate is set", [&] { return rate->ended(); });
  const auto window = play({{"class=counter,Counter"}});
  xcb_set_input_focus(tester().xcb(), XCB_INPUT_FOCUS_PARENT, window.windows[0], XCB_CURRENT_TIME);
  const auto repeats = [&] {
    const auto& output = window.process->output();
    return std::count(output.begin(), output.end(), 'p');
  };
  const auto act = [&] {
    for (const auto key : {superKey, shiftKey, keyV}) fingers().press(key, Keyboard::hardware);
    const auto before = repeats();
    waitUntil("the key repeats", [&] { return repeats() > before + 5; });
    ASSERT_TRUE(registerPaste());
    // The window hears no more of it: the shortcut takes the repeats.
    using Clock = std::chrono::steady_clock;
    const auto began = Clock::now();
    waitUntil("it would have repeated",
              [&] { return Clock::now() - began > std::chrono::milliseconds(150); });
    for (const auto key : {keyV, shiftKey, superKey}) fingers().release(key, Keyboard::hardware);
    const auto ended = Clock::now();
    waitUntil("a hand could press again",
              [&] { return Clock::now() - ended > std::chrono::milliseconds(60); });
  };
  EXPECT_EQ(heardWhen(act), 0U);
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

TEST_F(HotKeysTest, LockKeysMakeNoDifference) {
  ASSERT_TRUE(registerPaste());
  for (const auto& locks : std::vector<std::vector<X11KeyCode>>{
           {capsLockKey}, {numLockKey}, {capsLockKey}, {numLockKey}}) {
    // Caps; Caps and Num; Num; none again.
    for (const auto lock : locks) fingers().strike({lock});
    // The marker has to be struck in the same state.
    EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
  }
}

TEST_F(HotKeysTest, OtherModifiersMakeAnotherShortcut) {
  ASSERT_TRUE(registerPaste());
  EXPECT_EQ(heardWhenStruck({superKey, keyV}), 0U);
  EXPECT_EQ(heardWhenStruck({shiftKey, keyV}), 0U);
  EXPECT_EQ(heardWhenStruck({controlKey, superKey, shiftKey, keyV}), 0U);
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, altKey, keyV}), 0U);
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyB}), 0U);
}

TEST_F(HotKeysTest, OtherKeysStruckWhileItIsHeldAreNotHeard) {
  ASSERT_TRUE(registerPaste());
  EXPECT_EQ(heardWhen([&] {
              fingers().press(superKey);
              fingers().press(shiftKey);
              fingers().press(keyV);
              fingers().strike({keyB});
              fingers().strike({38});
              fingers().release(keyV);
              fingers().release(shiftKey);
              fingers().release(superKey);
            }),
            1U);
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

TEST_F(HotKeysTest, TheKeyIsHeardAgainWhenTheModifiersWereLetGoFirst) {
  ASSERT_TRUE(registerPaste());
  const auto act = [&] {
    fingers().press(superKey);
    fingers().press(shiftKey);
    fingers().press(keyV);
    fingers().release(superKey);
    fingers().release(shiftKey);
    fingers().release(keyV);
  };
  EXPECT_EQ(heardWhen(act), 1U);
  EXPECT_EQ(heardWhen(act), 1U);
}

class HotKeysOnLayouts : public HotKeysTest,
                         public testing::WithParamInterface<std::pair<const char*, int>> {};

TEST_P(HotKeysOnLayouts, ThePlaceOfTheKeyCounts) {
  const auto [layouts, active] = GetParam();
  setLayout(layouts);
  setActiveLayout(static_cast<std::uint8_t>(active));
  ASSERT_TRUE(registerPaste());
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
  fingers().strike({capsLockKey});
  fingers().strike({numLockKey});
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

INSTANTIATE_TEST_SUITE_P(Layouts, HotKeysOnLayouts,
                         testing::Values(std::pair("us", 0), std::pair("fr", 0),
                                         std::pair("us,il", 0), std::pair("us,il", 1),
                                         std::pair("il,us", 0), std::pair("il,us", 1),
                                         std::pair("il", 0)));

TEST_F(HotKeysTest, AShortcutOfAnotherProgramIsRefused) {
  const auto rival = X11Connection::open(display());
  ASSERT_TRUE(takenByOther(superShift, keyV, *rival));
  EXPECT_EQ(registerPaste(), std::nullopt);
}

TEST_F(HotKeysTest, AShortcutThatAnotherProgramHasInOneLockStateLeavesNothingTaken) {
  const auto rival = X11Connection::open(display());
  const auto third = X11Connection::open(display());
  ASSERT_TRUE(takenByOther(superShift | XCB_MOD_MASK_2, keyV, *rival));
  EXPECT_EQ(registerPaste(), std::nullopt);
  waitUntil("it is given back", [&] { return takenByOther(superShift, keyV, *third); });
  EXPECT_TRUE(takenByOther(superShift | XCB_MOD_MASK_LOCK, keyV, *third));
  EXPECT_TRUE(takenByOther(superShift | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2, keyV, *third));
}

TEST_F(HotKeysTest, TheSameShortcutTwiceIsRefused) {
  ASSERT_TRUE(registerPaste());
  EXPECT_EQ(hotKeys->registerHotKey({keys::v, commandShift}, other), std::nullopt);
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

TEST_F(HotKeysTest, AnUnregisteredShortcutIsFreeForOthers) {
  const auto reference = registerPaste();
  ASSERT_TRUE(reference);
  const auto rival = X11Connection::open(display());
  EXPECT_FALSE(takenByOther(superShift, keyV, *rival));
  EXPECT_FALSE(takenByOther(superShift | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2, keyV, *rival));
  hotKeys->unregisterHotKey(*reference);
  hotKeys->unregisterHotKey(*reference);
  hotKeys->unregisterHotKey(4711);
  EXPECT_TRUE(takenByOther(superShift, keyV, *rival));
  EXPECT_TRUE(takenByOther(superShift | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2, keyV, *rival));
}

TEST_F(HotKeysTest, TheOldShortcutStaysUntilTheNewOneIsThere) {
  const auto old = registerPaste();
  ASSERT_TRUE(old);
  const auto next =
      hotKeys->registerHotKey({keys::space, hotkeys::command | hotkeys::option}, paste);
  ASSERT_TRUE(next);
  hotKeys->unregisterHotKey(*old);
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 0U);
  EXPECT_EQ(heardWhenStruck({superKey, altKey, 65}), 1U);
}

TEST_F(HotKeysTest, KeysThatAreNoneAreRefused) {
  EXPECT_EQ(hotKeys->registerHotKey({127, commandShift}, paste), std::nullopt);
  EXPECT_EQ(hotKeys->registerHotKey({100000, commandShift}, paste), std::nullopt);
}

TEST_F(HotKeysTest, StaysTakenWhenTheKeyboardChanges) {
  ASSERT_TRUE(registerPaste());
  setLayout("fr");
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
  setLayout("il");
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

TEST_F(HotKeysTest, FollowsSuperToAnotherModifier) {
  ASSERT_TRUE(registerPaste());
  // Super moves from Mod4 to Mod3, as a user's keyboard settings may have it.
  const auto setting =
      run({"xmodmap", "-e", "clear Mod4", "-e", "clear Mod3", "-e", "add Mod3 = Super_L Super_R"});
  waitUntil("the modifiers are set", [&] { return setting->ended(); });
  const auto rival = X11Connection::open(display());
  constexpr std::uint16_t moved = XCB_MOD_MASK_3 | XCB_MOD_MASK_SHIFT;
  waitUntil("the shortcut is taken at its new place", [&] {
    const bool free = takenByOther(moved, keyV, *rival);
    if (free) {
      xcb_ungrab_key(rival->xcb(), keyV, rival->root(), moved);
      const auto done = rival->reply(xcb_get_input_focus_reply, xcb_get_input_focus(rival->xcb()));
    }
    return !free;
  });
  EXPECT_TRUE(takenByOther(superShift, keyV, *rival)) << "the old place is free";
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

TEST_F(HotKeysTest, APressWhileAnotherProgramHasTheWholeKeyboardBreaksNothing) {
  ASSERT_TRUE(registerPaste());
  const auto rival = X11Connection::open(display());
  const auto grab = rival->reply(xcb_grab_keyboard_reply,
                                 xcb_grab_keyboard(rival->xcb(), 0, rival->root(), XCB_CURRENT_TIME,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
  fingers().strike({superKey, shiftKey, keyV});
  sync();
  xcb_ungrab_keyboard(rival->xcb(), XCB_CURRENT_TIME);
  const auto done = rival->reply(xcb_get_input_focus_reply, xcb_get_input_focus(rival->xcb()));
  EXPECT_EQ(heardWhenStruck({superKey, shiftKey, keyV}), 1U);
}

TEST_F(HotKeysTest, APressUnderWayIsNotHeardAfterTheEnd) {
  const auto reference = registerPaste();
  ASSERT_TRUE(reference);
  const auto queuePress = [&] {
    const auto before = dispatch.queuedCount();
    fingers().strike({superKey, shiftKey, keyV});
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (dispatch.queuedCount() == before && std::chrono::steady_clock::now() < end) sync();
    return dispatch.queuedCount() > before;
  };
  ASSERT_TRUE(queuePress());
  hotKeys->removeHandler();
  dispatch.runQueued();
  EXPECT_THAT(pressed, IsEmpty());

  ASSERT_TRUE(hotKeys->installHandler([this](HotKeyId id) { pressed.push_back(id.id); }));
  ASSERT_TRUE(queuePress());
  hotKeys->unregisterHotKey(*reference);
  dispatch.runQueued();
  EXPECT_THAT(pressed, IsEmpty());

  ASSERT_TRUE(registerPaste());
  ASSERT_TRUE(queuePress());
  hotKeys.reset();
  dispatch.runQueued();
  EXPECT_THAT(pressed, IsEmpty());
}

TEST_F(HotKeysTest, ShortcutsAreFreeWhenTheProgramEnds) {
  ASSERT_TRUE(registerPaste());
  hotKeys.reset();
  const auto rival = X11Connection::open(display());
  waitUntil("the shortcut is free", [&] { return takenByOther(superShift, keyV, *rival); });
}

TEST_F(HotKeysTest, WithoutTheServerNothingCanBeTaken) {
  ASSERT_TRUE(registerPaste());
  killServer();
  EXPECT_EQ(hotKeys->registerHotKey({keys::space, commandShift}, other), std::nullopt);
}

}  // namespace
}  // namespace vantorel
