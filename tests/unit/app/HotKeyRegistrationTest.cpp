// SPDX-License-Identifier: MIT
#include "app/HotKeyRegistration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakeHotKeys.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto savedUnavailable = "Saved shortcut unavailable. Using ⌘⇧V.";
constexpr auto unavailable = "Shortcut unavailable. Open Keyboard Shortcut to choose another.";
constexpr auto noHandler = "Could not enable the keyboard shortcut.";

class HotKeyRegistrationTest : public testing::Test {
 protected:
  HotKeyRegistration& start() {
    registration = std::make_unique<HotKeyRegistration>(hotKeys, defaults, dispatch);
    registration->onPressed = [this] { ++presses; };
    registration->onNotice = [this](std::string_view notice) { notices.emplace_back(notice); };
    registration->onApplied = [this](HotKeyRegistration::ApplyResult result) {
      results.push_back(result);
    };
    registration->onChange = [this] { ++changes; };
    registration->registerHotKey();
    return *registration;
  }

  ManualDispatch dispatch;
  FakeUserDefaults defaults;
  FakeHotKeys hotKeys;
  std::unique_ptr<HotKeyRegistration> registration;
  int presses = 0;
  int changes = 0;
  std::vector<std::string> notices;
  std::vector<HotKeyRegistration::ApplyResult> results;
};

TEST_F(HotKeyRegistrationTest, FoldsTheSignatureFromItsLettersLeftToRight) {
  EXPECT_EQ(clipHotKeySignature, 0x564E544CU);
  EXPECT_EQ(clipHotKeyId, (HotKeyId{0x564E544CU, 1}));
}

TEST_F(HotKeyRegistrationTest, RegistersTheDefaultWithFreshDefaultsAndStoresNothing) {
  EXPECT_TRUE(start().isRegistered());
  EXPECT_THAT(hotKeys.registered(),
              ElementsAre(FakeHotKeys::Registered{9, 0x300, {clipHotKeySignature, 1}}));
  EXPECT_THAT(notices, IsEmpty());
  EXPECT_TRUE(defaults.values().empty());
}

TEST_F(HotKeyRegistrationTest, RegistersTheSavedShortcut) {
  HotKeyShortcut{40, 0x1800, "K"}.save(defaults);
  EXPECT_EQ(start().shortcut().display(), "⌥⌃K");
  EXPECT_TRUE(hotKeys.press(40, 0x1800));
  EXPECT_FALSE(hotKeys.press(9, 0x300));
}

TEST_F(HotKeyRegistrationTest, APressIsHandedOnInALaterTurn) {
  start();
  EXPECT_TRUE(hotKeys.press(9, 0x300));
  EXPECT_EQ(presses, 0);
  dispatch.runQueued();
  EXPECT_EQ(presses, 1);
}

TEST_F(HotKeyRegistrationTest, APressWithAnotherSignatureOrIdDoesNothing) {
  start();
  hotKeys.pressHotKey({clipHotKeySignature, 2});
  hotKeys.pressHotKey({clipHotKeySignature + 1, 1});
  hotKeys.pressHotKey({0, 0});
  EXPECT_EQ(dispatch.queuedCount(), 0U);
  dispatch.runQueued();
  EXPECT_EQ(presses, 0);
}

TEST_F(HotKeyRegistrationTest, ASavedShortcutThatIsTakenGivesWayToTheDefault) {
  HotKeyShortcut{40, 0x1800, "K"}.save(defaults);
  hotKeys.take(40, 0x1800);
  EXPECT_EQ(start().shortcut(), HotKeyShortcut{});
  EXPECT_EQ(HotKeyShortcut::load(defaults), HotKeyShortcut{});
  EXPECT_EQ(defaults.string("shortcut.keyLabel"), "V");
  EXPECT_THAT(notices, ElementsAre(savedUnavailable));
  EXPECT_TRUE(registration->isRegistered());
  EXPECT_TRUE(hotKeys.press(9, 0x300));
}

TEST_F(HotKeyRegistrationTest, TheDefaultThatIsTakenIsNotTriedTwice) {
  hotKeys.take(9, 0x300);
  EXPECT_FALSE(start().isRegistered());
  EXPECT_THAT(notices, ElementsAre(unavailable));
  EXPECT_THAT(hotKeys.log(), ElementsAre("register"));
  EXPECT_TRUE(defaults.values().empty());
}

TEST_F(HotKeyRegistrationTest, RunsWithoutAShortcutWhenTheDefaultIsTakenToo) {
  HotKeyShortcut{40, 0x1800, "K"}.save(defaults);
  hotKeys.take(40, 0x1800);
  hotKeys.take(9, 0x300);
  EXPECT_FALSE(start().isRegistered());
  EXPECT_THAT(notices, ElementsAre(savedUnavailable, unavailable));
  EXPECT_EQ(HotKeyShortcut::load(defaults), HotKeyShortcut{});
}

TEST_F(HotKeyRegistrationTest, TheDefaultKeysUnderAnotherLabelAreNotTheDefault) {
  HotKeyShortcut{9, 0x300, "ש"}.save(defaults);
  hotKeys.take(9, 0x300);
  start();
  EXPECT_THAT(notices, ElementsAre(savedUnavailable, unavailable));
  EXPECT_EQ(defaults.string("shortcut.keyLabel"), "V");
}

TEST_F(HotKeyRegistrationTest, AnInvalidStoredShortcutIsNotRewrittenByItself) {
  HotKeyShortcut{128, 0x300, "K"}.save(defaults);
  EXPECT_EQ(start().shortcut(), HotKeyShortcut{});
  EXPECT_EQ(defaults.integer("shortcut.keyCode"), 128);
  EXPECT_THAT(notices, IsEmpty());
}

TEST_F(HotKeyRegistrationTest, AHandlerThatCannotBeInstalledIsReportedAndTriedAgainNextTime) {
  hotKeys.setHandlerInstallFails(true);
  start();
  EXPECT_THAT(notices, ElementsAre(noHandler));
  hotKeys.setHandlerInstallFails(false);
  registration->registerHotKey();
  EXPECT_TRUE(hotKeys.hasHandler());
  EXPECT_THAT(notices, ElementsAre(noHandler));
  EXPECT_TRUE(hotKeys.press(9, 0x300));
  dispatch.runQueued();
  EXPECT_EQ(presses, 1);
}

TEST_F(HotKeyRegistrationTest, WhereShortcutsCannotBeHadTheSavedOneIsKept) {
  HotKeyShortcut{40, 0x1800, "K"}.save(defaults);
  hotKeys.setHandlerInstallFails(true);
  hotKeys.take(40, 0x1800);
  EXPECT_FALSE(start().canBeHad());
  EXPECT_THAT(notices, ElementsAre(noHandler));
  EXPECT_THAT(hotKeys.log(), IsEmpty());
  EXPECT_EQ(HotKeyShortcut::load(defaults), (HotKeyShortcut{40, 0x1800, "K"}));
}

TEST_F(HotKeyRegistrationTest, AnInstalledHandlerIsNeverInstalledAgain) {
  start().registerHotKey();
  EXPECT_EQ(hotKeys.handlerInstalls(), 1);
  EXPECT_EQ(hotKeys.registered().size(), 1U);
}

TEST_F(HotKeyRegistrationTest, GivesBackTheShortcutAndThenTheHandler) {
  start().unregisterHotKey();
  EXPECT_THAT(hotKeys.log(), ElementsAre("register", "unregister", "removeHandler"));
  EXPECT_FALSE(hotKeys.hasHandler());
  EXPECT_THAT(hotKeys.registered(), IsEmpty());
  registration.reset();
  EXPECT_EQ(hotKeys.log().size(), 3U);
}

TEST_F(HotKeyRegistrationTest, GivesBackEverythingWhenItEnds) {
  start();
  registration.reset();
  EXPECT_THAT(hotKeys.log(), ElementsAre("register", "unregister", "removeHandler"));
}

TEST_F(HotKeyRegistrationTest, APressThatArrivesAfterItsEndDoesNothing) {
  start();
  EXPECT_TRUE(hotKeys.press(9, 0x300));
  registration.reset();
  dispatch.runQueued();
  EXPECT_EQ(presses, 0);
}

TEST_F(HotKeyRegistrationTest, NeedsNobodyToListen) {
  hotKeys.take(9, 0x300);
  HotKeyRegistration alone(hotKeys, defaults, dispatch);
  alone.registerHotKey();
  hotKeys.pressHotKey(clipHotKeyId);
  dispatch.runQueued();
  EXPECT_FALSE(alone.isRegistered());
}

using ApplyResult = HotKeyRegistration::ApplyResult;

// ⌘⌥Space
const HotKeyShortcut commandOptionSpace{49, 0x900, "Space"};

TEST_F(HotKeyRegistrationTest, ANewShortcutIsTakenBeforeTheOldOneIsGivenBack) {
  auto& registered = start();
  EXPECT_EQ(registered.apply(commandOptionSpace), ApplyResult::applied);
  EXPECT_THAT(hotKeys.log(), ElementsAre("register", "register", "unregister"));
  EXPECT_THAT(hotKeys.registered(), ElementsAre(FakeHotKeys::Registered{49, 0x900, clipHotKeyId}));
  EXPECT_EQ(registered.shortcut(), commandOptionSpace);
  EXPECT_EQ(HotKeyShortcut::load(defaults), commandOptionSpace);
  EXPECT_FALSE(hotKeys.press(9, 0x300));
  EXPECT_TRUE(hotKeys.press(49, 0x900));
  dispatch.runQueued();
  EXPECT_EQ(presses, 1);
}

TEST_F(HotKeyRegistrationTest, ATakenShortcutLeavesEverythingAsItWas) {
  auto& registered = start();
  hotKeys.take(49, 0x900);
  EXPECT_EQ(registered.apply(commandOptionSpace), ApplyResult::unavailable);
  EXPECT_EQ(registered.shortcut(), HotKeyShortcut{});
  EXPECT_FALSE(defaults.contains(HotKeyShortcut::keyCodeKey));
  EXPECT_TRUE(hotKeys.press(9, 0x300));
  dispatch.runQueued();
  EXPECT_EQ(presses, 1);
  EXPECT_THAT(notices, IsEmpty());
}

TEST_F(HotKeyRegistrationTest, TheSameShortcutAgainChangesNothing) {
  auto& registered = start();
  EXPECT_EQ(registered.apply({}), ApplyResult::unchanged);
  EXPECT_THAT(hotKeys.log(), ElementsAre("register"));
  EXPECT_FALSE(defaults.contains(HotKeyShortcut::keyCodeKey));
}

TEST_F(HotKeyRegistrationTest, TheSameKeysUnderAnotherLabelAreUnavailable) {
  auto& registered = start();
  EXPECT_EQ(registered.apply({9, 0x300, "M"}), ApplyResult::unavailable);
  EXPECT_EQ(registered.shortcut(), HotKeyShortcut{});
}

TEST_F(HotKeyRegistrationTest, TheSameShortcutIsTriedAgainWhenItWasNotHeld) {
  hotKeys.take(9, 0x300);
  auto& registered = start();
  EXPECT_EQ(registered.apply({}), ApplyResult::unavailable);
  hotKeys.giveUp(9, 0x300);
  EXPECT_EQ(registered.apply({}), ApplyResult::applied);
  EXPECT_TRUE(registered.isRegistered());
  EXPECT_EQ(HotKeyShortcut::load(defaults), HotKeyShortcut{});
}

TEST_F(HotKeyRegistrationTest, ApplyingInstallsAHandlerThatCouldNotBeInstalledBefore) {
  hotKeys.setHandlerInstallFails(true);
  auto& registered = start();
  EXPECT_FALSE(hotKeys.hasHandler());
  hotKeys.setHandlerInstallFails(false);
  EXPECT_EQ(registered.apply(commandOptionSpace), ApplyResult::applied);
  EXPECT_TRUE(hotKeys.press(49, 0x900));
  dispatch.runQueued();
  EXPECT_EQ(presses, 1);
}

class AskedHotKeyTest : public HotKeyRegistrationTest {
 protected:
  AskedHotKeyTest() { hotKeys.setAnswersLater(true); }
};

TEST_F(AskedHotKeyTest, UntilTheDesktopAnswersTheShortcutCountsAsHad) {
  EXPECT_TRUE(start().canBeHad());
  EXPECT_TRUE(registration->isRegistered());
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_TRUE(registration->canBeHad());
  EXPECT_THAT(notices, IsEmpty());
}

TEST_F(AskedHotKeyTest, ASavedShortcutThatIsRefusedLaterGivesWayToTheDefault) {
  HotKeyShortcut{40, 0x1800, "K"}.save(defaults);
  start();
  hotKeys.answer(HotKeyAnswer::taken);
  EXPECT_THAT(notices, ElementsAre(savedUnavailable));
  EXPECT_EQ(HotKeyShortcut::load(defaults), HotKeyShortcut{});
  EXPECT_EQ(changes, 1);
  hotKeys.answer(HotKeyAnswer::taken);
  EXPECT_THAT(notices, ElementsAre(savedUnavailable, unavailable));
  EXPECT_FALSE(registration->isRegistered());
  EXPECT_TRUE(registration->canBeHad());
}

TEST_F(AskedHotKeyTest, WhereNobodyCanHaveOneNothingIsSaidAndWhatIsStoredStays) {
  HotKeyShortcut{40, 0x1800, "K"}.save(defaults);
  start();
  hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_FALSE(registration->canBeHad());
  EXPECT_FALSE(registration->isRegistered());
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(notices, IsEmpty());
  EXPECT_EQ(HotKeyShortcut::load(defaults), (HotKeyShortcut{40, 0x1800, "K"}));
}

TEST_F(AskedHotKeyTest, ANewShortcutIsStoredOnceItIsHeld) {
  start();
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  EXPECT_EQ(registration->shortcut(), HotKeyShortcut{});
  EXPECT_TRUE(hotKeys.press(9, 0x300)) << "the old one works meanwhile";
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_THAT(results, ElementsAre(ApplyResult::applied));
  EXPECT_EQ(HotKeyShortcut::load(defaults), commandOptionSpace);
  EXPECT_THAT(hotKeys.log(), ElementsAre("register", "register", "unregister"));
  EXPECT_FALSE(hotKeys.press(9, 0x300));
}

TEST_F(AskedHotKeyTest, ARefusedOneLeavesTheOldOneInForce) {
  start();
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  hotKeys.answer(HotKeyAnswer::taken);
  EXPECT_THAT(results, ElementsAre(ApplyResult::unavailable));
  EXPECT_EQ(registration->shortcut(), HotKeyShortcut{});
  EXPECT_TRUE(hotKeys.press(9, 0x300));
  EXPECT_FALSE(defaults.contains(HotKeyShortcut::keyCodeKey));
}

TEST_F(AskedHotKeyTest, ANewerOneReplacesTheOneThatIsAskedFor) {
  start();
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  EXPECT_EQ(registration->apply({40, 0x1800, "K"}), ApplyResult::asked);
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_THAT(results, ElementsAre(ApplyResult::applied));
  EXPECT_THAT(hotKeys.registered(), ElementsAre(FakeHotKeys::Registered{40, 0x1800, clipHotKeyId}));
}

TEST_F(AskedHotKeyTest, TheOldOneAgainTakesTheWishForANewOneBack) {
  start();
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  EXPECT_EQ(registration->apply(HotKeyShortcut{}), ApplyResult::unchanged);
  EXPECT_THAT(hotKeys.registered(), ElementsAre(FakeHotKeys::Registered{9, 0x300, clipHotKeyId}));
}

TEST_F(AskedHotKeyTest, TheOldOneIsAskedForAgainWhereAWishForANewOneReplacedIt) {
  hotKeys.setReplacesAwaited(true);
  start();
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  ASSERT_EQ(registration->apply(HotKeyShortcut{}), ApplyResult::asked);
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_THAT(results, ElementsAre(ApplyResult::applied));
  EXPECT_THAT(hotKeys.registered(), ElementsAre(FakeHotKeys::Registered{9, 0x300, clipHotKeyId}));
  EXPECT_EQ(registration->apply(HotKeyShortcut{}), ApplyResult::unchanged);
}

TEST_F(AskedHotKeyTest, WhereNobodyCanHaveOneTheChosenKeysAreKept) {
  start();
  hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_THAT(results, ElementsAre(ApplyResult::kept));
  EXPECT_EQ(HotKeyShortcut::load(defaults), commandOptionSpace);
  EXPECT_EQ(registration->shortcut(), commandOptionSpace);
}

TEST_F(AskedHotKeyTest, KeysThatComeLaterAreHadAllTheSame) {
  hotKeys.setStaysAwaited(true);
  start();
  hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_FALSE(registration->canBeHad());
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_TRUE(registration->canBeHad());
  EXPECT_EQ(changes, 2);
  hotKeys.answer(HotKeyAnswer::absent);
  hotKeys.setReplacesAwaited(true);
  ASSERT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_THAT(results, ElementsAre(ApplyResult::kept));
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_TRUE(registration->canBeHad());
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::unchanged);
}

TEST_F(AskedHotKeyTest, KeysThatAreOnlyAwaitedAreAskedForAgain) {
  hotKeys.setStaysAwaited(true);
  hotKeys.setReplacesAwaited(true);
  start();
  hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_EQ(registration->apply(HotKeyShortcut{}), ApplyResult::asked);
}

TEST_F(AskedHotKeyTest, KeysThatTheUserChoseInTheDesktopsSettingsAreTheOnesInUse) {
  start();
  hotKeys.chooseInstead({0, hotkeys::command, "F12"});
  EXPECT_EQ(registration->shortcut().display(), "⌘F12");
  EXPECT_EQ(changes, 1);
  EXPECT_TRUE(registration->isRegistered());
  EXPECT_FALSE(defaults.contains(HotKeyShortcut::keyLabelKey)) << "the desktop remembers them";
  hotKeys.chooseInstead({0, hotkeys::command, "F11"});
  EXPECT_EQ(registration->shortcut().display(), "⌘F11");
  EXPECT_EQ(changes, 2);
}

TEST_F(AskedHotKeyTest, OnesChosenHereReplaceThose) {
  start();
  hotKeys.chooseInstead({0, hotkeys::command, "F12"});
  hotKeys.setAnswersLater(true);
  const HotKeyShortcut chosen{0, hotkeys::command | hotkeys::option, "A"};
  EXPECT_EQ(registration->apply(chosen), HotKeyRegistration::ApplyResult::asked);
  EXPECT_EQ(registration->shortcut().display(), "⌘F12");
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_EQ(registration->shortcut(), chosen);
}

TEST_F(AskedHotKeyTest, WhatIsAskedForIsGivenBackAtTheEnd) {
  start();
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  registration->unregisterHotKey();
  EXPECT_THAT(hotKeys.registered(), IsEmpty());
  EXPECT_EQ(hotKeys.log().back(), "removeHandler");
}

using Consent = HotKeyRegistration::Consent;

TEST_F(AskedHotKeyTest, WhoeverSaysNoIsNotAskedAgainByAStart) {
  start();
  EXPECT_TRUE(hotKeys.mayAsk());
  hotKeys.answer(HotKeyAnswer::refused);
  EXPECT_FALSE(registration->canBeHad());
  EXPECT_EQ(registration->consent(), Consent::refused);
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(notices, IsEmpty());
  start();
  EXPECT_FALSE(hotKeys.mayAsk());
  hotKeys.answer(HotKeyAnswer::refused);
  EXPECT_EQ(registration->consent(), Consent::refused) << "still";
}

TEST_F(AskedHotKeyTest, ChoosingKeysAsksAgainAndAYesIsRemembered) {
  defaults.set("shortcut.refused", true);
  start();
  hotKeys.answer(HotKeyAnswer::refused);
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  EXPECT_TRUE(hotKeys.mayAsk());
  hotKeys.answer(HotKeyAnswer::refused);
  EXPECT_THAT(results, ElementsAre(ApplyResult::refused));
  EXPECT_EQ(registration->shortcut(), HotKeyShortcut{});
  EXPECT_EQ(registration->apply(commandOptionSpace), ApplyResult::asked);
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_EQ(results.back(), ApplyResult::applied);
  EXPECT_EQ(registration->consent(), Consent::notMissing);
  EXPECT_FALSE(defaults.contains("shortcut.refused"));
}

TEST_F(AskedHotKeyTest, AStartThatComesTooEarlyIsNoRefusal) {
  start();
  registration->unregisterHotKey();
  registration->registerHotKey(HotKeyRegistration::Asking::tooEarly);
  EXPECT_FALSE(hotKeys.mayAsk());
  hotKeys.answer(HotKeyAnswer::refused);
  EXPECT_EQ(registration->consent(), Consent::notAskedFor);
  EXPECT_FALSE(defaults.contains("shortcut.refused"));
}

TEST_F(AskedHotKeyTest, TheKeysInForceAreThoseThatTheDesktopGave) {
  start();
  hotKeys.give("⌘⌥B");
  hotKeys.answer(HotKeyAnswer::held);
  EXPECT_TRUE(registration->isGiven());
  EXPECT_EQ(registration->display(), "⌘⌥B");
  EXPECT_EQ(registration->shortcut(), HotKeyShortcut{});
  hotKeys.answer(HotKeyAnswer::refused);  // taken away
  EXPECT_EQ(registration->display(), "⌘⇧V");
}

}  // namespace
}  // namespace vantorel
