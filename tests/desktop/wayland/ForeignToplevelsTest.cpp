// SPDX-License-Identifier: MIT
// The windows of a compositor that tells programs of them.
#include "platform/linux/wayland/ForeignToplevels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/wayland/FakeCompositor.h"
#include "desktop/x11pasteboard/MainLoop.h"

namespace vantorel {
namespace {

using testing::ElementsAre;

class ForeignToplevelsTest : public testing::Test {
 protected:
  ForeignToplevelsTest() {
    toplevels = ForeignToplevels::open(
        WaylandConnection::open(compositor.path()),
        {.onActivated =
             [this](const Toplevel& window) {
               loop.async([this, name = window.appId] { activated.push_back(name); });
             },
         .onLost = [this] { loop.async([this] { lost = true; }); }});
    if (!toplevels) throw std::runtime_error("no windows");
  }
  // Its thread tells the loop.
  ~ForeignToplevelsTest() override { toplevels.reset(); }

  [[nodiscard]] std::string front() const {
    const auto window = toplevels->active();
    return window ? window->appId : "(nothing)";
  }
  /// Not every change is told to the loop: it is asked again and again.
  [[nodiscard]] bool waitUntil(const std::function<bool()>& condition) {
    const auto tick = loop.every(Seconds(0.002), [] {});
    return loop.runUntil(condition);
  }
  [[nodiscard]] bool waitForFront(const std::string& appId) {
    return waitUntil([&] { return front() == appId; });
  }

  FakeCompositor compositor;
  MainLoop loop;
  std::vector<std::string> activated;
  bool lost = false;
  std::unique_ptr<ForeignToplevels> toplevels;
};

TEST_F(ForeignToplevelsTest, WhoComesToTheFrontIsTold) {
  compositor.open("org.acme.Notes");
  ASSERT_TRUE(waitForFront("org.acme.Notes"));
  compositor.open("foot");
  ASSERT_TRUE(waitForFront("foot"));
  compositor.bringToFront("org.acme.Notes");
  ASSERT_TRUE(loop.runUntil([&] { return activated.size() == 3; }));
  EXPECT_THAT(activated, ElementsAre("org.acme.Notes", "foot", "org.acme.Notes"));
  const auto all = toplevels->all();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].appId, "org.acme.Notes");
  EXPECT_EQ(all[1].appId, "foot");
  EXPECT_NE(all[0].token, all[1].token);
  EXPECT_GT(all[1].token, ToplevelSource::firstToken);
}

TEST_F(ForeignToplevelsTest, ThereMayBeNothingInFront) {
  compositor.open("foot");
  ASSERT_TRUE(waitForFront("foot"));
  compositor.bringNothingToFront();
  EXPECT_TRUE(waitForFront("(nothing)"));
}

TEST_F(ForeignToplevelsTest, AWindowIsBroughtToTheFrontByItsToken) {
  compositor.open("org.acme.Notes");
  compositor.open("foot");
  ASSERT_TRUE(waitForFront("foot"));
  EXPECT_TRUE(toplevels->activate(toplevels->all().back().token));
  EXPECT_TRUE(waitUntil(
      [&] { return compositor.activations() == std::vector<std::string>{"org.acme.Notes"}; }));
}

TEST_F(ForeignToplevelsTest, AClosedWindowIsNotFoundAgainUnderItsToken) {
  compositor.open("foot");
  ASSERT_TRUE(waitForFront("foot"));
  const auto token = toplevels->active()->token;
  compositor.close("foot");
  ASSERT_TRUE(waitForFront("(nothing)"));
  EXPECT_FALSE(toplevels->find(token));
  EXPECT_FALSE(toplevels->activate(token));
  compositor.open("foot");
  ASSERT_TRUE(waitForFront("foot"));
  EXPECT_NE(toplevels->active()->token, token);
}

TEST_F(ForeignToplevelsTest, TheEndOfTheTellingIsTold) {
  compositor.open("foot");
  ASSERT_TRUE(waitForFront("foot"));
  compositor.finishToplevels();
  EXPECT_TRUE(loop.runUntil([&] { return lost; }));
  EXPECT_EQ(front(), "(nothing)");
}

TEST_F(ForeignToplevelsTest, ACompositorThatDiesLeavesNothingInFront) {
  compositor.open("foot");
  ASSERT_TRUE(waitForFront("foot"));
  compositor.die();
  EXPECT_TRUE(loop.runUntil([&] { return lost; }));
  EXPECT_EQ(front(), "(nothing)");
}

TEST(ForeignToplevels, WhereWindowsAreNotToldThereAreNone) {
  const FakeCompositor quiet(FakeCompositor::Protocol::none);
  EXPECT_EQ(ForeignToplevels::open(WaylandConnection::open(quiet.path()), {}), nullptr);
}

}  // namespace
}  // namespace vantorel
