// SPDX-License-Identifier: MIT
#include "app/PrivacyPolicyPanel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QWindow>

#include "app/PolicyTextView.h"
#include "app/TextBlock.h"
#include "chrome/PushButton.h"
#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

class PrivacyPolicyPanelTest : public testing::Test {
 protected:
  PrivacyPolicyPanelTest() {
    panel.onClose = [this] { ++closes; };
    panel.makeKeyAndOrderFront();
    QCoreApplication::processEvents();
  }
  void press(Qt::Key key) { QTest::keyClick(panel.windowHandle(), key); }
  [[nodiscard]] PolicyTextView& text() const { return *panel.findChild<PolicyTextView*>(); }
  [[nodiscard]] QRect placeOf(const QWidget& view) const {
    return {view.mapTo(&panel, QPoint()), view.size()};
  }

  ManualDispatch dispatch;
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  PrivacyPolicyPanel panel{ChromeServices{dispatch, screens, accessibility, &backdrops},
                           Language::hebrew};
  int closes = 0;
};

TEST_F(PrivacyPolicyPanelTest, ShowsTheWholeBundledPolicy) {
  EXPECT_EQ(panel.windowTitle(), "מדיניות הפרטיות");
  EXPECT_EQ(panel.size(), QSize(520, 590));
  EXPECT_EQ(panel.glass().cornerRadius(), 22);
  const auto blocks = panel.findChildren<TextBlock*>();
  ASSERT_EQ(blocks.size(), 2);
  EXPECT_EQ(blocks[0]->text(), "מדיניות הפרטיות");
  EXPECT_EQ(blocks[1]->text(), "מקומי  ·  מוצפן  ·  ללא מעקב");
  EXPECT_EQ(text().toPlainText().toStdString() + "\n", bundledPrivacyPolicy(Language::hebrew));
  EXPECT_GT(bundledPrivacyPolicy(Language::hebrew).size(), 2000U);
  EXPECT_TRUE(QString::fromStdString(bundledPrivacyPolicy(Language::hebrew)).isValidUtf16());
}

TEST_F(PrivacyPolicyPanelTest, EverythingStandsInItsPlace) {
  const auto blocks = panel.findChildren<TextBlock*>();
  const auto title = placeOf(*blocks[0]);
  const auto subtitle = placeOf(*blocks[1]);
  const auto policy = placeOf(text());
  const auto close = placeOf(*panel.findChild<PushButton*>());
  EXPECT_EQ(title.top(), 22);
  EXPECT_EQ(title.left(), 24);
  EXPECT_EQ(title.width(), 472);
  EXPECT_EQ(subtitle.top() - (title.top() + title.height()), 6);
  EXPECT_EQ(policy.top() - (subtitle.top() + subtitle.height()), 14);
  EXPECT_EQ(policy.left(), 24);
  EXPECT_EQ(policy.width(), 472);
  EXPECT_EQ(close.top() - (policy.top() + policy.height()), 14);
  EXPECT_EQ(close.width(), 90);
  EXPECT_EQ(close.left(), 215);
  EXPECT_EQ(590 - (close.top() + close.height()), 18);
  EXPECT_EQ(text().viewport()->width(), PolicyTextView::textWidth);
}

TEST_F(PrivacyPolicyPanelTest, EveryLineIsLaidOutFromRightToLeft) {
  for (auto block = text().document()->begin(); block.isValid(); block = block.next()) {
    EXPECT_EQ(block.textDirection(), Qt::RightToLeft) << block.text().toStdString();
    EXPECT_TRUE(block.blockFormat().alignment() & Qt::AlignRight);
  }
}

TEST_F(PrivacyPolicyPanelTest, EscapeClosesIt) {
  press(Qt::Key_Escape);
  EXPECT_EQ(closes, 1);
}

TEST_F(PrivacyPolicyPanelTest, ReturnClosesIt) {
  press(Qt::Key_Return);
  EXPECT_EQ(closes, 1);
}

TEST_F(PrivacyPolicyPanelTest, TheButtonAndTheWindowManagerCloseIt) {
  auto* close = panel.findChild<PushButton*>();
  EXPECT_EQ(close->text(), "סגור");
  close->click();
  EXPECT_EQ(closes, 1);
  panel.close();
  EXPECT_EQ(closes, 2);
}

TEST_F(PrivacyPolicyPanelTest, IsReadWithTheKeyboard) {
  const auto* scroller = text().verticalScrollBar();
  ASSERT_GT(scroller->maximum(), 0);
  EXPECT_EQ(scroller->value(), 0);
  press(Qt::Key_Down);
  const int oneStep = scroller->value();
  EXPECT_GT(oneStep, 0);
  press(Qt::Key_Space);
  EXPECT_GT(scroller->value(), 4 * oneStep);
  press(Qt::Key_End);
  EXPECT_EQ(scroller->value(), scroller->maximum());
  press(Qt::Key_Up);
  EXPECT_LT(scroller->value(), scroller->maximum());
  press(Qt::Key_Home);
  EXPECT_EQ(scroller->value(), 0);
}

TEST_F(PrivacyPolicyPanelTest, ItsTextIsReadAndNotWritten) {
  const auto before = text().toPlainText();
  press(Qt::Key_A);
  press(Qt::Key_Backspace);
  EXPECT_EQ(text().toPlainText(), before);
  EXPECT_TRUE(text().textInteractionFlags() & Qt::TextSelectableByMouse);
}

/// What kind of line each one is: nothing, an item, or words.
std::string shapeOf(const std::string& policy) {
  std::string shape;
  const auto lines = QString::fromStdString(policy).split(u'\n');
  for (const auto& line : lines) {
    shape += line.isEmpty() ? ' ' : line.startsWith(u'•') ? '*' : 'x';
  }
  return shape;
}

TEST(PrivacyPolicies, SayTheSameInBothLanguages) {
  const auto hebrew = bundledPrivacyPolicy(Language::hebrew);
  const auto english = bundledPrivacyPolicy(Language::english);
  EXPECT_EQ(shapeOf(english), shapeOf(hebrew));
  const auto hebrewLines = QString::fromStdString(hebrew).split(u'\n');
  const auto englishLines = QString::fromStdString(english).split(u'\n');
  for (qsizetype i = 0; i < hebrewLines.size() && i < englishLines.size(); ++i) {
    // Names that are the same in every language, and numbers.
    for (const char* name :
         {"RTF", "HTML", "Ignore Password Managers", "ClipHistory", "AES-GCM", "Vantorel", "Delete",
          "Clear History", "Pause History", "PRIMARY", "autostart", "12", "256", "50", "150"}) {
      EXPECT_EQ(englishLines[i].contains(name), hebrewLines[i].contains(name))
          << name << " in line " << i;
    }
    for (const QChar letter : englishLines[i]) EXPECT_NE(letter.script(), QChar::Script_Hebrew);
  }
}

TEST(PrivacyPolicies, AreLaidOutTheWayTheyAreRead) {
  ManualDispatch dispatch;
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  const PrivacyPolicyPanel panel(ChromeServices{dispatch, screens, accessibility, &backdrops},
                                 Language::english);
  EXPECT_EQ(panel.windowTitle(), "Privacy Policy");
  EXPECT_EQ(panel.layoutDirection(), Qt::LeftToRight);
  EXPECT_EQ(panel.findChild<PushButton*>()->text(), "Close");
  const auto* text = panel.findChild<PolicyTextView*>();
  for (auto block = text->document()->begin(); block.isValid(); block = block.next()) {
    EXPECT_EQ(block.textDirection(), Qt::LeftToRight) << block.text().toStdString();
    EXPECT_TRUE(block.blockFormat().alignment() & Qt::AlignLeft);
  }
}

TEST(PolicyTextView, TheLinesOfAnItemHangBelowItsFirstWord) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    const QString word = direction == Qt::LeftToRight ? "word " : "מילה ";
    PolicyTextView view("• " + word.repeated(60), direction, nullptr);
    view.document()->setTextWidth(300);
    EXPECT_GT(view.document()->size().height(), 50);
    const auto block = view.document()->firstBlock();
    const auto* layout = block.layout();
    ASSERT_GT(layout->lineCount(), 2);
    // Where the first word begins, and where the second line does.
    const auto first = layout->lineAt(0);
    const auto second = layout->lineAt(1);
    EXPECT_NEAR(first.cursorToX(2), second.cursorToX(second.textStart()), 1.0);
  }
}

TEST(PolicyTextView, FirstLinesOfParagraphsAreHeadings) {
  const PolicyTextView view("אחת\nשתיים\n\nשלוש\n\n• ארבע\n• חמש", Qt::RightToLeft, nullptr);
  const auto weightOf = [&view](int line) {
    const auto block = view.document()->findBlockByNumber(line);
    return block.begin().fragment().charFormat().fontWeight();
  };
  EXPECT_EQ(weightOf(0), QFont::Bold);
  EXPECT_EQ(weightOf(1), QFont::Normal);
  EXPECT_EQ(weightOf(3), QFont::Normal) << "a paragraph of one line is text";
  EXPECT_EQ(weightOf(5), QFont::Normal) << "a list needs no heading";
  EXPECT_GT(view.document()->findBlockByNumber(6).blockFormat().rightMargin(), 0);
}

}  // namespace
}  // namespace vantorel
