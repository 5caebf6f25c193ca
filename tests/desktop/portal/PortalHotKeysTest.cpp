// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalHotKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "desktop/portal/ScriptedPortal.h"
#include "desktop/session/PrivateSession.h"
#include "fakes/ManualDispatch.h"
#include "platform/linux/portal/Portal.h"

namespace vantorel {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;

const HotKeyCombination superShiftV{9, hotkeys::command | hotkeys::shift, "V"};
const HotKeyCombination superAltSpace{49, hotkeys::command | hotkeys::option, "Space"};
constexpr HotKeyId ours{0x11223344, 1};

class PortalHotKeysTest : public testing::Test {
 protected:
  PortalHotKeysTest() {
    EXPECT_TRUE(hotKeys_.installHandler([this](HotKeyId id) { presses_.push_back(id); }));
    hotKeys_.setAnswerHandler([this](HotKeyRef reference, HotKeyAnswer answer) {
      answers_.emplace_back(reference, answer);
    });
  }
  [[nodiscard]] bool await(const std::function<bool()>& condition) {
    return waitFor([&] {
      QCoreApplication::processEvents();
      dispatch_.runQueued();
      return condition();
    });
  }
  [[nodiscard]] bool awaitAnswers(std::size_t count) {
    return await([&] { return answers_.size() >= count; });
  }
  HotKeyRef ask(const HotKeyCombination& keys = superShiftV) {
    return hotKeys_.registerHotKey(keys, ours).value();
  }
  /// Asks, and expects that answer as the first one.
  void expectAnswer(HotKeyAnswer answer) {
    const auto reference = ask();
    ASSERT_TRUE(awaitAnswers(1));
    EXPECT_THAT(answers_, ElementsAre(Pair(reference, answer)));
    EXPECT_FALSE(hotKeys_.isAwaited(reference));
  }
  /// Once everything that the portal sent until now has been heard.
  void settle(ScriptedPortal& portal) {
    const auto pressed = presses_.size();
    portal.press(portal.session);
    ASSERT_TRUE(await([&] { return presses_.size() > pressed; }));
    presses_.pop_back();
  }

  PrivateSession session_;
  int argumentCount_ = 1;
  std::string name_ = "test";
  std::array<char*, 2> arguments_{name_.data(), nullptr};
  QCoreApplication application_{argumentCount_, arguments_.data()};
  ManualDispatch dispatch_;
  Portal portal_{dispatch_, PortalAnswers::Extent::colors, [] {}};
  PortalHotKeys hotKeys_{dispatch_, portal_};
  std::vector<HotKeyId> presses_;
  std::vector<std::pair<HotKeyRef, HotKeyAnswer>> answers_;
};

TEST_F(PortalHotKeysTest, KeysThatTheUserAddsAreHeldAndPressed) {
  ScriptedPortal portal;
  const auto reference = ask();
  EXPECT_TRUE(hotKeys_.isAwaited(reference));
  EXPECT_THAT(answers_, IsEmpty()) << "in a later turn";
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::held)));
  EXPECT_FALSE(hotKeys_.isAwaited(reference));
  EXPECT_EQ(portal.calls.front(), "Register") << "before all else";
  EXPECT_EQ(portal.application, "com.vantorel.Vantorel");
  EXPECT_EQ(portal.trigger, "LOGO+SHIFT+v");
  EXPECT_EQ(hotKeys_.given(reference), "⌘⇧V");
  portal.press(portal.session);
  ASSERT_TRUE(await([&] { return !presses_.empty(); }));
  EXPECT_THAT(presses_, ElementsAre(ours));
}

TEST_F(PortalHotKeysTest, WithoutTheShortcutInTheAnswerTheUserSaidNo) {
  ScriptedPortal portal;
  portal.user = ScriptedPortal::cancelled;
  expectAnswer(HotKeyAnswer::refused);
  EXPECT_TRUE(await([&] { return portal.wasCalledLast("Close"); })) << "the session";
}

TEST_F(PortalHotKeysTest, WhoMayNotBeAskedIsNotAsked) {
  ScriptedPortal portal;
  hotKeys_.setMayAsk(false);
  expectAnswer(HotKeyAnswer::refused);
  EXPECT_THAT(portal.calls, Not(Contains("CreateSession")));
  hotKeys_.setMayAsk(true);
  ask();
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1].second, HotKeyAnswer::held);
}

TEST_F(PortalHotKeysTest, APortalWithoutShortcutsHasNone) {
  ScriptedPortal portal(ScriptedPortal::Has::settingsAlone);
  expectAnswer(HotKeyAnswer::absent);
}

TEST_F(PortalHotKeysTest, ShortcutsOfAnotherDesktopThatIsInstalledTooAreNone) {
  ScriptedPortal portal(ScriptedPortal::Has::shortcutsOfOthers);
  expectAnswer(HotKeyAnswer::absent);
}

TEST_F(PortalHotKeysTest, WhereNoPortalCanBeStartedThereAreNone) {
  expectAnswer(HotKeyAnswer::absent);
}

TEST_F(PortalHotKeysTest, AResponseThatComesBeforeTheReplyCounts) {
  ScriptedPortal portal;
  portal.order = ScriptedPortal::Order::responseFirst;
  expectAnswer(HotKeyAnswer::held);
}

TEST_F(PortalHotKeysTest, APortalThatEndsWhileItAsksHasNoShortcuts) {
  auto portal = std::make_unique<ScriptedPortal>();
  portal->user = nullptr;
  const auto reference = ask();
  ASSERT_TRUE(await([&] { return portal->wasCalledLast("BindShortcuts"); }));
  portal.reset();
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::absent)));
  ScriptedPortal another;
  ask();
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1].second, HotKeyAnswer::held);
}

TEST_F(PortalHotKeysTest, APortalThatComesAnewGivesTheKeysAgain) {
  auto portal = std::make_unique<ScriptedPortal>();
  expectAnswer(HotKeyAnswer::held);
  const auto old = portal->session;
  portal.reset();
  portal = std::make_unique<ScriptedPortal>();
  ASSERT_TRUE(await([&] { return !portal->trigger.isEmpty(); }));
  portal->press(old);  // nobody's any more
  portal->press(portal->session);
  ASSERT_TRUE(await([&] { return !presses_.empty(); }));
  EXPECT_EQ(presses_.size(), 1U);
  EXPECT_EQ(answers_.size(), 1U) << "nothing is another than before";
}

TEST_F(PortalHotKeysTest, PressesOfOthersAreNotOurs) {
  ScriptedPortal portal;
  expectAnswer(HotKeyAnswer::held);
  portal.press("/org/freedesktop/portal/desktop/session/1_1/other");
  portal.press(portal.session, "other");
  portal.signal("/org/freedesktop/portal/desktop", "org.freedesktop.portal.GlobalShortcuts",
                "Activated", {portal.session, 3});
  settle(portal);
  EXPECT_THAT(presses_, IsEmpty());
}

TEST_F(PortalHotKeysTest, AResponseOfAnotherShapeGivesNothing) {
  ScriptedPortal portal;
  portal.user = nullptr;
  const auto reference = ask();
  ASSERT_TRUE(await([&] { return portal.wasCalledLast("BindShortcuts"); }));
  portal.respond({QString("yes")});
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::absent)));
}

TEST_F(PortalHotKeysTest, AListOfAnotherShapeNamesNoShortcut) {
  ScriptedPortal portal;
  portal.user = [] { return QVariantMap{{"shortcuts", QStringList{"toggle"}}}; };
  expectAnswer(HotKeyAnswer::refused);
}

TEST_F(PortalHotKeysTest, ASessionThatIsNoObjectIsNone) {
  ScriptedPortal portal;
  portal.sessionHandle = QString("not a path");
  expectAnswer(HotKeyAnswer::absent);
  portal.sessionHandle = 17;
  ask();
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1].second, HotKeyAnswer::absent);
}

TEST_F(PortalHotKeysTest, KeysThatTheUserChangesAreTold) {
  ScriptedPortal portal;
  const auto reference = ask();
  ASSERT_TRUE(awaitAnswers(1));
  portal.change("/org/freedesktop/portal/desktop/session/1_1/other", {});
  portal.change(portal.session, {{"toggle", {{"trigger_description", "Press <Alt><Super>b"}}}});
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(reference, HotKeyAnswer::held));
  EXPECT_EQ(hotKeys_.given(reference), "⌘⌥B");
  portal.change(portal.session, {});
  ASSERT_TRUE(awaitAnswers(3));
  EXPECT_EQ(answers_[2], std::pair(reference, HotKeyAnswer::refused)) << "taken away";
}

TEST_F(PortalHotKeysTest, WhileKeysAreHeldOthersAreNotToBeHad) {
  ScriptedPortal portal;
  expectAnswer(HotKeyAnswer::held);
  EXPECT_EQ(hotKeys_.registerHotKey(superAltSpace, ours), std::nullopt);
  settle(portal);
}

TEST_F(PortalHotKeysTest, ANewerWishReplacesOneThatIsAskedFor) {
  ScriptedPortal portal;
  portal.user = nullptr;
  ask();
  ASSERT_TRUE(await([&] { return portal.wasCalledLast("BindShortcuts"); }));
  portal.user = [] { return ScriptedPortal::added(); };
  const auto newer = ask(superAltSpace);
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(newer, HotKeyAnswer::held)));
  EXPECT_EQ(portal.trigger, "LOGO+ALT+space");
  EXPECT_THAT(portal.calls, Contains("Close"));
}

TEST_F(PortalHotKeysTest, ASessionThatIsEndedIsHadAgainButNotForEver) {
  ScriptedPortal portal;
  expectAnswer(HotKeyAnswer::held);
  for (int i = 0; i < 3; ++i) {
    const auto ended = portal.session;
    portal.close(ended);
    ASSERT_TRUE(await([&] { return portal.session != ended; }));
    ASSERT_TRUE(await([&] { return portal.wasCalledLast("BindShortcuts"); }));
    settle(portal);
  }
  EXPECT_EQ(answers_.size(), 1U);
  portal.close(portal.session);
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1].second, HotKeyAnswer::absent);
}

TEST_F(PortalHotKeysTest, KeysThatAreGivenBackEndTheSession) {
  ScriptedPortal portal;
  const auto reference = ask();
  ASSERT_TRUE(awaitAnswers(1));
  hotKeys_.unregisterHotKey(reference);
  ASSERT_TRUE(await([&] { return portal.wasCalledLast("Close"); }));
  EXPECT_EQ(hotKeys_.given(reference), "");
}

}  // namespace
}  // namespace vantorel
