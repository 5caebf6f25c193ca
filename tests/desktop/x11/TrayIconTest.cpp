// SPDX-License-Identifier: MIT
#include <optional>

#include "desktop/x11/DesktopFixture.h"
#include "desktop/x11/ScriptedTray.h"
#include "platform/linux/x11/X11Property.h"
#include "platform/linux/x11/X11TrayIcon.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t lightInk = 0xf2f2f2;
constexpr std::uint32_t darkInk = 0x1f1f1f;

class TrayIconTest : public DesktopFixture {
 protected:
  void SetUp() override {
    icon =
        X11TrayIcon::open(dispatch,
                          {.picture =
                               [this](int side) {
                                 sides.push_back(side);
                                 return square(side);
                               },
                           .onClick = [this](const TrayClick& click) { clicks.push_back(click); }},
                          display());
    ASSERT_NE(icon, nullptr);
  }

  /// A template of which every pixel is drawn.
  static SharedBitmap square(int side) {
    auto picture = std::make_shared<Bitmap>();
    picture->size = {22, 22};
    picture->pixelSize = {side, side};
    picture->pixels.assign(static_cast<std::size_t>(side) * side, 0xff000000U);
    return picture;
  }

  void appear(const ScriptedTray::Look& look = {}) {
    tray.reset();
    tray = std::make_unique<ScriptedTray>(display(), look);
  }
  /// The window that asks the tray, once it is no longer the one that it was.
  xcb_window_t awaitRequest(std::size_t number = 1) {
    waitUntil("the icon asks to be taken in", [&] { return tray->requests().size() >= number; });
    return tray->requests().size() < number ? xcb_window_t{XCB_WINDOW_NONE}
                                            : tray->requests()[number - 1];
  }
  void awaitPixel(int x, int y, std::uint32_t colour) {
    waitUntil("the pixel is drawn", [&] { return tray->pixel(x, y) == colour; });
  }
  /// Takes the icon in and waits until it is seen. It may ask twice: when it finds the tray, and
  /// when the tray announces itself.
  xcb_window_t embed(int side = 24,
                     ScriptedTray::AfterDeath after = ScriptedTray::AfterDeath::handedBack) {
    xcb_window_t window = awaitRequest();
    tray->embed(window, side, side, after);
    waitUntil("the icon is drawn", [&] {
      if (tray->requests().back() != window) {
        window = tray->requests().back();
        tray->embed(window, side, side, after);
      }
      return tray->pixel(side / 2, side / 2) == lightInk;
    });
    return window;
  }
  /// Returns when the icon knows all that the tray has done.
  void haveItHeard(xcb_window_t window) {
    EXPECT_TRUE(tray->exists(window));
    (void)icon->isUnderPointer();
  }
  bool isGone(xcb_window_t window) {
    return !tester().reply(xcb_get_window_attributes_reply,
                           xcb_get_window_attributes(tester().xcb(), window));
  }

  std::unique_ptr<ScriptedTray> tray;
  std::vector<int> sides;
  std::vector<TrayClick> clicks;
  std::unique_ptr<X11TrayIcon> icon;  // ends first
};

TEST_F(TrayIconTest, ATrayThatIsThereGetsItWithItsNameAndItsSize) {
  appear();
  icon->setTitle("Vantorel — History Paused");
  icon->show(30);
  const auto window = awaitRequest();
  EXPECT_EQ(stringProperty(tester(), window, tester().atom("_NET_WM_NAME")),
            "Vantorel — History Paused");
  EXPECT_EQ(stringProperty(tester(), window, XCB_ATOM_WM_CLASS),
            std::string("vantorel\0Vantorel\0", 18));
  EXPECT_THAT(values32Property(tester(), window, tester().atom("_XEMBED_INFO")), ElementsAre(0, 1));
  EXPECT_EQ(tray->depth(window), tester().screen().root_depth);
  EXPECT_THAT(sides, IsEmpty()) << "nothing is drawn for a tray that may never show it";
  tray->embed(window, 26, 26);
  awaitPixel(13, 13, lightInk);
  awaitPixel(0, 0, lightInk);
  awaitPixel(26, 0, 0x202020);
  icon->setTitle("Vantorel");
  waitUntil("the new name", [&] {
    return stringProperty(tester(), window, tester().atom("_NET_WM_NAME")) == "Vantorel";
  });
}

TEST_F(TrayIconTest, ItIsInTheMiddleOfWhatIsNoSquare) {
  appear();
  icon->show(22);
  const auto window = awaitRequest();
  tray->embed(window, 50, 30);
  awaitPixel(25, 15, lightInk);
  EXPECT_EQ(tray->pixel(9, 15), 0x202020U);
  EXPECT_EQ(tray->pixel(10, 15), lightInk);
  EXPECT_EQ(tray->pixel(39, 15), lightInk);
  EXPECT_EQ(tray->pixel(40, 15), 0x202020U);
}

TEST_F(TrayIconTest, ItIsDarkOnALightTray) {
  appear({.colour = 0xf0f0f0});
  icon->show(22);
  tray->embed(awaitRequest(), 24, 24);
  awaitPixel(12, 12, darkInk);
}

TEST_F(TrayIconTest, ATranslucentTrayGetsATranslucentWindowInAColourForItsBackground) {
  appear({.colour = 0xffe0e0e0, .translucent = true});
  icon->show(22);
  const auto window = awaitRequest();
  EXPECT_EQ(tray->depth(window), 32);
  tray->embed(window, 24, 24);
  awaitPixel(12, 12, darkInk);
}

TEST_F(TrayIconTest, WhereNothingIsKnownOfTheBackgroundTheTraysOwnColourIsTaken) {
  appear({.colour = 0, .translucent = true, .colors = {0xabab, 0xcdcd, 0xefef, 0, 0, 0}});
  icon->show(22);
  tray->embed(awaitRequest(), 24, 24);
  awaitPixel(12, 12, 0xabcdef);
}

TEST_F(TrayIconTest, AVisualThatDoesNotExistIsNotUsed) {
  appear({.visual = 0xdeadbeef});
  icon->show(22);
  EXPECT_EQ(tray->depth(embed()), tester().screen().root_depth);
}

TEST_F(TrayIconTest, ATrayThatComesLaterGetsItAndSoDoesEachNextOne) {
  icon->show(22);
  for (int i = 0; i < 3; ++i) {
    appear();
    embed();
  }
}

TEST_F(TrayIconTest, ATrayThatTakesOverFromOneThatStaysGetsIt) {
  appear();
  icon->show(22);
  const auto first = embed();
  ScriptedTray next(display(), {});
  waitUntil("the first window is gone", [&] { return isGone(first); });
  waitUntil("the next tray is asked", [&] { return !next.requests().empty(); });
}

TEST_F(TrayIconTest, ATrayThatAnnouncesItselfAgainKeepsWhatItHas) {
  appear();
  icon->show(22);
  const auto window = embed();
  tray->announce();
  haveItHeard(window);
  EXPECT_FALSE(isGone(window));
  EXPECT_THAT(tray->requests(), ElementsAre(window));
}

TEST_F(TrayIconTest, ATrayThatNeverTakesItInHoldsNothingUp) {
  appear();
  icon->show(22);
  awaitRequest();
  icon->setTitle("other");
  icon->pictureChanged();
  appear();
  embed();
  icon->hide();
  icon.reset();
}

TEST_F(TrayIconTest, SizesThatNoTrayMeansAreSurvived) {
  appear();
  icon->show(22);
  const auto window = embed();
  tray->resize(window, 1, 1);
  tray->resize(window, 10000, 10000);
  waitUntil("a large picture, but not as large as that", [&] { return sides.back() == 128; });
  tray->resize(window, 10000, 2);
  tray->resize(window, 1, 1);
  tray->lieAboutSize(window, 0, 0);
  tray->lieAboutSize(window, 65535, 65535);
  tray->resize(window, 20, 20);
  awaitPixel(10, 10, lightInk);
  for (const int side : sides) {
    EXPECT_GE(side, 8);
    EXPECT_LE(side, 128);
  }
}

TEST_F(TrayIconTest, AFloodOfSizesAsksForOnePictureAtATime) {
  appear();
  icon->show(22);
  const auto window = embed();
  for (int side = 9; side <= 109; ++side) tray->resize(window, side, side);
  haveItHeard(window);
  EXPECT_EQ(dispatch.queuedCount(), 1U);
  awaitPixel(108, 20, lightInk);
}

TEST_F(TrayIconTest, NoWindowIsLeftOfATrayThatDies) {
  icon->show(22);
  for (const auto after :
       {ScriptedTray::AfterDeath::handedBack, ScriptedTray::AfterDeath::destroyed}) {
    appear();
    const auto window = embed(24, after);
    tray.reset();
    waitUntil("its window is gone", [&] { return isGone(window); });
  }
  appear();
  embed();
}

TEST_F(TrayIconTest, ATrayThatDiesAsItIsAskedIsNoTrouble) {
  icon->show(22);
  for (int i = 0; i < 20; ++i) appear();
  embed();
}

TEST_F(TrayIconTest, AWindowThatIsDestroyedOrGivenBackIsFollowedByAnother) {
  appear();
  icon->show(22);
  const auto first = embed();
  tray->destroy(first);
  const auto second = awaitRequest(2);
  EXPECT_NE(second, first);
  tray->embed(second, 24, 24);
  awaitPixel(12, 12, lightInk);
  tray->giveBack(second);
  awaitRequest(3);
  EXPECT_TRUE(isGone(second));
}

TEST_F(TrayIconTest, ATrayThatEndsItsClientEndsTheIconAlone) {
  appear();
  icon->show(22);
  tray->killOwner(embed());
  waitUntil("the icon is gone", [&] { return tray->pixel(12, 12) == 0x202020; });
  icon->hide();
  icon->show(22);
  icon->pictureChanged();
  icon->setTitle("nobody reads this");
  dispatch.runQueued();
}

TEST_F(TrayIconTest, WhatIsLostIsDrawnAgainWhileTheMainThreadIsBusy) {
  appear();
  icon->show(22);
  const auto window = embed();
  dispatch.runQueued();
  for (int i = 0; i < 5; ++i) tray->expose(window);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (tray->pixel(12, 12) != lightInk && std::chrono::steady_clock::now() < end) sync();
  EXPECT_EQ(tray->pixel(12, 12), lightInk);
  EXPECT_EQ(dispatch.queuedCount(), 0U);
}

TEST_F(TrayIconTest, ClicksSayTheButtonAndThePlace) {
  appear();
  icon->show(22);
  const auto window = embed();
  tray->press(window, 1, 5, 6);
  tray->press(window, 2, 23, 23);
  tray->press(window, 1, 24, 5);  // beside it
  tray->press(window, 1, -1, 5);  // beside it
  tray->press(window, 4, 5, 5);   // the wheel
  tray->press(window, 0, 5, 5);
  tray->press(window, 3, 7, 8);
  waitUntil("the last click", [&] { return clicks.size() >= 3; });
  ASSERT_EQ(clicks.size(), 3U);
  EXPECT_EQ(clicks[0].button, TrayClick::Button::left);
  EXPECT_EQ(clicks[1].button, TrayClick::Button::middle);
  EXPECT_EQ(clicks[2].button, TrayClick::Button::right);
  EXPECT_EQ(clicks[2].x, 0);
  EXPECT_EQ(clicks[2].y, 0);
  EXPECT_EQ(clicks[2].width, 24);
  EXPECT_EQ(clicks[2].height, 24);
}

TEST_F(TrayIconTest, ItKnowsWhetherThePointerIsOnIt) {
  EXPECT_FALSE(icon->isUnderPointer());
  appear();
  icon->show(22);
  const auto move = [&](std::int16_t x, std::int16_t y) {
    xcb_warp_pointer(tester().xcb(), XCB_NONE, tester().root(), 0, 0, 0, 0, x, y);
    sync();
  };
  move(100, 100);
  const auto window = embed();
  EXPECT_FALSE(icon->isUnderPointer());
  move(5, 5);
  EXPECT_TRUE(icon->isUnderPointer());
  xcb_grab_pointer(tester().xcb(), 0, tester().root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                   XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
  sync();
  EXPECT_TRUE(icon->isUnderPointer()) << "a window manager looks at each press first";
  move(30, 5);
  EXPECT_FALSE(icon->isUnderPointer()) << "it goes elsewhere while a menu has it";
  xcb_ungrab_pointer(tester().xcb(), XCB_CURRENT_TIME);
  sync();
  EXPECT_FALSE(icon->isUnderPointer());
  move(5, 5);
  tray->destroy(window);
  awaitRequest(2);
  EXPECT_FALSE(icon->isUnderPointer());
}

TEST_F(TrayIconTest, HiddenItIsInNoTray) {
  appear();
  icon->show(22);
  const auto window = embed();
  icon->hide();
  waitUntil("its window is gone", [&] { return isGone(window); });
  icon->show(22);
  EXPECT_NE(awaitRequest(2), window);
  icon.reset();
  EXPECT_TRUE(isGone(tray->requests().back()));
}

TEST_F(TrayIconTest, AServerThatDiesIsNoTrouble) {
  appear();
  icon->show(22);
  embed();
  killServer();
  icon->setTitle("nobody reads this");
  icon->pictureChanged();
  icon->hide();
}

}  // namespace
}  // namespace vantorel
