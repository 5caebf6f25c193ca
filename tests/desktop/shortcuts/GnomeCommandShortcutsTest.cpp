// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/GnomeCommandShortcuts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "desktop/session/ChildProcess.h"
#include "fakes/TemporaryDirectory.h"

namespace vantorel {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const HotKeyCombination superShiftV{9, hotkeys::command | hotkeys::shift, "V"};

constexpr auto schemas = R"(<schemalist>
  <schema id="org.gnome.settings-daemon.plugins.media-keys"
          path="/org/gnome/settings-daemon/plugins/media-keys/">
    <key name="custom-keybindings" type="as"><default>[]</default></key>
  </schema>
  <schema id="org.gnome.settings-daemon.plugins.media-keys.custom-keybinding">
    <key name="name" type="s"><default>''</default></key>
    <key name="command" type="s"><default>''</default></key>
    <key name="binding" type="s"><default>''</default></key>
  </schema>
</schemalist>
)";

/// Settings of that shape, kept in a file. The library looks for them once in a process.
class GnomeCommandShortcutsTest : public testing::Test {
 protected:
  GnomeCommandShortcutsTest() {
    setenv("XDG_CONFIG_HOME", home.path().c_str(), 1);
    setenv("XDG_DATA_DIRS", home.path().c_str(), 1);
    setenv("GSETTINGS_SCHEMA_DIR", home.path().c_str(), 1);
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
  }
  void install() {
    std::ofstream(home.path() / "media-keys.gschema.xml") << schemas;
    runProgram({COMPILE_SCHEMAS, home.path().string()});
  }
  [[nodiscard]] std::string kept() const {
    std::ifstream file(home.path() / "glib-2.0/settings/keyfile");
    return {std::istreambuf_iterator<char>(file), {}};
  }

  TemporaryDirectory home;
};

TEST_F(GnomeCommandShortcutsTest, TheCommandStandsInTheListUntilItIsTakenOut) {
  install();
  auto shortcuts = GnomeCommandShortcuts::open();
  ASSERT_TRUE(shortcuts);
  EXPECT_FALSE(shortcuts->isSet());
  EXPECT_TRUE(shortcuts->set(superShiftV, "'/a b/vantorel' --toggle"));
  EXPECT_TRUE(shortcuts->isSet());
  EXPECT_THAT(kept(),
              HasSubstr("custom-keybindings=['/org/gnome/settings-daemon/plugins/media-keys/"
                        "custom-keybindings/vantorel/']"));
  EXPECT_THAT(kept(), HasSubstr("binding='<Super><Shift>v'"));
  EXPECT_THAT(kept(), HasSubstr(R"(command="'/a b/vantorel' --toggle")"));
  EXPECT_TRUE(shortcuts->remove());
  EXPECT_FALSE(shortcuts->isSet());
  EXPECT_THAT(kept(), Not(HasSubstr("vantorel --toggle")));
}

TEST_F(GnomeCommandShortcutsTest, OtherKeysReplaceTheOldOnes) {
  install();
  auto shortcuts = GnomeCommandShortcuts::open();
  ASSERT_TRUE(shortcuts);
  EXPECT_TRUE(shortcuts->set(superShiftV, "vantorel --toggle"));
  EXPECT_TRUE(
      shortcuts->set({49, hotkeys::option | hotkeys::control, "Space"}, "vantorel --toggle"));
  EXPECT_THAT(kept(),
              HasSubstr("custom-keybindings=['/org/gnome/settings-daemon/plugins/media-keys/"
                        "custom-keybindings/vantorel/']"));
  EXPECT_THAT(kept(), HasSubstr("binding='<Alt><Control>space'"));
}

TEST_F(GnomeCommandShortcutsTest, WhatOthersHaveThereStays) {
  install();
  std::filesystem::create_directories(home.path() / "glib-2.0/settings");
  std::ofstream(home.path() / "glib-2.0/settings/keyfile")
      << "[org/gnome/settings-daemon/plugins/media-keys]\ncustom-keybindings=['/a/custom0/']\n";
  auto shortcuts = GnomeCommandShortcuts::open();
  ASSERT_TRUE(shortcuts);
  EXPECT_TRUE(shortcuts->set(superShiftV, "vantorel --toggle"));
  EXPECT_THAT(kept(), HasSubstr("custom-keybindings=['/a/custom0/', '/org/gnome"));
  EXPECT_TRUE(shortcuts->remove());
  EXPECT_THAT(kept(), HasSubstr("custom-keybindings=['/a/custom0/']"));
}

TEST_F(GnomeCommandShortcutsTest, WithoutSuchSettingsThereAreNone) {
  EXPECT_FALSE(GnomeCommandShortcuts::open());
}

TEST_F(GnomeCommandShortcutsTest, SettingsThatNobodyKeepsAreNone) {
  install();
  setenv("GSETTINGS_BACKEND", "memory", 1);
  EXPECT_FALSE(GnomeCommandShortcuts::open());
}

}  // namespace
}  // namespace vantorel
