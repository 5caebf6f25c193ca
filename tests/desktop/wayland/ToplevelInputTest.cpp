// SPDX-License-Identifier: MIT
// Keys pressed into windows of a compositor, against one that says what it was given.
#include "platform/linux/wayland/ToplevelInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

#include "desktop/wayland/FakeCompositor.h"
#include "desktop/wayland/FakeKeyboards.h"
#include "desktop/x11pasteboard/MainLoop.h"
#include "platform/linux/wayland/ForeignToplevels.h"
#include "platform/linux/wayland/VirtualKeyboard.h"

namespace vantorel {
namespace {

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::IsEmpty;

using Manner = FakeKeyboards::Manner;

constexpr SyntheticKeyEvent commandV{keys::v, KeyDirection::down, flags::command};

class ToplevelInputTest : public testing::Test {
 protected:
  explicit ToplevelInputTest(Manner manner = Manner::obliging) : keyboards(compositor, manner) {
    windows = ForeignToplevels::open(WaylandConnection::open(compositor.path()),
                                     {.onActivated = [](const Toplevel&) {}, .onLost = [] {}});
    if (!windows) throw std::runtime_error("no windows");
    auto keyboard =
        VirtualKeyboard::open(windows->thread(), WaylandConnection::open(compositor.path()));
    if (!keyboard) return;
    input = std::make_unique<ToplevelInput>(
        ToplevelInput::Services{.dispatch = loop,
                                .windows = *windows,
                                .entries = entries,
                                .offerPrimary =
                                    [this] {
                                      ++primaryOffers;
                                      return canOfferPrimary.load();
                                    },
                                .isKeyboardElsewhere = [this] { return ++looks > looksInVain; }},
        std::move(keyboard));
  }
  ~ToplevelInputTest() override {
    keyboards.speakAgain();
    input.reset();
    windows.reset();
    compositor.die();
  }

  [[nodiscard]] bool waitUntil(const std::function<bool()>& condition) {
    const auto tick = loop.every(Seconds(0.002), [] {});
    return loop.runUntil(condition);
  }
  /// A window of that application, in front.
  RunningApplication open(const std::string& appId) {
    compositor.open(appId);
    EXPECT_TRUE(waitUntil([&] {
      const auto front = windows->active();
      return front && front->appId == appId;
    }));
    return inFront();
  }

  [[nodiscard]] RunningApplication inFront() const {
    RunningApplication application;
    application.window = windows->active()->token;
    return application;
  }

  /// Where the answer will be.
  std::shared_ptr<std::optional<KeyDelivery>> post(const RunningApplication& target,
                                                   SyntheticKeyEvent event = commandV) {
    auto answer = std::make_shared<std::optional<KeyDelivery>>();
    input->post(event, target, [answer](KeyDelivery delivery) {
      EXPECT_FALSE(*answer) << "answered twice";
      *answer = delivery;
    });
    EXPECT_FALSE(*answer) << "answered within the same turn";
    return answer;
  }
  KeyDelivery finished(const std::shared_ptr<std::optional<KeyDelivery>>& answer) {
    EXPECT_TRUE(loop.runUntil([&] { return answer->has_value(); }));
    return answer->value_or(KeyDelivery::failed);
  }
  KeyDelivery press(const RunningApplication& target, SyntheticKeyEvent event = commandV) {
    return finished(post(target, event));
  }

  FakeCompositor compositor;
  FakeKeyboards keyboards;
  MainLoop loop;
  DesktopEntries entries{{}};
  std::atomic<bool> canOfferPrimary = true;
  std::atomic<int> primaryOffers = 0;
  int looks = 0;
  int looksInVain = 0;  // before the keyboard is elsewhere
  std::unique_ptr<ForeignToplevels> windows;
  std::unique_ptr<ToplevelInput> input;
};

TEST_F(ToplevelInputTest, TheChordIsPressedAndLetGo) {
  EXPECT_TRUE(input->isTrusted(TrustPrompt::ask));
  EXPECT_EQ(press(open("org.acme.Notes")), KeyDelivery::delivered);
  EXPECT_THAT(keyboards.pressed(),
              ElementsAre("down 29", "modifiers 4", "down 47", "up 47", "up 29", "modifiers 0"));
  EXPECT_EQ(primaryOffers, 0);
}

TEST_F(ToplevelInputTest, TheKeyboardBringsItsOwnKeymap) {
  const auto keymap = keyboards.keymap();
  EXPECT_TRUE(testing::Matches(ContainsRegex("<AB04> *= 55;"))(keymap)) << "no key for a v";
  EXPECT_TRUE(testing::Matches(ContainsRegex("key <AB04> *\\{\t\\[ *v,"))(keymap)) << "no v";
  EXPECT_EQ(keymap.find('\0'), keymap.size() - 1);
}

TEST_F(ToplevelInputTest, TerminalsPasteWithShiftToo) {
  EXPECT_EQ(press(open("kitty")), KeyDelivery::delivered);
  EXPECT_THAT(keyboards.pressed(),
              ElementsAre("down 29", "modifiers 4", "down 42", "modifiers 5", "down 47", "up 47",
                          "up 42", "modifiers 4", "up 29", "modifiers 0"));
}

TEST_F(ToplevelInputTest, WhatPastesThePrimarySelectionFindsItThere) {
  EXPECT_EQ(press(open("XTerm")), KeyDelivery::delivered);
  EXPECT_EQ(primaryOffers, 1);
  EXPECT_THAT(keyboards.pressed(),
              ElementsAre("down 42", "modifiers 1", "down 110", "up 110", "up 42", "modifiers 0"));
}

TEST_F(ToplevelInputTest, WithoutThePrimarySelectionNothingOldIsPasted) {
  canOfferPrimary = false;
  EXPECT_EQ(press(open("XTerm")), KeyDelivery::failed);
  EXPECT_THAT(keyboards.pressed(), IsEmpty());
}

TEST_F(ToplevelInputTest, OtherChordsArePressedByTheirPlaces) {
  const auto target = open("org.acme.Notes");
  EXPECT_EQ(press(target, {keys::v, KeyDirection::down, flags::option | flags::shift}),
            KeyDelivery::delivered);
  EXPECT_THAT(keyboards.pressed(),
              ElementsAre("down 56", "modifiers 8", "down 42", "modifiers 9", "down 47", "up 47",
                          "up 42", "modifiers 8", "up 56", "modifiers 0"));
  EXPECT_FALSE(input->createKeyboardEvent({}, 999, KeyDirection::down));
}

TEST_F(ToplevelInputTest, OnlyTheKeyItselfIsPressed) {
  const auto target = open("org.acme.Notes");
  EXPECT_EQ(press(target, {keys::command, KeyDirection::down, flags::command}),
            KeyDelivery::delivered);
  EXPECT_EQ(press(target, {keys::v, KeyDirection::up, flags::command}), KeyDelivery::delivered);
  EXPECT_THAT(keyboards.pressed(), IsEmpty());
}

TEST_F(ToplevelInputTest, AWindowThatComesLateIsWaitedFor) {
  const auto target = open("org.acme.Notes");
  open("other");
  const auto answer = post(target);
  loop.runQueued();
  EXPECT_FALSE(*answer);
  compositor.bringToFront("org.acme.Notes");
  EXPECT_EQ(finished(answer), KeyDelivery::delivered);
}

TEST_F(ToplevelInputTest, AWindowIsGivenTimeToLearnThatItIsInFront) {
  const auto target = open("org.acme.Notes");
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(press(target), KeyDelivery::delivered);
  EXPECT_GE(std::chrono::steady_clock::now() - before, ToplevelPresser::settling);
}

TEST_F(ToplevelInputTest, NobodyElseGetsTheKeys) {
  const auto target = open("org.acme.Notes");
  open("other");
  EXPECT_EQ(press(target), KeyDelivery::failed);
  compositor.close("org.acme.Notes");
  EXPECT_EQ(press(target), KeyDelivery::failed);
  EXPECT_THAT(keyboards.pressed(), IsEmpty());
}

TEST_F(ToplevelInputTest, WhereAnotherWindowCameMeanwhileItIsNotSaidToHaveArrived) {
  const auto target = open("org.acme.Notes");
  open("other");
  compositor.bringToFront("org.acme.Notes");
  keyboards.bringToFrontMeanwhile("other");
  EXPECT_EQ(press(target), KeyDelivery::failed);
  EXPECT_EQ(keyboards.pressed().back(), "modifiers 0");
}

TEST_F(ToplevelInputTest, NothingIsPressedBeforeTheKeyboardIsElsewhere) {
  looksInVain = 3;
  EXPECT_EQ(press(open("org.acme.Notes")), KeyDelivery::delivered);
  EXPECT_EQ(looks, 4);
}

TEST_F(ToplevelInputTest, AKeyboardThatStaysHereIsGivenUp) {
  looksInVain = 100000;
  EXPECT_EQ(press(open("org.acme.Notes")), KeyDelivery::failed);
  EXPECT_EQ(looks, ToplevelInput::keyboardChecks + 1);
  EXPECT_THAT(keyboards.pressed(), IsEmpty());
}

TEST_F(ToplevelInputTest, WhatIsWithdrawnIsNotPressed) {
  const auto target = open("org.acme.Notes");
  open("other");
  const auto forTheWindow = post(target);
  input->withdraw();
  EXPECT_EQ(finished(forTheWindow), KeyDelivery::failed);
  looksInVain = 100000;
  const auto forTheKeyboard = post(target);
  input->withdraw();
  EXPECT_EQ(finished(forTheKeyboard), KeyDelivery::failed);
  compositor.bringToFront("org.acme.Notes");
  looksInVain = 0;
  EXPECT_EQ(press(target), KeyDelivery::delivered);
  EXPECT_EQ(keyboards.pressed().size(), 6U);
}

TEST_F(ToplevelInputTest, ANewerOneTakesTheOldersPlace) {
  const auto target = open("org.acme.Notes");
  open("other");
  const auto older = post(target);
  compositor.bringToFront("other");
  const auto newer = post(inFront());
  EXPECT_EQ(finished(newer), KeyDelivery::delivered);
  EXPECT_EQ(finished(older), KeyDelivery::failed);
  EXPECT_EQ(keyboards.pressed().size(), 6U);
}

TEST_F(ToplevelInputTest, ACompositorThatDiesTakesNoKeys) {
  const auto target = open("org.acme.Notes");
  compositor.die();
  EXPECT_EQ(press(target), KeyDelivery::failed);
  EXPECT_TRUE(waitUntil([&] { return !input->isTrusted(TrustPrompt::none); }));
  EXPECT_FALSE(input->createEventSource());
}

class ToplevelInputOfARefusing : public ToplevelInputTest {
 protected:
  ToplevelInputOfARefusing() : ToplevelInputTest(Manner::refusing) {}
};
TEST_F(ToplevelInputOfARefusing, ThereIsNoKeyboardAndTheWindowsAreToldAllTheSame) {
  EXPECT_EQ(input, nullptr);
  open("org.acme.Notes");
}

class ToplevelInputOfAHangingUp : public ToplevelInputTest {
 protected:
  ToplevelInputOfAHangingUp() : ToplevelInputTest(Manner::hangingUp) {}
};
TEST_F(ToplevelInputOfAHangingUp, NothingIsSaidToHaveArrivedAndTheWindowsAreToldAllTheSame) {
  EXPECT_EQ(press(open("org.acme.Notes")), KeyDelivery::failed);
  EXPECT_FALSE(input->isTrusted(TrustPrompt::none));
  EXPECT_EQ(press(open("other")), KeyDelivery::failed);
}

class ToplevelInputOfASilent : public ToplevelInputTest {
 protected:
  ToplevelInputOfASilent() : ToplevelInputTest(Manner::silent) {}
};
TEST_F(ToplevelInputOfASilent, TheAnswerIsNotWaitedForWithoutEnd) {
  EXPECT_EQ(press(open("org.acme.Notes")), KeyDelivery::failed);
}

TEST(VirtualKeyboard, WhereNoneAreOfferedThereIsNone) {
  FakeCompositor compositor;
  const auto windows = ForeignToplevels::open(WaylandConnection::open(compositor.path()), {});
  EXPECT_EQ(VirtualKeyboard::open(windows->thread(), WaylandConnection::open(compositor.path())),
            nullptr);
}

}  // namespace
}  // namespace vantorel
