// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QMenu>
#include <QTest>

#include "panel/ClipRowView.h"
#include "panel/PinButton.h"
#include "ui/ClipListTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;

constexpr double fadeTime = 0.15;

class RowMenuTest : public ClipListTest {
 protected:
  void openMenu(Uuid id) { press(id, {100, 20}, Qt::RightButton); }
  static void choose(const char* title) {
    for (auto* action : menu()->actions()) {
      if (action->text() != QString::fromUtf8(title)) continue;
      menu()->setActiveAction(action);
      QTest::keyClick(menu(), Qt::Key_Return);
      return;
    }
    FAIL() << "No " << title;
  }
};

TEST_F(RowMenuTest, OffersWhatCanBeDoneWithTheRow) {
  const auto text = addText("one");
  const auto pin = addPin("pin");
  show();
  openMenu(text);
  EXPECT_THAT(menuTitles(), ElementsAre("Paste as Plain Text", "Pin", "-", "Delete"));
  menu()->close();
  openMenu(pin);
  EXPECT_THAT(menuTitles(), ElementsAre("Paste as Plain Text", "Unpin", "Rename…", "Move Up",
                                        "Move Down", "-", "Delete"));
  menu()->close();
}

TEST_F(RowMenuTest, EveryCommandNamesItsEntry) {
  const auto pin = addPin("pin");
  show();
  for (const char* title :
       {"Paste as Plain Text", "Unpin", "Rename…", "Move Up", "Move Down", "Delete"}) {
    openMenu(pin);
    choose(title);
  }
  EXPECT_THAT(commands_, ElementsAre("paste plain pin", "toggle pin pin", "rename pin",
                                     "move up pin", "move down pin", "delete pin"));
}

TEST_F(RowMenuTest, APinThatIsOneTooManyIsDisabledWithTheReason) {
  canPinMore_ = false;
  const auto text = addText("one");
  show();
  openMenu(text);
  const auto* pin = menu()->actions().at(1);
  EXPECT_FALSE(pin->isEnabled());
  EXPECT_EQ(pin->toolTip(), "Up to 5 pins. Unpin an item first.");
  menu()->close();
}

TEST_F(RowMenuTest, OpensOnAPinThatIsDisabledToo) {
  canPinMore_ = false;
  const auto text = addText("one");
  show();
  const QPoint pin = rowOf(text).findChild<PinButton*>()->geometry().center();
  press(text, pin, Qt::RightButton);
  EXPECT_EQ(menuTitles().size(), 4U);
  ASSERT_NE(menu(), nullptr);
  menu()->close();
  release(text, pin, Qt::RightButton);
  click(text, pin);
  EXPECT_TRUE(commands_.empty()) << "the other button does nothing there";
}

TEST_F(RowMenuTest, ASecondOneTakesThePlaceOfTheFirst) {
  std::vector<std::string> told;
  list_.onMenuOpened = [&] { told.emplace_back("opened"); };
  list_.onMenuClosed = [&] { told.emplace_back("closed"); };
  const auto one = addText("one");
  const auto two = addText("two");
  show();
  const QRgb plain = pictureOf(rowOf(one)).pixel(200, 3);
  rowOf(one).onMenu({300, 200});
  rowOf(two).onMenu({300, 250});
  wait(fadeTime);
  EXPECT_THAT(told, ElementsAre("opened", "closed", "opened"));
  EXPECT_EQ(pictureOf(rowOf(one)).pixel(200, 3), plain);
  EXPECT_NE(pictureOf(rowOf(two)).pixel(200, 3), plain);
  choose("Delete");
  EXPECT_THAT(commands_, ElementsAre("delete two"));
  EXPECT_EQ(menu(), nullptr);
  EXPECT_EQ(told.size(), 4U);
}

TEST_F(RowMenuTest, TellsWhenItComesAndGoesAndMarksItsRow) {
  std::vector<std::string> told;
  list_.onMenuOpened = [&] { told.emplace_back("opened"); };
  list_.onMenuClosed = [&] { told.emplace_back("closed"); };
  const auto one = addText("one");
  show();
  const QRgb before = pictureOf(rowOf(one)).pixel(200, 3);
  openMenu(one);
  wait(fadeTime);
  EXPECT_THAT(told, ElementsAre("opened"));
  EXPECT_NE(pictureOf(rowOf(one)).pixel(200, 3), before);
  menu()->close();
  moveAway();
  wait(fadeTime);
  EXPECT_THAT(told, ElementsAre("opened", "closed"));
  EXPECT_EQ(pictureOf(rowOf(one)).pixel(200, 3), before);
}

TEST_F(RowMenuTest, DoesNotSelectTheRow) {
  const auto one = addText("one");
  show();
  openMenu(one);
  EXPECT_FALSE(rowOf(one).isSelected());
  menu()->close();
}

TEST_F(RowMenuTest, IsAboutTheEntryThatTheRowHadWhenItOpened) {
  const auto one = addText("one");
  show();
  openMenu(one);
  addText("two");
  std::swap(items_[0], items_[1]);
  show();
  choose("Delete");
  EXPECT_THAT(commands_, ElementsAre("delete one"));
}

TEST_F(RowMenuTest, GoesWithTheList) {
  const auto one = addText("one");
  show();
  openMenu(one);
  window_.hide();
  EXPECT_EQ(menu(), nullptr);
}

TEST_F(RowMenuTest, TakesThePreviewAway) {
  const auto one = addText("one");
  show();
  list_.showPreview(0);
  ASSERT_NE(preview(), nullptr);
  openMenu(one);
  EXPECT_EQ(preview(), nullptr);
  menu()->close();
}

}  // namespace
}  // namespace vantorel
