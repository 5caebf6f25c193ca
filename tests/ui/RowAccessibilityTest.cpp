#include <gtest/gtest.h>

#include <QAccessible>
#include <QMenu>
#include <algorithm>

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

/// Where assistive programs are sent, by the names.
class Reader {
 public:
  Reader() {
    names().clear();
    QAccessible::setActive(true);
    QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
      if (event->type() != QAccessible::Focus) return;
      names().push_back(event->accessibleInterface()->text(QAccessible::Name).toStdString());
    });
  }
  ~Reader() {
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::setActive(false);
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  static std::vector<std::string>& names() {
    static std::vector<std::string> all;
    return all;
  }
};

TEST_F(RowAccessibilityTest, AReaderIsSentToTheSelectedRowOnceAndLast) {
  addText("one");
  addText("two");
  show();
  list_.select(0);
  list_.clearFocus();
  const Reader reader;
  list_.setFocus();
  list_.select(0);
  list_.select(1);
  list_.select(0);
  dispatch_.runQueued();
  ASSERT_FALSE(Reader::names().empty());
  EXPECT_TRUE(Reader::names().back().starts_with("one, "));
  const auto rows = std::count_if(Reader::names().begin(), Reader::names().end(),
                                  [](const auto& name) { return name != "Clips"; });
  EXPECT_EQ(rows, 1);
}

TEST_F(RowAccessibilityTest, WhatChangesBelowTheReaderIsSaid) {
  const auto id = addText("one");
  show();
  list_.setFocus();
  const Reader reader;
  std::vector<std::string> said;
  list_.onSay = [&](const QString& text) { said.push_back(text.toStdString()); };
  list_.select(0);
  dispatch_.runQueued();
  EXPECT_TRUE(said.empty());
  items_.front().isPinned = true;
  show();
  list_.select(0);
  dispatch_.runQueued();
  EXPECT_EQ(said, std::vector<std::string>{"Pinned"});
  EXPECT_EQ(accessible(id).text(QAccessible::Description), "Pinned");
  items_.clear();
  addText("another");
  show();
  list_.select(0);
  dispatch_.runQueued();
  ASSERT_EQ(said.size(), 3U);
  EXPECT_TRUE(said[1].starts_with("another, "));
  EXPECT_EQ(said[2], "Not pinned");
}

}  // namespace
}  // namespace vantorel
