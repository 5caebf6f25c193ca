// SPDX-License-Identifier: MIT
// The clipboard of a compositor, against one whose other programs do as the test says.
#include "platform/linux/wayland/DataControlPasteboard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "desktop/wayland/FakeCompositor.h"
#include "desktop/x11pasteboard/MainLoop.h"
#include "fakes/FakeImage.h"
#include "fakes/FakeImageDecoder.h"

namespace vantorel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;
using testing::UnorderedElementsAre;

using Manner = FakeCompositor::Manner;
using Protocol = FakeCompositor::Protocol;

Bytes bytes(std::string_view text) {
  const auto view = bytesOf(text);
  return {view.begin(), view.end()};
}

FakeCompositor::Form form(std::string_view text, Manner manner = Manner::polite) {
  return {bytes(text), manner};
}

FakeCompositor::Forms plainText(std::string_view text) {
  return {{"text/plain;charset=utf-8", form(text)}};
}

/// All that comes out of a pipe.
std::string all(const FileDescriptor& pipe) {
  std::string text;
  std::array<char, 4096> piece{};
  for (;;) {
    const auto count = read(pipe.get(), piece.data(), piece.size());
    if (count <= 0) return text;
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
}

class DataControlPasteboardTest : public testing::TestWithParam<Protocol> {
 protected:
  using Types = std::optional<std::vector<std::string>>;
  using Text = std::optional<std::string>;
  using Data = std::optional<Bytes>;
  using Files = std::vector<std::filesystem::path>;
  using Picture = std::shared_ptr<const Image>;

  DataControlPasteboardTest() { open({}); }

  void open(DataControlPasteboard::Limits limits) {
    pasteboard.reset();
    pasteboard = DataControlPasteboard::open({loop, decoder},
                                             WaylandConnection::open(compositor.path()), limits);
    if (!pasteboard) throw std::runtime_error("no pasteboard");
  }
  /// What follows is about the rule, not about how long the program is patient.
  void openImpatiently() { open({.patience = std::chrono::milliseconds(300)}); }

  /// Another program copies, and the pasteboard has counted it.
  void copy(FakeCompositor::Forms forms) {
    const auto before = now();
    compositor.copy(std::move(forms));
    ASSERT_TRUE(loop.runUntil([&] {
      loop.runQueued();
      return now() > before;
    }));
  }
  [[nodiscard]] Pasteboard::ChangeCount now() const { return pasteboard->changeCount(); }

  template <class Value, class Start>
  Value finished(Start start) {
    std::optional<Value> answer;
    start([&](Value value) { answer = std::move(value); });
    EXPECT_FALSE(answer) << "answered within the same turn";
    if (!loop.runUntil([&] { return answer.has_value(); })) {
      ADD_FAILURE() << "never answered";
      return Value();
    }
    return std::move(*answer);
  }
  Types types() {
    return finished<Types>([&](auto done) { pasteboard->readTypes(now(), std::move(done)); });
  }
  Text string() {
    return finished<Text>([&](auto done) { pasteboard->readString(now(), std::move(done)); });
  }
  Data data(PasteboardDataType type) {
    return finished<Data>([&](auto done) { pasteboard->readData(now(), type, std::move(done)); });
  }
  Files files() {
    return finished<Files>([&](auto done) { pasteboard->readFileURLs(now(), std::move(done)); });
  }
  Picture image() {
    return finished<Picture>([&](auto done) { pasteboard->readImage(now(), std::move(done)); });
  }

  FakeCompositor compositor{GetParam()};
  MainLoop loop;
  FakeImageDecoder decoder;
  std::unique_ptr<DataControlPasteboard> pasteboard;
};

INSTANTIATE_TEST_SUITE_P(Each, DataControlPasteboardTest,
                         testing::Values(Protocol::newer, Protocol::older),
                         [](const auto& instance) {
                           return instance.param == Protocol::newer ? "Newer" : "Older";
                         });

TEST_P(DataControlPasteboardTest, TypesComeWithTheChangeAndNobodyIsAsked) {
  copy({{"text/plain", form("x")}, {"x-kde-passwordManagerHint", form("secret")}});
  EXPECT_THAT(types(), Optional(UnorderedElementsAre("text/plain", "x-kde-passwordManagerHint",
                                                     "org.nspasteboard.ConcealedType")));
  EXPECT_THAT(compositor.requests(), IsEmpty());
}

TEST_P(DataControlPasteboardTest, EveryFormIsRead) {
  copy({{"text/plain;charset=utf-8", form("שלום")},
        {"text/html", form("<b>")},
        {"text/rtf", form("{\\rtf}")},
        {"text/uri-list", form("file:///a%20b\r\n")},
        {"image/png", form("encoded")}});
  const auto picture = std::make_shared<FakeImage>(Size{2, 1}, "png");
  decoder.introduce(bytes("encoded"), picture);
  EXPECT_THAT(files(), ElementsAre("/a b"));
  EXPECT_EQ(string(), "שלום");
  EXPECT_EQ(data(PasteboardDataType::html), bytes("<b>"));
  EXPECT_EQ(data(PasteboardDataType::rtf), bytes("{\\rtf}"));
  EXPECT_EQ(image(), picture);
}

TEST_P(DataControlPasteboardTest, WhatWasThereBeforeIsNoChange) {
  compositor.copy(plainText("old"));
  open({});
  EXPECT_EQ(now(), 1);
  EXPECT_EQ(string(), "old");
}

TEST_P(DataControlPasteboardTest, ChangesAreAnnounced) {
  int announced = 0;
  pasteboard->setChangeHandler([&] { ++announced; });
  compositor.copy(plainText("a"));
  ASSERT_TRUE(loop.runUntil([&] { return announced == 1; }));
  EXPECT_EQ(now(), 2);
  EXPECT_TRUE(pasteboard->announcesEveryChange());
}

TEST_P(DataControlPasteboardTest, AnEmptyTextIsAText) {
  copy({{"text/plain", form("", Manner::reluctant)}});
  EXPECT_EQ(string(), "");
}

TEST_P(DataControlPasteboardTest, ASilentOwnerIsGivenUpAndAskedNothingMore) {
  openImpatiently();
  copy({{"text/plain;charset=utf-8", form("", Manner::silent)},
        {"text/plain", form("lesser")},
        {"image/png", form("a picture of the text")}});
  EXPECT_FALSE(string());
  EXPECT_EQ(image(), nullptr);
  EXPECT_THAT(compositor.requests(), ElementsAre("text/plain;charset=utf-8"));
  copy(plainText("speaks again"));
  EXPECT_EQ(string(), "speaks again");
}

TEST_P(DataControlPasteboardTest, HalfATextIsNone) {
  openImpatiently();
  copy({{"text/plain", form("both halves", Manner::hesitant)}});
  EXPECT_FALSE(string());
}

TEST_P(DataControlPasteboardTest, AnOwnerThatNeverEndsIsGivenUpAtTheLimit) {
  copy({{"text/plain", form("", Manner::endless)}, {"text/html", form("<b>")}});
  EXPECT_FALSE(string());
  EXPECT_FALSE(data(PasteboardDataType::html));
}

TEST_P(DataControlPasteboardTest, ANewerCopyEndsTheWaitAtOnce) {
  copy({{"text/plain", form("", Manner::silent)}});
  std::optional<Text> older;
  pasteboard->readString(now(), [&](Text text) { older = std::move(text); });
  ASSERT_TRUE(loop.runUntil([&] {
    loop.runQueued();
    return !compositor.requests().empty();
  }));
  const auto start = std::chrono::steady_clock::now();
  copy(plainText("next"));
  EXPECT_EQ(string(), "next");
  ASSERT_TRUE(loop.runUntil([&] { return older.has_value(); }));
  EXPECT_FALSE(*older);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

TEST_P(DataControlPasteboardTest, AnOlderChangeCannotBeReadAnyMore) {
  copy(plainText("older"));
  const auto older = now();
  copy(plainText("newer"));
  EXPECT_FALSE(finished<Text>([&](auto done) { pasteboard->readString(older, std::move(done)); }));
}

TEST_P(DataControlPasteboardTest, EndingDoesNotWaitForASilentOwner) {
  copy({{"text/plain", form("", Manner::silent)}});
  pasteboard->readString(now(), [](const Text& /*text*/) { FAIL(); });
  const auto start = std::chrono::steady_clock::now();
  pasteboard.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

TEST_P(DataControlPasteboardTest, ItsOwnWriteIsCountedOnceAndNotAnnounced) {
  pasteboard->setChangeHandler([] { FAIL() << "announced"; });
  ASSERT_TRUE(pasteboard->writeString("mine"));
  const auto change = now();
  EXPECT_EQ(change, 2);
  EXPECT_TRUE(pasteboard->wroteContents(change));
  EXPECT_EQ(string(), "mine");
  loop.runQueued();
  EXPECT_EQ(now(), change);
  EXPECT_EQ(all(compositor.paste("text/plain;charset=utf-8")), "mine");
  EXPECT_EQ(all(compositor.paste("UTF8_STRING")), "mine");
  EXPECT_EQ(all(compositor.paste("image/png")), "");
}

TEST_P(DataControlPasteboardTest, RichTextFilesAndPicturesAreServed) {
  ASSERT_TRUE(pasteboard->writeItem({"plain", bytes("{\\rtf}"), bytes("<b>")}));
  EXPECT_EQ(all(compositor.paste("text/rtf")), "{\\rtf}");
  EXPECT_EQ(all(compositor.paste("text/html")), "<b>");
  ASSERT_TRUE(pasteboard->writeFileURLs({"/a b"}));
  EXPECT_EQ(all(compositor.paste("text/uri-list")), "file:///a%20b\r\n");
  EXPECT_EQ(all(compositor.paste("text/plain")), "/a b");
  const auto picture = std::make_shared<FakeImage>(Size{2, 1}, "png");
  ASSERT_TRUE(pasteboard->writeImage(picture));
  EXPECT_EQ(all(compositor.paste("image/png")), textOf(*picture->pngData()));
}

TEST_P(DataControlPasteboardTest, OneWhoStopsReadingHoldsUpNobody) {
  const std::string large(std::size_t{20} * 1024 * 1024, 'x');
  ASSERT_TRUE(pasteboard->writeString(large));
  const auto stopped = compositor.paste("text/plain");
  EXPECT_EQ(all(compositor.paste("text/plain")).size(), large.size());
  EXPECT_EQ(all(stopped).size(), large.size());
}

TEST_P(DataControlPasteboardTest, OneWhoHangsUpHarmsNobody) {
  ASSERT_TRUE(pasteboard->writeString(std::string(std::size_t{1} << 20U, 'x')));
  { const auto dropped = compositor.paste("text/plain"); }
  EXPECT_EQ(all(compositor.paste("text/plain")).size(), std::size_t{1} << 20U);
}

TEST_P(DataControlPasteboardTest, AnotherProgramsCopyEndsItsOwn) {
  ASSERT_TRUE(pasteboard->writeString("mine"));
  copy(plainText("theirs"));
  EXPECT_FALSE(pasteboard->wroteContents(now()));
  EXPECT_EQ(string(), "theirs");
  ASSERT_TRUE(pasteboard->writeString("mine again"));
  EXPECT_TRUE(pasteboard->wroteContents(now()));
  EXPECT_EQ(all(compositor.paste("text/plain")), "mine again");
}

TEST_P(DataControlPasteboardTest, AnEmptiedClipboardIsAChangeToNothing) {
  ASSERT_TRUE(pasteboard->writeString("mine"));
  const auto before = now();
  compositor.empty();
  ASSERT_TRUE(loop.runUntil([&] {
    loop.runQueued();
    return now() > before;
  }));
  EXPECT_THAT(types(), Optional(IsEmpty()));
  EXPECT_FALSE(string());
}

TEST_P(DataControlPasteboardTest, ClearingIsSeenByOthersAndCountedHere) {
  copy(plainText("theirs"));
  const auto before = now();
  pasteboard->clearContents();
  EXPECT_EQ(now(), before + 1);
  EXPECT_TRUE(pasteboard->wroteContents(now()));
  EXPECT_THAT(types(), Optional(IsEmpty()));
  ASSERT_TRUE(loop.runUntil([&] {
    loop.runQueued();
    return compositor.types().empty();
  }));
  EXPECT_EQ(string(), std::nullopt);
  EXPECT_EQ(now(), before + 1);
}

TEST_P(DataControlPasteboardTest, ClearingAndWritingIsOneChangeToOthers) {
  ASSERT_TRUE(pasteboard->writeString("before"));
  pasteboard->clearContents();
  EXPECT_EQ(all(compositor.paste("text/plain")), "before");
  ASSERT_TRUE(pasteboard->writeString("after"));
  loop.runQueued();
  EXPECT_EQ(string(), "after");
  EXPECT_EQ(all(compositor.paste("text/plain")), "after");
}

TEST_P(DataControlPasteboardTest, PrimaryHoldsTheSame) {
  EXPECT_FALSE(pasteboard->alsoOfferPrimary());
  ASSERT_TRUE(pasteboard->writeString("mine"));
  ASSERT_TRUE(pasteboard->alsoOfferPrimary());
  EXPECT_TRUE(compositor.hasPrimary());
  EXPECT_EQ(all(compositor.paste("text/plain", true)), "mine");
  copy(plainText("theirs"));
  EXPECT_FALSE(pasteboard->alsoOfferPrimary());
}

TEST_P(DataControlPasteboardTest, ADeviceThatIsTakenAwayIsAskedForAgain) {
  copy(plainText("before it"));
  const auto before = now();
  compositor.finishDevices();
  const auto tick = loop.every(Seconds(0.002), [] {});
  ASSERT_TRUE(loop.runUntil([&] { return compositor.devices() == 1; }));
  copy(plainText("after it"));
  EXPECT_EQ(now(), before + 1) << "what was there before is no change";
  EXPECT_EQ(string(), "after it");
  EXPECT_TRUE(pasteboard->writeString("mine"));
}

TEST_P(DataControlPasteboardTest, WhoeverRepeatsItsTypesIsNotTakenForItself) {
  ASSERT_TRUE(pasteboard->writeString("mine"));
  FakeCompositor::Forms kept;
  for (const auto& type : compositor.types()) kept.emplace(type, form("kept"));
  copy(plainText("another"));
  const auto before = now();
  copy(std::move(kept));
  EXPECT_EQ(now(), before + 1);
  EXPECT_EQ(string(), "kept");
}

TEST_P(DataControlPasteboardTest, MoreTypesThanAnybodyHasAreNotReadAtAll) {
  FakeCompositor::Forms many;
  for (int i = 0; i < 1100; ++i) many.emplace("text/x-" + std::to_string(i), form("text"));
  copy(std::move(many));
  EXPECT_EQ(types(), std::nullopt);
}

TEST_P(DataControlPasteboardTest, ACompositorThatDiesEndsEverythingInOrder) {
  copy({{"text/plain", form("", Manner::silent)}});
  std::optional<Text> text;
  pasteboard->readString(now(), [&](Text read) { text = std::move(read); });
  bool told = false;
  pasteboard->setAnnouncingHandler([&] { told = true; });
  compositor.die();
  ASSERT_TRUE(loop.runUntil([&] { return told && text.has_value(); }));
  EXPECT_FALSE(*text);
  EXPECT_FALSE(pasteboard->announcesEveryChange());
  EXPECT_FALSE(pasteboard->writeString("mine"));
  EXPECT_FALSE(pasteboard->alsoOfferPrimary());
  pasteboard->clearContents();
  EXPECT_THAT(types(), Optional(IsEmpty()));
}

TEST(DataControlProtocol, TheNewerIsPreferredAndNoneIsNone) {
  const FakeCompositor newer(Protocol::newer);
  EXPECT_EQ(DataControl::protocol(*WaylandConnection::open(newer.path())),
            "ext_data_control_manager_v1 1");
  const FakeCompositor older(Protocol::older);
  EXPECT_EQ(DataControl::protocol(*WaylandConnection::open(older.path())),
            "zwlr_data_control_manager_v1 2");
  const FakeCompositor neither(Protocol::none);
  MainLoop loop;
  const FakeImageDecoder decoder;
  EXPECT_EQ(DataControlPasteboard::open({loop, decoder}, WaylandConnection::open(neither.path())),
            nullptr);
}

TEST(WaylandConnectionTest, NobodyWhoListensIsNoCompositor) {
  EXPECT_EQ(WaylandConnection::open("/nonexistent/socket"), nullptr);
  FakeCompositor gone;
  gone.die();
  EXPECT_EQ(WaylandConnection::open(gone.path()), nullptr);
}

}  // namespace
}  // namespace vantorel
