// SPDX-License-Identifier: MIT
// The pasteboard as the clipboard manager of programs that end.
#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

using testing::IsSupersetOf;

class X11PasteboardSaveRequests : public PasteboardFixture {
 protected:
  using Done = std::function<void()>;

  void keep(std::function<void(Done)> how) {
    pasteboard->setSaveHandler([this, how](Pasteboard::ChangeCount change, const Done& done) {
      ++asked;
      EXPECT_EQ(change, now());
      how(done);
    });
  }
  void keepByWriting() {
    keep([this](const Done& done) {
      EXPECT_TRUE(pasteboard->writeString("kept"));
      done();
    });
  }
  void askAndRun() {
    const int before = asked;
    owner.askToSave();
    ASSERT_TRUE(loop.runUntil([&] { return asked > before; }));
  }
  /// Also what no work of the main thread announces.
  [[nodiscard]] bool becomesTrue(const std::function<bool()>& condition) {
    const auto looking = loop.every(Seconds(0.01), [] {});
    return loop.runUntil(condition);
  }
  [[nodiscard]] xcb_window_t manager() {
    X11Connection& connection = program.connection();
    const auto answer = connection.reply(
        xcb_get_selection_owner_reply,
        xcb_get_selection_owner(connection.xcb(), connection.atom("CLIPBOARD_MANAGER")));
    return answer ? answer->owner : xcb_window_t{XCB_WINDOW_NONE};
  }

  ScriptedOwner owner{server->display()};
  Requestor program{server->display()};
  int asked = 0;
};

TEST_F(X11PasteboardSaveRequests, ThePartIsPlayedWhileSomebodyKeeps) {
  EXPECT_EQ(manager(), XCB_WINDOW_NONE);
  keepByWriting();
  EXPECT_NE(manager(), XCB_WINDOW_NONE);
  pasteboard->setSaveHandler({});
  EXPECT_EQ(manager(), XCB_WINDOW_NONE);
}

TEST_F(X11PasteboardSaveRequests, ThePartIsLeftToAnotherAndTakenUpWhenThatEnds) {
  ScriptedOwner first(server->display(), "CLIPBOARD_MANAGER");
  first.own();
  const auto theirs = manager();
  keepByWriting();
  EXPECT_EQ(manager(), theirs) << "taken from a manager that runs";
  first.die();
  ASSERT_TRUE(becomesTrue([&] {
    const auto present = manager();
    return present != XCB_WINDOW_NONE && present != theirs;
  }));
  const auto ours = manager();
  ScriptedOwner second(server->display(), "CLIPBOARD_MANAGER");
  second.own();
  EXPECT_NE(manager(), ours);
  second.disown();
  ASSERT_TRUE(becomesTrue([&] { return manager() == ours; }));
}

TEST_F(X11PasteboardSaveRequests, TheTakingIsToldAtTheRootWindow) {
  X11Connection& connection = program.connection();
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection.xcb(), connection.root(), XCB_CW_EVENT_MASK, &events);
  (void)manager();
  keepByWriting();
  ASSERT_NE(manager(), XCB_WINDOW_NONE);
  bool told = false;
  // It is told after the selection was taken.
  EXPECT_TRUE(becomesTrue([&] {
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection.xcb())}) {
      if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) continue;
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
      told = told || (message.type == connection.atom("MANAGER") &&
                      message.data.data32[1] == connection.atom("CLIPBOARD_MANAGER") &&
                      message.data.data32[2] == manager());
    }
    return told;
  }));
}

TEST_F(X11PasteboardSaveRequests, TheManagerSaysWhatItCanBeAskedFor) {
  keepByWriting();
  const auto targets = program.get("TARGETS", "CLIPBOARD_MANAGER");
  ASSERT_TRUE(targets);
  const auto atom = [&](const char* name) { return program.connection().atom(name); };
  EXPECT_THAT(targets->values32(), IsSupersetOf({atom("TARGETS"), atom("TIMESTAMP"),
                                                 atom("MULTIPLE"), atom("SAVE_TARGETS")}));
  EXPECT_TRUE(program.get("TIMESTAMP", "CLIPBOARD_MANAGER"));
  EXPECT_FALSE(program.get("UTF8_STRING", "CLIPBOARD_MANAGER"));
}

TEST_F(X11PasteboardSaveRequests, WhatWasWrittenIsSavedAndOutlivesItsOwner) {
  keepByWriting();
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  askAndRun();
  EXPECT_EQ(owner.saved(), true);
  owner.die();
  EXPECT_EQ(textIn(program.get("UTF8_STRING")), "kept");
}

TEST_F(X11PasteboardSaveRequests, TheAnswerWaitsForTheWriting) {
  Done later;
  keep([&](const Done& done) { later = done; });
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  askAndRun();
  // Whoever asks is still there to be read.
  EXPECT_EQ(string(), "theirs");
  ASSERT_TRUE(pasteboard->writeString("kept"));
  later();
  EXPECT_EQ(owner.saved(), true);
}

TEST_F(X11PasteboardSaveRequests, WhatWasNotWrittenIsRefused) {
  const std::vector<std::function<void(Done)>> ways = {
      [](const Done& done) { done(); },
      [](const Done& /*dropped*/) {},
      [this](const Done& done) {
        pasteboard->clearContents();
        done();
      },
  };
  for (const auto& way : ways) {
    keep(way);
    owner.offer("UTF8_STRING", "theirs");
    copy(owner);
    askAndRun();
    EXPECT_EQ(owner.saved(), false);
  }
}

TEST_F(X11PasteboardSaveRequests, OnlyTheOwnerOfTheClipboardIsHeard) {
  keepByWriting();
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  EXPECT_FALSE(program.get("SAVE_TARGETS", "CLIPBOARD_MANAGER"));
  ASSERT_TRUE(pasteboard->writeString("ours"));
  owner.askToSave();
  EXPECT_EQ(owner.saved(), false);
  loop.runQueued();
  EXPECT_EQ(asked, 0);
}

TEST_F(X11PasteboardSaveRequests, OneThatClearsTheClipboardAfterItWasSavedLosesNothing) {
  keepByWriting();
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  askAndRun();
  ASSERT_EQ(owner.saved(), true);
  const auto saved = now();
  owner.disown();
  owner.die();
  ASSERT_TRUE(becomesTrue([&] { return textIn(program.get("UTF8_STRING")) == "kept"; }));
  EXPECT_EQ(now(), saved) << "nothing changed here";
  EXPECT_EQ(string(), "kept");
}

TEST_F(X11PasteboardSaveRequests, OneThatClearsTheClipboardWithoutAskingMeansIt) {
  keepByWriting();
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  ASSERT_TRUE(pasteboard->writeString("ours"));
  const auto before = now();
  owner.disown();
  ASSERT_TRUE(becomesTrue([&] { return now() > before; }));
  EXPECT_FALSE(program.get("UTF8_STRING"));
}

TEST_F(X11PasteboardSaveRequests, QuittingDoesNotAskItself) {
  keepByWriting();
  ASSERT_TRUE(pasteboard->writeString("text"));
  const auto start = std::chrono::steady_clock::now();
  pasteboard.reset();
  EXPECT_LT(Milliseconds(std::chrono::steady_clock::now() - start).count(), 290);
  EXPECT_EQ(manager(), XCB_WINDOW_NONE);
}

}  // namespace
}  // namespace vantorel
