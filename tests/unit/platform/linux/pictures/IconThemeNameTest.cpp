// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemeName.h"

#include <gtest/gtest.h>

#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

const std::string gtk = "[Settings]\ngtk-theme-name=Other\ngtk-icon-theme-name=FromGtk\n";
const std::string plasma = "[General]\nTheme=Wrong\n[Icons]\nTheme=FromPlasma\n";

TEST(IconThemeName, AsksTheSettingsManagerThenFilesThenFallsBack) {
  EXPECT_EQ(iconThemeName({"Manager", {gtk}, {plasma}}), "Manager");
  EXPECT_EQ(iconThemeName({"", {gtk}, {plasma}}), "FromGtk");
  EXPECT_EQ(iconThemeName({"", {"[Settings]\n"}, {plasma}}), "FromPlasma");
  EXPECT_EQ(iconThemeName({"", {}, {}}), "Adwaita");
}

TEST(IconThemeName, TheMoreImportantFileCounts) {
  EXPECT_EQ(iconThemeName({"", {"", "[Settings]\ngtk-icon-theme-name=\"A B\"\n", gtk}, {}}), "A B");
}

TEST(IconThemeName, ANameThatIsAPathIsNone) {
  EXPECT_EQ(iconThemeName({"../evil", {"[Settings]\ngtk-icon-theme-name=/etc\n"}, {plasma}}),
            "FromPlasma");
  EXPECT_EQ(iconThemeName({".hidden", {}, {"[Icons]\nTheme=a/b\n"}}), "Adwaita");
}

TEST(IconThemeName, ReadsTheUsersFilesBeforeTheSystems) {
  WrittenFiles files;
  const std::vector<std::filesystem::path> directories = {files / "home", files / "etc"};
  const auto name = [&](const std::string& manager) {
    return iconThemeName(readIconThemeHints(files.system, directories, manager));
  };
  EXPECT_EQ(name(""), "Adwaita");
  files.write("etc/gtk-3.0/settings.ini", gtk);
  EXPECT_EQ(name(""), "FromGtk");
  files.write("home/gtk-4.0/settings.ini", "[Settings]\ngtk-icon-theme-name=Own\n");
  EXPECT_EQ(name(""), "Own");
  EXPECT_EQ(name("Manager"), "Manager");
}

}  // namespace
}  // namespace vantorel
