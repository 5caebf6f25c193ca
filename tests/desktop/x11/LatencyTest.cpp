// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <iostream>
#include <mutex>

#include "desktop/x11/DesktopFixture.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11SyntheticInput.h"
#include "platform/linux/x11/X11Workspace.h"

namespace vantorel {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rounds = 200;

/// Medians against generous bounds, which catch a wait that crept in, not a slow machine.
class LatencyTest : public DesktopFixture {
 protected:
  LatencyTest() { startWindowManager(); }

  void report(const std::string& name, std::vector<Milliseconds> times, Milliseconds bound) {
    std::sort(times.begin(), times.end());
    const auto median = times[times.size() / 2];
    const auto high = times[times.size() * 95 / 100];
    std::cout << name << ": median " << median.count() << " ms, 95 % " << high.count() << " ms\n";
    EXPECT_LT(median, bound) << name;
  }
  template <class Act>
  std::vector<Milliseconds> measure(Act act) {
    std::vector<Milliseconds> times;
    for (int i = 0; i < rounds; ++i) {
      const auto began = Clock::now();
      act();
      times.emplace_back(Clock::now() - began);
    }
    return times;
  }
};

TEST_F(LatencyTest, ApplicationQueriesTakeLittleOfTheMainThread) {
  std::vector<std::vector<std::string>> windows(20, {"class=editor,Editor"});
  const auto program = play(windows);
  expectInFront(program.windows.back());
  const auto workspace = X11Workspace::open(dispatch, places(), display());
  report("frontmost application", measure([&] { (void)workspace->frontmostApplication(); }),
         Milliseconds(5));
  report("running application, 20 windows",
         measure([&] { (void)workspace->runningApplication(program.process->pid()); }),
         Milliseconds(20));
}

TEST_F(LatencyTest, AnActivationIsAnnouncedSoon) {
  const auto a = play({{"class=a,A"}});
  const auto b = play({{"class=b,B"}});
  expectInFront(b.windows[0]);
  const auto workspace = X11Workspace::open(dispatch, places(), display());
  RunningApplication next = *workspace->runningApplication(a.process->pid());
  RunningApplication other = *workspace->frontmostApplication();
  std::string announced;
  const auto observation = workspace->observeActivations(
      [&](const RunningApplication& each) { announced = *each.bundleIdentifier; });
  std::vector<Milliseconds> times;
  for (int i = 0; i < rounds / 4; ++i) {
    const auto began = Clock::now();
    ASSERT_TRUE(workspace->activate(next));
    while (announced != next.bundleIdentifier && Clock::now() - began < std::chrono::seconds(5)) {
      dispatch.runQueued();
    }
    times.emplace_back(Clock::now() - began);
    std::swap(next, other);
  }
  report("activate to announced", times, Milliseconds(50));
}

TEST_F(LatencyTest, AShortcutIsHeardSoon) {
  const auto hotKeys = X11HotKeys::open(dispatch, display());
  int heard = 0;
  ASSERT_TRUE(hotKeys->installHandler([&](HotKeyId) { ++heard; }));
  ASSERT_TRUE(hotKeys->registerHotKey({keys::v, hotkeys::command | hotkeys::shift}, {}));
  report("shortcut pressed to handler", measure([&] {
           const int before = heard;
           fingers().press(133);
           fingers().press(50);
           fingers().press(55);
           const auto began = Clock::now();
           while (heard == before && Clock::now() - began < std::chrono::seconds(5)) {
             dispatch.runQueued();
           }
           for (const int key : {55, 50, 133}) fingers().release(static_cast<X11KeyCode>(key));
         }),
         Milliseconds(5));
  EXPECT_EQ(heard, rounds);
}

TEST_F(LatencyTest, APasteIsPressedSoon) {
  const auto workspace = X11Workspace::open(dispatch, places(), display());
  X11SyntheticInput input(dispatch, workspace->applications(), [] { return true; });
  const auto program = play({{"class=editor,Editor"}});
  expectInFront(program.windows[0]);
  const auto target = *workspace->frontmostApplication();
  const auto letters = [&] {
    const auto& output = program.process->output();
    std::size_t count = 0;
    for (auto at = output.find("press 55 "); at != std::string::npos;
         at = output.find("press 55 ", at + 1)) {
      ++count;
    }
    return count;
  };
  std::size_t expected = 0;
  report("paste posted to seen by the target", measure([&] {
           ++expected;
           input.post({keys::v, KeyDirection::down, flags::command}, target, [](KeyDelivery) {});
           const auto began = Clock::now();
           while (letters() < expected && Clock::now() - began < std::chrono::seconds(5)) {
           }
         }),
         Milliseconds(15));
  EXPECT_EQ(letters(), expected);
}

TEST_F(LatencyTest, TheAdaptersStartSoon) {
  std::unique_ptr<X11Workspace> workspace;
  std::unique_ptr<X11HotKeys> hotKeys;
  std::unique_ptr<X11SyntheticInput> input;
  const auto once = [](const std::string& name, const std::function<void()>& act) {
    const auto began = Clock::now();
    act();
    const Milliseconds took = Clock::now() - began;
    std::cout << name << " opens in " << took.count() << " ms\n";
    EXPECT_LT(took, Milliseconds(100)) << name;
  };
  const auto lookup = [](const char* name) { return processEnvironment(name); };
  once("workspace", [&] {
    workspace =
        X11Workspace::open(dispatch, DesktopEntryPlaces::fromEnvironment(lookup), display());
  });
  once("hot keys", [&] { hotKeys = X11HotKeys::open(dispatch, display()); });
  once("synthetic input", [&] {
    input = std::make_unique<X11SyntheticInput>(dispatch, workspace->applications(),
                                                [] { return true; });
  });
}

}  // namespace
}  // namespace vantorel
