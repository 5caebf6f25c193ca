// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "desktop/session/ChildProcess.h"
#include "desktop/session/PrivateSession.h"
#include "platform/linux/start/RunningInstance.h"

namespace vantorel {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

const std::string name = "com.vantorel.Vantorel";

class SingleInstanceTest : public testing::Test {
 protected:
  static ChildProcess start(const std::vector<std::string>& arguments = {}) {
    std::vector<std::string> all{INSTANCE_PROGRAM};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return ChildProcess(all);
  }

  static ForwardResult forward(const std::string& action) {
    return forwardToRunningInstance({.action = action}, processEnvironment);
  }

  static std::string gdbus(const std::vector<std::string>& methodAndArguments) {
    return PrivateSession::call(name, "/com/vantorel/Vantorel", methodAndArguments);
  }

  PrivateSession session_;
};

TEST_F(SingleInstanceTest, ASecondStartActivatesTheFirstAndEndsWithSuccess) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  ChildProcess second = start();
  EXPECT_EQ(second.readLine(), "ended");
  EXPECT_EQ(second.wait(), 0);
  EXPECT_EQ(first.readLine(), "activate");
}

// As one of another version is that calls its lock otherwise.
TEST_F(SingleInstanceTest, TheFirstIsFoundOverTheBusAlsoWhenItHoldsAnotherLock) {
  setenv("XDG_DATA_HOME", "/one", 1);
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  setenv("XDG_DATA_HOME", "/other", 1);
  ChildProcess second = start();
  unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(second.readLine(), "ended");
  EXPECT_EQ(second.wait(), 0);
  EXPECT_EQ(first.readLine(), "activate");
}

TEST_F(SingleInstanceTest, EachCommandReachesTheRunningInstance) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  for (const std::string command :
       {"toggle", "search", "menu", "pause-15-minutes", "pause-1-hour", "pause-until-tomorrow",
        "resume", "toggle-password-managers", "exclude-app", "include-app=org.example.א b",
        "toggle-launch-at-login", "shortcut", "clear", "new-history", "background", "about",
        "quit"}) {
    ChildProcess second = start({"--" + command});
    EXPECT_EQ(second.readLine(), "ended");
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(first.readLine(), command);
  }
  EXPECT_EQ(first.wait(), 0);
  EXPECT_FALSE(PrivateSession::hasOwner(name));
}

TEST_F(SingleInstanceTest, OfManyStartsAtOnceExactlyOneRuns) {
  for (int round = 0; round < 3; ++round) {
    std::vector<ChildProcess> programs;
    for (int i = 0; i < 6; ++i) programs.push_back(start());
    std::vector<std::size_t> running;
    for (std::size_t i = 0; i < programs.size(); ++i) {
      const std::string outcome = programs[i].readLine();
      if (outcome == "running") {
        running.push_back(i);
      } else {
        EXPECT_EQ(outcome, "ended");
        EXPECT_EQ(programs[i].wait(), 0);
      }
    }
    ASSERT_EQ(running.size(), 1U);
    ChildProcess& winner = programs[running.front()];
    for (int i = 0; i < 5; ++i) EXPECT_EQ(winner.readLine(), "activate");
    EXPECT_EQ(forward("quit"), ForwardResult::forwarded);
    EXPECT_EQ(winner.readLine(), "quit");
    EXPECT_EQ(winner.wait(), 0);
  }
}

TEST_F(SingleInstanceTest, WithNobodyRunningACommandStartsAndQuitDoesNot) {
  ChildProcess toggling = start({"--toggle"});
  EXPECT_EQ(toggling.readLine(), "running");
  toggling.kill();
  ASSERT_TRUE(waitFor([] { return !PrivateSession::hasOwner(name); }));
  ChildProcess quitting = start({"--quit"});
  EXPECT_EQ(quitting.readLine(), "ended");
  EXPECT_EQ(quitting.wait(), 0);
}

TEST_F(SingleInstanceTest, ABusyInstanceIsStillAskedWithinTwoSeconds) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  first.signal(SIGSTOP);
  const auto begin = Clock::now();
  EXPECT_EQ(forward("search"), ForwardResult::forwarded);
  const auto duration = Clock::now() - begin;
  EXPECT_GT(duration, milliseconds(1500));
  EXPECT_LT(duration, milliseconds(5000));
  first.signal(SIGCONT);
  EXPECT_EQ(first.readLine(), "search");
}

TEST_F(SingleInstanceTest, ASilentBusIsGivenUpWithinTwoSeconds) {
  session_.bus().signal(SIGSTOP);
  const auto begin = Clock::now();
  EXPECT_EQ(forward(""), ForwardResult::noBus);
  EXPECT_LT(Clock::now() - begin, milliseconds(5000));
}

TEST_F(SingleInstanceTest, AnInstanceThatDiesWithTheRequestDidNotDoIt) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  first.signal(SIGSTOP);
  ForwardResult result{};
  std::thread asking([&] { result = forward(""); });
  first.kill();
  asking.join();
  EXPECT_EQ(result, ForwardResult::notRunning);
}

TEST_F(SingleInstanceTest, OtherProgramsUseTheStandardInterface) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  gdbus({"org.freedesktop.Application.Activate",
         "{'desktop-startup-id': <'x_TIME1'>, 'activation-token': <'t'>, 'other': <(1, [2])>}"});
  EXPECT_EQ(first.readLine(), "activate");
  gdbus({"org.freedesktop.Application.Open", "['file:///x']", "{}"});
  EXPECT_EQ(first.readLine(), "activate");
  gdbus({"org.freedesktop.Application.ActivateAction", "toggle", "[<'unused'>]", "{}"});
  EXPECT_EQ(first.readLine(), "toggle");
  gdbus({"org.freedesktop.Application.ActivateAction", "include-app", "[<'org.example'>]", "{}"});
  EXPECT_EQ(first.readLine(), "include-app=org.example");
}

TEST_F(SingleInstanceTest, ATextThatIsNoneIsAnErrorToItsCaller) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  for (const std::string parameters : {"[<5>]", "[<'a'>, <'b'>]", "[<['a']>]"}) {
    int status = 0;
    runProgram({"sh", "-c",
                "exec gdbus call --session -d com.vantorel.Vantorel -o /com/vantorel/Vantorel -m "
                "org.freedesktop.Application.ActivateAction include-app \"$0\" {} 2>/dev/null",
                parameters},
               &status);
    EXPECT_NE(status, 0) << parameters;
  }
  EXPECT_EQ(forward("search"), ForwardResult::forwarded);
  EXPECT_EQ(first.readLine(), "search");
}

TEST_F(SingleInstanceTest, AnUnknownActionIsAnErrorToItsCaller) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  int status = 0;
  for (const std::string action : {"open", "", "Quit", "version", "include-app", "--quit"}) {
    runProgram({"sh", "-c",
                "exec gdbus call --session -d com.vantorel.Vantorel -o /com/vantorel/Vantorel -m "
                "org.freedesktop.Application.ActivateAction \"$0\" [] {} 2>/dev/null",
                action},
               &status);
    EXPECT_NE(status, 0) << action;
  }
  EXPECT_EQ(forward("help"), ForwardResult::refused);
  EXPECT_EQ(forward("search"), ForwardResult::forwarded);
  EXPECT_EQ(first.readLine(), "search");
}

TEST_F(SingleInstanceTest, WithoutABusALockKeepsTheSecondAway) {
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  ChildProcess second = start();
  EXPECT_EQ(second.readLine(), "failed");
  EXPECT_EQ(second.wait(), 1);
  first.kill();
  ChildProcess third = start();
  EXPECT_EQ(third.readLine(), "running");
}

TEST_F(SingleInstanceTest, WithoutABusAndARuntimeDirectoryItRunsUnguarded) {
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  unsetenv("XDG_RUNTIME_DIR");
  ChildProcess first = start();
  EXPECT_EQ(first.readLine(), "running");
}

TEST_F(SingleInstanceTest, ForwardingIsFast) {
  ChildProcess first = start();
  ASSERT_EQ(first.readLine(), "running");
  const auto begin = Clock::now();
  EXPECT_EQ(forward("toggle"), ForwardResult::forwarded);
  const auto duration = std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
  RecordProperty("milliseconds", static_cast<int>(duration.count()));
  EXPECT_LT(duration, milliseconds(1500));
}

}  // namespace
}  // namespace vantorel
