// SPDX-License-Identifier: MIT
#include "platform/linux/settings/ColorScheme.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(ColorScheme, IsWhatThePortalAnswers) {
  EXPECT_EQ(colorScheme(1, "", ""), ColorScheme::dark);
  EXPECT_EQ(colorScheme(2, "", ""), ColorScheme::light);
  EXPECT_EQ(colorScheme(2, "Adwaita:dark", "Adwaita-dark"), ColorScheme::light);
}

TEST(ColorScheme, IsReadFromThemesWhereThePortalHasNoPreference) {
  EXPECT_EQ(colorScheme(0, "", "Adwaita-dark"), ColorScheme::dark);
  EXPECT_EQ(colorScheme(7, "", "Adwaita-dark"), ColorScheme::dark);
  EXPECT_EQ(colorScheme(std::nullopt, "", "Adwaita-dark"), ColorScheme::dark);
}

TEST(ColorScheme, KnowsDarkThemesByTheirNames) {
  for (const char* name : {"Adwaita-dark", "Adwaita:dark", "Yaru-blue-dark", "BreezeDark",
                           "Arc-Dark", "Greybird-dark-accent"}) {
    EXPECT_EQ(colorScheme(std::nullopt, "", name), ColorScheme::dark) << name;
  }
  for (const char* name : {"", "Adwaita", "dark", "Darkness", "Landarks"}) {
    EXPECT_EQ(colorScheme(std::nullopt, "", name), ColorScheme::unspecified) << name;
  }
}

TEST(ColorScheme, TheEnvironmentsThemeComesBeforeTheSettings) {
  EXPECT_EQ(colorScheme(std::nullopt, "Adwaita", "Adwaita-dark"), ColorScheme::unspecified);
  EXPECT_EQ(colorScheme(std::nullopt, "Adwaita:dark", "Adwaita"), ColorScheme::dark);
}

}  // namespace
}  // namespace vantorel
