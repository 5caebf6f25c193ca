// SPDX-License-Identifier: MIT
#include <algorithm>

#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

/// Another program asks for the contents with the pasteboard's own windows as the receivers.
class X11PasteboardOwnWindows : public PasteboardFixture {
 protected:
  [[nodiscard]] std::vector<xcb_window_t> windowsOfThePasteboard() {
    X11Connection& connection = program.connection();
    auto* xcb = connection.xcb();
    const auto holder = connection.reply(
        xcb_get_selection_owner_reply, xcb_get_selection_owner(xcb, connection.atom("CLIPBOARD")));
    const auto tree =
        connection.reply(xcb_query_tree_reply, xcb_query_tree(xcb, connection.root()));
    if (!holder || !tree) return {};
    const auto* first = xcb_query_tree_children(tree.get());
    std::vector<xcb_window_t> windows(first, first + xcb_query_tree_children_length(tree.get()));
    windows.erase(std::remove_if(windows.begin(), windows.end(),
                                 [&](xcb_window_t window) {
                                   return connection.clientOf(window) !=
                                          connection.clientOf(holder->owner);
                                 }),
                  windows.end());
    return windows;
  }

  /// Asks in the name of `window`, and takes the pieces away as a receiver would.
  void askInTheNameOf(xcb_window_t window) {
    X11Connection& connection = program.connection();
    const xcb_atom_t property = connection.atom("SOMEWHERE");
    xcb_convert_selection(connection.xcb(), window, connection.atom("CLIPBOARD"),
                          connection.atom("UTF8_STRING"), property, XCB_CURRENT_TIME);
    for (int step = 0; step < 6; ++step) {
      // Answered after whatever was asked before, so each step has had its effect.
      EXPECT_TRUE(program.get("TIMESTAMP"));
      xcb_delete_property(connection.xcb(), window, property);
    }
  }

  Requestor program{server->display()};
  ScriptedOwner owner{server->display()};
};

TEST_F(X11PasteboardOwnWindows, AreNotAnsweredToAndHearAsBefore) {
  owner.offer("UTF8_STRING", "so that there is a window for reading");
  copy(owner);
  ASSERT_TRUE(string());
  ASSERT_TRUE(pasteboard->writeString(std::string(300'000, 'x')));
  const auto windows = windowsOfThePasteboard();
  ASSERT_GE(windows.size(), 2U);
  for (const auto window : windows) askInTheNameOf(window);

  for (int round = 0; round < 3; ++round) {
    const std::string written = "written " + std::to_string(round);
    ASSERT_TRUE(pasteboard->writeString(written)) << "round " << round;
    EXPECT_EQ(textIn(program.get("UTF8_STRING")), written);
    ScriptedForm pieces;
    pieces.bytes = pattern(300'000);
    pieces.manner = Manner::incremental;
    owner.offer("UTF8_STRING", pieces);
    copy(owner);
    const auto text = string();
    ASSERT_TRUE(text) << "round " << round;
    EXPECT_TRUE(bytes(*text) == pieces.bytes);
  }
}

}  // namespace
}  // namespace vantorel
