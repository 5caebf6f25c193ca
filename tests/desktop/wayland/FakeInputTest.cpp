// SPDX-License-Identifier: MIT
// Keys pressed on the keyboard that the user has, under KWin.
#include "platform/linux/wayland/FakeInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/wayland/FakeKwin.h"
#include "desktop/x11pasteboard/MainLoop.h"
#include "platform/linux/wayland/OfferedProtocols.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using Outcome = ChordKeyboard::Outcome;
using States = FakeKwin::States;

constexpr std::uint32_t shift = 5;
constexpr KernelKey keyOfVOnMost = 47;
const KernelChord controlV{{29}, keyOfVOnMost};

/// A keymap of two keys, of which the first is where most have a v.
std::string keymap(const std::string& first, const std::string& second) {
  return "xkb_keymap { xkb_keycodes { minimum = 8; maximum = 255; <ONE> = 55; <TWO> = 60; };"
         "xkb_types { type \"ONE_LEVEL\" { modifiers = none; level_name[Level1] = \"Any\"; }; };"
         "xkb_compatibility { };"
         "xkb_symbols { key <ONE> { [ " +
         first + " ] }; key <TWO> { [ " + second + " ] }; }; };";
}

class FakeInputTest : public testing::Test {
 protected:
  explicit FakeInputTest(States states = States::telling) : kwin(compositor, states) {}
  ~FakeInputTest() override {
    input.reset();
    windows.reset();
    compositor.die();
  }

  void open() {
    windows = openToplevels(WaylandConnection::open(compositor.path()),
                            {.onActivated = [](const Toplevel&) {}, .onLost = [] {}});
    if (!windows) throw std::runtime_error("no windows");
    input = openKeyboard(windows->thread(), WaylandConnection::open(compositor.path()));
    if (!input) throw std::runtime_error("no input");
  }
  Outcome press(const KernelChord& chord = controlV) {
    auto outcome = Outcome::failed;
    EXPECT_TRUE(windows->thread().runAndWait([&] { outcome = input->press(chord); }));
    return outcome;
  }
  std::optional<KernelKey> v() {
    std::optional<KernelKey> key;
    EXPECT_TRUE(windows->thread().runAndWait([&] { key = input->keyOfV(); }));
    return key;
  }
  [[nodiscard]] bool waitUntil(const std::function<bool()>& condition) {
    const auto tick = loop.every(Seconds(0.002), [] {});
    return loop.runUntil(condition);
  }

  FakeCompositor compositor{FakeCompositor::Protocol::none};
  FakeKwin kwin;
  MainLoop loop;
  std::unique_ptr<ToplevelSource> windows;
  std::unique_ptr<ChordKeyboard> input;
};

TEST_F(FakeInputTest, TheChordIsPressedAndLetGo) {
  open();
  EXPECT_TRUE(input->isAvailable());
  EXPECT_EQ(press(), Outcome::pressed);
  EXPECT_THAT(kwin.pressed(), ElementsAre("down 29", "down 47", "up 47", "up 29"));
}

TEST_F(FakeInputTest, NothingIsPressedWhileTheUserHoldsAModifier) {
  kwin.hold(shift, true);
  open();
  EXPECT_EQ(press(), Outcome::held);
  EXPECT_THAT(kwin.pressed(), IsEmpty());
  kwin.hold(shift, false);
  EXPECT_EQ(press(), Outcome::pressed);
  kwin.hold(shift, true);
  EXPECT_EQ(press(), Outcome::held);
}

TEST_F(FakeInputTest, ALockKeyIsNotHeld) {
  kwin.hold(0, true);
  open();
  EXPECT_EQ(press(), Outcome::pressed);
}

TEST_F(FakeInputTest, WithoutAKeyboardAVIsWhereMostHaveIt) {
  open();
  EXPECT_THAT(v(), Optional(keyOfVOnMost));
}

TEST_F(FakeInputTest, AVIsWhereTheUsersLayoutHasIt) {
  compositor.plugInKeyboard(keymap("k", "v"));
  open();
  EXPECT_THAT(v(), Optional(KernelKey{52}));
}

TEST_F(FakeInputTest, ALayoutMayHaveNoV) {
  compositor.plugInKeyboard(keymap("hebrew_he", "hebrew_taw"));
  open();
  EXPECT_EQ(v(), std::nullopt);
}

TEST_F(FakeInputTest, LayoutsThatDisagreeAreNotChosenFrom) {
  compositor.plugInKeyboard(keymap("v ], [ k", "k ], [ v"));
  open();
  EXPECT_EQ(v(), std::nullopt);
}

TEST_F(FakeInputTest, ALayoutWithoutAVLeavesTheOthersPlace) {
  compositor.plugInKeyboard(keymap("hebrew_he ], [ v", "hebrew_taw ], [ k"));
  open();
  EXPECT_THAT(v(), Optional(keyOfVOnMost));
}

TEST_F(FakeInputTest, AnotherKeyboardHasAnotherPlace) {
  open();
  compositor.plugInKeyboard(keymap("k", "v"));
  EXPECT_TRUE(waitUntil([&] { return v() == KernelKey{52}; }));
  compositor.plugInKeyboard(keymap("v", "period"));
  EXPECT_TRUE(waitUntil([&] { return v() == keyOfVOnMost; }));
  // What is no keymap has no v.
  compositor.plugInKeyboard("nonsense");
  EXPECT_TRUE(waitUntil([&] { return !v(); }));
}

TEST_F(FakeInputTest, ACompositorThatDiesTakesNoKeys) {
  open();
  compositor.die();
  EXPECT_EQ(press(), Outcome::failed);
  EXPECT_TRUE(waitUntil([&] { return !input->isAvailable(); }));
}

class FakeInputOfAnEarlierKwin : public FakeInputTest {
 protected:
  FakeInputOfAnEarlierKwin() : FakeInputTest(States::quiet) {}
};
TEST_F(FakeInputOfAnEarlierKwin, EveryModifierIsLetGoFirst) {
  kwin.hold(shift, true);
  open();
  EXPECT_EQ(press(), Outcome::pressed);
  EXPECT_THAT(kwin.pressed(),
              ElementsAre("up 42", "up 54", "up 29", "up 97", "up 56", "up 100", "up 125", "up 126",
                          "down 29", "down 47", "up 47", "up 29"));
}

TEST(FakeInput, WhereKeysAreNotTakenThereIsNone) {
  FakeCompositor compositor;
  const auto windows = openToplevels(WaylandConnection::open(compositor.path()), {});
  ASSERT_NE(windows, nullptr);
  EXPECT_EQ(openKeyboard(windows->thread(), WaylandConnection::open(compositor.path())), nullptr);
}

TEST(KernelChords, APasteIsWhatTheProgramAndTheLayoutMakeOfIt) {
  auto keys = PasteKeys::controlV;
  EXPECT_EQ(kernelChordFor(keys, 52), (KernelChord{{29}, 52}));
  keys = PasteKeys::controlShiftV;
  EXPECT_EQ(kernelChordFor(keys, 47), (KernelChord{{29, 42}, 47}));
  EXPECT_EQ(kernelChordFor(keys, std::nullopt), (KernelChord{{42}, 110}));
  EXPECT_EQ(keys, PasteKeys::shiftInsert);
}

}  // namespace
}  // namespace vantorel
