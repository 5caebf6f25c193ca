// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>

#include "chrome/SheetWindow.h"
#include "chrome/VantorelPanel.h"
#include "panel/NameField.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PanelNaming : public HistoryPanelTest {
 protected:
  [[nodiscard]] static SheetWindow* sheet() {
    const auto windows = QApplication::topLevelWidgets();
    for (auto* window : windows) {
      auto* found = qobject_cast<SheetWindow*>(window);
      if (found != nullptr && found->isVisible()) return found;
    }
    return nullptr;
  }
  [[nodiscard]] static NameField& field() { return *sheet()->findChild<NameField*>(); }
  void openSheet() {
    open();
    press(Qt::Key_R, Qt::ControlModifier);
    ASSERT_NE(sheet(), nullptr);
  }
  [[nodiscard]] std::optional<std::string> name() { return store_->items().front().customName; }
};

TEST_F(PanelNaming, AsksForTheNameOfAPin) {
  addTexts({"a", "b"}, 1);
  openSheet();
  EXPECT_EQ(sheet()->windowTitle(), "Name Pinned Clip");
  EXPECT_EQ(field().placeholderText(), "Name");
  EXPECT_EQ(field().text(), "");
  EXPECT_EQ(field().size(), QSize(280, 24));
  EXPECT_EQ(sheet()->focusWidget(), &field());
}

TEST_F(PanelNaming, SavesTheNameAndKeepsTheEntrySelected) {
  const auto ids = addTexts({"a", "b"}, 2);
  openSheet();
  QTest::keyClicks(&field(), "greeting");
  QTest::keyClick(&field(), Qt::Key_Return);
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_EQ(name(), "greeting");
  EXPECT_THAT(selectedTitles(), ElementsAre("greeting"));
}

TEST_F(PanelNaming, StartsFromTheNameItHas) {
  const auto ids = addTexts({"a"}, 1);
  store_->renamePinned(ids[0], "old");
  openSheet();
  EXPECT_EQ(field().text(), "old");
  EXPECT_EQ(field().selectedText(), "old");
}

TEST_F(PanelNaming, ANameOfBlanksTakesTheNameAway) {
  const auto ids = addTexts({"a"}, 1);
  store_->renamePinned(ids[0], "old");
  openSheet();
  QTest::keyClicks(&field(), "   ");
  QTest::keyClick(&field(), Qt::Key_Return);
  EXPECT_EQ(name(), std::nullopt);
}

TEST_F(PanelNaming, CancellingChangesNothing) {
  addTexts({"a"}, 1);
  openSheet();
  QTest::keyClicks(&field(), "x");
  QTest::keyClick(&field(), Qt::Key_Escape);
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_EQ(name(), std::nullopt);
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelNaming, OnlyPinsHaveNames) {
  addTexts({"a"});
  open();
  press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(sheet(), nullptr);
}

TEST_F(PanelNaming, TheListStaysAsItIsUnderTheSheet) {
  addTexts({"a"}, 1);
  openSheet();
  addTexts({"new"});
  EXPECT_THAT(titles(), ElementsAre("a"));
  QTest::keyClick(&field(), Qt::Key_Return);
  EXPECT_THAT(titles(), ElementsAre("a", "new"));
}

TEST_F(PanelNaming, KeysOfThePanelSleepUnderTheSheet) {
  addTexts({"a"}, 1);
  openSheet();
  press(Qt::Key_Delete);
  press(Qt::Key_Escape);
  EXPECT_TRUE(store_.has(store_->items().front().id));
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelNaming, AClickOutsideHidesNothingUnderTheSheet) {
  addTexts({"a"}, 1);
  openSheet();
  monitors_.pressMouse();
  dispatch_.runQueued();
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelNaming, AClickUnderTheSheetHidesNothingWhenTheSheetEndsMeanwhile) {
  addTexts({"a"}, 1);
  openSheet();
  monitors_.pressMouse();
  QTest::keyClick(&field(), Qt::Key_Return);
  ASSERT_EQ(sheet(), nullptr);
  dispatch_.runQueued();
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelNaming, HidingThePanelCancels) {
  addTexts({"a"}, 1);
  openSheet();
  QTest::keyClicks(&field(), "x");
  controller_->toggle(target_);
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(name(), std::nullopt);
}

TEST_F(PanelNaming, APinThatWentMeanwhileIsLeftAlone) {
  const auto ids = addTexts({"a"}, 1);
  openSheet();
  store_->remove(ids[0]);
  QTest::keyClick(&field(), Qt::Key_Return);
  EXPECT_EQ(sentence(), "No clips yet");
}

TEST_F(PanelNaming, AHebrewNameIsWrittenFromTheRight) {
  addTexts({"a"}, 1);
  openSheet();
  field().setText("שלום");
  EXPECT_EQ(field().layoutDirection(), Qt::RightToLeft);
  field().setText("hello");
  EXPECT_EQ(field().layoutDirection(), Qt::LeftToRight);
}

}  // namespace
}  // namespace vantorel
