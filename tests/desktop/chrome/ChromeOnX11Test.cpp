// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QTest>
#include <algorithm>

#include "chrome/PopoverWindow.h"
#include "chrome/ShadowDrawing.h"
#include "chrome/SheetWindow.h"
#include "chrome/SymbolButton.h"
#include "chrome/VantorelMenu.h"
#include "chrome/VantorelPanel.h"
#include "desktop/x11pasteboard/PrivateXServer.h"
#include "fakes/FakeScreens.h"
#include "platform/linux/x11/X11Property.h"
#include "platform/linux/x11/toolkit/X11WindowBackdrops.h"
#include "platform/qt/QtDispatch.h"

namespace vantorel {
namespace {

constexpr std::string_view blur = "_KDE_NET_WM_BLUR_BEHIND_REGION";

/// A compositor that composes nothing and says what the test wants it to say.
class MadeUpCompositor {
 public:
  explicit MadeUpCompositor(std::string_view name = "made up")
      : connection_(X11Connection::open()), window_(xcb_generate_id(connection_->xcb())) {
    xcb_create_window(connection_->xcb(), 0, window_, connection_->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(name.size()), name.data());
    xcb_set_selection_owner(connection_->xcb(), window_, connection_->atom("_NET_WM_CM_S0"),
                            XCB_CURRENT_TIME);
    connection_->flush();
  }
  ~MadeUpCompositor() { announceNothing(); }
  MadeUpCompositor(const MadeUpCompositor&) = delete;
  MadeUpCompositor& operator=(const MadeUpCompositor&) = delete;

  void announceBlur() {
    const std::uint8_t something = 0;
    const auto property = connection_->atom(blur);
    xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, connection_->root(), property,
                        property, 8, 1, &something);
    connection_->flush();
  }
  void announceNothing() {
    xcb_delete_property(connection_->xcb(), connection_->root(), connection_->atom(blur));
    connection_->flush();
  }

 private:
  std::unique_ptr<X11Connection> connection_;
  xcb_window_t window_;
};

class ChromeOnX11 : public testing::Test {
 protected:
  ChromeOnX11() : preferences_(X11DesktopSettings::open(dispatch_)) {}

  /// What the server has of the window's wish, four numbers for each rectangle.
  [[nodiscard]] std::vector<std::uint32_t> blurWish(const QWidget& window) const {
    return values32Property(*tester_, static_cast<xcb_window_t>(window.internalWinId()),
                            tester_->atom(blur));
  }
  [[nodiscard]] std::string title(const QWidget& window) const {
    return stringProperty(*tester_, static_cast<xcb_window_t>(window.internalWinId()),
                          tester_->atom("_NET_WM_NAME"))
        .value_or("");
  }
  [[nodiscard]] bool isUnmanaged(const QWidget& window) const {
    return isUnmanaged(static_cast<xcb_window_t>(window.internalWinId()));
  }
  [[nodiscard]] bool isUnmanaged(xcb_window_t window) const {
    const auto attributes = tester_->reply(xcb_get_window_attributes_reply,
                                           xcb_get_window_attributes(tester_->xcb(), window));
    return attributes && attributes->override_redirect != 0;
  }
  /// From the lowest to the topmost.
  [[nodiscard]] std::vector<xcb_window_t> stack() const {
    const auto tree =
        tester_->reply(xcb_query_tree_reply, xcb_query_tree(tester_->xcb(), tester_->root()));
    const auto* first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
  }
  /// The shadow that is shown, or nothing.
  [[nodiscard]] xcb_window_t shadow() const {
    for (const auto window : stack()) {
      const auto name = stringProperty(*tester_, window, tester_->atom("_NET_WM_NAME"));
      const auto attributes = tester_->reply(xcb_get_window_attributes_reply,
                                             xcb_get_window_attributes(tester_->xcb(), window));
      const bool seen = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
      if (seen && name == "Shadow") return window;
    }
    return XCB_WINDOW_NONE;
  }
  [[nodiscard]] QRect frame(xcb_window_t window) const {
    const auto geometry =
        tester_->reply(xcb_get_geometry_reply, xcb_get_geometry(tester_->xcb(), window));
    return geometry ? QRect(geometry->x, geometry->y, geometry->width, geometry->height) : QRect();
  }
  [[nodiscard]] bool isRightBelow(xcb_window_t window, const QWidget& other) const {
    const auto all = stack();
    const auto found = std::find(all.begin(), all.end(), window);
    return found != all.end() && found + 1 != all.end() && found[1] == other.internalWinId();
  }
  [[nodiscard]] xcb_window_t focus() const {
    const auto reply =
        tester_->reply(xcb_get_input_focus_reply, xcb_get_input_focus(tester_->xcb()));
    return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
  }

  QtDispatch dispatch_;
  std::unique_ptr<X11DesktopSettings> preferences_;
  X11WindowBackdrops backdrops_{*preferences_};
  FakeScreens screens_;
  ChromeServices services_{dispatch_, screens_, *preferences_, &backdrops_};
  std::unique_ptr<X11Connection> tester_ = X11Connection::open();
};

TEST_F(ChromeOnX11, APanelAsksTheCompositorForBlurWhereThatIsAnnounced) {
  MadeUpCompositor compositor;
  compositor.announceBlur();
  ASSERT_TRUE(QTest::qWaitFor([&] { return backdrops_.available() == Backdrop::blurrable; }));
  VantorelPanel panel("Test", {200, 100}, 18, *preferences_, &backdrops_);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !blurWish(panel).empty(); }));
  // The rows of the upper corners come first, the widest last; all within the window.
  const auto wish = blurWish(panel);
  ASSERT_EQ(wish.size() % 4, 0U);
  std::uint32_t area = 0;
  for (std::size_t i = 0; i < wish.size(); i += 4) {
    EXPECT_LE(wish[i] + wish[i + 2], 200U);
    EXPECT_LE(wish[i + 1] + wish[i + 3], 100U);
    area += wish[i + 2] * wish[i + 3];
  }
  EXPECT_LT(area, 200U * 100U);
  EXPECT_GT(area, 200U * 100U - 18U * 18U);
}

TEST_F(ChromeOnX11, TheWishIsTakenBackWhenBlurOrTheCompositorGoes) {
  auto compositor = std::make_unique<MadeUpCompositor>();
  compositor->announceBlur();
  ASSERT_TRUE(QTest::qWaitFor([&] { return backdrops_.available() == Backdrop::blurrable; }));
  VantorelPanel panel("Test", {200, 100}, 18, *preferences_, &backdrops_);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !blurWish(panel).empty(); }));
  compositor->announceNothing();
  EXPECT_TRUE(QTest::qWaitFor([&] { return blurWish(panel).empty(); }));
  EXPECT_TRUE(panel.mask().isEmpty());
  compositor->announceBlur();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !blurWish(panel).empty(); }));
  compositor.reset();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !panel.mask().isEmpty(); }));
  EXPECT_TRUE(QTest::qWaitFor([&] { return blurWish(panel).empty(); }));
}

TEST_F(ChromeOnX11, APanelHasAShadowRightBelowItThatIsNoPartOfIt) {
  const MadeUpCompositor compositor;
  ASSERT_TRUE(QTest::qWaitFor([&] { return backdrops_.available() != Backdrop::none; }));
  VantorelPanel panel("Test", {200, 100}, 18, *preferences_, &backdrops_);
  panel.move(300, 200);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(QTest::qWaitFor([&] { return shadow() != XCB_WINDOW_NONE; }));
  constexpr int reach = ShadowDrawing::ofWindow.reach;
  EXPECT_EQ(frame(shadow()), QRect(300, 200, 200, 100).adjusted(-reach, -reach, reach, reach));
  EXPECT_EQ(frame(static_cast<xcb_window_t>(panel.internalWinId())), QRect(300, 200, 200, 100));
  EXPECT_TRUE(isUnmanaged(shadow()));
  EXPECT_TRUE(isRightBelow(shadow(), panel));
  EXPECT_EQ(QApplication::topLevelAt(290, 250), nullptr) << "it takes no press";
  EXPECT_EQ(QApplication::topLevelAt(310, 250), &panel);
  panel.move(320, 240);
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return frame(shadow()).topLeft() == QPoint(320 - reach, 240 - reach); }));
  panel.hide();
  EXPECT_TRUE(QTest::qWaitFor([&] { return shadow() == XCB_WINDOW_NONE; }));
  panel.makeKeyAndOrderFront();
  EXPECT_TRUE(QTest::qWaitFor([&] { return shadow() != XCB_WINDOW_NONE; }));
  EXPECT_EQ(frame(shadow()).topLeft(), QPoint(320 - reach, 240 - reach));
  EXPECT_TRUE(isRightBelow(shadow(), panel)) << "in the next showing, too";
}

TEST_F(ChromeOnX11, ACompositorThatShadesWindowsIsLeftToThat) {
  auto shading = std::make_unique<MadeUpCompositor>("picom");
  ASSERT_TRUE(QTest::qWaitFor([&] { return backdrops_.available() != Backdrop::none; }));
  EXPECT_TRUE(backdrops_.shadesWindows());
  VantorelPanel panel("Test", {200, 100}, 18, *preferences_, &backdrops_);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
  QCoreApplication::processEvents();
  EXPECT_EQ(shadow(), xcb_window_t{XCB_WINDOW_NONE});
  const MadeUpCompositor plain;
  EXPECT_TRUE(QTest::qWaitFor([&] { return shadow() != XCB_WINDOW_NONE; }));
  EXPECT_FALSE(backdrops_.shadesWindows());
}

TEST_F(ChromeOnX11, AMenuIsUnmanagedAndNotCalledLikeThePanel) {
  VantorelMenu menu(*preferences_, &backdrops_);
  menu.addAction("First");
  auto& submenu = menu.addSubmenu("More");
  submenu.addAction("Inner");
  menu.popup({40, 40});
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
  submenu.popup({140, 40});
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&submenu));
  EXPECT_TRUE(isUnmanaged(menu));
  EXPECT_TRUE(isUnmanaged(submenu));
  EXPECT_EQ(title(menu), "Menu");
  EXPECT_EQ(title(submenu), "More");
  submenu.close();
  menu.close();
}

TEST_F(ChromeOnX11, APopoverIsUnmanagedAndLeavesTheKeyboardWhereItIs) {
  VantorelPanel panel("Test", {200, 100}, 18, *preferences_, &backdrops_);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
  const auto before = focus();
  PopoverWindow popover("Preview", {120, 60}, 14, services_);
  popover.show({0, 0, 200, 100}, PopoverEdge::right);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&popover));
  EXPECT_TRUE(isUnmanaged(popover));
  EXPECT_EQ(title(popover), "Preview");
  QTest::qWait(0);
  EXPECT_EQ(focus(), before);
  EXPECT_TRUE(panel.isActiveWindow());
}

TEST_F(ChromeOnX11, APanelThatComesUpAgainKnowsWhereThePointerIsNow) {
  VantorelPanel panel("Test", {200, 100}, 18, *preferences_, &backdrops_);
  auto* button = new SymbolButton(28, 16, &panel.glass());
  button->setSymbol("pin");
  button->move(20, 20);
  panel.move(0, 0);
  const QPoint onTheButton(34, 34);
  const QPoint elsewhere(500, 400);
  QCursor::setPos(onTheButton);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(QTest::qWaitFor([&] { return button->underMouse(); }));
  // The toolkit makes one of a leaving and a coming back that it hears of at once.
  const auto hide = [&panel] {
    panel.hide();
    return QTest::qWaitFor([&panel] { return !panel.windowHandle()->isExposed(); });
  };
  ASSERT_TRUE(hide());
  QCursor::setPos(elsewhere);
  panel.makeKeyAndOrderFront();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
  EXPECT_FALSE(button->underMouse());
  ASSERT_TRUE(hide());
  QCursor::setPos(onTheButton);
  panel.makeKeyAndOrderFront();
  EXPECT_TRUE(QTest::qWaitFor([&] { return button->underMouse(); }));
}

TEST_F(ChromeOnX11, ASheetIsTransientForItsPanel) {
  VantorelPanel panel("Test", {200, 100}, 18, *preferences_, &backdrops_);
  panel.makeKeyAndOrderFront();
  SheetWindow sheet({"Name it", "", "Save", "Cancel"}, services_, &panel);
  sheet.begin();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&sheet));
  EXPECT_EQ(values32Property(*tester_, static_cast<xcb_window_t>(sheet.internalWinId()),
                             XCB_ATOM_WM_TRANSIENT_FOR),
            (std::vector{static_cast<std::uint32_t>(panel.internalWinId())}));
  EXPECT_EQ(title(sheet), "Name it");
}

}  // namespace
}  // namespace vantorel

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const vantorel::PrivateXServer server;
  qputenv("DISPLAY", server.display().c_str());
  qputenv("QT_QPA_PLATFORM", "xcb");
  const QApplication application(argc, argv);
  QApplication::setApplicationName("vantorel");
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
