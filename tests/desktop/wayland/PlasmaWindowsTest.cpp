// SPDX-License-Identifier: MIT
// The windows of KWin, which describes them bit by bit.
#include "platform/linux/wayland/PlasmaWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/wayland/FakeKwin.h"
#include "desktop/x11pasteboard/MainLoop.h"

namespace vantorel {
namespace {

using testing::ElementsAre;

class PlasmaWindowsTest : public testing::Test {
 protected:
  PlasmaWindowsTest() { open(); }
  ~PlasmaWindowsTest() override {
    windows.reset();  // its thread tells the loop
    compositor.die();
  }

  void open() {
    windows = PlasmaWindows::open(
        WaylandConnection::open(compositor.path()),
        {.onActivated =
             [this](const Toplevel& window) {
               loop.async([this, name = window.appId] { activated.push_back(name); });
             },
         .onLost = [this] { loop.async([this] { lost = true; }); }});
    if (!windows) throw std::runtime_error("no windows");
  }
  [[nodiscard]] std::string front() const {
    const auto window = windows->active();
    return window ? window->appId : "(nothing)";
  }
  [[nodiscard]] bool waitUntil(const std::function<bool()>& condition) {
    const auto tick = loop.every(Seconds(0.002), [] {});
    return loop.runUntil(condition);
  }
  [[nodiscard]] bool waitForFront(const std::string& appId) {
    return waitUntil([&] { return front() == appId; });
  }

  FakeCompositor compositor{FakeCompositor::Protocol::none};
  FakeKwin kwin{compositor};
  MainLoop loop;
  std::vector<std::string> activated;
  bool lost = false;
  std::unique_ptr<PlasmaWindows> windows;
};

TEST_F(PlasmaWindowsTest, WhoComesToTheFrontIsToldOnceItIsDescribed) {
  kwin.open("org.kde.kwrite");
  ASSERT_TRUE(waitForFront("org.kde.kwrite"));
  kwin.open("org.kde.konsole");
  ASSERT_TRUE(waitForFront("org.kde.konsole"));
  kwin.bringToFront("org.kde.kwrite");
  ASSERT_TRUE(waitUntil([&] { return activated.size() == 3; }));
  EXPECT_THAT(activated, ElementsAre("org.kde.kwrite", "org.kde.konsole", "org.kde.kwrite"));
  const auto all = windows->all();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].appId, "org.kde.kwrite");
  EXPECT_NE(all[0].token, all[1].token);
  EXPECT_GT(all[0].token, ToplevelSource::firstToken);
}

TEST_F(PlasmaWindowsTest, ThereMayBeNothingInFront) {
  kwin.open("org.kde.kwrite");
  ASSERT_TRUE(waitForFront("org.kde.kwrite"));
  kwin.bringToFront({});
  EXPECT_TRUE(waitForFront("(nothing)"));
}

TEST_F(PlasmaWindowsTest, AWindowIsBroughtToTheFrontByItsToken) {
  kwin.open("org.kde.kwrite");
  ASSERT_TRUE(waitForFront("org.kde.kwrite"));
  kwin.open("org.kde.konsole");
  ASSERT_TRUE(waitForFront("org.kde.konsole"));
  EXPECT_TRUE(windows->activate(windows->all().back().token));
  EXPECT_TRUE(
      waitUntil([&] { return kwin.activations() == std::vector<std::string>{"org.kde.kwrite"}; }));
}

TEST_F(PlasmaWindowsTest, AClosedWindowIsNotFoundAgainUnderItsToken) {
  kwin.open("org.kde.kwrite");
  ASSERT_TRUE(waitForFront("org.kde.kwrite"));
  const auto token = windows->active()->token;
  kwin.close("org.kde.kwrite");
  ASSERT_TRUE(waitForFront("(nothing)"));
  EXPECT_FALSE(windows->find(token));
  EXPECT_FALSE(windows->activate(token));
}

TEST_F(PlasmaWindowsTest, ACompositorThatDiesLeavesNothingInFront) {
  kwin.open("org.kde.kwrite");
  ASSERT_TRUE(waitForFront("org.kde.kwrite"));
  compositor.die();
  EXPECT_TRUE(loop.runUntil([&] { return lost; }));
  EXPECT_EQ(front(), "(nothing)");
}

TEST(PlasmaWindows, WhereWindowsAreNotToldThereAreNone) {
  const FakeCompositor quiet;
  EXPECT_EQ(PlasmaWindows::open(WaylandConnection::open(quiet.path()), {}), nullptr);
}

}  // namespace
}  // namespace vantorel
