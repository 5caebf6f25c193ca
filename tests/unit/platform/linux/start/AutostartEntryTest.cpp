// SPDX-License-Identifier: MIT
#include "platform/linux/start/AutostartEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const AutostartSurroundings here{{"XFCE"}, [](const std::string& program) {
                                   return program == "present" || program == "/usr/bin/vantorel";
                                 }};

constexpr auto fresh =
    "[Desktop Entry]\n"
    "Type=Application\n"
    "Name=Vantorel\n"
    "Icon=com.vantorel.Vantorel\n"
    "Exec=/usr/bin/vantorel --background\n"
    "TryExec=/usr/bin/vantorel\n";

bool starts(const std::string& text) { return AutostartEntry(text).startsAtLogin(here); }

std::string enabled(const std::string& text) {
  AutostartEntry entry(text);
  entry.enable("/usr/bin/vantorel", here);
  return entry.text();
}

std::string disabled(const std::string& text) {
  AutostartEntry entry(text);
  entry.disable();
  return entry.text();
}

TEST(AutostartEntry, IsWrittenWhereThereIsNone) { EXPECT_EQ(enabled(""), fresh); }

TEST(AutostartEntry, StartsUnlessItIsHiddenOrMeantForOtherDesktops) {
  const std::string entry = fresh;
  EXPECT_TRUE(starts(entry));
  EXPECT_TRUE(starts(entry + "Hidden=false\n"));
  EXPECT_FALSE(starts(entry + "Hidden=true\n"));
  EXPECT_FALSE(starts(entry + " Hidden = true \r\n"));
  EXPECT_FALSE(starts(entry + "X-GNOME-Autostart-enabled=false\n"));
  EXPECT_FALSE(starts(entry + "OnlyShowIn=GNOME;KDE;\n"));
  EXPECT_TRUE(starts(entry + "OnlyShowIn=GNOME;XFCE;\n"));
  EXPECT_FALSE(starts(entry + "NotShowIn=XFCE\n"));
  EXPECT_TRUE(starts(entry + "NotShowIn=KDE;\n"));
  const std::string untried = entry.substr(0, entry.find("TryExec"));
  EXPECT_TRUE(starts(untried));
  EXPECT_TRUE(starts(untried + "TryExec=present\n"));
  EXPECT_FALSE(starts(untried + "TryExec=absent\n"));
}

TEST(AutostartEntry, OnlyItsOwnGroupCounts) {
  const std::string entry = fresh;
  EXPECT_TRUE(starts(entry + "\n[Desktop Action x]\nHidden=true\n"));
  EXPECT_TRUE(starts("[Other]\nHidden=true\n" + entry));
}

TEST(AutostartEntry, WhatIsNoEntryStartsNothing) {
  for (const std::string text :
       {"", "\n", "Exec=/usr/bin/vantorel\n", "[Desktop Entry]\nType=Application\n",
        "[Desktop Entry]\nExec=x\n", "[Desktop Entry]\nType=Link\nExec=x\n", "\xff\xfe[", "[]"}) {
    EXPECT_FALSE(starts(text)) << text;
    EXPECT_TRUE(starts(enabled(text))) << text;
  }
}

TEST(AutostartEntry, SwitchedOffItIsHiddenAndKeepsTheRest) {
  EXPECT_EQ(disabled(fresh), std::string(fresh) + "Hidden=true\n");
  EXPECT_FALSE(starts(disabled(fresh)));
  EXPECT_EQ(disabled(disabled(fresh)), disabled(fresh));
}

TEST(AutostartEntry, SwitchedOnAgainItKeepsWhatOthersWroteIntoIt) {
  const std::string text =
      "# mine\n"
      "[Desktop Entry]\n"
      "Name=My clipboard\n"
      "Name[he]=\xd7\x90\n"
      "Type=Application\n"
      "X-GNOME-Autostart-Delay=5\n"
      "Hidden=true\n"
      "Exec=/opt/old/vantorel\n"
      "not a key\n"
      "\n"
      "[Desktop Action x]\n"
      "Exec=x\n";
  EXPECT_EQ(enabled(text),
            "# mine\n"
            "[Desktop Entry]\n"
            "Name=My clipboard\n"
            "Name[he]=\xd7\x90\n"
            "Type=Application\n"
            "X-GNOME-Autostart-Delay=5\n"
            "Exec=/usr/bin/vantorel --background\n"
            "not a key\n"
            "Icon=com.vantorel.Vantorel\n"
            "TryExec=/usr/bin/vantorel\n"
            "\n"
            "[Desktop Action x]\n"
            "Exec=x\n");
}

TEST(AutostartEntry, SwitchedOnItStartsWhateverHadPreventedIt) {
  const std::string entry = fresh;
  for (const std::string obstacle :
       {"Hidden=true\n", "Hidden=true\nHidden=true\n", "X-GNOME-Autostart-enabled=false\n",
        "OnlyShowIn=GNOME;\n", "NotShowIn=XFCE;\n"}) {
    EXPECT_FALSE(starts(entry + obstacle)) << obstacle;
    EXPECT_TRUE(starts(enabled(entry + obstacle))) << obstacle;
  }
  EXPECT_THAT(enabled(entry + "OnlyShowIn=XFCE;\n"), HasSubstr("\nOnlyShowIn=XFCE;\n"));
}

TEST(AutostartEntry, LeftBehindByTheProgramItDoesNothing) {
  EXPECT_FALSE(
      AutostartEntry(fresh).startsAtLogin({{"XFCE"}, [](const auto& /*gone*/) { return false; }}));
  EXPECT_THAT(enabled("[Desktop Entry]\nTryExec=absent\nOnlyShowIn=GNOME;\n"),
              AllOf(HasSubstr("\nTryExec=/usr/bin/vantorel\n"), Not(HasSubstr("OnlyShowIn"))));
}

TEST(AutostartEntry, APathThatCannotBeTriedIsStartedUntried) {
  AutostartEntry entry("");
  entry.enable("/opt/a\\b", {{}, [](const auto& program) { return program == "/opt/a\\b"; }});
  EXPECT_THAT(entry.text(), Not(HasSubstr("TryExec")));
}

TEST(AutostartEntry, AnEndlessLineAndZeroBytesDoNoHarm) {
  const std::string text = "[Desktop Entry]\nX=" + std::string(60'000, 'x') + std::string(3, '\0');
  EXPECT_TRUE(starts(enabled(text)));
  EXPECT_THAT(enabled(text), HasSubstr(std::string(60'000, 'x')));
}

TEST(AutostartEntry, WhatAnOlderVersionWroteIsRenewedAndNothingElse) {
  const std::string old = "[Desktop Entry]\nType=Application\nExec=/usr/bin/vantorel\nX-Mine=1\n";
  AutostartEntry theirs(old);
  EXPECT_TRUE(theirs.renew("/usr/bin/vantorel"));
  EXPECT_EQ(theirs.text(),
            "[Desktop Entry]\nType=Application\nExec=/usr/bin/vantorel --background\nX-Mine=1\n"
            "TryExec=/usr/bin/vantorel\n");
  EXPECT_FALSE(theirs.renew("/usr/bin/vantorel"));
  AutostartEntry another(old);
  EXPECT_FALSE(another.renew("/usr/local/bin/vantorel"));
  EXPECT_EQ(another.text(), old);
}

TEST(AutostartEntry, NamesAProgramWhateverItsPathHolds) {
  EXPECT_EQ(desktopEntryCommand("/usr/bin/vantorel"), "/usr/bin/vantorel");
  EXPECT_EQ(desktopEntryCommand("/home/a b/vantorel"), "\"/home/a b/vantorel\"");
  EXPECT_EQ(desktopEntryCommand("/x/100%/v"), "\"/x/100%%/v\"");
  EXPECT_EQ(desktopEntryCommand("/x/\"$`/v"), R"("/x/\\"\\$\\`/v")");
  EXPECT_EQ(desktopEntryCommand("/x/\\/v"), R"("/x/\\\\/v")");
  EXPECT_EQ(desktopEntryCommand("/x/\n/v"), R"("/x/\n/v")");
  EXPECT_THAT(desktopEntryCommand("/x/\n/v"), Not(HasSubstr("\n")));
  EXPECT_EQ(desktopEntryCommand("/א/v"), "/א/v");
}

}  // namespace
}  // namespace vantorel
