// SPDX-License-Identifier: MIT
#include "platform/linux/bus/NumberedMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace vantorel {
namespace {

using testing::SizeIs;

MenuRow row(const std::string& title, int action = 1, std::vector<MenuRow> submenu = {}) {
  return {.title = title, .action = std::to_string(action), .submenu = std::move(submenu)};
}

class NumberedMenuTest : public testing::Test {
 protected:
  [[nodiscard]] const std::vector<int>& children(int id = NumberedMenu::root) const {
    return menu.entry(id)->children;
  }

  NumberedMenu menu;
};

TEST_F(NumberedMenuTest, IsEmptyAtFirst) {
  EXPECT_THAT(children(), SizeIs(0));
  EXPECT_EQ(menu.entry(1), nullptr);
  EXPECT_FALSE(menu.chosen(NumberedMenu::root));
}

TEST_F(NumberedMenuTest, NumbersEachRowAndThoseBelowIt) {
  EXPECT_TRUE(menu.setRows({row("a"), row("b", 2, {row("c", 3), row("d", 4)})}));
  ASSERT_THAT(children(), SizeIs(2));
  const int b = children()[1];
  ASSERT_THAT(children(b), SizeIs(2));
  EXPECT_EQ(menu.entry(b)->row.title, "b");
  EXPECT_THAT(menu.entry(b)->row.submenu, SizeIs(0));
  EXPECT_EQ(menu.entry(children(b)[1])->row.title, "d");
  EXPECT_EQ(menu.chosen(children(b)[1])->action, "4");
}

TEST_F(NumberedMenuTest, TheSameRowsAreNoChange) {
  const std::vector<MenuRow> rows = {row("a"), row("b")};
  EXPECT_TRUE(menu.setRows(rows));
  const auto revision = menu.revision();
  EXPECT_FALSE(menu.setRows(rows));
  EXPECT_EQ(menu.revision(), revision);
}

TEST_F(NumberedMenuTest, ARowKeepsItsNumberWhileItStays) {
  menu.setRows({row("a"), row("b")});
  const int b = children()[1];
  const auto revision = menu.revision();
  auto checked = row("b");
  checked.state = MenuState::on;
  EXPECT_TRUE(menu.setRows({row("new"), checked}));
  EXPECT_GT(menu.revision(), revision);
  EXPECT_EQ(children()[1], b);
  EXPECT_EQ(menu.entry(b)->row.state, MenuState::on);
}

TEST_F(NumberedMenuTest, ANumberIsNeverGivenTwice) {
  menu.setRows({row("a")});
  const int a = children()[0];
  menu.setRows({row("b")});
  menu.setRows({row("c")});
  menu.setRows({row("a")});
  EXPECT_NE(children()[0], a);
}

TEST_F(NumberedMenuTest, RowsThatLookAlikeHaveNumbersOfTheirOwn) {
  menu.setRows({row("Include X", 1), {}, row("Include X", 1), {}});
  auto ids = children();
  std::sort(ids.begin(), ids.end());
  EXPECT_EQ(std::adjacent_find(ids.begin(), ids.end()), ids.end());
  auto other = row("Include X", 1);
  other.representedObject = "org.example";
  const auto before = children();
  menu.setRows({other, {}, row("Include X", 1), {}});
  EXPECT_NE(children()[0], before[0]);
  EXPECT_NE(children()[0], before[2]);
}

TEST_F(NumberedMenuTest, ARowThatJustLeftTheMenuCanStillBeChosen) {
  menu.setRows({row("Resume Now", 7)});
  const int resume = children()[0];
  menu.setRows({row("Pause", 8)});
  EXPECT_EQ(menu.entry(resume), nullptr);
  EXPECT_EQ(menu.chosen(resume)->action, "7");
  menu.setRows({row("Other", 9)});
  EXPECT_FALSE(menu.chosen(resume));
}

TEST_F(NumberedMenuTest, KeepsNothingOfMenusThatAreLongGone) {
  for (int i = 0; i < 1000; ++i) menu.setRows({row(std::to_string(i))});
  int known = 0;
  for (int id = 1; id <= 1000; ++id) known += menu.chosen(id) ? 1 : 0;
  EXPECT_EQ(known, 2);
}

}  // namespace
}  // namespace vantorel
