// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Thread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "desktop/x11pasteboard/PrivateXServer.h"
#include "platform/linux/x11/X11Property.h"

namespace vantorel {
namespace {

using std::chrono::milliseconds;

class Latch {
 public:
  void open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    condition_.notify_all();
  }
  [[nodiscard]] bool wait() {
    std::unique_lock lock(mutex_);
    return condition_.wait_for(lock, std::chrono::seconds(30), [this] { return open_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable condition_;
  bool open_ = false;
};

class X11ThreadTest : public testing::Test {
 protected:
  X11ThreadTest() : thread(X11Connection::open(server.display()), "tested") {}

  PrivateXServer server;
  X11Thread thread;
};

TEST_F(X11ThreadTest, RunsPostedWorkInTheOrderGiven) {
  std::vector<int> order;
  thread.post([&] { order.push_back(1); });  // before it has started
  thread.start([](const auto&) {}, [] {});
  for (int i = 2; i <= 50; ++i) thread.post([&order, i] { order.push_back(i); });
  ASSERT_TRUE(thread.runAndWait([&] { order.push_back(51); }));
  ASSERT_EQ(order.size(), 51U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(X11ThreadTest, RunsTimersInTheOrderTheyFallDue) {
  std::vector<int> order;
  Latch last;
  thread.start([](const auto&) {}, [] {});
  thread.post([&] {
    thread.after(milliseconds(60), [&] {
      order.push_back(3);
      last.open();
    });
    thread.after(milliseconds(20), [&] { order.push_back(1); });
    thread.after(milliseconds(40), [&] { order.push_back(2); });
  });
  ASSERT_TRUE(last.wait());
  EXPECT_THAT(order, testing::ElementsAre(1, 2, 3));
}

TEST_F(X11ThreadTest, NeverRunsATimerThatWasCancelled) {
  bool ran = false;
  Latch later;
  thread.start([](const auto&) {}, [] {});
  thread.post([&] {
    const auto cancelled = thread.after(milliseconds(10), [&] { ran = true; });
    thread.after(milliseconds(40), [&] { later.open(); });
    thread.cancel(cancelled);
    thread.cancel(0);
  });
  ASSERT_TRUE(later.wait());
  EXPECT_FALSE(ran);
}

TEST_F(X11ThreadTest, HandsOutEventsThatArriveWhileItSleeps) {
  Latch seen;
  auto& connection = thread.connection();
  const auto window = xcb_generate_id(connection.xcb());
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection.xcb(), 0, window, connection.root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  thread.start(
      [&](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) == XCB_PROPERTY_NOTIFY) seen.open();
      },
      [] {});
  // The window is there for others only once the server has heard of it.
  (void)connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection.xcb()));
  const auto other = X11Connection::open(server.display());
  xcb_change_property(other->xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                      XCB_ATOM_STRING, 8, 2, "hi");
  other->flush();
  EXPECT_TRUE(seen.wait());
}

TEST_F(X11ThreadTest, HandsOutEventsThatAnotherThreadsRequestHasReadFromTheSocket) {
  int events = 0;
  Latch all;
  auto& connection = thread.connection();
  const auto window = xcb_generate_id(connection.xcb());
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection.xcb(), 0, window, connection.root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
  thread.start(
      [&](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) == XCB_PROPERTY_NOTIFY && ++events == 100) all.open();
      },
      [] {});
  thread.post([&] {
    for (int i = 0; i < 100; ++i) {
      xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                          XCB_ATOM_STRING, 8, 2, "hi");
      (void)connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection.xcb()));
    }
  });
  EXPECT_TRUE(all.wait());
}

TEST_F(X11ThreadTest, ReportsALostServerOnceAndGoesOnRunningWork) {
  int losses = 0;
  Latch lost;
  Latch timer;
  thread.start([](const auto&) {},
               [&] {
                 ++losses;
                 lost.open();
               });
  server.kill();
  ASSERT_TRUE(lost.wait());
  EXPECT_TRUE(thread.runAndWait([&] { thread.after(milliseconds(5), [&] { timer.open(); }); }));
  EXPECT_TRUE(timer.wait());
  EXPECT_TRUE(thread.connection().broken());
  EXPECT_EQ(thread.connection().atom("ANYTHING_NEW"), xcb_atom_t{XCB_ATOM_NONE});
  EXPECT_FALSE(thread.connection().atomName(XCB_ATOM_STRING));
  thread.stop();
  EXPECT_EQ(losses, 1);
}

TEST_F(X11ThreadTest, WritingToAServerThatHasDiedDoesNotEndTheProcess) {
  Latch killed;
  thread.start([](const auto&) {}, [] {});
  thread.post([&] {
    // The thread has not seen the loss when it writes.
    (void)killed.wait();
    for (int i = 0; i < 3; ++i) {
      xcb_no_operation(thread.connection().xcb());
      thread.connection().flush();
    }
  });
  server.kill();
  killed.open();
  EXPECT_TRUE(thread.runAndWait([] {}));
  EXPECT_TRUE(thread.connection().broken());
}

TEST_F(X11ThreadTest, TakesNoWorkAfterItHasStopped) {
  thread.start([](const auto&) {}, [] {});
  thread.stop();
  EXPECT_FALSE(thread.post([] { ADD_FAILURE(); }));
  EXPECT_FALSE(thread.runAndWait([] { ADD_FAILURE(); }));
}

TEST_F(X11ThreadTest, StopsWithoutEverHavingStarted) {
  EXPECT_TRUE(thread.post([] { ADD_FAILURE(); }));
  thread.stop();
}

TEST_F(X11ThreadTest, ANameThatWasInternedIsKnownBothWays) {
  auto& connection = thread.connection();
  connection.internAtoms({"FIRST_NAME", "SECOND_NAME"});
  const auto first = connection.atom("FIRST_NAME");
  ASSERT_NE(first, xcb_atom_t{XCB_ATOM_NONE});
  EXPECT_EQ(connection.atomName(first), "FIRST_NAME");
  EXPECT_THAT(connection.atomNames({connection.atom("SECOND_NAME"), 0x1FFFFFF, first}),
              testing::ElementsAre("SECOND_NAME", "FIRST_NAME"));
  EXPECT_EQ(X11Connection::open(":59999"), nullptr);
}

TEST_F(X11ThreadTest, ReadsPropertiesWithinTheirBounds) {
  auto& connection = thread.connection();
  const auto window = connection.root();
  const auto name = connection.atom("SOME_PROPERTY");
  const std::string large(1'000'000, 'x');
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, name, XCB_ATOM_STRING, 8,
                      static_cast<std::uint32_t>(large.size()), large.data());
  EXPECT_EQ(stringProperty(connection, window, name, large.size()), large);
  EXPECT_FALSE(stringProperty(connection, window, name, large.size() - 1));
  EXPECT_TRUE(values32Property(connection, window, name).empty());
  EXPECT_EQ(readProperty(connection, window, name, 10, AfterReading::remove).outcome,
            PropertyOutcome::tooLarge);
  EXPECT_EQ(readProperty(connection, window, name, 10).outcome, PropertyOutcome::absent);
  const std::vector<std::uint32_t> numbers{1, 0x80000000U, 3};
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, name, XCB_ATOM_CARDINAL, 32,
                      3, numbers.data());
  EXPECT_EQ(values32Property(connection, window, name), numbers);
  EXPECT_FALSE(stringProperty(connection, window, name));
  EXPECT_EQ(readProperty(connection, 0x1FFFFF, name, 10).outcome, PropertyOutcome::absent);
}

}  // namespace
}  // namespace vantorel
