// SPDX-License-Identifier: MIT
#include "platform/linux/bus/TrayMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TrayMenuTest : public testing::Test {
 protected:
  TrayMenuTest() {
    menu.rows = [this] {
      ++questions;
      return rows;
    };
    menu.onChosen = [this](const MenuRow& row) { chosen.push_back(row.title); };
    QObject::connect(&menu, &TrayMenu::LayoutUpdated, &menu, [this] { ++updates; });
  }

  TrayMenuLayout layout(int parent = 0, int depth = -1, const QStringList& names = {}) {
    TrayMenuLayout answer;
    menu.GetLayout(parent, depth, names, answer);
    return answer;
  }
  int idOf(const std::string& title) {
    for (const auto& child : layout().children) {
      if (child.properties["label"] == QString::fromStdString(title)) return child.id;
    }
    return -1;
  }

  std::vector<MenuRow> rows = {
      {.title = "Open", .action = "1"},
      {.title = "More", .submenu = {{.title = "Inner", .action = "2"}}},
      {},
      {.title = "Quit", .action = "3", .keyEquivalent = "q"},
  };
  int questions = 0;
  int updates = 0;
  std::vector<std::string> chosen;
  TrayMenu menu;
};

TEST_F(TrayMenuTest, ShowsTheRowsAsTheyAreWhenItIsAsked) {
  EXPECT_EQ(layout().children.size(), 4);
  rows.pop_back();
  EXPECT_EQ(layout().children.size(), 3);
}

TEST_F(TrayMenuTest, SaysWhatEachRowIs) {
  const auto all = layout();
  EXPECT_EQ(all.properties["children-display"], "submenu");
  EXPECT_EQ(all.children[0].properties["label"], "Open");
  EXPECT_FALSE(all.children[0].properties.contains("children-display"));
  EXPECT_FALSE(all.children[0].properties.contains("toggle-type"));
  EXPECT_EQ(all.children[1].properties["children-display"], "submenu");
  EXPECT_EQ(all.children[1].children[0].properties["label"], "Inner");
  EXPECT_EQ(all.children[2].properties, (QVariantMap{{"type", "separator"}}));
  EXPECT_EQ(all.children[3].properties["shortcut"].value<QList<QStringList>>(),
            (QList<QStringList>{{"Control", "q"}}));
}

TEST_F(TrayMenuTest, SwitchesShowWhereTheyStandAndWhetherTheyCanBeUsed) {
  rows = {{.title = "On", .action = "1", .state = MenuState::on},
          {.title = "Off", .action = "2", .state = MenuState::off, .enabled = false}};
  const auto all = layout();
  EXPECT_EQ(all.children[0].properties["toggle-type"], "checkmark");
  EXPECT_EQ(all.children[0].properties["toggle-state"], 1);
  EXPECT_EQ(all.children[0].properties["enabled"], true);
  EXPECT_EQ(all.children[1].properties["toggle-state"], 0);
  EXPECT_EQ(all.children[1].properties["enabled"], false);
  menu.Event(all.children[1].id, "clicked", {}, 0);
  EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(TrayMenuTest, UnderscoresMarkNoLettersAndLongTitlesAreCut) {
  rows = {{.title = "a_b\nc", .action = "1"}, {.title = std::string(10'240, 'x'), .action = "2"}};
  EXPECT_EQ(layout().children[0].properties["label"], "a__b c");
  EXPECT_EQ(layout().children[1].properties["label"].toString().size(), 80);
}

TEST_F(TrayMenuTest, GoesAsDeepAsItIsAskedTo) {
  EXPECT_THAT(layout(0, 0).children, IsEmpty());
  const auto one = layout(0, 1);
  EXPECT_EQ(one.children.size(), 4);
  EXPECT_THAT(one.children[1].children, IsEmpty());
  EXPECT_EQ(layout(one.children[1].id, -1).children.size(), 1);
}

TEST_F(TrayMenuTest, AnswersOnlyTheNamedProperties) {
  const auto some = layout(0, -1, {"label", "unknown"});
  EXPECT_EQ(some.children[0].properties, (QVariantMap{{"label", "Open"}}));
  const auto group = menu.GetGroupProperties({some.children[0].id, 9999}, {"enabled"});
  ASSERT_EQ(group.size(), 1);
  EXPECT_EQ(group[0].properties, (QVariantMap{{"enabled", true}}));
  EXPECT_EQ(menu.GetProperty(some.children[0].id, "label").variant(), "Open");
}

TEST_F(TrayMenuTest, AClickChoosesAndNothingElseDoes) {
  const int open = idOf("Open");
  menu.Event(open, "hovered", {}, 0);
  menu.Event(0, "opened", {}, 0);
  menu.Event(9999, "clicked", {}, 0);
  EXPECT_THAT(chosen, IsEmpty());
  menu.Event(open, "clicked", {}, 0);
  EXPECT_THAT(menu.EventGroup({{idOf("Quit"), "clicked", {}, 0}, {9999, "clicked", {}, 0}}),
              ElementsAre(9999));
  EXPECT_THAT(chosen, ElementsAre("Open", "Quit"));
}

TEST_F(TrayMenuTest, SaysWhetherItHasChangedWhenItIsAboutToBeShown) {
  EXPECT_TRUE(menu.AboutToShow(0));
  EXPECT_FALSE(menu.AboutToShow(0));
  rows[0].title = "Close";
  EXPECT_TRUE(menu.AboutToShow(0));
  EXPECT_EQ(updates, 2);
  QList<int> errors;
  rows[0].title = "Open";
  EXPECT_THAT(menu.AboutToShowGroup({0, 9999}, errors), ElementsAre(0));
  EXPECT_THAT(errors, ElementsAre(9999));
}

TEST_F(TrayMenuTest, TellsOfAChangeOnce) {
  EXPECT_TRUE(menu.refresh());
  EXPECT_FALSE(menu.refresh());
  EXPECT_EQ(updates, 1);
}

TEST_F(TrayMenuTest, WithoutAnybodyToAskItIsEmpty) {
  menu.rows = nullptr;
  menu.onChosen = nullptr;
  EXPECT_THAT(layout().children, IsEmpty());
  menu.Event(1, "clicked", {}, 0);
}

}  // namespace
}  // namespace vantorel
