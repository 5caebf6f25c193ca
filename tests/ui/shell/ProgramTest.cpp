// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include <gmock/gmock.h>

#include <optional>

#include "app/CommandLine.h"
#include "fakes/TestStore.h"
#include "ui/shell/AppDelegateTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class ProgramTest : public AppDelegateTest {
 protected:
  ~ProgramTest() override {
    if (program_) program_->end();
  }

  /// A start whose desktop is there before the keyring answers.
  Program& start(const ActionRequest& first = {}) {
    program_.emplace(first, [this] { ++quits; });
    program_->begin(desktop.ports());
    desktop.dispatch.runQueued();
    return *program_;
  }
  void answerOfTheKeyring() {
    program_->keyringAnswered();
    desktop.dispatch.runQueued();
  }

  int quits = 0;

 private:
  std::optional<Program> program_;
};

TEST_F(ProgramTest, APlainStartShowsThePanelWhereNoBarShowsTheItem) {
  start();
  answerOfTheKeyring();
  desktop.statusItem.tellUnseen();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(ProgramTest, APlainStartShowsThePanelThoughItStartsOverBeforeABarIsMissed) {
  start();
  answerOfTheKeyring();
  answerOfTheKeyring();
  EXPECT_FALSE(panelIsShown());
  desktop.statusItem.tellUnseen();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(ProgramTest, ThePanelThatIsOpenIsOpenAgainWhenItStartsOver) {
  Program& program = start();
  answerOfTheKeyring();
  desktop.statusItem.tellUnseen();
  answerOfTheKeyring();
  EXPECT_TRUE(panelIsShown());
  program.perform({.action = "toggle"});
  answerOfTheKeyring();
  EXPECT_FALSE(panelIsShown());
  desktop.statusItem.tellUnseen();
  EXPECT_FALSE(panelIsShown()) << "once is enough";
}

TEST_F(ProgramTest, AtTheFirstStartTheWelcomeIsEnough) {
  desktop.defaults.remove("didShowOnboardingV2");
  start();
  answerOfTheKeyring();
  desktop.statusItem.tellUnseen();
  desktop.dispatch.advance(Seconds(0.31));
  EXPECT_THAT(visibleTitles(), ElementsAre("About Vantorel"));
}

TEST_F(ProgramTest, ALogInShowsNothingNotEvenTheWelcome) {
  desktop.defaults.remove("didShowOnboardingV2");
  Program& program = start({.action = "background"});
  answerOfTheKeyring();
  desktop.statusItem.tellUnseen();
  desktop.dispatch.advance(Seconds(1));
  EXPECT_THAT(visibleTitles(), IsEmpty());
  EXPECT_FALSE(desktop.defaults.contains("didShowOnboardingV2"));
  program.perform({.action = "background"});
  EXPECT_THAT(visibleTitles(), IsEmpty());
}

TEST_F(ProgramTest, ALogInThatAnOlderVersionArrangedShowsNothingEither) {
  desktop.loginItem.setOld();
  start();
  answerOfTheKeyring();
  answerOfTheKeyring();
  desktop.statusItem.tellUnseen();
  EXPECT_THAT(visibleTitles(), IsEmpty());
}

TEST_F(ProgramTest, APlainStartShowsNothingByItself) {
  start();
  EXPECT_FALSE(desktop.statusItem.isShown());
  answerOfTheKeyring();
  EXPECT_TRUE(desktop.statusItem.isShown());
  EXPECT_THAT(visibleTitles(), IsEmpty());
}

TEST_F(ProgramTest, TheKeyringMayAnswerBeforeThereIsADesktop) {
  Program program({.action = "about"}, [] {});
  program.keyringAnswered();
  program.begin(desktop.ports());
  EXPECT_THAT(visibleTitles(), ElementsAre("About Vantorel"));
  program.end();
  EXPECT_FALSE(desktop.statusItem.isShown());
}

TEST_F(ProgramTest, ACommandWaitsForTheKeyring) {
  start({.action = "toggle"});
  EXPECT_FALSE(panelIsShown());
  answerOfTheKeyring();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(ProgramTest, OfThoseThatWaitTheLastIsDoneButReopeningYields) {
  Program& program = start({.action = "toggle"});
  program.perform({.action = "shortcut"});
  program.perform({});
  answerOfTheKeyring();
  EXPECT_THAT(visibleTitles(), ElementsAre("Keyboard Shortcut"));
}

TEST_F(ProgramTest, ReopeningThatWaitsShowsThePanel) {
  start().perform({});
  answerOfTheKeyring();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(ProgramTest, EndsAtOnceBeforeTheKeyringAnswersToo) {
  Program& program = start();
  program.perform({.action = "quit"});
  EXPECT_EQ(quits, 1);
  answerOfTheKeyring();
  program.perform({.action = "quit"});
  EXPECT_EQ(quits, 2);
}

TEST_F(ProgramTest, ARunningOneDoesWhatItIsAsked) {
  Program& program = start();
  answerOfTheKeyring();
  program.perform({.action = "about"});
  EXPECT_THAT(visibleTitles(), ElementsAre("About Vantorel"));
  program.perform({.action = "pause-1-hour"});
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — History Paused");
  program.perform({.action = "no such thing"});
}

TEST_F(ProgramTest, StartsOverWhenTheKeyringIsUnlockedLater) {
  desktop.keychain.fail(FakeKeychain::Backend::login, keychainStatus::userCanceled);
  desktop.keychain.fail(FakeKeychain::Backend::dataProtection, keychainStatus::missingEntitlement);
  desktop.defaults.remove("didShowOnboardingV2");
  start();
  answerOfTheKeyring();
  desktop.keychain.recover(FakeKeychain::Backend::login);
  desktop.keychain.recover(FakeKeychain::Backend::dataProtection);
  answerOfTheKeyring();
  EXPECT_THAT(visibleTitles(), ElementsAre("About Vantorel")) << "the welcome is not lost";
  copy("kept");
  EXPECT_THAT(history(), ElementsAre("kept"));
}

TEST_F(ProgramTest, SetsAHistoryWhoseKeyIsMissingAsideAndBeginsANewOne) {
  {
    FakeKeychain another;
    AbsentTextRecognition recognition;
    const auto queue = desktop.dispatch.serialQueue("test.recognition");
    ClipStore({desktop.dispatch, desktop.files, another, desktop.ports().applicationSupport,
               recognition, *queue},
              std::nullopt, nullptr, {})
        .insert(textItem("of another keyring"));
  }
  Program& program = start();
  int asked = 0;
  program.onKeyWanted = [&] { ++asked; };
  answerOfTheKeyring();
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — Nothing Recorded: The Key Is Missing");
  EXPECT_EQ(desktop.notifications.shown()->action, "Begin a New History");
  EXPECT_EQ(desktop.keychain.itemCount(), 0U);
  program.perform({.action = "new-history"});
  EXPECT_EQ(asked, 1);
  answerOfTheKeyring();
  EXPECT_THAT(toasts(), ElementsAre(StartsWith("A new history has begun. The old one is kept as")));
  EXPECT_EQ(desktop.keychain.itemCount(), 1U);
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
  EXPECT_FALSE(desktop.notifications.shown());
  copy("kept");
  EXPECT_THAT(history(), ElementsAre("kept"));
}

TEST(ProgramAnswers, WhatEndsWithAText) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(Program::answer({.command = Command::version}), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout().find("Vantorel "), 0U);
  testing::internal::CaptureStdout();
  EXPECT_EQ(Program::answer({.command = Command::help}), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), CommandLine::helpText());
  testing::internal::CaptureStderr();
  EXPECT_EQ(Program::answer({.error = "no"}), 2);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "no\n");
  EXPECT_EQ(Program::answer({.command = Command::about}), std::nullopt);
}

}  // namespace
}  // namespace vantorel
