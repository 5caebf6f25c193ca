// SPDX-License-Identifier: MIT
#include <chrono>

#include "desktop/x11/DesktopFixture.h"
#include "platform/linux/x11/X11EventMonitors.h"

namespace vantorel {
namespace {

constexpr std::uint8_t left = 1;
constexpr std::uint8_t middle = 2;
constexpr std::uint8_t right = 3;
constexpr std::uint8_t wheelUp = 4;

class EventMonitorsTest : public DesktopFixture {
 protected:
  EventMonitorsTest() : monitors(dispatch, display()) {}

  std::unique_ptr<Observation> count(int& counter) {
    auto monitor = monitors.addGlobalMouseDownMonitor([&counter] { ++counter; });
    EXPECT_NE(monitor, nullptr);
    return monitor;
  }

  X11EventMonitors monitors;
};

TEST_F(EventMonitorsTest, HearLeftAndRightPressesAnywhere) {
  int heard = 0;
  const auto monitor = count(heard);
  fingers().click(left);
  waitUntil("the left button is heard", [&] { return heard == 1; });
  fingers().click(right);
  waitUntil("the right button is heard", [&] { return heard == 2; });
}

TEST_F(EventMonitorsTest, DoNotHearOtherButtons) {
  int heard = 0;
  const auto monitor = count(heard);
  fingers().click(middle);
  fingers().click(wheelUp);
  fingers().click(left);
  waitUntil("the left button is heard", [&] { return heard > 0; });
  EXPECT_EQ(heard, 1);
}

TEST_F(EventMonitorsTest, HearPressesWhileAnotherProgramHasThePointer) {
  int heard = 0;
  const auto monitor = count(heard);
  const auto rival = X11Connection::open(display());
  const auto grab =
      rival->reply(xcb_grab_pointer_reply,
                   xcb_grab_pointer(rival->xcb(), 0, rival->root(), XCB_EVENT_MASK_BUTTON_PRESS,
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE,
                                    XCB_CURSOR_NONE, XCB_CURRENT_TIME));
  ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
  fingers().click(left);
  waitUntil("the button is heard", [&] { return heard == 1; });
}

TEST_F(EventMonitorsTest, EachMonitorHearsUntilItEnds) {
  int first = 0;
  int second = 0;
  auto ending = count(first);
  const auto staying = count(second);
  fingers().click(left);
  waitUntil("both have heard", [&] { return first == 1 && second == 1; });
  ending.reset();
  fingers().click(left);
  waitUntil("the other has heard", [&] { return second == 2; });
  EXPECT_EQ(first, 1);
}

TEST_F(EventMonitorsTest, APressUnderWayIsNotHeardAfterTheEnd) {
  int heard = 0;
  auto monitor = count(heard);
  fingers().click(left);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (dispatch.queuedCount() == 0 && std::chrono::steady_clock::now() < end) sync();
  ASSERT_GT(dispatch.queuedCount(), 0U);
  monitor.reset();
  dispatch.runQueued();
  EXPECT_EQ(heard, 0);
}

TEST_F(EventMonitorsTest, AHandlerMayEndItsOwnMonitor) {
  int heard = 0;
  std::unique_ptr<Observation> monitor;
  monitor = monitors.addGlobalMouseDownMonitor([&] {
    ++heard;
    monitor.reset();
  });
  ASSERT_NE(monitor, nullptr);
  fingers().click(left);
  waitUntil("the button is heard", [&] { return heard == 1; });
}

TEST(EventMonitorsWithoutServer, AreNone) {
  ManualDispatch dispatch;
  X11EventMonitors monitors(dispatch, ":4711");
  EXPECT_EQ(monitors.addGlobalMouseDownMonitor([] {}), nullptr);
}

}  // namespace
}  // namespace vantorel
