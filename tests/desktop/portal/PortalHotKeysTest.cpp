// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalHotKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
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
    EXPECT_EQ(hotKeys_.isAwaited(reference), answer == HotKeyAnswer::absent)
        << "of a portal that comes";
  }
  /// The bus has something to start as the portal, which never becomes one.
  void installService() const {
    std::ofstream(session_.home() / "services/org.freedesktop.portal.Desktop.service")
        << "[D-BUS Service]\nName=org.freedesktop.portal.Desktop\nExec=/bin/sh -c \"touch "
        << started().string() << "; exec sleep 60\"\n";
  }
  /// There once it was started.
  [[nodiscard]] std::filesystem::path started() const { return session_.home() / "started"; }
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
  Portal portal_{dispatch_, PortalAnswers::Extent::colors, Portal::Start::whenWanted, [] {}};
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
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(reference, HotKeyAnswer::held));
}

TEST_F(PortalHotKeysTest, KeysThatCouldNotBeHadAreHadFromAPortalThatComesLater) {
  const auto reference = ask();
  ASSERT_TRUE(awaitAnswers(1));
  ScriptedPortal portal;
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(reference, HotKeyAnswer::held));
  EXPECT_FALSE(hotKeys_.isAwaited(reference));
}

TEST_F(PortalHotKeysTest, APortalThatGoesBeforeItKnowsWhoAsksHasNone) {
  installService();
  ask();
  ASSERT_TRUE(await([&] { return std::filesystem::exists(started()); }));
  auto portal = std::make_unique<ScriptedPortal>();
  portal->isSilent = true;
  ASSERT_TRUE(await([&] { return portal->wasCalledLast("Register"); }));
  portal.reset();
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_EQ(answers_[0].second, HotKeyAnswer::absent);
}

TEST_F(PortalHotKeysTest, OnABusThatIsJoinedAnewAnAwaitedPortalHasNone) {
  installService();
  ask();
  ASSERT_TRUE(await([&] { return std::filesystem::exists(started()); }));
  portal_.rejoin();
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_EQ(answers_[0].second, HotKeyAnswer::absent);
}

TEST_F(PortalHotKeysTest, APortalThatRefusesTheProcessHasNone) {
  for (const bool isOld : {false, true}) {
    ScriptedPortal portal;
    portal.isOld = isOld;
    portal.mayLook = [] { return false; };
    ask();
    ASSERT_TRUE(awaitAnswers(isOld ? 2 : 1));
    EXPECT_EQ(answers_.back().second, HotKeyAnswer::absent);
    EXPECT_THAT(portal.calls, Not(Contains(isOld ? "BindShortcuts" : "CreateSession")));
  }
}

TEST_F(PortalHotKeysTest, APortalThatComesAnewToAClosedProcessTakesTheKeysAway) {
  auto portal = std::make_unique<ScriptedPortal>();
  const auto reference = ask();
  ASSERT_TRUE(awaitAnswers(1));
  portal.reset();
  portal = std::make_unique<ScriptedPortal>();
  portal->mayLook = [] { return false; };
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(reference, HotKeyAnswer::absent));
  EXPECT_EQ(hotKeys_.given(reference), "");
}

TEST_F(PortalHotKeysTest, APortalThatIsStartedKnowsTheProcessBeforeItIsClosed) {
  installService();
  std::atomic<bool> isClosed{false};
  Portal portal(dispatch_, PortalAnswers::Extent::colors, Portal::Start::atOnce,
                [&] { isClosed = true; });
  PortalHotKeys hotKeys(dispatch_, portal);
  std::vector<HotKeyAnswer> answers;
  hotKeys.setAnswerHandler([&](HotKeyRef, HotKeyAnswer answer) { answers.push_back(answer); });
  ASSERT_TRUE(hotKeys.registerHotKey(superShiftV, ours));
  ASSERT_TRUE(await([&] { return std::filesystem::exists(started()); }));
  ScriptedPortal scripted;
  scripted.mayLook = [&] { return !isClosed; };
  ASSERT_TRUE(await([&] { return !answers.empty(); }));
  EXPECT_THAT(answers, ElementsAre(HotKeyAnswer::held));
  EXPECT_TRUE(isClosed);
}

TEST_F(PortalHotKeysTest, WhereNoneCanBeStartedNobodyWaitsForOne) {
  std::atomic<bool> isClosed{false};
  const Portal portal(dispatch_, PortalAnswers::Extent::colors, Portal::Start::atOnce,
                      [&] { isClosed = true; });
  ASSERT_TRUE(await([&] { return isClosed.load(); }));
}

TEST_F(PortalHotKeysTest, APressForgivesTheEndingsOfSessions) {
  ScriptedPortal portal;
  expectAnswer(HotKeyAnswer::held);
  for (int i = 0; i < 5; ++i) {
    const auto ended = portal.session;
    portal.close(ended);
    ASSERT_TRUE(await([&] { return portal.session != ended; }));
    ASSERT_TRUE(await([&] { return portal.wasCalledLast("BindShortcuts"); }));
    settle(portal);
  }
  EXPECT_EQ(answers_.size(), 1U);
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

TEST_F(PortalHotKeysTest, AnActionWithoutKeysIsNotHeldUntilTheUserGivesItSome) {
  ScriptedPortal portal;
  portal.user = [] { return ScriptedPortal::added(""); };
  expectAnswer(HotKeyAnswer::absent);
  portal.change(portal.session, {{"toggle", {{"trigger_description", "Press <Alt><Super>b"}}}});
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1].second, HotKeyAnswer::held);
  EXPECT_EQ(hotKeys_.given(answers_[1].first), "⌘⌥B");
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
