// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QInputMethodEvent>
#include <QTest>

#include "chrome/ElasticScrollView.h"
#include "chrome/VantorelPanel.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/PinButton.h"
#include "panel/SearchField.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PanelKeyboard : public HistoryPanelTest {
 protected:
  /// Entry in its plain form beside a styled one, so that the two ways to paste differ.
  Uuid addStyled(const std::string& text) {
    ClipItem item = textItem(text, dispatch_.now());
    item.rtfData = toBytes("{\\rtf1 " + text + "}");
    store_.tick();
    store_->insert(item);
    return item.id;
  }
  [[nodiscard]] bool pastedWithStyle() const { return pasteboard_.contents().rtf.has_value(); }
  /// What an input method does to whoever has the keyboard.
  void compose(const QString& underWay, const QString& composed) {
    QInputMethodEvent event(underWay, {});
    event.setCommitString(composed);
    QCoreApplication::sendEvent(panel().focusWidget(), &event);
  }
};

TEST_F(PanelKeyboard, ArrowsMoveTheSelectionAndStopAtTheEnds) {
  addTexts({"one", "two", "three"});
  open();
  press(Qt::Key_Up);
  EXPECT_THAT(selectedTitles(), ElementsAre("one"));
  press(Qt::Key_Down);
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  EXPECT_THAT(selectedTitles(), ElementsAre("three"));
  press(Qt::Key_Up);
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
}

TEST_F(PanelKeyboard, TheSelectionStaysInViewWithSomeRoom) {
  std::vector<std::string> names;
  for (int i = 0; i < 20; ++i) names.push_back("n" + std::to_string(i));
  addTexts(names);
  open();
  for (int i = 0; i < 12; ++i) press(Qt::Key_Down);
  const auto* row = rows()[12];
  EXPECT_EQ(row->geometry().bottom() + 1 + 4, scrollView().offset() + scrollView().height());
  for (int i = 0; i < 12; ++i) press(Qt::Key_Up);
  EXPECT_EQ(scrollView().offset(), 0);
}

TEST_F(PanelKeyboard, ReturnPastesTheSelectionAndHides) {
  addStyled("one");
  open();
  press(Qt::Key_Return);
  EXPECT_FALSE(controller_->isVisible());
  dispatch_.runQueued();
  EXPECT_EQ(pasted(), "one");
  EXPECT_TRUE(pastedWithStyle());
  EXPECT_THAT(workspace_.activations(), ElementsAre(42));
}

TEST_F(PanelKeyboard, KeypadEnterPastesToo) {
  addTexts({"one", "two"});
  open();
  press(Qt::Key_Down);
  press(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(pasted(), "two");
}

TEST_F(PanelKeyboard, OptionReturnPastesPlainText) {
  addStyled("one");
  open();
  press(Qt::Key_Return, Qt::AltModifier);
  EXPECT_EQ(pasted(), "one");
  EXPECT_FALSE(pastedWithStyle());
}

TEST_F(PanelKeyboard, ReturnOnAnEmptyListDoesNothing) {
  open();
  press(Qt::Key_Return);
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_THAT(pasteboard_.writes(), IsEmpty());
}

TEST_F(PanelKeyboard, ReturnInTheSearchFieldPastesTheFirstMatch) {
  addTexts({"apple", "banana"});
  open();
  type("ban");
  press(Qt::Key_Return);
  EXPECT_EQ(pasted(), "banana");
  EXPECT_FALSE(controller_->isVisible());
}

TEST_F(PanelKeyboard, CommandDigitsPasteByNumber) {
  addTexts({"one", "two", "three"});
  open();
  press(Qt::Key_3, Qt::ControlModifier);
  EXPECT_EQ(pasted(), "three");
  EXPECT_FALSE(controller_->isVisible());
}

TEST_F(PanelKeyboard, SuperWorksAsCommandToo) {
  addTexts({"one", "two"});
  open();
  press(Qt::Key_2, Qt::MetaModifier);
  EXPECT_EQ(pasted(), "two");
}

TEST_F(PanelKeyboard, CommandOptionDigitsPastePlainText) {
  addStyled("three");
  addStyled("two");
  addStyled("one");
  open();
  press(Qt::Key_3, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(pasted(), "three");
  EXPECT_FALSE(pastedWithStyle());
}

TEST_F(PanelKeyboard, ADigitBeyondTheListDoesNothing) {
  addTexts({"one", "two"});
  open();
  press(Qt::Key_3, Qt::ControlModifier);
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_FALSE(searchIsShown());
  EXPECT_THAT(pasteboard_.writes(), IsEmpty());
}

TEST_F(PanelKeyboard, TheFirstLetterTypedOpensTheSearchAndLandsInIt) {
  addTexts({"apple", "banana"});
  open();
  type("b");
  EXPECT_TRUE(searchIsShown());
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_EQ(searchField().text(), QStringLiteral("b"));
  EXPECT_THAT(titles(), ElementsAre("banana"));
}

TEST_F(PanelKeyboard, TheFirstLetterOfADeadKeyLandsInTheSearchWhole) {
  addTexts({"été", "banana"});
  open();
  QInputMethodQueryEvent query(Qt::ImEnabled);
  QCoreApplication::sendEvent(panel().focusWidget(), &query);
  EXPECT_TRUE(query.value(Qt::ImEnabled).toBool()) << "else nothing is composed at all";
  compose(QString(), QStringLiteral("é"));
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_EQ(searchField().text(), QStringLiteral("é"));
  EXPECT_THAT(titles(), ElementsAre("été"));
}

TEST_F(PanelKeyboard, WhatIsComposedOnAFilterButtonGoesOnWithTheSearch) {
  addTexts({"caf\u00e9", "cafe"});
  open();
  type("caf");
  press(Qt::Key_Tab);
  press(Qt::Key_Tab);
  auto* button = panel().focusWidget();
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->accessibleName(), QStringLiteral("Filter by type"));
  QInputMethodQueryEvent query(Qt::ImEnabled);
  QCoreApplication::sendEvent(button, &query);
  EXPECT_TRUE(query.value(Qt::ImEnabled).toBool()) << "else nothing is composed at all";
  compose(QString(), QStringLiteral("\u00e9"));
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_EQ(searchField().text(), QStringLiteral("caf\u00e9"));
}

TEST_F(PanelKeyboard, AFilterButtonHasItsKeysActOnTheSelectedRow) {
  addTexts({"one", "two", "three"});
  open();
  press(Qt::Key_Down);
  press(Qt::Key_F, Qt::ControlModifier);
  press(Qt::Key_Tab);
  press(Qt::Key_Tab);
  ASSERT_EQ(panel().focusWidget()->accessibleName(), QStringLiteral("Filter by type"));
  press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_TRUE(store_->items()[0].pinned());
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
  press(Qt::Key_Delete);
  EXPECT_EQ(store_->items().size(), 2U);
  press(Qt::Key_Backspace);
  EXPECT_EQ(store_->items().size(), 1U);
}

TEST_F(PanelKeyboard, WhatBeginsToBeComposedOpensTheSearch) {
  addTexts({"one"});
  open();
  compose(QStringLiteral("k"), QString());
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_THAT(titles(), ElementsAre("one"));
}

TEST_F(PanelKeyboard, AnInputMethodThatHasNothingOpensNothing) {
  addTexts({"one"});
  open();
  compose(QString(), QString());
  EXPECT_FALSE(searchIsShown());
}

TEST_F(PanelKeyboard, DeleteEditsTextWhileThereIsSome) {
  addTexts({"apple", "banana"});
  open();
  type("ba");
  press(Qt::Key_Backspace);
  EXPECT_EQ(searchField().text(), QStringLiteral("b"));
  EXPECT_EQ(store_->items().size(), 2U);
}

TEST_F(PanelKeyboard, DeleteInAnEmptyFieldTakesNoEntry) {
  addTexts({"apple", "banana"});
  open();
  type("b");
  press(Qt::Key_Backspace);
  press(Qt::Key_Backspace);
  EXPECT_EQ(store_->items().size(), 2U);
}

TEST_F(PanelKeyboard, DeleteInTheListRemovesTheSelection) {
  addTexts({"one", "two", "three"});
  open();
  press(Qt::Key_Down);
  press(Qt::Key_Backspace);
  EXPECT_THAT(titles(), ElementsAre("one", "three"));
  EXPECT_THAT(selectedTitles(), ElementsAre("one"));
  press(Qt::Key_Delete);
  EXPECT_THAT(titles(), ElementsAre("three"));
  EXPECT_THAT(selectedTitles(), ElementsAre("three"));
}

TEST_F(PanelKeyboard, DeletingTheLastEntrySelectsTheOneAboveIt) {
  addTexts({"one", "two", "three"});
  open();
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Delete);
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
}

TEST_F(PanelKeyboard, DeletingUnderThePointerSelectsTheOneAboveToo) {
  addTexts({"one", "two", "three"});
  open();
  screens_.setMouseLocation({960, 555});
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Delete);
  EXPECT_THAT(titles(), ElementsAre("one", "two"));
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
}

TEST_F(PanelKeyboard, DeletingTheOnlyEntryLeavesAnEmptyList) {
  addTexts({"one"});
  open();
  press(Qt::Key_Delete);
  EXPECT_EQ(sentence(), "No clips yet");
  press(Qt::Key_Delete);
  store_.addText("new");
  EXPECT_THAT(selectedTitles(), ElementsAre("new"));
}

TEST_F(PanelKeyboard, DeletingFarDownKeepsTheSelectionInView) {
  std::vector<std::string> names;
  for (int i = 0; i < 20; ++i) names.push_back("n" + std::to_string(i));
  addTexts(names);
  open();
  for (int i = 0; i < 19; ++i) press(Qt::Key_Down);
  press(Qt::Key_Delete);
  const auto* row = rows()[18];
  EXPECT_TRUE(row->isSelected());
  EXPECT_LE(row->geometry().bottom(), scrollView().offset() + scrollView().height());
}

TEST_F(PanelKeyboard, EscapeClearsTheTextThenHides) {
  addTexts({"apple", "banana"});
  open();
  type("b");
  press(Qt::Key_Escape);
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_EQ(searchField().text(), QString());
  EXPECT_THAT(titles(), ElementsAre("apple", "banana"));
  EXPECT_THAT(selectedTitles(), ElementsAre("banana"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(controller_->isVisible());
}

TEST_F(PanelKeyboard, CommandFFocusesTheSearch) {
  addTexts({"apple"});
  open();
  press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(searchIsShown());
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_EQ(searchField().text(), QString());
}

TEST_F(PanelKeyboard, TabLeavesTheSearchForTheList) {
  addTexts({"apple", "apricot"});
  open();
  type("ap");
  press(Qt::Key_Tab);
  EXPECT_NE(panel().focusWidget(), &searchField());
  press(Qt::Key_Down);
  EXPECT_THAT(selectedTitles(), ElementsAre("apricot"));
}

TEST_F(PanelKeyboard, CommandPPinsAndUnpins) {
  addTexts({"one", "two", "three"});
  open();
  press(Qt::Key_Down);
  press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_THAT(titles(), ElementsAre("two", "one", "three"));
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
  EXPECT_TRUE(store_->items()[0].pinned());
  press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_FALSE(store_->items()[0].pinned());
}

TEST_F(PanelKeyboard, ASixthPinIsRefusedWithAToast) {
  addTexts({"1", "2", "3", "4", "5", "six"}, 5);
  open();
  for (int i = 0; i < 5; ++i) press(Qt::Key_Down);
  EXPECT_THAT(selectedTitles(), ElementsAre("six"));
  press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_THAT(toasts(), ElementsAre("Up to 5 pins. Unpin an item first."));
  EXPECT_THAT(titles(), ElementsAre("1", "2", "3", "4", "5", "six"));
  EXPECT_FALSE(store_->items()[5].pinned());
}

TEST_F(PanelKeyboard, OptionArrowsMoveAPin) {
  addTexts({"A", "B", "C", "d"}, 3);
  open();
  press(Qt::Key_Down, Qt::AltModifier);
  EXPECT_THAT(titles(), ElementsAre("B", "A", "C", "d"));
  EXPECT_THAT(selectedTitles(), ElementsAre("A"));
  press(Qt::Key_Down, Qt::AltModifier);
  press(Qt::Key_Down, Qt::AltModifier);
  EXPECT_THAT(titles(), ElementsAre("B", "C", "A", "d"));
  press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_THAT(titles(), ElementsAre("B", "A", "C", "d"));
}

TEST_F(PanelKeyboard, OptionUpOnTheFirstPinOrAnUnpinnedEntryChangesNothing) {
  addTexts({"A", "B", "c"}, 2);
  open();
  press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_THAT(titles(), ElementsAre("A", "B", "c"));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_THAT(titles(), ElementsAre("A", "B", "c"));
  EXPECT_THAT(selectedTitles(), ElementsAre("c"));
}

TEST_F(PanelKeyboard, PinsMoveAmongAllPinsWhileOnlySomeAreShown) {
  addTexts({"apple", "banana", "apricot"}, 3);
  open();
  type("ap");
  press(Qt::Key_Tab);
  EXPECT_THAT(titles(), ElementsAre("apple", "apricot"));
  press(Qt::Key_Down, Qt::AltModifier);
  EXPECT_THAT(store_.texts(), ElementsAre("banana", "apple", "apricot"));
}

TEST_F(PanelKeyboard, HiddenPanelsHearNoKeys) {
  addTexts({"one"});
  open();
  controller_->hide();
  press(Qt::Key_Delete);
  EXPECT_EQ(store_->items().size(), 1U);
}

class PanelMouse : public HistoryPanelTest {
 protected:
  static PinButton& pinOf(const ClipRowView& row) { return *row.findChild<PinButton*>(); }
};

TEST_F(PanelMouse, AClickPastesTheRow) {
  addTexts({"one", "two"});
  open();
  click(1);
  EXPECT_FALSE(controller_->isVisible());
  EXPECT_EQ(pasted(), "two");
}

TEST_F(PanelMouse, APressMarksTheRowAndReleasingElsewhereDoesNothing) {
  addTexts({"one", "two"});
  open();
  auto* row = rows()[1];
  QTest::mousePress(row, Qt::LeftButton, {}, QPoint(100, 20));
  EXPECT_TRUE(row->isSelected());
  QTest::mouseRelease(row, Qt::LeftButton, {}, QPoint(100, -200));
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_THAT(selectedTitles(), ElementsAre("one"));
  EXPECT_THAT(pasteboard_.writes(), IsEmpty());
}

TEST_F(PanelMouse, OtherButtonsDoNotPaste) {
  addTexts({"one"});
  open();
  QTest::mouseClick(rows()[0], Qt::RightButton, {}, QPoint(100, 20));
  QTest::mouseClick(rows()[0], Qt::MiddleButton, {}, QPoint(100, 20));
  EXPECT_TRUE(controller_->isVisible());
}

TEST_F(PanelMouse, AnEntryThatCameUnderAHeldButtonIsNotPasted) {
  const auto ids = addTexts({"one", "two"});
  open();
  auto* row = rows()[0];
  QTest::mousePress(row, Qt::LeftButton, {}, QPoint(100, 20));
  store_->remove(ids[0]);
  QTest::mouseRelease(row, Qt::LeftButton, {}, QPoint(100, 20));
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_THAT(pasteboard_.writes(), IsEmpty());
}

TEST_F(PanelMouse, ThePinButtonPins) {
  addTexts({"one", "two"});
  open();
  auto& pin = pinOf(*rows()[1]);
  EXPECT_EQ(pin.accessibleName(), QStringLiteral("Pin"));
  EXPECT_EQ(pin.accessibilityValue(), QStringLiteral("Not pinned"));
  EXPECT_EQ(pin.toolTip(), QStringLiteral("Pin (Ctrl+P)"));
  QTest::mouseClick(&pin, Qt::LeftButton);
  EXPECT_THAT(titles(), ElementsAre("two", "one"));
  EXPECT_TRUE(controller_->isVisible());
  auto& unpin = pinOf(*rows()[0]);
  EXPECT_EQ(unpin.accessibleName(), QStringLiteral("Unpin"));
  EXPECT_EQ(unpin.accessibilityValue(), QStringLiteral("Pinned"));
  EXPECT_EQ(unpin.toolTip(), QStringLiteral("Unpin (Ctrl+P)"));
}

TEST_F(PanelMouse, WithFivePinsTheOthersCannotBePinned) {
  addTexts({"1", "2", "3", "4", "5", "six"}, 5);
  open();
  EXPECT_TRUE(pinOf(*rows()[4]).isEnabled());
  auto& pin = pinOf(*rows()[5]);
  EXPECT_FALSE(pin.isEnabled());
  EXPECT_EQ(pin.toolTip(), QStringLiteral("Up to 5 pins. Unpin an item first."));
  QTest::mouseClick(&pin, Qt::LeftButton);
  EXPECT_FALSE(store_->items()[5].pinned());
  EXPECT_EQ(pin.geometry(), QRect(388 - 4 - 28, 10, 28, 28));
}

TEST_F(PanelMouse, TheClearButtonEmptiesTheSearch) {
  addTexts({"apple", "banana"});
  open();
  type("b");
  auto* button = searchField().findChild<QAbstractButton*>();
  ASSERT_TRUE(button->isVisible());
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_THAT(titles(), ElementsAre("apple", "banana"));
  EXPECT_FALSE(button->isVisible());
  EXPECT_EQ(panel().focusWidget(), &searchField());
}

}  // namespace
}  // namespace vantorel
