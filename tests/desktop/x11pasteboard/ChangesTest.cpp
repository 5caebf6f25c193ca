// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

class X11PasteboardChanges : public PasteboardFixture {
 protected:
  X11PasteboardChanges() {
    pasteboard->setChangeHandler([this] { ++announced; });
    pasteboard->setOwnerExitHandler([this](auto change) { exits.push_back(change); });
    owner.offer("UTF8_STRING", "text");
  }

  /// Nothing more will come of what happened so far: another program's change has passed through
  /// the same queues.
  void settle() {
    ScriptedOwner marker(server->display());
    const auto before = announced;
    copy(marker);
    ASSERT_TRUE(loop.runUntil([&] { return announced > before; }));
  }

  void turnFor(Seconds interval) {
    bool later = false;
    const auto timer = loop.after(interval, [&] { later = true; });
    ASSERT_TRUE(loop.runUntil([&] { return later; }));
  }

  /// Twenty programs copy, 30 ms after each other. What was read of them, in order.
  std::vector<std::string> readTwentyCopies() {
    std::vector<std::string> read;
    pasteboard->setChangeHandler([&] {
      pasteboard->readString(now(), [&](Text text) {
        if (text) read.push_back(std::move(*text));
      });
    });
    std::vector<std::unique_ptr<ScriptedOwner>> owners;
    for (const auto& text : twentyTexts()) {
      owners.push_back(std::make_unique<ScriptedOwner>(server->display()));
      owners.back()->offer("UTF8_STRING", text);
    }
    const auto before = now();
    std::size_t next = 0;
    const auto timer = loop.every(Seconds(0.03), [&] {
      if (next < owners.size()) owners[next++]->own();
    });
    EXPECT_TRUE(loop.runUntil([&] { return now() == before + 20; }));
    turnFor(Seconds(0.1));
    pasteboard->setChangeHandler(nullptr);
    EXPECT_EQ(now(), before + 20);
    return read;
  }
  static std::vector<std::string> twentyTexts() {
    std::vector<std::string> texts;
    for (int i = 0; i < 20; ++i) texts.push_back("copy " + std::to_string(i));
    return texts;
  }

  /// How often the pasteboard's thread has gone to sleep so far.
  [[nodiscard]] static long wakeUps() {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
      std::string name;
      std::getline(std::ifstream(task.path() / "comm"), name);
      if (name != "clipboard") continue;
      std::ifstream status(task.path() / "status");
      for (std::string word; status >> word;) {
        long count = 0;
        if (word == "voluntary_ctxt_switches:" && status >> count) return count;
      }
    }
    return -1;
  }

  int announced = 0;
  std::vector<Pasteboard::ChangeCount> exits;
  ScriptedOwner owner{server->display()};
};

TEST_F(X11PasteboardChanges, WhatTheManagerInsideOfACompositorOwnsIsBridged) {
  pasteboard =
      X11Pasteboard::open({loop, decoder, SelectionService::Bridge::compositor}, server->display());
  copy(owner);
  EXPECT_FALSE(pasteboard->isBridged(now()));

  Requestor manager(server->display());
  auto& connection = manager.connection();
  const auto clipboard =
      connection.reply(xcb_get_selection_owner_reply,
                       xcb_get_selection_owner(connection.xcb(), connection.atom("CLIPBOARD")));
  ASSERT_TRUE(clipboard);
  EXPECT_FALSE(connection.error(xcb_change_property_checked(
      connection.xcb(), XCB_PROP_MODE_REPLACE, connection.root(),
      connection.atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 32, 1, &clipboard->owner)));
  copy(owner);
  EXPECT_TRUE(pasteboard->isBridged(now()));
  EXPECT_FALSE(pasteboard->isBridged(now() - 1));

  ScriptedOwner program(server->display());
  program.offer("UTF8_STRING", "of a program");
  copy(program);
  EXPECT_FALSE(pasteboard->isBridged(now()));
}

TEST_F(X11PasteboardChanges, AnotherProgramsCopyIsCountedAndAnnounced) {
  const auto before = now();
  owner.own();
  ASSERT_TRUE(loop.runUntil([&] { return announced == 1; }));
  EXPECT_EQ(now(), before + 1);
}

TEST_F(X11PasteboardChanges, TheSameOwnersNextCopyIsCountedToo) {
  const auto before = now();
  owner.own();
  owner.ownAgain();
  ASSERT_TRUE(loop.runUntil([&] {
    loop.runQueued();
    return now() == before + 2;
  }));
}

TEST_F(X11PasteboardChanges, ChangesThatNobodyHasLookedAtAreAnnouncedTogether) {
  const auto before = now();
  for (int i = 0; i < 5; ++i) owner.own();
  // The main thread is busy until all of them have been counted.
  while (now() < before + 5) std::this_thread::yield();
  loop.runQueued();
  EXPECT_EQ(announced, 1);
  owner.own();
  ASSERT_TRUE(loop.runUntil([&] { return announced == 2; }));
}

TEST_F(X11PasteboardChanges, TwentyCopiesThirtyMillisecondsApartAreAllCountedAndRead) {
  // A machine that is busy with other things may keep everybody from running for 30 ms, so there
  // are several attempts; counting has to be right in each.
  std::vector<std::string> read;
  for (int attempt = 0; attempt < 8 && read != twentyTexts(); ++attempt) read = readTwentyCopies();
  EXPECT_EQ(read, twentyTexts());
}

TEST_F(X11PasteboardChanges, AnOwnWriteIsCountedWhenItReturnsAndNotAgain) {
  const auto before = now();
  ASSERT_TRUE(pasteboard->writeString("own"));
  EXPECT_EQ(now(), before + 1);
  settle();
  EXPECT_EQ(now(), before + 2);
  EXPECT_EQ(announced, 1) << "announced its own write";
}

TEST_F(X11PasteboardChanges, AnOwnClearIsCountedWhenItReturnsAndNotAgain) {
  const auto before = now();
  pasteboard->clearContents();
  EXPECT_EQ(now(), before + 1);
  loop.runQueued();
  Requestor program(server->display());
  EXPECT_FALSE(program.get("UTF8_STRING"));
  EXPECT_EQ(now(), before + 1);
  settle();
  EXPECT_EQ(now(), before + 2);
  EXPECT_EQ(announced, 1);
}

TEST_F(X11PasteboardChanges, AnotherProgramsCopyAfterAnOwnWriteIsAChange) {
  ASSERT_TRUE(pasteboard->writeString("own"));
  const auto written = now();
  copy(owner);
  EXPECT_EQ(now(), written + 1);
  EXPECT_EQ(string(), "text");
}

TEST_F(X11PasteboardChanges, TheEndOfAnOwnerIsNoChangeButIsTold) {
  copy(owner);
  const auto change = now();
  owner.die();
  ASSERT_TRUE(loop.runUntil([&] { return !exits.empty(); }));
  EXPECT_EQ(now(), change);
  settle();
  EXPECT_THAT(exits, testing::ElementsAre(change)) << "one end is told once";
}

TEST_F(X11PasteboardChanges, TheEndOfTheOwnersWindowAloneIsTold) {
  copy(owner);
  const auto change = now();
  owner.destroyWindow();
  ASSERT_TRUE(loop.runUntil([&] { return !exits.empty(); }));
  EXPECT_THAT(exits, testing::ElementsAre(change));
  EXPECT_EQ(now(), change);
}

TEST_F(X11PasteboardChanges, AnOwnerWithASuccessorHasNotLeftTheClipboardEmpty) {
  copy(owner);
  owner.die();
  ScriptedOwner successor(server->display());
  successor.offer("UTF8_STRING", "kept");
  copy(successor);
  EXPECT_EQ(string(), "kept");
  turnFor(Seconds(0.4));
  EXPECT_THAT(exits, testing::IsEmpty());
}

TEST_F(X11PasteboardChanges, ClearingOnPurposeIsAChangeAndNoOwnersEnd) {
  copy(owner);
  const auto change = now();
  owner.disown();
  ASSERT_TRUE(loop.runUntil([&] { return now() == change + 1 && announced == 2; }));
  EXPECT_THAT(types(), testing::Optional(testing::IsEmpty()));
  EXPECT_FALSE(string());
  owner.die();
  settle();
  EXPECT_THAT(exits, testing::IsEmpty());
}

TEST_F(X11PasteboardChanges, AReadForAnEarlierChangeFindsNothing) {
  copy(owner);
  const auto earlier = now();
  copy(owner);
  const auto text =
      finished<Text>([&](auto done) { pasteboard->readString(earlier, std::move(done)); });
  EXPECT_FALSE(text);
  const auto names =
      finished<Types>([&](auto done) { pasteboard->readTypes(earlier, std::move(done)); });
  EXPECT_FALSE(names);
}

TEST_F(X11PasteboardChanges, AReadUnderWayEndsWhenTheContentsChange) {
  ScriptedForm silent;
  silent.manner = Manner::stay_silent;
  ScriptedOwner slow(server->display());
  slow.offer("UTF8_STRING", silent);
  copy(slow);
  std::optional<Text> answer;
  const auto start = std::chrono::steady_clock::now();
  pasteboard->readString(now(), [&](Text text) { answer = std::move(text); });
  ASSERT_TRUE(slow.waitForRequest("UTF8_STRING"));
  owner.own();
  ASSERT_TRUE(loop.runUntil([&] { return answer.has_value(); }));
  EXPECT_FALSE(*answer);
  EXPECT_LT(Milliseconds(std::chrono::steady_clock::now() - start).count(), 290);
}

TEST_F(X11PasteboardChanges, SelectingTextIsNoChange) {
  const auto before = now();
  ScriptedOwner selecting(server->display(), "PRIMARY");
  selecting.offer("UTF8_STRING", "selected");
  selecting.own();
  settle();
  EXPECT_EQ(now(), before + 1);
}

TEST_F(X11PasteboardChanges, SleepsWhileNothingHappens) {
  copy(owner);
  EXPECT_EQ(string(), "text");
  ASSERT_TRUE(pasteboard->writeString("own"));
  turnFor(Seconds(0.2));  // by then it has gone to sleep for the last time
  const auto before = wakeUps();
  ASSERT_GT(before, 0);
  turnFor(Seconds(0.7));
  EXPECT_EQ(wakeUps(), before);
}

TEST_F(X11PasteboardChanges, NothingIsHeardOfAPasteboardThatIsGone) {
  owner.own();
  std::optional<Text> answer;
  pasteboard->readString(now(), [&](Text text) { answer = std::move(text); });
  pasteboard.reset();
  loop.runQueued();
  EXPECT_EQ(announced, 0);
  EXPECT_FALSE(answer);
}

TEST_F(X11PasteboardChanges, QuittingWithinAReadLeavesNothingBehind) {
  ScriptedForm silent;
  silent.manner = Manner::stay_silent;
  ScriptedOwner slow(server->display());
  slow.offer("TARGETS", silent);
  copy(slow);
  auto token = std::make_shared<int>();
  const std::weak_ptr<int> kept = token;
  pasteboard->readString(now(), [token = std::move(token)](const Text&) { ADD_FAILURE(); });
  ASSERT_TRUE(slow.waitForRequest("TARGETS"));
  pasteboard.reset();
  loop.runQueued();
  EXPECT_TRUE(kept.expired());
}

TEST_F(X11PasteboardChanges, KnowsWhoseTheContentsAre) {
  ScriptedOwner other(server->display());
  other.offer("UTF8_STRING", "theirs");
  copy(other);
  EXPECT_FALSE(pasteboard->wroteContents(now()));
  EXPECT_EQ(pasteboard->ownerProcess(now()), getpid());
  const auto theirs = now();
  ASSERT_TRUE(pasteboard->writeString("ours"));
  EXPECT_TRUE(pasteboard->wroteContents(now()));
  EXPECT_EQ(pasteboard->ownerProcess(now()), std::nullopt);
  EXPECT_FALSE(pasteboard->wroteContents(theirs));
  pasteboard->clearContents();
  EXPECT_TRUE(pasteboard->wroteContents(now()));
}

}  // namespace
}  // namespace vantorel
