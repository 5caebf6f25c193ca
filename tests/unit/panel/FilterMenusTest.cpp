// SPDX-License-Identifier: MIT
#include "panel/FilterMenus.h"

#include <gmock/gmock.h>

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace Menus = FilterMenus;

ClipItem from(std::optional<std::string> bundleIdentifier, std::optional<std::string> name) {
  ClipItem item;
  item.sourceBundleIdentifier = std::move(bundleIdentifier);
  item.sourceAppName = std::move(name);
  return item;
}

std::vector<std::string> names(const std::vector<Menus::Source>& sources) {
  std::vector<std::string> result;
  for (const auto& source : sources) result.push_back(source.name);
  return result;
}

TEST(TypeMenu, HasOneRowForEachTypeWithTheChosenOneOn) {
  using Row = Menus::TypeRow;
  EXPECT_THAT(Menus::typeRows(ClipTypeFilter::image),
              ElementsAre(Row{ClipTypeFilter::all, "All types", false},
                          Row{ClipTypeFilter::text, "Text", false},
                          Row{ClipTypeFilter::image, "Images", true},
                          Row{ClipTypeFilter::files, "Files", false},
                          Row{ClipTypeFilter::video, "Videos", false}));
}

TEST(TypeButton, IsPlainWhileEveryTypeIsShown) {
  EXPECT_EQ(
      Menus::typeButton(ClipTypeFilter::all),
      (Menus::ButtonState{"line.3.horizontal.decrease", false, "All types", "Type: All types"}));
}

TEST(TypeButton, IsFilledWhileATypeIsChosen) {
  EXPECT_EQ(Menus::typeButton(ClipTypeFilter::image),
            (Menus::ButtonState{"line.3.horizontal.decrease.circle.fill", true, "Images",
                                "Type: Images"}));
}

TEST(SourceMenu, ListsNamesWhateverTheirCase) {
  const std::vector<ClipItem> items{from("org.b.safari", "Safari"), from("org.n.notes", "notes"),
                                    from("org.m.mail", "Mail")};
  EXPECT_THAT(names(Menus::sources(items)), ElementsAre("Mail", "notes", "Safari"));
}

TEST(SourceMenu, ListsASourceWithoutIdentityAsUnknown) {
  EXPECT_THAT(Menus::sources({from({}, {})}), ElementsAre(Menus::Source{"", "Unknown"}));
}

TEST(SourceMenu, ListsASourceOnceByTheNameOfItsLastEntry) {
  const std::vector<ClipItem> items{from("org.a", "New name"), from("org.b", "Other"),
                                    from("org.a", "Old name")};
  EXPECT_THAT(Menus::sources(items),
              ElementsAre(Menus::Source{"org.a", "Old name"}, Menus::Source{"org.b", "Other"}));
}

TEST(SourceMenu, ListsBothOfTwoSourcesThatShareAName) {
  const std::vector<ClipItem> items{from("org.z", "Editor"), from("org.a", "Editor")};
  EXPECT_THAT(Menus::sources(items),
              ElementsAre(Menus::Source{"org.z", "Editor"}, Menus::Source{"org.a", "Editor"}));
}

TEST(SourceMenu, TakesTheNameForAKeyWhereThereIsNoIdentifier) {
  EXPECT_THAT(Menus::sources({from({}, "xterm")}), ElementsAre(Menus::Source{"xterm", "xterm"}));
}

TEST(SourceMenu, ShowsHostileNamesAsOneShortLine) {
  const auto sources =
      Menus::sources({from("org.a", "Evil\n\x1b[31m\u202Ename" + std::string(100'000, 'x'))});
  ASSERT_EQ(sources.size(), 1U);
  EXPECT_EQ(sources[0].name.find('\n'), std::string::npos);
  EXPECT_EQ(sources[0].name.find("\u202E"), std::string::npos);
  EXPECT_LT(sources[0].name.size(), 100U);
}

TEST(SourceMenu, HasARowToPressWhereANameShowsNothing) {
  EXPECT_THAT(names(Menus::sources({from("org.a", "\n\t")})), ElementsAre("Unknown"));
}

TEST(SourceMenu, IsEmptyForAnEmptyHistory) { EXPECT_THAT(Menus::sources({}), IsEmpty()); }

TEST(SourceButton, IsPlainWhileEverySourceIsShown) {
  EXPECT_EQ(Menus::sourceButton({from("org.a", "A")}, std::nullopt),
            (Menus::ButtonState{"app", false, "All apps", "App: All apps"}));
}

TEST(SourceButton, IsFilledAndNamesTheFirstEntrysSource) {
  const std::vector<ClipItem> items{from("org.b", "B"), from("org.a", "First"),
                                    from("org.a", "Second")};
  EXPECT_EQ(Menus::sourceButton(items, "org.a"),
            (Menus::ButtonState{"app.fill", true, "First", "App: First"}));
}

TEST(SourceButton, SaysUnknownWhenNoEntryOfTheSourceIsLeft) {
  EXPECT_EQ(Menus::sourceButton({from("org.b", "B")}, "org.a").value, "Unknown");
}

TEST(SourceButton, TellsTheSourceWithoutIdentityFromEverySource) {
  EXPECT_EQ(Menus::sourceButton({from({}, {})}, ""),
            (Menus::ButtonState{"app.fill", true, "Unknown", "App: Unknown"}));
}

}  // namespace
}  // namespace vantorel
