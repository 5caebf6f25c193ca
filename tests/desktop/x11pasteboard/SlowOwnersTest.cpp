// SPDX-License-Identifier: MIT
// Owners that take their time, and owners that leave out one of the forms they promised.
#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class X11PasteboardSlowOwner : public PasteboardFixture {
 protected:
  static ScriptedForm after(std::chrono::milliseconds pause, std::string_view text) {
    ScriptedForm form;
    form.bytes = bytes(text);
    form.pause = pause;
    return form;
  }
  static ScriptedForm silent() {
    ScriptedForm form;
    form.manner = Manner::stay_silent;
    return form;
  }
  /// What follows is about the rule, not about how long the program is patient.
  void openImpatiently() { open({.patience = std::chrono::milliseconds(700)}); }

  static constexpr std::chrono::milliseconds aWhile{400};
  ScriptedOwner owner{server->display()};
};

TEST_F(X11PasteboardSlowOwner, EveryFormIsWaitedFor) {
  owner.offer("UTF8_STRING", after(aWhile, "cells"));
  owner.offer("text/html", after(aWhile, "<td>"));
  owner.offer("text/uri-list", after(aWhile, "file:///a\r\n"));
  owner.offer("image/png", after(aWhile, "encoded"));
  const auto picture = std::make_shared<MadeImage>(bytes("png"), bytes("jpeg"));
  decoder.introduce(bytes("encoded"), picture);
  copy(owner);
  EXPECT_THAT(files(), ElementsAre("/a"));
  EXPECT_EQ(string(), "cells");
  EXPECT_EQ(data(PasteboardDataType::html), bytes("<td>"));
  EXPECT_EQ(image(), picture);
}

TEST_F(X11PasteboardSlowOwner, TheListOfFormsIsWaitedFor) {
  const xcb_atom_t utf8 = Requestor(server->display()).connection().atom("UTF8_STRING");
  ScriptedForm list = after(aWhile, {reinterpret_cast<const char*>(&utf8), sizeof utf8});
  list.type = "ATOM";
  list.format = 32;
  owner.offer("TARGETS", list);
  owner.offer("UTF8_STRING", "text");
  copy(owner);
  EXPECT_THAT(types(), testing::Optional(ElementsAre("UTF8_STRING")));
  EXPECT_EQ(string(), "text");
}

TEST_F(X11PasteboardSlowOwner, AnAnswerThatKeepsComingIsWaitedForHoweverLongItTakes) {
  open({.patience = std::chrono::milliseconds(2500)});
  ScriptedForm trickling = after(std::chrono::milliseconds(100), textOf(pattern(560)));
  trickling.manner = Manner::incremental;
  trickling.pieceBytes = 10;
  owner.offer("UTF8_STRING", trickling);
  copy(owner);
  const auto text = string();
  ASSERT_TRUE(text);
  EXPECT_EQ(bytes(*text), trickling.bytes);
}

TEST_F(X11PasteboardSlowOwner, OneThatAnswersInTheLastMomentIsHeard) {
  owner.offer("UTF8_STRING", after(std::chrono::milliseconds(4700), "at last"));
  copy(owner);
  EXPECT_EQ(string(), "at last");
}

TEST_F(X11PasteboardSlowOwner, APictureDoesNotStandForTheTextThatDidNotCome) {
  openImpatiently();
  owner.offer("UTF8_STRING", silent());
  owner.offer("STRING", "lesser");
  owner.offer("image/png", "a picture of the text");
  copy(owner);
  EXPECT_FALSE(string());
  EXPECT_EQ(image(), nullptr);
  EXPECT_FALSE(string());
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS", "UTF8_STRING"));
}

TEST_F(X11PasteboardSlowOwner, ATextDoesNotStandForTheFilesThatDidNotCome) {
  openImpatiently();
  owner.offer("text/uri-list", silent());
  owner.offer("UTF8_STRING", "/tmp/a");
  copy(owner);
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_FALSE(string());
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS", "text/uri-list"));
}

TEST_F(X11PasteboardSlowOwner, TheNextCopyIsAskedForEverythingAgain) {
  openImpatiently();
  owner.offer("UTF8_STRING", silent());
  copy(owner);
  EXPECT_FALSE(string());
  owner.offer("UTF8_STRING", "speaks again");
  copy(owner);
  EXPECT_EQ(string(), "speaks again");
}

TEST_F(X11PasteboardSlowOwner, ANewerCopyEndsTheWaitAtOnce) {
  owner.offer("UTF8_STRING", silent());
  copy(owner);
  std::optional<Text> older;
  pasteboard->readString(now(), [&](Text text) { older = std::move(text); });
  ASSERT_TRUE(owner.waitForRequest("UTF8_STRING"));
  const auto start = std::chrono::steady_clock::now();
  ScriptedOwner next(server->display());
  next.offer("UTF8_STRING", "next");
  copy(next);
  EXPECT_EQ(string(), "next");
  ASSERT_TRUE(loop.runUntil([&] { return older.has_value(); }));
  EXPECT_FALSE(*older);
  EXPECT_LT(Milliseconds(std::chrono::steady_clock::now() - start).count(), 3000);
}

TEST_F(X11PasteboardSlowOwner, QuittingDoesNotWaitForIt) {
  owner.offer("TARGETS", silent());
  copy(owner);
  pasteboard->readTypes(now(), [](const Types& /*types*/) {});
  ASSERT_TRUE(owner.waitForRequest("TARGETS"));
  const auto start = std::chrono::steady_clock::now();
  pasteboard.reset();
  EXPECT_LT(Milliseconds(std::chrono::steady_clock::now() - start).count(), 3000);
}

}  // namespace
}  // namespace vantorel
