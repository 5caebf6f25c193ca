// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

DesktopEntry usable(std::string_view text, const std::vector<std::string>& locales = {}) {
  auto parsed = parseDesktopEntry("id", text, locales);
  EXPECT_EQ(parsed.state, DesktopEntryState::usable);
  return parsed.entry;
}

constexpr std::string_view head = "[Desktop Entry]\nType=Application\n";

std::string entryWith(std::string_view lines) { return std::string(head) + std::string(lines); }

TEST(DesktopEntryLocales, FallBackFromTheWholeLocaleToTheLanguage) {
  EXPECT_THAT(desktopEntryLocales("de_AT.UTF-8@euro"),
              ElementsAre("de_AT@euro", "de_AT", "de@euro", "de"));
  EXPECT_THAT(desktopEntryLocales("he_IL.UTF-8"), ElementsAre("he_IL", "he"));
  EXPECT_THAT(desktopEntryLocales("sr@latin"), ElementsAre("sr@latin", "sr"));
  EXPECT_THAT(desktopEntryLocales("fr"), ElementsAre("fr"));
}

TEST(DesktopEntryLocales, AreNoneInTheLocaleOfPrograms) {
  for (const auto* locale : {"", "C", "POSIX", "C.UTF-8"}) {
    EXPECT_THAT(desktopEntryLocales(locale), IsEmpty()) << locale;
  }
}

TEST(DesktopEntry, TellsWhatTheFileSays) {
  const auto entry =
      usable(entryWith("Name=Writing Desk\nIcon=desk\nExec=/opt/desk/bin/desk --new %U\n"
                       "Categories=Office;WordProcessor;\nStartupWMClass=Desk\nNoDisplay=true\n"));
  EXPECT_EQ(entry.id, "id");
  EXPECT_EQ(entry.name, "Writing Desk");
  EXPECT_EQ(entry.icon, "desk");
  EXPECT_EQ(entry.executable, "desk");
  EXPECT_TRUE(entry.execHasArguments);
  EXPECT_EQ(entry.startupWmClass, "Desk");
  EXPECT_THAT(entry.categories, ElementsAre("Office", "WordProcessor"));
  EXPECT_TRUE(entry.noDisplay);
  EXPECT_FALSE(entry.isTerminalEmulator());
}

TEST(DesktopEntry, KnowsATerminalByItsCategory) {
  EXPECT_TRUE(usable(entryWith("Categories=System;TerminalEmulator\n")).isTerminalEmulator());
  EXPECT_FALSE(usable(entryWith("Categories=NotTerminalEmulator;\n")).isTerminalEmulator());
}

TEST(DesktopEntry, PrefersTheNameInTheUsersLanguage) {
  const auto text = entryWith("Name=Editor\nName[de]=Schreiber\nName[de_AT]=Schreiberl\n");
  EXPECT_EQ(usable(text, {"de_AT", "de"}).name, "Schreiberl");
  EXPECT_EQ(usable(text, {"de_CH", "de"}).name, "Schreiber");
  EXPECT_EQ(usable(text, {"fr"}).name, "Editor");
}

TEST(DesktopEntry, FallsBackFromAnUnreadableTranslation) {
  const auto entry = usable(entryWith("Name=Editor\nName[de]=\xff\xfe\n"), {"de"});
  EXPECT_EQ(entry.name, "Editor");
}

TEST(DesktopEntry, ResolvesEscapes) {
  const auto entry = usable(entryWith("Name=a\\sb\\\\c\\td\nCategories=x\\;y;z;\n"));
  EXPECT_EQ(entry.name, "a b\\c\td");
  EXPECT_THAT(entry.categories, ElementsAre("x;y", "z"));
}

TEST(DesktopEntry, FindsTheProgramBehindQuotesAndEnvironment) {
  EXPECT_EQ(usable(entryWith("Exec=\"/opt/my tools/edit\" %f\n")).executable, "edit");
  EXPECT_FALSE(usable(entryWith("Exec=\"/opt/my tools/edit\" %f\n")).execHasArguments);
  EXPECT_EQ(usable(entryWith("Exec=env LANG=C /usr/bin/edit\n")).executable, "edit");
  EXPECT_EQ(usable(entryWith("Exec=/usr/bin/env A=/b/c B= edit -x\n")).executable, "edit");
  EXPECT_EQ(usable(entryWith("Exec=env A=1\n")).executable, "");
  EXPECT_EQ(usable(entryWith("Exec=\n")).executable, "");
}

TEST(DesktopEntry, IgnoresOtherGroupsCommentsAndNonsense) {
  const auto entry = usable(
      "Name=before any group\n# comment\n[Other]\nName=Other\n\n[Desktop Entry]\r\n"
      "  Type = Application \r\n=\nno equals sign\nName = Right\r\nName=second\n"
      "[Desktop Action new]\nName=Action\nExec=action\n");
  EXPECT_EQ(entry.name, "Right");
  EXPECT_EQ(entry.executable, "");
}

TEST(DesktopEntry, HiddenCountsAsDeletedWhateverItsType) {
  EXPECT_EQ(parseDesktopEntry("x", "[Desktop Entry]\nHidden=true\n", {}).state,
            DesktopEntryState::hidden);
}

TEST(DesktopEntry, RefusesWhatIsNoApplication) {
  for (const auto* text : {"", "\n\n", "[Desktop Entry]\n", "[Desktop Entry]\nType=Link\n",
                           "Type=Application\n", "[Desktop Entry\nType=Application\n"}) {
    EXPECT_EQ(parseDesktopEntry("x", text, {}).state, DesktopEntryState::notAnApplication) << text;
  }
}

TEST(DesktopEntry, SurvivesATrailingBackslashAndZeroBytes) {
  EXPECT_EQ(usable(entryWith("Name=a\\")).name, "a\\");
  const auto text = entryWith("Exec=a\\") + std::string("\0\0", 2);
  EXPECT_EQ(parseDesktopEntry("x", text, {}).state, DesktopEntryState::usable);
}

}  // namespace
}  // namespace vantorel
