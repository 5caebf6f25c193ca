// SPDX-License-Identifier: MIT
#include "desktop/x11/DesktopFixture.h"
#include "platform/linux/x11/X11DesktopSettings.h"

namespace vantorel {
namespace {

/// A program that owns a selection by which it says what it is.
class SelectionHolder {
 public:
  SelectionHolder(const std::string& display, std::string_view selection)
      : connection_(X11Connection::open(display)), window_(xcb_generate_id(connection_->xcb())) {
    xcb_create_window(connection_->xcb(), 0, window_, connection_->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection_->xcb(), window_, connection_->atom(selection),
                            XCB_CURRENT_TIME);
    connection_->flush();
  }

  /// Says what a compositor understands by a property of that name on the root window.
  void announce(std::string_view name) const {
    const std::uint8_t something = 0;
    const auto property = connection_->atom(name);
    xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, connection_->root(), property,
                        property, 8, 1, &something);
    connection_->flush();
  }
  void announceNothing(std::string_view name) const {
    xcb_delete_property(connection_->xcb(), connection_->root(), connection_->atom(name));
    connection_->flush();
  }
  /// The same, by the list of what is supported.
  void announceSupported(std::string_view name) const {
    const auto atom = connection_->atom(name);
    xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, connection_->root(),
                        connection_->atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 32, 1, &atom);
    connection_->flush();
  }

  /// One number and two texts, as a settings manager publishes them.
  void publish(std::int32_t animations, const std::string& theme) {
    std::string bytes("\0\0\0\0\1\0\0\0\3\0\0\0", 12);
    addHead(bytes, 0, "Gtk/EnableAnimations");
    addNumber(bytes, static_cast<std::uint32_t>(animations));
    addHead(bytes, 1, "Net/ThemeName");
    addNumber(bytes, static_cast<std::uint32_t>(theme.size()));
    addText(bytes, theme);
    const std::string icons = theme + "Icons";
    addHead(bytes, 1, "Net/IconThemeName");
    addNumber(bytes, static_cast<std::uint32_t>(icons.size()));
    addText(bytes, icons);
    const auto property = connection_->atom("_XSETTINGS_SETTINGS");
    xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, window_, property, property, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
    connection_->flush();
  }

 private:
  static void addNumber(std::string& bytes, std::uint32_t number) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFFU);
  }
  static void addText(std::string& bytes, const std::string& text) {
    bytes += text;
    while (bytes.size() % 4 != 0) bytes += '\0';
  }
  static void addHead(std::string& bytes, char kind, const std::string& name) {
    bytes += kind;
    bytes += '\0';
    bytes += static_cast<char>(name.size());
    bytes += '\0';
    addText(bytes, name);
    addNumber(bytes, 1);
  }

  std::unique_ptr<X11Connection> connection_;
  xcb_window_t window_;
};

class AccessibilityPreferencesTest : public DesktopFixture {
 protected:
  void open() {
    preferences = X11DesktopSettings::open(dispatch, display());
    ASSERT_NE(preferences, nullptr);
  }
  std::unique_ptr<X11DesktopSettings> preferences;
};

TEST_F(AccessibilityPreferencesTest, ABareDesktopMovesButShowsNothingThrough) {
  open();
  EXPECT_FALSE(preferences->reduceMotion());
  EXPECT_TRUE(preferences->reduceTransparency()) << "nothing composites";
}

TEST_F(AccessibilityPreferencesTest, ACompositorMakesTransparencyPossible) {
  auto compositor = std::make_unique<SelectionHolder>(display(), "_NET_WM_CM_S0");
  sync();
  open();
  EXPECT_FALSE(preferences->reduceTransparency());
  compositor.reset();
  waitUntil("its end is noticed", [&] { return preferences->reduceTransparency(); });
  compositor = std::make_unique<SelectionHolder>(display(), "_NET_WM_CM_S0");
  waitUntil("the next one is noticed", [&] { return !preferences->reduceTransparency(); });
}

TEST_F(AccessibilityPreferencesTest, FollowARealCompositor) {
  open();
  const auto compositor = run({"picom", "--backend", "xrender", "--config", "/dev/null"});
  waitUntil("the compositor is noticed", [&] { return !preferences->reduceTransparency(); });
}

TEST_F(AccessibilityPreferencesTest, FollowTheSettingsManager) {
  const SelectionHolder compositor(display(), "_NET_WM_CM_S0");
  auto manager = std::make_unique<SelectionHolder>(display(), "_XSETTINGS_S0");
  manager->publish(0, "Adwaita");
  waitUntil("the manager is there", [&] {
    open();
    return preferences->reduceMotion();
  });
  EXPECT_FALSE(preferences->reduceTransparency());
  EXPECT_EQ(preferences->iconTheme(), "AdwaitaIcons");
  manager->publish(1, "HighContrastInverse");
  waitUntil("animations are on again", [&] { return !preferences->reduceMotion(); });
  waitUntil("the other icons are noticed",
            [&] { return preferences->iconTheme() == "HighContrastInverseIcons"; });
  EXPECT_TRUE(preferences->reduceTransparency());
  manager->publish(0, "Adwaita");
  waitUntil("animations are off again", [&] { return preferences->reduceMotion(); });
  EXPECT_FALSE(preferences->reduceTransparency());
  manager.reset();
  waitUntil("its end is noticed", [&] { return !preferences->reduceMotion(); });
  waitUntil("it names no icons", [&] { return preferences->iconTheme().empty(); });
}

TEST_F(AccessibilityPreferencesTest, NoticeASettingsManagerThatComesLater) {
  open();
  SelectionHolder manager(display(), "_XSETTINGS_S0");
  manager.publish(0, "Adwaita");
  waitUntil("the manager is noticed", [&] { return preferences->reduceMotion(); });
}

constexpr std::string_view blur = "_KDE_NET_WM_BLUR_BEHIND_REGION";

TEST_F(AccessibilityPreferencesTest, ACompositorThatAnnouncesBlurIsNoticedAtOnceAndLater) {
  auto compositor = std::make_unique<SelectionHolder>(display(), "_NET_WM_CM_S0");
  compositor->announce(blur);
  sync();
  waitUntil("the compositor is there", [&] {
    open();
    return preferences->composited() && preferences->blurs();
  });
  compositor->announceNothing(blur);
  waitUntil("it does not blur any more", [&] { return !preferences->blurs(); });
  EXPECT_TRUE(preferences->composited());
  compositor->announce(blur);
  waitUntil("it blurs again", [&] { return preferences->blurs(); });
  compositor.reset();
  waitUntil("its end is noticed", [&] { return !preferences->blurs(); });
}

TEST_F(AccessibilityPreferencesTest, BlurMayBeAnnouncedAmongWhatIsSupported) {
  open();
  const SelectionHolder compositor(display(), "_NET_WM_CM_S0");
  waitUntil("the compositor is noticed", [&] { return preferences->composited(); });
  EXPECT_FALSE(preferences->blurs());
  compositor.announceSupported(blur);
  waitUntil("it blurs", [&] { return preferences->blurs(); });
  compositor.announceSupported("_NET_ACTIVE_WINDOW");
  waitUntil("it does not blur any more", [&] { return !preferences->blurs(); });
}

TEST_F(AccessibilityPreferencesTest, ChangesAreToldOnTheMainQueueUntilTheObservationEnds) {
  open();
  int told = 0;
  auto observation = preferences->observe([&] { ++told; });
  auto compositor = std::make_unique<SelectionHolder>(display(), "_NET_WM_CM_S0");
  waitUntil("the compositor is told of", [&] { return told == 1; });
  compositor->announce(blur);
  waitUntil("the blur is told of", [&] { return told == 2; });
  compositor->announce("_SOMETHING_ELSE");
  SelectionHolder manager(display(), "_XSETTINGS_S0");
  manager.publish(0, "Adwaita");
  waitUntil("the settings are told of", [&] { return told == 3; });
  observation.reset();
  compositor.reset();
  waitUntil("the compositor's end is noticed", [&] { return !preferences->composited(); });
  dispatch.runQueued();
  EXPECT_EQ(told, 3);
}

TEST_F(AccessibilityPreferencesTest, WhatIsToldAfterTheirEndReachesNobody) {
  open();
  int told = 0;
  const auto observation = preferences->observe([&] { ++told; });
  const SelectionHolder compositor(display(), "_NET_WM_CM_S0");
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!preferences->composited() && std::chrono::steady_clock::now() < end) sync();
  ASSERT_TRUE(preferences->composited());
  preferences.reset();
  dispatch.runQueued();
  EXPECT_EQ(told, 0);
}

TEST(AccessibilityPreferencesWithoutServer, AreNone) {
  ManualDispatch dispatch;
  EXPECT_EQ(X11DesktopSettings::open(dispatch, ":4711"), nullptr);
}

}  // namespace
}  // namespace vantorel
