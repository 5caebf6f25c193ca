// SPDX-License-Identifier: MIT
#include "platform/qt/DisplayLoss.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace vantorel {
namespace {

using testing::ElementsAre;

std::vector<std::string>* printed = nullptr;

/// The program's own printing, into a list that the test reads.
class DisplayLossTest : public testing::Test {
 protected:
  DisplayLossTest() {
    printed = &lines_;
    before_ = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
      printed->push_back(text.toStdString());
    });
  }
  ~DisplayLossTest() override {
    qInstallMessageHandler(before_);
    printed = nullptr;
  }

  std::vector<std::string> lines_;
  QtMessageHandler before_ = nullptr;
  int words_ = 0;
};

TEST_F(DisplayLossTest, EachWayInWhichADisplayGoesIsHeardOf) {
  for (const char* text : {"The Wayland connection broke. Did the Wayland compositor die?",
                           "The Wayland connection experienced a fatal error: Protocol error",
                           "The X11 connection broke (error 1). Did the X11 server die?"}) {
    const DisplayLoss loss([this] { ++words_; });
    qWarning("%s", text);
    EXPECT_EQ(std::exchange(words_, 0), 1) << text;
  }
  EXPECT_EQ(lines_.size(), 3U);
}

TEST_F(DisplayLossTest, TheLastWordIsSaidOnce) {
  const DisplayLoss loss([this] {
    ++words_;
    qWarning("The Wayland connection broke. Again, from within.");
  });
  qWarning("The Wayland connection broke.");
  qWarning("The Wayland connection broke.");
  EXPECT_EQ(words_, 1);
}

TEST_F(DisplayLossTest, OtherMessagesAreOnlyPrinted) {
  const DisplayLoss loss([this] { ++words_; });
  qWarning("something else");
  qDebug("The Wayland connection broke");
  EXPECT_EQ(words_, 0);
  EXPECT_THAT(lines_, ElementsAre("something else", "The Wayland connection broke"));
}

TEST_F(DisplayLossTest, AnotherThreadWaitsUntilTheMainOneHasSaidIt) {
  std::thread::id said;
  const DisplayLoss loss([&] { said = std::this_thread::get_id(); });
  std::atomic<bool> mayEnd = false;
  std::thread toolkit([&] {
    qWarning("The Wayland connection broke.");
    EXPECT_NE(said, std::thread::id());
    mayEnd = true;
  });
  while (!mayEnd) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  toolkit.join();
  EXPECT_EQ(said, std::this_thread::get_id());
}

TEST_F(DisplayLossTest, NobodyWaitsForAProgramThatHasEndedInOrder) {
  DisplayLoss loss([this] { ++words_; });
  const auto begin = std::chrono::steady_clock::now();
  std::thread toolkit([] { qWarning("The Wayland connection broke."); });
  loss.endInOrder();  // and the loop, which would say it, never turns again
  toolkit.join();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
  EXPECT_EQ(words_, 0);
}

TEST_F(DisplayLossTest, ItsEndLeavesThePrintingAsItWas) {
  {
    const DisplayLoss loss([this] { ++words_; });
  }
  qWarning("The Wayland connection broke");
  EXPECT_EQ(words_, 0);
  EXPECT_THAT(lines_, ElementsAre("The Wayland connection broke"));
}

}  // namespace
}  // namespace vantorel
