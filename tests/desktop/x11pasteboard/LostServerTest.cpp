// SPDX-License-Identifier: MIT
#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

class X11PasteboardLost : public testing::Test {
 protected:
  PrivateXServer server;
  MainLoop loop;
  FakeImageDecoder decoder;
  std::unique_ptr<X11Pasteboard> pasteboard =
      X11Pasteboard::open({loop, decoder}, server.display());
};

TEST_F(X11PasteboardLost, EveryReadFindsNothing) {
  ASSERT_TRUE(pasteboard);
  server.kill();
  int answered = 0;
  const auto change = pasteboard->changeCount();
  pasteboard->readString(change, [&](auto text) {
    EXPECT_FALSE(text);
    ++answered;
  });
  pasteboard->readTypes(change, [&](auto) { ++answered; });
  pasteboard->readData(change, PasteboardDataType::html, [&](auto data) {
    EXPECT_FALSE(data);
    ++answered;
  });
  pasteboard->readFileURLs(change, [&](auto files) {
    EXPECT_TRUE(files.empty());
    ++answered;
  });
  pasteboard->readImage(change, [&](auto image) {
    EXPECT_EQ(image, nullptr);
    ++answered;
  });
  EXPECT_TRUE(loop.runUntil([&] { return answered == 5; }));
}

TEST_F(X11PasteboardLost, AReadUnderWayEnds) {
  ASSERT_TRUE(pasteboard);
  auto owner = std::make_unique<ScriptedOwner>(server.display());
  ScriptedForm silent;
  silent.manner = Manner::stay_silent;
  owner->offer("UTF8_STRING", silent);
  const auto before = pasteboard->changeCount();
  owner->own();
  ASSERT_TRUE(loop.runUntil([&] {
    loop.runQueued();
    return pasteboard->changeCount() > before;
  }));
  bool answered = false;
  pasteboard->readString(pasteboard->changeCount(), [&](auto text) {
    EXPECT_FALSE(text);
    answered = true;
  });
  ASSERT_TRUE(owner->waitForRequest("UTF8_STRING"));
  server.kill();
  EXPECT_TRUE(loop.runUntil([&] { return answered; }));
}

TEST_F(X11PasteboardLost, WritesFailAndNothingHangs) {
  ASSERT_TRUE(pasteboard);
  ASSERT_TRUE(pasteboard->writeString("before"));
  server.kill();
  EXPECT_FALSE(pasteboard->writeString("after"));
  EXPECT_FALSE(pasteboard->alsoOfferPrimary());
  pasteboard->clearContents();
  loop.runQueued();
  pasteboard.reset();
}

TEST_F(X11PasteboardLost, ThereIsNoPasteboardWithoutAServer) {
  server.kill();
  EXPECT_EQ(X11Pasteboard::open({loop, decoder}, server.display()), nullptr);
  EXPECT_EQ(X11Pasteboard::open({loop, decoder}, "nonsense"), nullptr);
}

}  // namespace
}  // namespace vantorel
