// SPDX-License-Identifier: MIT
#include "app/DesktopReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

DesktopFacts wholeDesktop() {
  return {.hasWindowSystem = true,
          .windowManager = "Openbox",
          .hasCompositor = true,
          .hasSessionBus = true,
          .isRunning = false,
          .keyring = DesktopFacts::Keyring::unlocked,
          .shortcut = DesktopFacts::Shortcut::free,
          .canPressKeys = true,
          .clipboardProtocol = "X11 selections (XFIXES 5.0)",
          .keysProtocol = "XTEST 2.2",
          .tray = DesktopFacts::Tray::items,
          .hasSettingsPortal = true,
          .hasTextReader = true,
          .textLanguages = {"eng", "heb"}};
}

DesktopReport report(const DesktopFacts& facts) {
  return DesktopReport::of(facts, "Super+V", {"Add this line", "bind vantorel --toggle"});
}

TEST(DesktopReport, SaysYesToEverythingWhereEverythingIs) {
  const auto whole = report(wholeDesktop());
  EXPECT_TRUE(whole.isEnough);
  EXPECT_THAT(whole.text, HasSubstr("have all that they need"));
  EXPECT_THAT(whole.text, Not(HasSubstr("NO ")));
  EXPECT_THAT(whole.text, Not(HasSubstr("no ")));
  EXPECT_THAT(whole.text, HasSubstr("yes  Display           X11 with Openbox"));
  EXPECT_THAT(whole.text, HasSubstr("yes  Clipboard         X11 selections (XFIXES 5.0)\n"));
  EXPECT_THAT(whole.text, HasSubstr("yes  Applications      by their X11 windows\n"));
  EXPECT_THAT(whole.text, HasSubstr("into the window in front (XTEST 2.2)"));
  EXPECT_THAT(whole.text, HasSubstr("Super+V is free"));
  EXPECT_THAT(whole.text, HasSubstr("eng, heb"));
}

TEST(DesktopReport, NamesTheRunningInstance) {
  auto facts = wholeDesktop();
  EXPECT_THAT(report(facts).text, HasSubstr("Vantorel is not running."));
  facts.isRunning = true;
  facts.shortcut = DesktopFacts::Shortcut::held;
  EXPECT_THAT(report(facts).text, HasSubstr("Vantorel is running."));
  EXPECT_TRUE(report(facts).isEnough);
}

TEST(DesktopReport, EachKeyringThatCannotBeUsedHasItsRemedy) {
  using Keyring = DesktopFacts::Keyring;
  for (const auto& [keyring, remedy] :
       {std::pair(Keyring::locked, "Unlock it"), std::pair(Keyring::noCollection, "Create one"),
        std::pair(Keyring::absent, "Install gnome-keyring")}) {
    auto facts = wholeDesktop();
    facts.keyring = keyring;
    EXPECT_FALSE(report(facts).isEnough);
    EXPECT_THAT(report(facts).text, HasSubstr("NO   Keyring"));
    EXPECT_THAT(report(facts).text, HasSubstr(remedy));
  }
}

TEST(DesktopReport, WhatRecordingAndPastingNeedIsNeeded) {
  for (const auto take :
       {+[](DesktopFacts& facts) { facts.hasWindowSystem = false; },
        +[](DesktopFacts& facts) { facts.hasSessionBus = false; },
        +[](DesktopFacts& facts) { facts.canPressKeys = false; },
        +[](DesktopFacts& facts) { facts.shortcut = DesktopFacts::Shortcut::taken; }}) {
    auto facts = wholeDesktop();
    take(facts);
    EXPECT_FALSE(report(facts).isEnough);
    EXPECT_THAT(report(facts).text, HasSubstr("NO   "));
  }
}

TEST(DesktopReport, ComfortsAreNotNeeded) {
  for (const auto take : {+[](DesktopFacts& facts) { facts.tray = DesktopFacts::Tray::none; },
                          +[](DesktopFacts& facts) { facts.hasSettingsPortal = false; },
                          +[](DesktopFacts& facts) { facts.hasTextReader = false; },
                          +[](DesktopFacts& facts) { facts.textLanguages.clear(); }}) {
    auto facts = wholeDesktop();
    take(facts);
    EXPECT_TRUE(report(facts).isEnough);
    EXPECT_THAT(report(facts).text, HasSubstr("\nno   "));
  }
}

TEST(DesktopReport, EachKindOfTrayIsOne) {
  using Tray = DesktopFacts::Tray;
  for (const auto& [tray, says] :
       {std::pair(Tray::items, "yes  Tray              there, for StatusNotifier items"),
        std::pair(Tray::windows, "yes  Tray              there, of the older kind (XEmbed)"),
        std::pair(Tray::none, "no   Tray              none of either kind")}) {
    auto facts = wholeDesktop();
    facts.tray = tray;
    EXPECT_TRUE(report(facts).isEnough);
    EXPECT_THAT(report(facts).text, HasSubstr(says));
  }
}

TEST(DesktopReport, InsideOfACompositorItSaysWhatAnXServerDoesNotReach) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  facts.isClipboardBridged = true;
  facts.shortcut = DesktopFacts::Shortcut::absent;
  const auto inside = report(facts);
  EXPECT_TRUE(inside.isEnough);
  EXPECT_THAT(inside.text, HasSubstr("yes  Display           Xwayland in a Wayland session"));
  EXPECT_THAT(inside.text, HasSubstr("only while an X11 window is in front"));
  EXPECT_THAT(inside.text, HasSubstr("no   Applications"));
  EXPECT_THAT(inside.text, HasSubstr("no   Shortcut"));
  EXPECT_THAT(inside.text, HasSubstr("Add this line: bind vantorel --toggle\n"));
  EXPECT_THAT(inside.text, Not(HasSubstr("Super+V")));
  EXPECT_THAT(inside.text, HasSubstr("into windows of X11 programs"));
}

TEST(DesktopReport, AServiceThatGivesShortcutsIsNamed) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  facts.shortcut = DesktopFacts::Shortcut::offered;
  facts.shortcutService = "org.kde.kglobalaccel";
  EXPECT_TRUE(report(facts).isEnough);
  EXPECT_THAT(report(facts).text, HasSubstr("yes  Shortcut          Super+V, where it is free "
                                            "(org.kde.kglobalaccel)\n"));
  facts.asksForShortcut = true;
  EXPECT_THAT(report(facts).text, HasSubstr("Super+V, once you agree (org.kde.kglobalaccel)\n"));
  facts.shortcut = DesktopFacts::Shortcut::held;
  EXPECT_THAT(report(facts).text, HasSubstr("running Vantorel (org.kde.kglobalaccel)\n"));
}

TEST(DesktopReport, AClipboardOfTheCompositorsOwnIsWhole) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  facts.clipboardProtocol = "the compositor's (ext_data_control_manager_v1 1)";
  EXPECT_THAT(
      report(facts).text,
      HasSubstr("yes  Clipboard         the compositor's (ext_data_control_manager_v1 1)\n"));
}

TEST(DesktopReport, WindowsThatTheCompositorTellsOfAreSources) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  facts.windowsProtocol = "zwlr_foreign_toplevel_manager_v1 3";
  EXPECT_THAT(report(facts).text,
              HasSubstr("yes  Applications      by their X11 windows and the compositor's "
                        "(zwlr_foreign_toplevel_manager_v1 3)\n"));
}

TEST(DesktopReport, ACompositorThatTakesKeysLetsAllProgramsBePastedInto) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  facts.compositorKeysProtocol = "zwp_virtual_keyboard_manager_v1 1";
  EXPECT_THAT(report(facts).text,
              HasSubstr("yes  Pasting           into the window in front (XTEST 2.2 and "
                        "zwp_virtual_keyboard_manager_v1 1)\n"));
}

TEST(DesktopReport, ACompositorWithLayersNeedsNoXServer) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  facts.layersProtocol = "zwlr_layer_shell_v1 4";
  facts.clipboardProtocol = "the compositor's (ext_data_control_manager_v1 1)";
  facts.windowsProtocol = "zwlr_foreign_toplevel_manager_v1 3";
  facts.shortcut = DesktopFacts::Shortcut::absent;
  facts.keysProtocol = "zwp_virtual_keyboard_manager_v1 1";
  const auto whole = report(facts);
  EXPECT_TRUE(whole.isEnough);
  EXPECT_THAT(whole.text, HasSubstr("yes  Display           Wayland, on the compositor's layers "
                                    "(zwlr_layer_shell_v1 4)\n"));
  EXPECT_THAT(whole.text, HasSubstr("yes  Applications      by the compositor's "
                                    "(zwlr_foreign_toplevel_manager_v1 3)\n"));
  EXPECT_THAT(whole.text,
              HasSubstr("into the window in front (zwp_virtual_keyboard_manager_v1 1)"));
  EXPECT_THAT(whole.text, Not(HasSubstr("X11")));
}

TEST(DesktopReport, ACompositorThatTellsNothingTakesComfortsAlone) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  facts.layersProtocol = "zwlr_layer_shell_v1 4";
  facts.shortcut = DesktopFacts::Shortcut::absent;
  facts.canPressKeys = false;
  const auto poor = report(facts);
  EXPECT_TRUE(poor.isEnough);
  EXPECT_THAT(poor.text, HasSubstr("no   Applications      none is told: where"));
  EXPECT_THAT(poor.text, HasSubstr("no   Pasting           the compositor lets no program press"));
}

TEST(DesktopReport, WhatIsGivenToInstalledProgramsAloneIsSaid) {
  auto facts = wholeDesktop();
  facts.isWayland = true;
  EXPECT_THAT(report(facts).text, Not(HasSubstr("install")));
  facts.wantsInstalledPrograms = true;
  EXPECT_THAT(report(facts).text, HasSubstr("to installed programs alone: install Vantorel.\n"));
  EXPECT_THAT(report(facts).text, HasSubstr("into all others once Vantorel is installed (XTEST"));
  EXPECT_TRUE(report(facts).isEnough);
}

TEST(DesktopReport, ACompositorWithoutAnXServerHasNoPlaceForTheWindows) {
  DesktopFacts facts;
  facts.isWayland = true;
  EXPECT_FALSE(report(facts).isEnough);
  EXPECT_THAT(report(facts).text, HasSubstr("NO   Display           Wayland, without an X server"));
  EXPECT_THAT(report(facts).text, HasSubstr("Install and switch on Xwayland."));
}

TEST(DesktopReport, WhatHangsOnSomethingMissingIsNotMentioned) {
  const auto nothing = report({});
  EXPECT_THAT(nothing.text, HasSubstr("NO   Display"));
  EXPECT_THAT(nothing.text, HasSubstr("NO   Session bus"));
  EXPECT_THAT(nothing.text, Not(HasSubstr("Shortcut")));
  EXPECT_THAT(nothing.text, Not(HasSubstr("Keyring")));
}

}  // namespace
}  // namespace vantorel
