// SPDX-License-Identifier: MIT
// What stands on a compositor's layers, over the windows of others.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <QApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <optional>

#include "desktop/wayland/FakeLayers.h"
#include "platform/linux/wayland/toolkit/LayerRole.h"
#include "platform/linux/wayland/toolkit/LayerScrim.h"
#include "platform/linux/wayland/toolkit/LayerWindows.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace vantorel {
namespace {

using testing::ElementsAre;

constexpr std::chrono::seconds patience{10};

/// A compositor and the toolkit, which connects to it: once in a process.
class Session : public testing::Environment {
 public:
  [[nodiscard]] static Session& get() { return *current; }

  void SetUp() override {
    current = this;
    server.emplace(FakeCompositor::Protocol::none);
    layers.emplace(*server);
    qputenv("QT_QPA_PLATFORM", "wayland");
    qputenv("WAYLAND_DISPLAY", server->path().c_str());
    qputenv("QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none");  // nothing is drawn by a GPU
    LayerWindows::prepareEnvironment();
    connect();
  }
  void TearDown() override {
    application.reset();
    server.reset();
    layers.reset();
  }

  std::optional<FakeCompositor> server;
  std::optional<FakeLayers> layers;

 private:
  void connect() {
#if defined(__SANITIZE_ADDRESS__)
    // The toolkit's plugin never lets go of the globals that it binds here.
    const __lsan::ScopedDisabler notOurs;
#endif
    application.emplace(argumentCount, arguments);
  }

  static inline Session* current = nullptr;
  int argumentCount = 1;
  char name[6] = "tests";
  char* arguments[2] = {name, nullptr};
  std::optional<QApplication> application;
};

[[maybe_unused]] auto* const session = testing::AddGlobalTestEnvironment(new Session);

class LayersTest : public testing::Test {
 protected:
  LayersTest() {
    if (!opened) throw std::runtime_error("no compositor");
  }

  [[nodiscard]] static Deadline soon() { return std::chrono::steady_clock::now() + patience; }
  /// Until both sides have heard everything that the other one said until now, the toolkit too.
  void settle() {
    for (int i = 0; i < 2; ++i) {
      bool isProcessed = false;
      compositor.whenProcessed([&] { isProcessed = true; });
      ASSERT_TRUE(compositor.waitUntil([&] { return isProcessed; }, soon()));
      QCoreApplication::processEvents();
    }
  }

  FakeLayers& layers = *Session::get().layers;
  std::unique_ptr<ToolkitCompositor> opened = ToolkitCompositor::open();
  ToolkitCompositor& compositor = *opened;
};

class LayerScrimTest : public LayersTest {
 protected:
  LayerScrimTest() {
    scrim.onPress = [this](QPoint at) {
      presses.push_back(at);
      return isTaken;
    };
    watching = scrim.addGlobalMouseDownMonitor([this] { ++heard; });
    settle();  // the seat tells what it has
    scrim.spread();
    settle();
  }
  ~LayerScrimTest() override {
    scrim.fold();
    settle();
  }

  void press(std::uint32_t button, bool isDown = true) {
    layers.press(button, isDown);
    settle();
  }

  LayerScrim scrim{compositor};
  std::unique_ptr<Observation> watching;
  std::vector<QPoint> presses;
  bool isTaken = false;
  int heard = 0;
};

TEST_F(LayerScrimTest, EveryButtonIsHeardOf) {
  layers.point(30, 40);
  for (const auto button : {BTN_LEFT, BTN_MIDDLE, BTN_RIGHT, BTN_SIDE}) {
    press(static_cast<std::uint32_t>(button));
    press(static_cast<std::uint32_t>(button), false);
  }
  EXPECT_EQ(heard, 4);
  EXPECT_EQ(presses, std::vector(4, QPoint(30, 40)));
}

TEST_F(LayerScrimTest, AFingerIsHeardOfWhereverThePointerIs) {
  layers.point(30, 40);
  layers.touch(50, 60);
  settle();
  EXPECT_EQ(heard, 1);
  EXPECT_THAT(presses, ElementsAre(QPoint(50, 60)));
}

TEST_F(LayerScrimTest, WhatIsTakenNobodyElseHearsOf) {
  isTaken = true;
  layers.point(30, 40);
  press(BTN_LEFT);
  EXPECT_EQ(heard, 0);
  EXPECT_EQ(presses.size(), 1U);
}

TEST_F(LayerScrimTest, AButtonComesUpWhereItWentDown) {
  scrim.afterPress = [this] { scrim.fold(); };
  layers.point(30, 40);
  press(BTN_MIDDLE);
  EXPECT_EQ(layers.count(), 1U);
  press(BTN_LEFT);
  EXPECT_EQ(heard, 1) << "it was folded already";
  press(BTN_MIDDLE, false);
  EXPECT_EQ(layers.count(), 1U);
  press(BTN_LEFT, false);
  EXPECT_EQ(layers.count(), 0U);
}

TEST_F(LayerScrimTest, ItGoesAtOnceWhenNothingIsHeldOnIt) {
  scrim.fold();
  settle();
  EXPECT_EQ(layers.count(), 0U);
}

TEST_F(LayerScrimTest, ItStaysWhenItIsSpreadAgainMeanwhile) {
  layers.point(30, 40);
  press(BTN_LEFT);
  scrim.fold();
  scrim.spread();
  press(BTN_LEFT, false);
  EXPECT_EQ(layers.count(), 1U);
}

TEST_F(LayerScrimTest, FramesThatAreLeftOutArePressedThroughIt) {
  EXPECT_TRUE(layers.takesPressesAt(150, 150));
  scrim.leaveOut({{100, 100, 200, 100}});
  settle();
  EXPECT_FALSE(layers.takesPressesAt(100, 100));
  EXPECT_FALSE(layers.takesPressesAt(299, 199));
  EXPECT_TRUE(layers.takesPressesAt(99, 100));
  EXPECT_TRUE(layers.takesPressesAt(300, 199));
  scrim.leaveOut({});
  settle();
  EXPECT_TRUE(layers.takesPressesAt(150, 150));
}

TEST_F(LayerScrimTest, NothingIsLeftOutWhenItIsSpreadAnew) {
  scrim.leaveOut({{100, 100, 200, 100}});
  scrim.fold();
  scrim.spread();
  settle();
  EXPECT_TRUE(layers.takesPressesAt(150, 150));
  scrim.leaveOut({{100, 100, 200, 100}});
  settle();
  EXPECT_FALSE(layers.takesPressesAt(150, 150));
}

class LayerRoleTest : public LayersTest {
 protected:
  LayerRoleTest() : surface(wl_compositor_create_surface(compositor.offers().surfaces)) {}
  ~LayerRoleTest() override {
    role.reset();
    wl_surface_destroy(surface);
    layers.behave(FakeLayers::Manner::obliging);
  }

  void stand() {
    role.emplace(compositor, surface, *QGuiApplication::primaryScreen(), QRect(10, 20, 30, 40),
                 LayerRole::Stand{});
  }

  wl_surface* surface;
  std::optional<LayerRole> role;
};

TEST_F(LayerRoleTest, ItIsReadyWhenItsSizeIsTold) {
  stand();
  EXPECT_TRUE(role->waitUntilReady(soon()));
}

TEST_F(LayerRoleTest, NobodyWaitsForOneThatIsClosed) {
  layers.behave(FakeLayers::Manner::closing);
  stand();
  int closed = 0;
  role->onClosed = [&] { ++closed; };
  const auto deadline = soon();
  EXPECT_FALSE(role->waitUntilReady(deadline));
  EXPECT_LT(std::chrono::steady_clock::now(), deadline);
  EXPECT_EQ(closed, 1);
}

class LayerWindowsTest : public LayersTest {
 protected:
  LayerWindowsTest() { window.setGeometry(100, 100, 200, 150); }
  ~LayerWindowsTest() override { window.hide(); }

  /// Lets the main loop sleep in between, before which it hears of what the compositor says.
  [[nodiscard]] static bool waitUntil(const std::function<bool()>& condition) {
    QTimer look;
    look.start(std::chrono::milliseconds(2));
    const auto deadline = soon();
    while (!condition()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
  }
  void show() {
    window.show();
    EXPECT_TRUE(waitUntil([&] { return layers.count() == 2; }));  // and the scrim
  }

  LayerScrim scrim{compositor};
  LayerWindows windows{compositor, scrim};
  QWidget window;
};

TEST_F(LayerWindowsTest, AWindowGoesWithItsOutputAndComesAgain) {
  settle();
  show();
  layers.closeAll();
  EXPECT_TRUE(waitUntil([&] { return !window.isVisible(); }));
  EXPECT_TRUE(waitUntil([&] { return layers.count() == 0; }));
  show();
  EXPECT_TRUE(window.isVisible());
}

TEST_F(LayerWindowsTest, WhatBelongsToItGoesAlong) {
  settle();
  show();
  QWidget menu(&window, Qt::Popup);
  menu.setGeometry(120, 120, 50, 50);
  menu.show();
  layers.closeAll();
  EXPECT_TRUE(waitUntil([&] { return !window.isVisible() && !menu.isVisible(); }));
}

TEST_F(LayerWindowsTest, TheScrimLeavesItItsPresses) {
  settle();
  show();
  EXPECT_TRUE(waitUntil([&] { return !layers.takesPressesAt(150, 150); }));
  EXPECT_TRUE(layers.takesPressesAt(99, 150));
  window.resize(300, 150);
  EXPECT_TRUE(waitUntil([&] { return !layers.takesPressesAt(390, 150); }));
}

}  // namespace
}  // namespace vantorel
