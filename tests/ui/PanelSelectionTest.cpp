#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>

#include "chrome/ElasticScrollView.h"
#include "chrome/VantorelMenu.h"
#include "chrome/VantorelPanel.h"
#include "panel/ClipRowView.h"
#include "panel/FilterButton.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;

/// Where the selection is after what a person does, in a list longer than the panel.
class PanelSelection : public HistoryPanelTest {
 protected:
  void SetUp() override {
    addNumbered(30);
    open();
  }
  [[nodiscard]] bool selectionIsInSight() const {
    for (const auto* row : rows()) {
      if (!row->isSelected()) continue;
      return row->y() >= scrollView().offset() &&
             row->geometry().bottom() < scrollView().offset() + scrollView().height();
    }
    return false;
  }
  void chooseFromTypes(const QString& title) {
    panel().findChild<FilterButton*>()->click();
    chooseFromMenu(title);
  }
  static void chooseFromMenu(const QString& title) {
    auto* menu = qobject_cast<VantorelMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    const auto actions = menu->actions();
    for (auto* action : actions) {
      if (action->text() != title) continue;
      QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    }
  }
};

TEST_F(PanelSelection, IsInSightWhenASearchIsCleared) {
  type("25");
  ASSERT_THAT(titles(), ElementsAre("entry 25"));
  press(Qt::Key_Escape);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 25"));
  EXPECT_TRUE(selectionIsInSight());
}

TEST_F(PanelSelection, IsInSightWhenFiltersAreChosenAndCleared) {
  for (int i = 0; i < 20; ++i) press(Qt::Key_Down);
  press(Qt::Key_F, Qt::ControlModifier);
  chooseFromTypes(QStringLiteral("Text"));
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 21"));
  EXPECT_TRUE(selectionIsInSight());
  press(Qt::Key_Escape);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 21"));
  EXPECT_TRUE(selectionIsInSight());
}

TEST_F(PanelSelection, IsInSightWhenAnotherEntryIsDeletedByItsMenu) {
  for (int i = 0; i < 20; ++i) press(Qt::Key_Down);
  auto* row = rows()[18];
  row->onMenu(row->mapToGlobal(QPoint(100, 20)));
  chooseFromMenu(QStringLiteral("Delete"));
  EXPECT_EQ(titles().size(), 29U);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 21"));
  EXPECT_TRUE(selectionIsInSight());
}

}  // namespace
}  // namespace vantorel
