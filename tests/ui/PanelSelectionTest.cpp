// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>

#include "chrome/ElasticScrollView.h"
#include "chrome/VantorelMenu.h"
#include "chrome/VantorelPanel.h"
#include "panel/ClipRowView.h"
#include "panel/FilterButton.h"
#include "panel/SearchField.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;

/// Where the selection and the keyboard are after what a person does, in a list longer than the
/// panel.
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
  [[nodiscard]] static QImage pictureOf(QWidget& widget) {
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
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

TEST_F(PanelSelection, MovesFromTheFieldWithoutLeavingIt) {
  type("2");  // 2, 12, 20 to 29
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Up);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 12"));
  EXPECT_EQ(panel().focusWidget(), &searchField());
  press(Qt::Key_PageDown);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 27"));
  EXPECT_TRUE(selectionIsInSight());
  press(Qt::Key_PageUp);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 12"));
  type("0");
  EXPECT_THAT(titles(), ElementsAre("entry 20"));
}

TEST_F(PanelSelection, OfTheFieldIsPastedByReturnAndByNumber) {
  type("2");
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(pasted(), "entry 12");
  open();
  type("2");
  press(Qt::Key_3, Qt::ControlModifier);
  EXPECT_EQ(pasted(), "entry 20");
  open();
  type("3");
  press(Qt::Key_2, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(pasted(), "entry 13");
}

TEST_F(PanelSelection, HomeAndEndAreTheFieldsWhileItIsTypedIn) {
  type("25");
  press(Qt::Key_Home);
  EXPECT_EQ(searchField().cursorPosition(), 0);
  press(Qt::Key_End);
  EXPECT_EQ(searchField().cursorPosition(), 2);
}

TEST_F(PanelSelection, MovesByPagesAndToTheEnds) {
  press(Qt::Key_PageDown);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 9"));
  press(Qt::Key_PageDown);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 17"));
  EXPECT_TRUE(selectionIsInSight());
  press(Qt::Key_End);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 30"));
  EXPECT_TRUE(selectionIsInSight());
  press(Qt::Key_PageUp);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 22"));
  press(Qt::Key_Home);
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 1"));
  EXPECT_TRUE(selectionIsInSight());
}

TEST_F(PanelSelection, LettersGoOnSearchingAfterTab) {
  type("2");
  press(Qt::Key_Tab);
  ASSERT_NE(panel().focusWidget(), &searchField());
  type("9");
  EXPECT_EQ(searchField().text(), QStringLiteral("29"));
  EXPECT_EQ(panel().focusWidget(), &searchField());
  press(Qt::Key_Tab);
  press(Qt::Key_Backspace);
  EXPECT_EQ(searchField().text(), QStringLiteral("2"));
  EXPECT_EQ(store_->items().size(), 30U);
}

TEST_F(PanelSelection, ShowsWhereTheKeyboardIsAfterTab) {
  const auto edge = [this] { return pictureOf(*rows()[0]).pixel(200, 1); };
  const auto plain = edge();
  type("entry");
  EXPECT_EQ(edge(), plain);
  press(Qt::Key_Tab);
  EXPECT_NE(edge(), plain) << "on the selected row";
  const auto ringed = edge();
  press(Qt::Key_Down);
  EXPECT_NE(edge(), ringed);
  EXPECT_EQ(pictureOf(*rows()[1]).pixel(200, 1), ringed) << "along with the selection";
  auto& button = *panel().findChild<FilterButton*>();
  const auto unfocused = pictureOf(button);
  press(Qt::Key_Tab);
  EXPECT_EQ(panel().focusWidget(), &button);
  EXPECT_NE(pictureOf(button), unfocused);
  EXPECT_NE(pictureOf(*rows()[1]).pixel(200, 1), ringed) << "and nowhere else";
  controller_->hide();
  open();
  EXPECT_EQ(edge(), plain) << "nor in the next showing";
}

TEST_F(PanelSelection, FiltersAreReachedByTabAndOpenedByKeys) {
  press(Qt::Key_F, Qt::ControlModifier);
  press(Qt::Key_Tab);
  press(Qt::Key_Tab);
  press(Qt::Key_Space);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
  press(Qt::Key_Tab);
  EXPECT_EQ(panel().focusWidget()->accessibleName(), QStringLiteral("Filter by app"));
  EXPECT_EQ(scrollView().offset(), 0) << "Tab leads away and scrolls nothing";
  press(Qt::Key_Down);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
  press(Qt::Key_Tab);
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 1"));
}

TEST_F(PanelSelection, ItsMenuIsOpenedByKeys) {
  press(Qt::Key_Down);
  scrollView().scrollTo(400);
  press(Qt::Key_Menu);
  EXPECT_TRUE(selectionIsInSight());
  chooseFromMenu(QStringLiteral("Pin"));
  EXPECT_THAT(selectedTitles(), ElementsAre("entry 2"));
  EXPECT_TRUE(store_->items().front().pinned());
  type("3");
  press(Qt::Key_F10, Qt::ShiftModifier);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr) << "from the field, too";
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
}

TEST_F(PanelSelection, AMarkThatIsNotSeenOpensNoSearch) {
  QTest::sendKeyEvent(QTest::Click, panel().windowHandle(), Qt::Key_unknown,
                      QStringLiteral("\u200F"), Qt::NoModifier);
  EXPECT_FALSE(searchIsShown());
  type("a");
  QTest::sendKeyEvent(QTest::Click, panel().windowHandle(), Qt::Key_unknown,
                      QStringLiteral("\u200C"), Qt::NoModifier);
  EXPECT_EQ(searchField().text(), QStringLiteral("a\u200C")) << "words of some scripts need it";
}

}  // namespace
}  // namespace vantorel
