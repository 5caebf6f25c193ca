// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include "chrome/VantorelMenu.h"
#include "chrome/VantorelPanel.h"
#include "fakes/FakeImage.h"
#include "panel/FilterButton.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PanelFilters : public HistoryPanelTest {
 protected:
  void addFrom(const std::string& text, const std::optional<std::string>& application,
               const std::optional<std::string>& identifier) {
    store_.tick();
    ClipItem item = textItem(text, dispatch_.now());
    item.sourceAppName = application;
    item.sourceBundleIdentifier = identifier;
    store_->insert(item);
  }
  void addImage() {
    store_.tick();
    store_->captureImage(FakeImage({10, 10}, "picture"), {});
  }
  /// Shows the panel with its search field.
  void openSearch() {
    controller_->openSearch(target_);
    QCoreApplication::processEvents();
  }
  [[nodiscard]] FilterButton& button(const QString& name) const {
    const auto all = panel().findChildren<FilterButton*>();
    for (auto* one : all) {
      if (one->accessibleName() == name) return *one;
    }
    throw std::logic_error("no such button");
  }
  [[nodiscard]] FilterButton& typeButton() const { return button("Filter by type"); }
  [[nodiscard]] FilterButton& sourceButton() const { return button("Filter by app"); }
  /// The menu that is open.
  [[nodiscard]] static VantorelMenu* menu() {
    return qobject_cast<VantorelMenu*>(QApplication::activePopupWidget());
  }
  [[nodiscard]] static std::vector<std::string> titles() {
    std::vector<std::string> result;
    const auto actions = menu()->actions();
    for (const auto* action : actions) {
      result.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    }
    return result;
  }
  static void choose(const QString& title) {
    const auto actions = menu()->actions();
    for (auto* action : actions) {
      if (action->text() != title) continue;
      QTest::mouseClick(menu(), Qt::LeftButton, {}, menu()->actionGeometry(action).center());
      return;
    }
    FAIL() << "no row " << title.toStdString();
  }
};

TEST_F(PanelFilters, ButtonsAreShownWithTheSearchField) {
  open();
  EXPECT_TRUE(typeButton().isHidden());
  EXPECT_TRUE(sourceButton().isHidden());
  openSearch();
  EXPECT_FALSE(typeButton().isHidden());
  EXPECT_EQ(typeButton().geometry(), QRect(338, 12, 28, 28));
  EXPECT_EQ(sourceButton().geometry(), QRect(370, 12, 28, 28));
}

TEST_F(PanelFilters, AChosenTypeNarrowsTheListAndShowsOnItsButton) {
  addTexts({"a"});
  addImage();
  openSearch();
  typeButton().click();
  EXPECT_THAT(titles(), ElementsAre("All types", "Text", "Images", "Files", "Videos"));
  EXPECT_TRUE(menu()->actions().first()->isChecked());
  choose("Images");
  EXPECT_THAT(HistoryPanelTest::titles(), ElementsAre("Image"));
  EXPECT_EQ(typeButton().symbol(), "line.3.horizontal.decrease.circle.fill");
  EXPECT_EQ(typeButton().toolTip(), "Type: Images");
  EXPECT_EQ(typeButton().accessibilityValue(), "Images");
  typeButton().click();
  EXPECT_TRUE(menu()->actions()[2]->isChecked());
  choose("All types");
  EXPECT_EQ(HistoryPanelTest::titles().size(), 2U);
  EXPECT_EQ(typeButton().symbol(), "line.3.horizontal.decrease");
}

TEST_F(PanelFilters, AChosenSourceNarrowsTheListAndShowsOnItsButton) {
  addFrom("one", "notes", "org.notes");
  addFrom("two", "Safari", "org.safari");
  addFrom("three", "Mail", "org.mail");
  addFrom("four", std::nullopt, std::nullopt);
  openSearch();
  sourceButton().click();
  EXPECT_THAT(titles(), ElementsAre("All apps", "-", "Mail", "notes", "Safari", "Unknown"));
  EXPECT_TRUE(menu()->actions().first()->isChecked());
  choose("notes");
  EXPECT_THAT(HistoryPanelTest::titles(), ElementsAre("one"));
  EXPECT_EQ(sourceButton().symbol(), "app.fill");
  EXPECT_EQ(sourceButton().toolTip(), "App: notes");
  sourceButton().click();
  choose("Unknown");
  EXPECT_THAT(HistoryPanelTest::titles(), ElementsAre("four"));
  sourceButton().click();
  choose("All apps");
  EXPECT_EQ(HistoryPanelTest::titles().size(), 4U);
}

TEST_F(PanelFilters, AnAmpersandInANameIsShownAsOne) {
  addFrom("one", "Cut & Paste", "org.cut");
  openSearch();
  sourceButton().click();
  EXPECT_THAT(titles(), testing::Contains("Cut && Paste"));
  menu()->close();
}

TEST_F(PanelFilters, AFilterWithoutMatchSaysSo) {
  addTexts({"a"});
  openSearch();
  typeButton().click();
  choose("Videos");
  EXPECT_EQ(sentence(), "No matching clips");
  EXPECT_EQ(panel().height(), 133);
}

TEST_F(PanelFilters, EscapeClearsTextThenFiltersThenThePanel) {
  addTexts({"apple", "banana"});
  openSearch();
  typeButton().click();
  choose("Text");
  type("ban");
  EXPECT_THAT(HistoryPanelTest::titles(), ElementsAre("banana"));
  press(Qt::Key_Escape);
  EXPECT_EQ(HistoryPanelTest::titles().size(), 2U);
  EXPECT_EQ(typeButton().accessibilityValue(), "Text");
  press(Qt::Key_Escape);
  EXPECT_EQ(typeButton().accessibilityValue(), "All types");
  EXPECT_TRUE(panel().isVisible());
  press(Qt::Key_Escape);
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelFilters, TheNextShowingHasNone) {
  addTexts({"a"});
  openSearch();
  typeButton().click();
  choose("Images");
  controller_->hide();
  open();
  EXPECT_THAT(HistoryPanelTest::titles(), ElementsAre("a"));
  EXPECT_EQ(typeButton().accessibilityValue(), "All types");
}

TEST_F(PanelFilters, AClickBesideTheMenuLeavesThePanelAndTheNextOneHidesIt) {
  addTexts({"a"});
  openSearch();
  ASSERT_EQ(monitors_.monitorCount(), 1U);
  typeButton().click();
  EXPECT_EQ(monitors_.monitorCount(), 0U);
  menu()->close();
  EXPECT_EQ(monitors_.monitorCount(), 1U);
  monitors_.pressMouse();
  dispatch_.runQueued();
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelFilters, HidingTakesAnOpenMenuAway) {
  openSearch();
  typeButton().click();
  controller_->hide();
  EXPECT_EQ(menu(), nullptr);
  EXPECT_EQ(monitors_.monitorCount(), 0U);
}

TEST_F(PanelFilters, AnOpenMenuIsFoundBelowItsButton) {
  addTexts({"a"});
  openSearch();
  auto& accessible = *QAccessible::queryAccessibleInterface(&typeButton());
  EXPECT_EQ(accessible.role(), QAccessible::ButtonMenu);
  EXPECT_TRUE(accessible.state().hasPopup);
  EXPECT_EQ(accessible.text(QAccessible::Name), "Filter by type");
  EXPECT_EQ(accessible.text(QAccessible::Description), "All types");
  EXPECT_EQ(accessible.childCount(), 0);
  accessible.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  ASSERT_EQ(accessible.childCount(), 1);
  auto* shown = accessible.child(0);
  EXPECT_EQ(shown->role(), QAccessible::PopupMenu);
  EXPECT_EQ(accessible.indexOfChild(shown), 0);
  ASSERT_EQ(shown->childCount(), 5);
  EXPECT_EQ(shown->child(2)->text(QAccessible::Name), "Images");
  menu()->close();
  EXPECT_EQ(accessible.childCount(), 0);
}

TEST_F(PanelFilters, ASourceThatIsGoneIsUnknownAndEmpty) {
  addFrom("one", "notes", "org.notes");
  addFrom("two", "Mail", "org.mail");
  openSearch();
  sourceButton().click();
  choose("notes");
  store_->remove(store_->items()[1].id);
  controller_->refreshIfVisible();
  EXPECT_EQ(sentence(), "No matching clips");
  EXPECT_EQ(sourceButton().accessibilityValue(), "Unknown");
}

}  // namespace
}  // namespace vantorel
