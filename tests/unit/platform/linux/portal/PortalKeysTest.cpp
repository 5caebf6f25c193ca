// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalKeys.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(PortalTrigger, NamesModifiersAndTheKeysSymbol) {
  EXPECT_EQ(portalTrigger({9, hotkeys::command | hotkeys::shift, "V"}), "LOGO+SHIFT+v");
  EXPECT_EQ(portalTrigger({49, hotkeys::option | hotkeys::control, "Space"}), "ALT+CTRL+space");
  EXPECT_EQ(portalTrigger({18, hotkeys::command | hotkeys::option, "1"}), "LOGO+ALT+1");
}

TEST(PortalTrigger, IsLeftToTheUserForAKeyOfAnotherScript) {
  EXPECT_EQ(portalTrigger({9, hotkeys::command | hotkeys::shift, "ש"}), "");
  EXPECT_EQ(portalTrigger({9, hotkeys::command | hotkeys::shift, ""}), "");
}

TEST(ShownPortalKeys, AreWrittenAsInOtherTexts) {
  EXPECT_EQ(shownPortalKeys("Press <Shift><Super>v"), "⌘⇧V");
  EXPECT_EQ(shownPortalKeys("<Control><Alt>space"), "⌥⌃Space");
  EXPECT_EQ(shownPortalKeys("לחיצה על <Primary><Meta>1"), "⌘⌃1");
}

TEST(ShownPortalKeys, StayWhereTheyAreWrittenInAnotherWay) {
  for (const char* text : {"", "Meta+Shift+V", "<Super>", "<Hyper>v", "<Super", "<>v", "a < b"}) {
    EXPECT_EQ(shownPortalKeys(text), text);
  }
}

}  // namespace
}  // namespace vantorel
