// SPDX-License-Identifier: MIT
#include "platform/linux/bus/StatusNotifierTray.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakeScreens.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

using ::testing::Each;

const EnvironmentLookup nothing = [](const char* /*name*/) { return std::nullopt; };

TEST(StatusNotifierTray, WithoutABusNothingIsSeenAndNothingFails) {
  ManualDispatch dispatch;
  FakeScreens screens;
  SessionBus bus(dispatch, nothing);
  StatusNotifierTray tray({dispatch, screens, bus}, {});
  int questions = 0;
  StatusItem::Handlers handlers;
  handlers.menuRows = [&] {
    ++questions;
    return std::vector<MenuRow>{{.title = "Quit", .action = "1"}};
  };
  std::vector<bool> hosts;
  tray.onHost = [&](bool isThere) { hosts.push_back(isThere); };
  tray.setImage({"name", [](int) { return nullptr; }});
  tray.setToolTip("Vantorel");
  tray.show(handlers);
  tray.menuChanged();
  tray.hide();
  tray.show(handlers);
  dispatch.runQueued();
  EXPECT_GT(questions, 0);
  EXPECT_THAT(hosts, Each(false));
  EXPECT_FALSE(hosts.empty());
}

TEST(TrayPixmap, KeepsTheShapeInAColourOfItsOwn) {
  const Bitmap picture{{2, 1}, {2, 1}, {0xff000000, 0x40000000}};
  const auto pixmap = trayPixmap(picture, 0x8d9e70);
  EXPECT_EQ(pixmap.width, 2);
  EXPECT_EQ(pixmap.height, 1);
  EXPECT_EQ(pixmap.pixels, QByteArray("\xff\x8d\x9e\x70\x40\x8d\x9e\x70", 8));
}

TEST(PointOfPixel, CountsTheScreensOwnScale) {
  FakeScreens screens;
  screens.setScreens({{{0, 0, 1920, 1080}, {0, 0, 1920, 1080}, 1},
                      {{1920, 0, 1280, 800}, {1920, 0, 1280, 800}, 2}});
  EXPECT_EQ(pointOfPixel(screens, 100, 200), (Point{100, 200}));
  EXPECT_EQ(pointOfPixel(screens, 1920 + 200, 100), (Point{1920 + 100, 50}));
  EXPECT_EQ(pointOfPixel(screens, -50, 5000), (Point{-50, 5000}));
}

}  // namespace
}  // namespace vantorel
