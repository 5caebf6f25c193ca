// SPDX-License-Identifier: MIT
#include "platform/linux/x11/WindowApplication.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace vantorel {
namespace {

const LocalHost host{"desk.example.org", 100, 0x1fffff};

WindowFacts windowOf(std::optional<std::uint32_t> stated, std::optional<ProcessId> client,
                     const std::string& machine = {}) {
  WindowFacts facts;
  facts.window = 0x0260000b;
  facts.wmInstance = "editor";
  facts.wmClass = "Editor";
  facts.statedPid = stated;
  facts.clientPid = client;
  facts.clientMachine = machine;
  return facts;
}

std::uint32_t runningPid() { return static_cast<std::uint32_t>(::getpid()); }

TEST(ProcessOfWindow, IsTheOneThatTheServerSees) {
  EXPECT_EQ(processOf(windowOf(7, 8), host), 8);
  EXPECT_EQ(processOf(windowOf(std::nullopt, 8), host), 8);
  EXPECT_EQ(processOf(windowOf(7, 8, "desk.example.org"), host), 8);
  EXPECT_EQ(processOf(windowOf(7, 8, "DESK"), host), 8);
  EXPECT_EQ(processOf(windowOf(7, 8, "localhost"), host), 8);
}

TEST(ProcessOfWindow, IsTheStatedOneWhereTheServerSeesNone) {
  EXPECT_EQ(processOf(windowOf(runningPid(), std::nullopt), host), ::getpid());
}

TEST(ProcessOfWindow, IsNoneThatCannotBeAnApplications) {
  EXPECT_LT(processOf(windowOf(1, std::nullopt), host), -1) << "the first process of the machine";
  EXPECT_LT(processOf(windowOf(0x7fffffff, std::nullopt), host), -1) << "nobody";
  LocalHost here = host;
  here.ownPid = ::getpid();
  EXPECT_LT(processOf(windowOf(runningPid(), std::nullopt), here), -1) << "not this program";
}

TEST(ProcessOfWindow, OfTwoThatStateTheSameNumberIsEachItsOwn) {
  EXPECT_NE(processOf(windowOf(2, 7), host), processOf(windowOf(2, 8), host));
}

TEST(ProcessOfWindow, OfAnotherMachineIsANumberOfItsOwn) {
  const auto first = processOf(windowOf(7, 8, "elsewhere"), host);
  EXPECT_LT(first, -1);
  auto second = windowOf(7, 8, "elsewhere");
  second.window = 0x026000ff;
  EXPECT_EQ(processOf(second, host), first) << "another window of the same client";
  second.window = 0x0280000b;
  EXPECT_NE(processOf(second, host), first) << "another client";
  EXPECT_LT(processOf(windowOf(7, 8, "desk.another.net"), host), 0);
}

TEST(ProcessOfWindow, WithoutAnyNumberIsOneOfItsOwn) {
  EXPECT_LT(processOf(windowOf(std::nullopt, std::nullopt), host), -1);
  EXPECT_LT(processOf(windowOf(0x80000000, std::nullopt), host), -1) << "no process has that";
}

TEST(ApplicationOfWindow, IsCalledLikeItsDesktopEntry) {
  DesktopEntry entry;
  entry.id = "org.example.Editor";
  entry.name = "Text Editor";
  const auto application =
      applicationOf(windowOf({}, 7), WindowHistory::neverInFront, &entry, host);
  EXPECT_EQ(application.processIdentifier, 7);
  EXPECT_EQ(application.bundleIdentifier, "org.example.Editor");
  EXPECT_EQ(application.localizedName, "Text Editor");
  EXPECT_EQ(application.activationPolicy, ActivationPolicy::regular);
}

TEST(ApplicationOfWindow, WithoutAnEntryIsCalledByItsClass) {
  const auto application =
      applicationOf(windowOf({}, 7), WindowHistory::neverInFront, nullptr, host);
  EXPECT_EQ(application.bundleIdentifier, "Editor");
  EXPECT_EQ(application.localizedName, "Editor");
  DesktopEntry nameless;
  nameless.id = "editor";
  EXPECT_EQ(
      applicationOf(windowOf({}, 7), WindowHistory::neverInFront, &nameless, host).localizedName,
      "Editor");
}

TEST(ApplicationOfWindow, WithoutAClassIsCalledNothing) {
  auto facts = windowOf({}, 7);
  facts.wmClass.clear();
  EXPECT_EQ(applicationOf(facts, WindowHistory::neverInFront, nullptr, host).bundleIdentifier,
            "editor");
  facts.wmInstance.clear();
  const auto application = applicationOf(facts, WindowHistory::neverInFront, nullptr, host);
  EXPECT_EQ(application.bundleIdentifier, std::nullopt);
  EXPECT_EQ(application.localizedName, std::nullopt);
}

TEST(ApplicationOfWindow, OfThisProgramIsAnAccessoryUnderItsOwnName) {
  DesktopEntry entry;
  entry.id = "some-entry";
  const auto application =
      applicationOf(windowOf({}, 100), WindowHistory::neverInFront, &entry, host);
  EXPECT_EQ(application.bundleIdentifier, "com.vantorel.Vantorel");
  EXPECT_EQ(application.localizedName, "Vantorel");
  EXPECT_EQ(application.activationPolicy, ActivationPolicy::accessory);
}

TEST(ApplicationOfWindow, ThatIsNoNormalWindowIsAnAccessory) {
  auto facts = windowOf({}, 7);
  facts.kind = WindowKind::other;
  EXPECT_EQ(applicationOf(facts, WindowHistory::neverInFront, nullptr, host).activationPolicy,
            ActivationPolicy::accessory);
}

TEST(ApplicationOfWindow, ThatWasWorkedInIsRegularWhateverItsKind) {
  auto facts = windowOf({}, 7);
  facts.kind = WindowKind::other;
  facts.management = WindowManagement::managed;
  const auto policy = [&](WindowHistory history) {
    return applicationOf(facts, history, nullptr, host).activationPolicy;
  };
  EXPECT_EQ(policy(WindowHistory::wasInFront), ActivationPolicy::regular);
  EXPECT_EQ(policy(WindowHistory::neverInFront), ActivationPolicy::accessory);
  facts.management = WindowManagement::unmanaged;
  EXPECT_EQ(policy(WindowHistory::wasInFront), ActivationPolicy::accessory) << "a menu, a notice";
}

TEST(StartOfProcess, IsTheSameAtEachQuestionAndAbsentForNobody) {
  const auto start = startOf(::getpid());
  ASSERT_TRUE(start);
  EXPECT_GT(*start, 0);
  EXPECT_EQ(startOf(::getpid()), start);
  EXPECT_GE(*start, startOf(::getppid()).value_or(0)) << "a child starts after its parent";
  EXPECT_EQ(startOf(0), std::nullopt);
  EXPECT_EQ(startOf(0x7fffffff), std::nullopt);
}

TEST(ThisHost, KnowsThisProcessAsTheServerDoes) {
  EXPECT_EQ(LocalHost::current(0x1fffff, 4242).ownPid, 4242) << "in a container";
  EXPECT_EQ(LocalHost::current(0x1fffff, std::nullopt).ownPid, ::getpid());
}

TEST(ExecutableOfProcess, IsTheProgramsFileName) {
  EXPECT_EQ(executableOf(::getpid()), "x11_test");
  EXPECT_EQ(executableOf(0), "");
  EXPECT_EQ(executableOf(-5), "");
}

TEST(IdentityOfWindow, NamesTheProgramOfLocalWindowsOnly) {
  const auto own = ::getpid();
  EXPECT_EQ(identityOf(windowOf(7, own), host).executable, "x11_test");
  EXPECT_EQ(identityOf(windowOf(2, own), host).executable, "x11_test")
      << "a container's own number says nothing here";
  EXPECT_EQ(identityOf(windowOf(7, own, "elsewhere"), host).executable, "");
}

}  // namespace
}  // namespace vantorel
