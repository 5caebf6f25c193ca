// SPDX-License-Identifier: MIT
#include <thread>

#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

/// A clipboard manager: owns CLIPBOARD_MANAGER, and when asked to save takes one form of the
/// clipboard's contents and the clipboard itself.
class ScriptedManager {
 public:
  enum class Habit { save, stay_silent, refuse };

  ScriptedManager(const std::string& display, Habit habit)
      : display_(display),
        habit_(habit),
        thread_(X11Connection::open(display), "manager"),
        connection_(thread_.connection()) {
    window_ = xcb_generate_id(connection_.xcb());
    xcb_create_window(connection_.xcb(), 0, window_, connection_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection_.xcb(), window_, connection_.atom("CLIPBOARD_MANAGER"),
                            XCB_CURRENT_TIME);
    connection_.flush();
    (void)connection_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_.xcb()));
    thread_.start(
        [this](const xcb_generic_event_t& event) {
          if ((event.response_type & 0x7F) != XCB_SELECTION_REQUEST) return;
          save(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        },
        [] {});
  }
  ~ScriptedManager() { thread_.stop(); }

  [[nodiscard]] std::string saved() {
    std::string saved;
    (void)thread_.runAndWait([&] { saved = saved_; });
    return saved;
  }
  [[nodiscard]] bool wasAsked() {
    bool asked = false;
    (void)thread_.runAndWait([&] { asked = asked_; });
    return asked;
  }

 private:
  void save(const xcb_selection_request_event_t& request) {
    asked_ = true;
    if (habit_ == Habit::stay_silent) return;
    if (habit_ == Habit::save) {
      Requestor reader(display_);
      const auto text = reader.get("UTF8_STRING");
      if (text) saved_ = textOf(text->bytes);
    }
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.time = request.time;
    event.requestor = request.requestor;
    event.selection = request.selection;
    event.target = request.target;
    event.property = habit_ == Habit::refuse ? xcb_atom_t{XCB_ATOM_NONE} : request.property;
    xcb_send_event(connection_.xcb(), 0, request.requestor, 0,
                   reinterpret_cast<const char*>(&event));
  }

  std::string display_;
  Habit habit_;
  X11Thread thread_;
  X11Connection& connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  bool asked_ = false;
  std::string saved_;
};

class X11PasteboardHandOver : public PasteboardFixture {
 protected:
  [[nodiscard]] Milliseconds timeOfQuitting() {
    const auto start = std::chrono::steady_clock::now();
    pasteboard.reset();
    return std::chrono::steady_clock::now() - start;
  }
};

TEST_F(X11PasteboardHandOver, GivesItsContentsToTheManagerOnQuitting) {
  ScriptedManager manager(server->display(), ScriptedManager::Habit::save);
  ASSERT_TRUE(pasteboard->writeString("to be kept"));
  EXPECT_LT(timeOfQuitting().count(), 290);
  EXPECT_EQ(manager.saved(), "to be kept");
}

TEST_F(X11PasteboardHandOver, GivesLargeContentsInPiecesToo) {
  ScriptedManager manager(server->display(), ScriptedManager::Habit::save);
  const auto large = pattern(1'000'000);
  ASSERT_TRUE(pasteboard->writeString(std::string(textOf(large))));
  (void)timeOfQuitting();
  EXPECT_TRUE(bytes(manager.saved()) == large);
}

TEST_F(X11PasteboardHandOver, DoesNotWaitLongForAManagerThatStaysSilent) {
  ScriptedManager manager(server->display(), ScriptedManager::Habit::stay_silent);
  ASSERT_TRUE(pasteboard->writeString("text"));
  const auto took = timeOfQuitting();
  EXPECT_GE(took.count(), 290);
  EXPECT_LT(took.count(), 5000);
  EXPECT_TRUE(manager.wasAsked());
}

TEST_F(X11PasteboardHandOver, DoesNotWaitForAManagerThatRefuses) {
  ScriptedManager manager(server->display(), ScriptedManager::Habit::refuse);
  ASSERT_TRUE(pasteboard->writeString("text"));
  EXPECT_LT(timeOfQuitting().count(), 290);
}

TEST_F(X11PasteboardHandOver, HandsOverNothingThatIsNotItsOwn) {
  ScriptedManager manager(server->display(), ScriptedManager::Habit::save);
  ScriptedOwner owner(server->display());
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  EXPECT_LT(timeOfQuitting().count(), 290);
  EXPECT_FALSE(manager.wasAsked());
}

TEST_F(X11PasteboardHandOver, HandsOverNothingThatWasCleared) {
  ScriptedManager manager(server->display(), ScriptedManager::Habit::save);
  ASSERT_TRUE(pasteboard->writeString("cleared"));
  pasteboard->clearContents();
  EXPECT_LT(timeOfQuitting().count(), 290);
  EXPECT_FALSE(manager.wasAsked());
}

TEST_F(X11PasteboardHandOver, QuitsAtOnceWithoutAManagerAndLeavesTheClipboardFree) {
  ASSERT_TRUE(pasteboard->writeString("text"));
  EXPECT_LT(timeOfQuitting().count(), 290);
  Requestor program(server->display());
  EXPECT_FALSE(program.get("UTF8_STRING"));
}

}  // namespace
}  // namespace vantorel
