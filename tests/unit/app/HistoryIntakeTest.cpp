// SPDX-License-Identifier: MIT
#include "app/HistoryIntake.h"

#include <gtest/gtest.h>

#include "fakes/TemporaryDirectory.h"
#include "fakes/TestStore.h"
#include "transfer/HistoryExport.h"

namespace vantorel {
namespace {

using Texts = std::vector<std::string>;

class HistoryIntakeTest : public testing::Test {
 protected:
  HistoryIntakeTest() {
    intake.onNotice = [this](const std::string& notice) { notices.push_back(notice); };
  }
  void write(const std::vector<ClipItem>& items) {
    ASSERT_FALSE(exportHistory(store.disk(), items, {}, place, testDate()).error);
  }
  void takeIn() {
    intake.takeIn(place, [this](const auto& trouble) { answers.push_back(trouble); });
    store.dispatch().runQueued();
  }

  TestStore store;
  TemporaryDirectory directory;
  std::filesystem::path place = directory.path() / "export";
  HistoryIntake intake{*store, store.dispatch(), std::make_shared<PosixFileSystem>()};
  Texts notices;
  Texts answers;  // empty for what is done
};

TEST_F(HistoryIntakeTest, TakesAnExportInAndSaysHowMuchItWas) {
  write({textItem("a"), textItem("b")});
  takeIn();
  EXPECT_EQ(store.texts(), (Texts{"a", "b"}));
  EXPECT_EQ(notices, (Texts{"2 clips were taken in."}));
  EXPECT_EQ(answers, (Texts{""}));
}

TEST_F(HistoryIntakeTest, SaysHowManyAreOverTheLimits) {
  store.dispatch().setNow(testDate(600'000));
  write({textItem("a", testDate(600'000)), textItem("old", testDate(-10'000))});
  takeIn();
  EXPECT_EQ(store.texts(), (Texts{"a"}));
  EXPECT_EQ(notices, (Texts{"1 of 2 clips was taken in; the others are over the limits of the "
                            "history."}));
}

TEST_F(HistoryIntakeTest, ANameInANoticeIsOneLine) {
  place = directory.path() / "a\n\x1b[31mb";
  takeIn();
  ASSERT_EQ(notices.size(), 1U);
  EXPECT_NE(notices[0].find("a [31mb"), std::string::npos) << notices[0];
}

TEST_F(HistoryIntakeTest, SaysWhatIsNoExport) {
  takeIn();
  ASSERT_EQ(notices.size(), 1U);
  EXPECT_EQ(notices[0].find("There is no exported history"), 0U);
  EXPECT_TRUE(store.texts().empty());
}

TEST_F(HistoryIntakeTest, SaysWhenTheHistoryTakesNothingIn) {
  write({textItem("a")});
  store.files().fail(FaultyFileSystem::Operation::claim, std::errc::device_or_resource_busy);
  takeIn();
  EXPECT_EQ(notices, (Texts{"The exported history could not be taken in."}));
  EXPECT_EQ(answers, notices);
  EXPECT_TRUE(store.texts().empty());
}

TEST_F(HistoryIntakeTest, WhatCouldNotBeSavedIsNotAnsweredAsDone) {
  write({textItem("a")});
  store.files().fail(FaultyFileSystem::Operation::rename, std::errc::no_space_on_device);
  takeIn();
  EXPECT_EQ(answers, (Texts{"What was taken in could not be saved yet; is the disk full?"}));
}

TEST_F(HistoryIntakeTest, ALongHistoryIsAnsweredForWhenItIsSaved) {
  write({textItem(std::string(3'000'000, 'x'))});
  std::optional<std::vector<ClipItem>> whenAnswered;
  intake.takeIn(place, [&](const auto& trouble) {
    answers.push_back(trouble);
    whenAnswered = store.savedItems();
  });
  store.dispatch().runQueued();
  EXPECT_EQ(answers, (Texts{""}));
  ASSERT_TRUE(whenAnswered);
  EXPECT_EQ(whenAnswered->size(), 1U);
}

TEST_F(HistoryIntakeTest, IsForgottenWhenTheProgramEndsMeanwhile) {
  write({textItem("a")});
  {
    HistoryIntake ending{*store, store.dispatch(), std::make_shared<PosixFileSystem>()};
    ending.takeIn(place);
  }
  store.dispatch().runQueued();
  EXPECT_TRUE(store.texts().empty());
}

}  // namespace
}  // namespace vantorel
