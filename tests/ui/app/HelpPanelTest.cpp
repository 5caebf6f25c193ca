// SPDX-License-Identifier: MIT
#include "app/HelpPanel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QTest>
#include <QWindow>
#include <algorithm>

#include "app/AppIconFactory.h"
#include "app/EditSymbolButton.h"
#include "app/LinkButton.h"
#include "app/ShortcutPill.h"
#include "app/TextBlock.h"
#include "chrome/CheckBox.h"
#include "chrome/PushButton.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class HelpPanelTest : public testing::Test {
 protected:
  HelpPanel& show(HelpPanel::Occasion occasion, const HelpPanel::Facts& facts) {
    panel_ = std::make_unique<HelpPanel>(
        ChromeServices{dispatch_, screens_, accessibility_, &backdrops_}, occasion, facts);
    panel_->onClose = [this] { ++closes_; };
    panel_->makeKeyAndOrderFront();
    QCoreApplication::processEvents();
    return *panel_;
  }
  HelpPanel& showFirst() { return show(HelpPanel::Occasion::firstLaunch, facts_); }
  HelpPanel& showAbout() { return show(HelpPanel::Occasion::about, facts_); }

  template <class View>
  [[nodiscard]] std::vector<std::string> texts() const {
    std::vector<std::string> all;
    const auto found = panel_->findChildren<View*>();
    for (const auto* each : found) all.push_back(each->text().toStdString());
    return all;
  }
  [[nodiscard]] PushButton& button(const std::string& title) const {
    const auto found = panel_->findChildren<PushButton*>();
    for (auto* each : found) {
      if (each->text().toStdString() == title) return *each;
    }
    throw std::runtime_error("no such button");
  }

  ManualDispatch dispatch_;
  FakeScreens screens_;
  FakeAccessibilityPreferences accessibility_;
  FakeWindowBackdrops backdrops_;
  HelpPanel::Facts facts_{"⌘⇧V", true, false, "4.5.6"};
  std::unique_ptr<HelpPanel> panel_;
  int closes_ = 0;
};

TEST_F(HelpPanelTest, TheFirstLaunchWelcomesAndSaysNothingOfPrivacyYet) {
  const auto& panel = showFirst();
  EXPECT_EQ(panel.windowTitle(), "About Vantorel");
  EXPECT_EQ(panel.size(), QSize(470, 438));
  EXPECT_THAT(texts<TextBlock>(),
              ElementsAre("ברוכים הבאים ל־Vantorel",
                          "היסטוריית ההעתקות נשמרת מקומית במחשב שלך.\nטקסטים, תמונות וקבצים זמינים "
                          "עד שבוע.",
                          "פתיחת החלון",
                          "אפשר להקליד כדי לחפש, לסנן לפי סוג או אפליקציה, ולהשתמש בחצים וב־Enter "
                          "להדבקה.\nAlt + Enter מדביק טקסט ללא עיצוב.",
                          "הדבקה אוטומטית", StartsWith("Version 4.5.6  ·  ")));
  EXPECT_THAT(texts<PushButton>(), ElementsAre("הרשאת הנגישות פעילה", "מתחילים"));
}

TEST_F(HelpPanelTest, AboutHasAllSectionsThePlainTitleAndClose) {
  const auto& panel = showAbout();
  EXPECT_EQ(panel.size(), QSize(470, 570));
  const auto all = texts<TextBlock>();
  EXPECT_EQ(all.front(), "Vantorel");
  EXPECT_THAT(all, Contains("פרטיות ואבטחה"));
  EXPECT_THAT(all, Contains("ההיסטוריה מוצפנת ונשארת במחשב בלבד.\nאין רשת, ענן, מעקב, אנליטיקה או "
                            "שיתוף עם צד שלישי."));
  EXPECT_THAT(texts<PushButton>(),
              ElementsAre("הרשאת הנגישות פעילה", "מדיניות הפרטיות המלאה", "סגור"));
}

TEST_F(HelpPanelTest, WhyPastingIsAutomaticHoldsUnderEveryKindOfDesktop) {
  for (const auto language : {Language::hebrew, Language::english}) {
    for (const bool isPossible : {true, false}) {
      facts_.language = language;
      facts_.automaticPaste = isPossible;
      showAbout();
      const auto why = panel_->findChild<PushButton*>()->toolTip().toStdString();
      EXPECT_THAT(why, HasSubstr(language == Language::hebrew ? "להדביק ידנית" : "paste by hand"));
      EXPECT_THAT(why, Not(HasSubstr("XTEST")));
      EXPECT_THAT(why,
                  Not(HasSubstr(language == Language::hebrew ? "שרת התצוגה" : "display server")));
    }
  }
}

TEST_F(HelpPanelTest, ReturnClosesIt) {
  showAbout();
  QTest::keyClick(panel_->windowHandle(), Qt::Key_Return);
  EXPECT_EQ(closes_, 1);
  QTest::keyClick(panel_->windowHandle(), Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(closes_, 2);
}

TEST_F(HelpPanelTest, ReturnOnACheckBoxClosesItAndChecksNothing) {
  showFirst();
  panel_->findChild<CheckBox*>()->setFocus();
  QTest::keyClick(panel_->windowHandle(), Qt::Key_Return);
  EXPECT_EQ(closes_, 1);
  EXPECT_FALSE(panel_->findChild<CheckBox*>()->isChecked());
}

TEST_F(HelpPanelTest, ReturnOnAButtonPressesThatButton) {
  auto& panel = showAbout();
  int asked = 0;
  panel.onPrivacyPolicy = [&asked] { ++asked; };
  button("מדיניות הפרטיות המלאה").setFocus();
  QTest::keyClick(panel.windowHandle(), Qt::Key_Return);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(closes_, 0);
}

TEST_F(HelpPanelTest, EscapeClosesItWhateverHasTheKeyboard) {
  showAbout();
  button("מדיניות הפרטיות המלאה").setFocus();
  QTest::keyClick(panel_->windowHandle(), Qt::Key_Escape);
  EXPECT_EQ(closes_, 1);
}

TEST_F(HelpPanelTest, HeadingsStandCloserToWhatTheyHead) {
  for (const auto occasion : {HelpPanel::Occasion::firstLaunch, HelpPanel::Occasion::about}) {
    show(occasion, facts_);
    const auto rows = panel_->glass().findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const auto gapBelow = [&](qsizetype row) {
      return rows[row + 1]->y() - rows[row]->geometry().bottom() - 1;
    };
    for (qsizetype row = 1; row + 1 < rows.size(); ++row) {
      const auto* text = qobject_cast<const TextBlock*>(rows[row]);
      if (text == nullptr || text->style().points != 12.5) continue;
      EXPECT_LE(gapBelow(row), 4) << text->text().toStdString();
      EXPECT_GE(gapBelow(row - 1), 8) << text->text().toStdString();
    }
  }
}

TEST_F(HelpPanelTest, TheCreditLineLeadsToTheOtherLanguage) {
  auto& panel = showAbout();
  int asked = 0;
  panel.onOtherLanguage = [&asked] { ++asked; };
  auto* link = panel.findChild<LinkButton*>();
  EXPECT_EQ(link->text(), "English");
  link->setFocus();
  QTest::keyClick(panel.windowHandle(), Qt::Key_Return);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(closes_, 0);
}

TEST_F(HelpPanelTest, InEnglishItSaysTheSameFromLeftToRight) {
  for (const auto occasion : {HelpPanel::Occasion::firstLaunch, HelpPanel::Occasion::about}) {
    facts_.language = Language::hebrew;
    show(occasion, facts_);
    const auto hebrew = texts<TextBlock>();
    const auto buttons = texts<PushButton>().size();
    const auto size = panel_->size();
    facts_.language = Language::english;
    const auto& panel = show(occasion, facts_);
    EXPECT_EQ(panel.size(), size);
    EXPECT_EQ(panel.layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(panel.findChild<LinkButton*>()->text(), "עברית");
    const auto english = texts<TextBlock>();
    ASSERT_EQ(english.size(), hebrew.size());
    EXPECT_EQ(texts<PushButton>().size(), buttons);
    const auto blocks = panel.findChildren<TextBlock*>();
    for (std::size_t i = 0; i < hebrew.size(); ++i) {
      EXPECT_EQ(std::count(english[i].begin(), english[i].end(), '\n'),
                std::count(hebrew[i].begin(), hebrew[i].end(), '\n'));
      for (const char* key : {"Enter", "Alt", "Vantorel", "4.5.6"}) {
        EXPECT_EQ(english[i].find(key) == std::string::npos,
                  hebrew[i].find(key) == std::string::npos)
            << english[i];
      }
      for (const char letter : english[i]) EXPECT_NE(letter & 0xf8, 0xd0) << english[i];
      const auto* block = blocks[static_cast<qsizetype>(i)];
      EXPECT_EQ(block->style().direction, Qt::LeftToRight);
      EXPECT_FALSE(block->brokenLines().back().endsWith(u'…')) << english[i];
    }
  }
}

TEST_F(HelpPanelTest, TheCloseButtonAndTheWindowManagerCloseIt) {
  showFirst();
  button("מתחילים").click();
  EXPECT_EQ(closes_, 1);
  panel_->close();
  EXPECT_EQ(closes_, 2);
}

TEST_F(HelpPanelTest, OtherKeysLeaveItOpen) {
  showFirst();
  for (const auto key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Tab}) {
    QTest::keyClick(panel_->windowHandle(), key);
  }
  EXPECT_EQ(closes_, 0);
}

TEST_F(HelpPanelTest, IsLaidOutFromRightToLeft) {
  const auto& panel = showAbout();
  EXPECT_EQ(panel.layoutDirection(), Qt::RightToLeft);
  const auto* pill = panel.findChild<ShortcutPill*>();
  const auto* pencil = panel.findChild<EditSymbolButton*>();
  EXPECT_LT(pencil->geometry().right(), pill->geometry().left());
  EXPECT_EQ(pill->layoutDirection(), Qt::LeftToRight);
  EXPECT_EQ(panel.findChild<CheckBox*>()->layoutDirection(), Qt::RightToLeft);
}

TEST_F(HelpPanelTest, RowsStandInTheMiddleWithinTheWindowAndDoNotOverlap) {
  for (const auto occasion : {HelpPanel::Occasion::firstLaunch, HelpPanel::Occasion::about}) {
    const auto& panel = show(occasion, facts_);
    int bottom = 22;
    for (const auto* child :
         panel_->glass().findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      EXPECT_GE(child->y(), bottom);
      EXPECT_NEAR(child->geometry().center().x(), 235, 1);
      bottom = child->geometry().bottom() + 1;
    }
    EXPECT_LE(bottom, panel.height() - 20);
  }
}

TEST_F(HelpPanelTest, ALineThatBeginsWithLatinLettersBeginsAtTheRightToo) {
  const auto& panel = showFirst();
  const auto blocks = panel.findChildren<TextBlock*>();
  const auto found = std::find_if(blocks.begin(), blocks.end(), [](const auto* block) {
    return block->text().contains("Alt + Enter");
  });
  ASSERT_NE(found, blocks.end());
  const auto* block = *found;
  EXPECT_EQ(block->width(), 390);
  const auto lines = block->brokenLines();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[2], "Alt + Enter מדביק טקסט ללא עיצוב.");
  // The Latin word alone would be mirrored were the line's direction taken from it: the full stop
  // at the end of the line has to stand at the far left.
  QImage image(block->size(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  const_cast<TextBlock*>(block)->render(&image, {}, {}, QWidget::DrawChildren);
  const int lastLineTop = block->height() * 2 / 3;
  const auto inked = [&](int from, int to) {
    for (int x = from; x < to; ++x) {
      for (int y = lastLineTop; y < block->height(); ++y) {
        if (qGray(image.pixel(x, y)) < 128) return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(inked(380, 390));
  EXPECT_FALSE(inked(0, 60));
}

TEST_F(HelpPanelTest, TheShortcutIsShownAsThisDesktopsKeysAndFollowsAChange) {
  auto& panel = showFirst();
  auto* pill = panel.findChild<ShortcutPill*>();
  EXPECT_EQ(pill->text(), "Super+Shift+V");
  panel.setShortcut("⌘⌥Space");
  EXPECT_EQ(pill->text(), "Super+Alt+Space");
  EXPECT_EQ(pill->accessibleName(), "Super+Alt+Space");
}

TEST_F(HelpPanelTest, ALongShortcutStaysInTheMiddle) {
  auto& panel = showFirst();
  panel.setShortcut("⌘⇧⌥⌃Space");
  QCoreApplication::processEvents();
  const auto* row = panel.findChild<ShortcutPill*>()->parentWidget();
  EXPECT_NEAR(row->geometry().center().x(), 235, 1);
  EXPECT_GE(row->x(), 20);
  EXPECT_TRUE(row->rect().contains(panel.findChild<ShortcutPill*>()->geometry()));
}

TEST_F(HelpPanelTest, ThePencilAsksForAnotherShortcut) {
  auto& panel = showFirst();
  int asked = 0;
  panel.onChangeShortcut = [&asked] { ++asked; };
  auto* pencil = panel.findChild<EditSymbolButton*>();
  EXPECT_EQ(pencil->accessibleName(), "Change shortcut");
  EXPECT_EQ(pencil->toolTip(), "Change shortcut");
  pencil->click();
  EXPECT_EQ(asked, 1);
}

TEST_F(HelpPanelTest, TheButtonSaysWhetherPastingIsPossible) {
  auto& panel = showFirst();
  EXPECT_GT(button("הרשאת הנגישות פעילה").tint()->green(), 150);
  panel.setAutomaticPaste(false);
  EXPECT_THAT(texts<PushButton>(), Not(Contains("הרשאת הנגישות פעילה")));
  EXPECT_EQ(button("נדרשת הרשאת נגישות").tint(), QColor::fromRgbF(0.93F, 0.66F, 0.16F));
  int asked = 0;
  panel.onAccessibilitySettings = [&asked] { ++asked; };
  button("נדרשת הרשאת נגישות").click();
  EXPECT_EQ(asked, 1);
}

TEST_F(HelpPanelTest, TheCheckBoxShowsWhatHoldsAndIsOffWhereNothingCanBeDone) {
  auto& panel = showFirst();
  auto* box = panel.findChild<CheckBox*>();
  EXPECT_EQ(box->text(), "הפעל את Vantorel בעת הכניסה למחשב");
  EXPECT_FALSE(box->isChecked());
  int asked = 0;
  panel.onLaunchAtLoginChanged = [&] {
    ++asked;
    panel.setLaunchAtLogin(false);  // it could not be changed
  };
  box->click();
  EXPECT_EQ(asked, 1);
  EXPECT_FALSE(box->isChecked());
  panel.setLaunchAtLogin(true);
  EXPECT_TRUE(box->isChecked());
  panel.setLaunchAtLogin(std::nullopt);
  EXPECT_FALSE(box->isChecked());
  EXPECT_FALSE(box->isEnabled());
}

TEST_F(HelpPanelTest, ThePolicyIsAskedForByItsButton) {
  auto& panel = showAbout();
  int asked = 0;
  panel.onPrivacyPolicy = [&asked] { ++asked; };
  button("מדיניות הפרטיות המלאה").click();
  EXPECT_EQ(asked, 1);
}

TEST_F(HelpPanelTest, EveryControlIsReachedWithTabAndNoneIsMarkedAtFirst) {
  auto& panel = showAbout();
  EXPECT_EQ(panel.focusWidget(), &panel);
  std::vector<QWidget*> reached;
  for (int i = 0; i < 6; ++i) {
    QTest::keyClick(panel.windowHandle(), Qt::Key_Tab);
    reached.push_back(panel.focusWidget());
  }
  EXPECT_THAT(reached,
              ElementsAre(panel.findChild<EditSymbolButton*>(), &button("הרשאת הנגישות פעילה"),
                          panel.findChild<CheckBox*>(), &button("מדיניות הפרטיות המלאה"),
                          panel.findChild<LinkButton*>(), &button("סגור")));
}

TEST(AppIconFactory, HasTheProgramsIconAndNothingElse) {
  EXPECT_FALSE(AppIconFactory::bundledPNG("vt").isNull());
  EXPECT_TRUE(AppIconFactory::bundledPNG("no such picture").isNull());
}

/// How many rows of an otherwise empty picture have something on them.
int inkedRows(const QImage& image) {
  int rows = 0;
  for (int y = 0; y < image.height(); ++y) {
    bool inked = false;
    for (int x = 0; x < image.width(); ++x) inked = inked || qAlpha(image.pixel(x, y)) != 0;
    rows += inked ? 1 : 0;
  }
  return rows;
}

QImage emptyPicture(const QSize& size) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

TEST(TextBlock, LettersThatReachBelowTheLineAreWhole) {
  for (const double points : {11.0, 12.0, 12.5, 13.0, 16.0, 20.0}) {
    TextBlock::Style style;
    style.points = points;
    style.direction = Qt::LeftToRight;
    TextBlock block("Shy Quips, by dj", style, nullptr);
    block.resize(block.sizeHint());
    QImage drawn = emptyPicture(block.size());
    block.render(&drawn, {}, {}, QWidget::DrawChildren);

    constexpr int room = 20;
    QImage whole = emptyPicture(block.size() + QSize(0, 2 * room));
    QPainter painter(&whole);
    painter.setFont(block.font());
    painter.drawText(whole.rect(), Qt::AlignCenter, block.text());
    painter.end();
    EXPECT_EQ(inkedRows(drawn), inkedRows(whole)) << points;
  }
}

TEST(TextBlock, WhatDoesNotFitEndsWithAnEllipsis) {
  TextBlock::Style style;
  style.width = 60;
  style.lines = 2;
  const TextBlock block("אחת שתיים שלוש ארבע חמש שש שבע שמונה תשע עשר", style, nullptr);
  const auto lines = block.brokenLines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_TRUE(lines[1].endsWith(u'…'));
}

}  // namespace
}  // namespace vantorel
