// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QAccessible>
#include <QMenu>

#include "panel/ClipRowView.h"
#include "panel/PanelAccessibility.h"
#include "ui/ClipListTest.h"

namespace vantorel {
namespace {

class RowAccessibilityTest : public ClipListTest {
 protected:
  RowAccessibilityTest() { installPanelAccessibility(); }
  [[nodiscard]] QAccessibleInterface& accessible(Uuid id) const {
    return *QAccessible::queryAccessibleInterface(&rowOf(id));
  }
};

TEST_F(RowAccessibilityTest, TheMenuOpensWithoutAPointer) {
  const auto one = addText("one");
  show();
  auto* action = accessible(one).actionInterface();
  ASSERT_TRUE(action->actionNames().contains(QAccessibleActionInterface::showMenuAction()));
  action->doAction(QAccessibleActionInterface::showMenuAction());
  ASSERT_NE(menu(), nullptr);
  EXPECT_EQ(menuTitles().front(), "Paste as Plain Text");
  menu()->close();
}

TEST_F(RowAccessibilityTest, ARowThatBecomesAnothersHasItsName) {
  addText("one");
  show();
  items_.clear();
  const auto two = addText("two");
  show();
  EXPECT_TRUE(accessible(two).text(QAccessible::Name).startsWith("two, "));
}

}  // namespace
}  // namespace vantorel
