// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>

#include "chrome/ElasticScrollView.h"
#include "chrome/SheetWindow.h"
#include "chrome/SpokenNotice.h"
#include "chrome/VantorelPanel.h"
#include "fakes/FakeImage.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/SearchField.h"
#include "ui/HistoryPanelTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PanelController : public HistoryPanelTest {
 protected:
  /// Texts named "1" to "count", "1" on top.
  std::vector<Uuid> addNumbered(int count, std::size_t pins = 0) {
    std::vector<std::string> names;
    for (int i = 1; i <= count; ++i) names.push_back(std::to_string(i));
    return addTexts(names, pins);
  }
  [[nodiscard]] int documentHeight() const { return scrollView().widget()->height(); }
  [[nodiscard]] int listHeight() const { return scrollView().height(); }
};

TEST_F(PanelController, IsHiddenAtFirstButHasItsWindow) {
  EXPECT_FALSE(controller_->isVisible());
  EXPECT_NE(panel().windowHandle(), nullptr);
  EXPECT_EQ(panel().size(), QSize(408, 360));
}

TEST_F(PanelController, TogglesByTheShortcut) {
  controller_->toggle(target_);
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_TRUE(panel().isVisible());
  controller_->toggle(target_);
  EXPECT_FALSE(controller_->isVisible());
}

TEST_F(PanelController, JoinsEveryVirtualDesktopEachTimeItIsShown) {
  open();
  EXPECT_THAT(spaces_.joined(), ElementsAre(panel().winId()));
  controller_->toggle(target_);
  EXPECT_THAT(spaces_.joined(), ElementsAre(panel().winId()));
  open();
  EXPECT_THAT(spaces_.joined(), ElementsAre(panel().winId(), panel().winId()));
}

TEST_F(PanelController, TakesTheKeyboardWhenShown) {
  open();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&panel()));
  EXPECT_EQ(panel().focusWidget(), panel().findChild<ClipListView*>());
}

TEST_F(PanelController, ASecondPressLeavesTheTargetAlone) {
  const auto other = workspace_.launch(43, "org.example.Other", "Other");
  addTexts({"a"});
  controller_->toggle(target_);
  controller_->toggle(other);
  EXPECT_EQ(paste_.resolveTargetApplication(), target_);
}

TEST_F(PanelController, AnEmptyHistorySaysSo) {
  open();
  EXPECT_EQ(sentence(), "No clips yet");
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(listHeight(), 74);
  EXPECT_EQ(panel().height(), 94);
}

TEST_F(PanelController, ASearchWithoutResultSaysSo) {
  addTexts({"a"});
  open();
  type("zz");
  EXPECT_EQ(sentence(), "No matching clips");
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(listHeight(), 74);
  EXPECT_EQ(panel().height(), 133);
}

TEST_F(PanelController, ASearchCannotBeBroughtBackAfterHiding) {
  addTexts({"a"});
  open();
  type("secret");
  controller_->hide();
  controller_->openSearch(target_);
  searchField().undo();
  EXPECT_EQ(searchField().text(), "");
}

TEST_F(PanelController, ASearchInAnEmptyHistoryFindsNoMatch) {
  open();
  type("z");
  EXPECT_EQ(sentence(), "No matching clips");
  press(Qt::Key_Backspace);
  EXPECT_EQ(sentence(), "No clips yet");
}

TEST_F(PanelController, ListsEntriesInTheStoresOrderWithTheFirstSelected) {
  addTexts({"one", "two", "three"});
  open();
  EXPECT_THAT(titles(), ElementsAre("one", "two", "three"));
  EXPECT_THAT(selectedTitles(), ElementsAre("one"));
  EXPECT_EQ(sentence(), "");
}

TEST_F(PanelController, PinsStandAboveALine) {
  addNumbered(5, 3);
  open();
  EXPECT_EQ(documentHeight(), 274);
  const auto shown = rows();
  EXPECT_EQ(shown[2]->geometry(), QRect(0, 98, 388, 48));
  EXPECT_EQ(shown[3]->geometry(), QRect(0, 159, 388, 48));
  const auto picture = scrollView().widget()->grab().toImage();
  const auto at = [&](int y) { return picture.pixel(200, y); };
  EXPECT_NE(at(152), at(149));
  EXPECT_NE(at(152), at(156));
}

TEST_F(PanelController, OnlyPinsHaveNoLine) {
  addNumbered(3, 3);
  open();
  EXPECT_EQ(documentHeight(), 48 * 3 + 2 + 18);
  EXPECT_EQ(rows()[2]->y(), 98);
}

TEST_F(PanelController, NoPinsHaveNoLine) {
  addNumbered(3);
  open();
  EXPECT_EQ(documentHeight(), 48 * 3 + 2 + 18);
}

TEST_F(PanelController, TwentyEntriesShowNineRows) {
  addNumbered(20);
  open();
  EXPECT_EQ(listHeight(), 440);
  EXPECT_EQ(panel().height(), 460);
  press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(listHeight(), 409);
  EXPECT_EQ(panel().height(), 409 + 39 + 20);
}

TEST_F(PanelController, TwentyEntriesWithPinsShowTheLineToo) {
  addNumbered(20, 2);
  open();
  EXPECT_EQ(listHeight(), 448);
}

TEST_F(PanelController, StandsInTheMiddleOfTheScreenUnderThePointer) {
  screens_.setScreens({{{0, 0, 1920, 1080}, {0, 30, 1920, 1050}, 1},
                       {{1920, 0, 1280, 800}, {1920, 40, 1280, 760}, 1}});
  screens_.setMouseLocation({1925, 790});
  addNumbered(3);
  open();
  EXPECT_EQ(panel().geometry(), QRect(1920 + 640 - 204, 40 + 380 - 83, 408, 166));
}

TEST_F(PanelController, WithoutAScreenItStaysWhereItIs) {
  screens_.setScreens({});
  panel().move(77, 88);
  open();
  EXPECT_EQ(panel().x(), 77);
}

TEST_F(PanelController, KeepsItsCentreWhenItsHeightChanges) {
  addNumbered(20);
  open();
  const double centre = panel().y() + panel().height() / 2.0;
  for (int i = 0; i < 10; ++i) {
    type("zzz");
    press(Qt::Key_Escape);
  }
  EXPECT_NEAR(panel().y() + panel().height() / 2.0, centre, 1);
}

TEST_F(PanelController, KeepsTheCentreThatTheUserMovedItTo) {
  addNumbered(20);
  open();
  panel().move(10, 20);
  type("zzz");
  EXPECT_EQ(panel().height(), 133);
  EXPECT_EQ(panel().x(), 10);
  EXPECT_EQ(panel().y(), 20 + 230 - 67);
}

TEST_F(PanelController, OpensWithSearchAndSelectionReset) {
  addTexts({"apple", "banana", "cherry"});
  open();
  press(Qt::Key_Down);
  type("an");
  EXPECT_THAT(titles(), ElementsAre("banana"));
  controller_->hide();
  open();
  EXPECT_FALSE(searchIsShown());
  EXPECT_EQ(searchField().text(), QString());
  EXPECT_THAT(titles(), ElementsAre("apple", "banana", "cherry"));
  EXPECT_THAT(selectedTitles(), ElementsAre("apple"));
}

TEST_F(PanelController, OpensScrolledToTheTop) {
  addNumbered(20);
  open();
  for (int i = 0; i < 19; ++i) press(Qt::Key_Down);
  EXPECT_GT(scrollView().offset(), 0);
  controller_->hide();
  open();
  EXPECT_EQ(scrollView().offset(), 0);
}

TEST_F(PanelController, AChangeOfTheHistoryShowsAtOnce) {
  addTexts({"old"});
  open();
  store_.addText("new");
  EXPECT_THAT(titles(), ElementsAre("new", "old"));
  EXPECT_THAT(selectedTitles(), ElementsAre("old"));
}

TEST_F(PanelController, AChangeUnderThePointerWaits) {
  addTexts({"old"});
  open();
  screens_.setMouseLocation({960, 555});
  store_.addText("new");
  EXPECT_THAT(titles(), ElementsAre("old"));
}

TEST_F(PanelController, AChangeWhileHiddenShowsWhenOpened) {
  addTexts({"old"});
  open();
  controller_->hide();
  store_.addText("new");
  open();
  EXPECT_THAT(titles(), ElementsAre("new", "old"));
}

TEST_F(PanelController, AnEntryThatGoesLeavesTheSelectionNearby) {
  const auto ids = addTexts({"one", "two", "three"});
  open();
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  store_->remove(ids[2]);
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
  store_->remove(ids[0]);
  EXPECT_THAT(selectedTitles(), ElementsAre("two"));
  store_->remove(ids[1]);
  EXPECT_EQ(sentence(), "No clips yet");
}

TEST_F(PanelController, ARefreshRevealsTheSelection) {
  addNumbered(20);
  open();
  for (int i = 0; i < 15; ++i) press(Qt::Key_Down);
  store_.addText("new");
  const auto* row = rows()[16];
  EXPECT_TRUE(row->isSelected());
  EXPECT_GE(row->y(), scrollView().offset());
  EXPECT_LE(row->geometry().bottom(), scrollView().offset() + listHeight());
}

TEST_F(PanelController, TextRecognisedDuringASearchIsFoundEvenUnderThePointer) {
  store_.recognition().introduce(toBytes("picture"), {"Invoice 2024"});
  store_.tick();
  store_->captureImage(FakeImage({10, 10}, "picture"), {});
  open();
  type("invoice");
  EXPECT_THAT(titles(), IsEmpty());
  screens_.setMouseLocation({960, 540});
  dispatch_.runQueued();
  EXPECT_THAT(titles(), ElementsAre("Image"));
}

TEST_F(PanelController, RecognisedTextOnlyMattersWhileSearching) {
  addTexts({"old"});
  open();
  screens_.setMouseLocation({960, 555});
  store_.addText("new");
  controller_->refreshSearchIfVisible();
  EXPECT_THAT(titles(), ElementsAre("old"));
}

TEST_F(PanelController, RecognisedTextShowsNothingInAPanelThatIsHidden) {
  addTexts({"secret"});
  open();
  controller_->hide();
  searchField().setText("secret");
  controller_->refreshSearchIfVisible();
  const auto all = panel().findChildren<ClipRowView*>();
  for (const auto* row : all) EXPECT_EQ(row->content(), RowContent());
}

TEST_F(PanelController, RecognisedTextWaitsWhileSomethingStandsBesideTheList) {
  addTexts({"name"}, 1);
  open();
  type("n");
  press(Qt::Key_Tab);
  screens_.setMouseLocation({960, 540});
  store_.addText("new");
  press(Qt::Key_Space);
  controller_->refreshSearchIfVisible();
  EXPECT_THAT(titles(), ElementsAre("name")) << "a preview";
  press(Qt::Key_Space);
  press(Qt::Key_R, Qt::ControlModifier);
  controller_->refreshSearchIfVisible();
  EXPECT_THAT(titles(), ElementsAre("name")) << "a sheet";
  const auto windows = QApplication::topLevelWidgets();
  for (auto* window : windows) {
    if (qobject_cast<SheetWindow*>(window) != nullptr) QTest::keyClick(window, Qt::Key_Escape);
  }
  controller_->refreshSearchIfVisible();
  EXPECT_THAT(titles(), ElementsAre("name", "new")) << "but not the pointer";
}

TEST_F(PanelController, RecognisedTextDoesNotScrollToTheSelection) {
  addNumbered(20);
  open();
  type("1");
  press(Qt::Key_Tab);
  for (int i = 0; i < 10; ++i) press(Qt::Key_Down);
  ASSERT_GT(scrollView().offset(), 0);
  controller_->refreshSearchIfVisible();
  EXPECT_EQ(scrollView().offset(), 0);
}

TEST_F(PanelController, TypingSelectsTheFirstMatch) {
  addTexts({"apple", "banana", "mango"});
  open();
  press(Qt::Key_Down);
  type("a");
  type("n");
  EXPECT_THAT(titles(), ElementsAre("banana", "mango"));
  EXPECT_THAT(selectedTitles(), ElementsAre("banana"));
}

TEST_F(PanelController, AClickOutsideHidesItInALaterTurn) {
  open();
  screens_.setMouseLocation({10, 10});
  monitors_.pressMouse();
  EXPECT_TRUE(controller_->isVisible());
  dispatch_.runQueued();
  EXPECT_FALSE(controller_->isVisible());
}

TEST_F(PanelController, AClickInsideDoesNotHideIt) {
  open();
  screens_.setMouseLocation({960, 555});
  monitors_.pressMouse();
  dispatch_.runQueued();
  EXPECT_TRUE(controller_->isVisible());
}

TEST_F(PanelController, ClicksAreWatchedOnlyWhileItIsShown) {
  EXPECT_EQ(monitors_.monitorCount(), 0U);
  open();
  EXPECT_EQ(monitors_.monitorCount(), 1U);
  controller_->hide();
  EXPECT_EQ(monitors_.monitorCount(), 0U);
}

TEST_F(PanelController, OpensOnADesktopThatTellsNoClicks) {
  monitors_.setAvailable(false);
  open();
  EXPECT_TRUE(controller_->isVisible());
}

TEST_F(PanelController, QueuedWorkOutlivesItWithoutHarm) {
  addTexts({"a"});
  open();
  screens_.setMouseLocation({10, 10});
  monitors_.pressMouse();
  store_->onChange = nullptr;
  controller_.reset();
  dispatch_.runQueued();
}

TEST_F(PanelController, PreparesTheSearchInLaterTurns) {
  addNumbered(3);
  dispatch_.runQueued();
  open();
  int turns = 0;
  while (dispatch_.runOne()) ++turns;
  EXPECT_GE(turns, 3);
}

TEST_F(PanelController, StopsPreparingWhenHidden) {
  addNumbered(10);
  dispatch_.runQueued();
  open();
  dispatch_.runOne();
  controller_->hide();
  EXPECT_EQ(dispatch_.runQueued(), 1);
}

TEST_F(PanelController, AClosingWindowManagerHidesItProperly) {
  open();
  panel().close();
  EXPECT_FALSE(controller_->isVisible());
  EXPECT_EQ(monitors_.monitorCount(), 0U);
}

TEST_F(PanelController, HidingTwiceIsHidingOnce) {
  open();
  controller_->hide();
  controller_->hide();
  EXPECT_FALSE(controller_->isVisible());
  open();
  EXPECT_TRUE(controller_->isVisible());
}

TEST_F(PanelController, OpenSearchShowsAndFocusesTheField) {
  addNumbered(2);
  controller_->openSearch(target_);
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_TRUE(searchIsShown());
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_EQ(panel().height(), 97 + 39 + 20);
  EXPECT_EQ(paste_.resolveTargetApplication(), target_);
}

TEST_F(PanelController, OpenSearchOnAnOpenPanelKeepsItOpen) {
  addNumbered(2);
  open();
  controller_->openSearch(std::nullopt);
  EXPECT_TRUE(controller_->isVisible());
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_EQ(paste_.resolveTargetApplication(), target_);
}

TEST_F(PanelController, OpenSearchTakesTheKeyboardBackForWhoeverHasItNow) {
  addNumbered(2);
  open();
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  const auto terminal = workspace_.launch(43, "org.example.Terminal", "Terminal");
  controller_->openSearch(terminal);
  EXPECT_TRUE(QTest::qWaitForWindowActive(&panel()));
  EXPECT_EQ(panel().focusWidget(), &searchField());
  EXPECT_EQ(paste_.resolveTargetApplication(), terminal);
}

TEST_F(PanelController, KeepsNothingOfItsEntriesInRowsOnceItIsHidden) {
  addTexts({"secret", "b"});
  open();
  panel().findChild<SpokenNotice*>()->setAccessibleName("secret");  // as a reader has had it said
  controller_->hide();
  const auto all = panel().findChildren<QWidget*>();
  for (const auto* widget : all) EXPECT_FALSE(widget->accessibleName().contains("secret"));
  const auto rows = panel().findChildren<ClipRowView*>();
  for (const auto* row : rows) EXPECT_EQ(row->content(), RowContent());
  open();
  EXPECT_THAT(titles(), ElementsAre("secret", "b"));
}

TEST_F(PanelController, KeepsNothingThatWasSearchedForOnceItIsHidden) {
  addTexts({"secret", "b"});
  open();
  controller_->openSearch(std::nullopt);
  searchField().insert("secret");
  ASSERT_TRUE(searchField().isUndoAvailable());
  controller_->hide();
  EXPECT_TRUE(searchField().text().isEmpty());
  EXPECT_FALSE(searchField().isUndoAvailable());
  EXPECT_FALSE(searchField().isRedoAvailable());
}

TEST_F(PanelController, KeepsNothingOfRemovedEntriesInSpareRows) {
  const auto ids = addTexts({"secret", "b"});
  open();
  store_->remove(ids[0]);
  const auto all = panel().findChildren<ClipRowView*>();
  for (const auto* row : all) EXPECT_NE(row->content().title, "secret");
}

}  // namespace
}  // namespace vantorel
