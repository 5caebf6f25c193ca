// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QtTest/qtestspontaneevent.h>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include "chrome/PopoverWindow.h"
#include "chrome/ReadableGlassView.h"
#include "chrome/VantorelTheme.h"
#include "panel/ClipPreviewViewController.h"
#include "panel/ClipRowView.h"
#include "panel/MediaPreview.h"
#include "panel/TextPreview.h"
#include "ui/ClipListTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;

class ClipPreviewTest : public ClipListTest {
 protected:
  Uuid addImage() {
    ClipItem item;
    item.kind = ClipKind::image;
    item.title = "Image";
    item.preview = "800 × 600 px";
    return add(item);
  }
  [[nodiscard]] static TextPreview* textPreview() {
    return preview() != nullptr ? preview()->findChild<TextPreview*>() : nullptr;
  }
  [[nodiscard]] static MediaPreview* mediaPreview() {
    return preview()->findChild<MediaPreview*>();
  }
  static void enterPreview() {
    QEnterEvent enter({20, 20}, {20, 20}, {20, 20});
    QApplication::sendEvent(&preview()->glass(), &enter);
  }
  static void leavePreview() {
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&preview()->glass(), &leave);
  }
  [[nodiscard]] Size sizeFor(const std::string& text) const {
    ClipItem item;
    item.text = SharedText(text);
    return ClipPreviewViewController::previewSize(item);
  }
};

TEST_F(ClipPreviewTest, ComesWhenThePointerRestsOnATextAndGoesAfterIt) {
  const auto id = addText("one");
  show();
  moveTo(id);
  wait(0.29);
  EXPECT_EQ(preview(), nullptr);
  EXPECT_FALSE(list_.previewShown());
  wait(0.01);
  ASSERT_NE(preview(), nullptr);
  EXPECT_TRUE(list_.previewShown());
  EXPECT_EQ(preview()->windowTitle(), "Preview");
  EXPECT_EQ(textPreview()->toPlainText(), "one");
  moveAway();
  wait(0.35);
  EXPECT_EQ(preview(), nullptr);
  EXPECT_FALSE(list_.previewShown());
}

TEST_F(ClipPreviewTest, StaysWhileThePointerGoesIntoItAndBack) {
  const auto id = addText("one");
  show();
  moveTo(id);
  wait(0.3);
  moveAway();
  wait(0.3);
  enterPreview();
  wait(2);
  ASSERT_NE(preview(), nullptr);
  leavePreview();
  wait(0.3);
  moveTo(id);
  wait(2);
  EXPECT_NE(preview(), nullptr);
}

TEST_F(ClipPreviewTest, OfAPictureComesFromItsThumbnailOnly) {
  const auto id = addImage();
  show();
  moveTo(id, {200, 20});
  wait(1);
  EXPECT_EQ(preview(), nullptr);
  moveTo(id, {30, 20});
  wait(0.3);
  EXPECT_NE(preview(), nullptr);
  moveTo(id, {200, 20});
  wait(1);
  EXPECT_NE(preview(), nullptr) << "The pointer is on the row still";
  moveAway();
  wait(0.35);
  EXPECT_EQ(preview(), nullptr);
}

TEST_F(ClipPreviewTest, OfATextComesToWhoeverEntersAcrossItsSymbol) {
  const auto id = addText("one");
  show();
  moveTo(id, {14, 24});
  wait(0.1);
  moveTo(id, {60, 24});
  wait(0.2);
  EXPECT_NE(preview(), nullptr);
}

TEST_F(ClipPreviewTest, OfAPictureThatComesUnderARestingPointerComesAtItsNextMove) {
  const auto first = addImage();
  show();
  moveTo(first, {30, 20});
  items_.clear();
  const auto second = addImage();
  show();
  moveTo(second, {34, 22});
  wait(0.3);
  EXPECT_NE(preview(), nullptr);
}

TEST_F(ClipPreviewTest, FollowsThePaletteAndTheFontWhileShown) {
  addText(std::string(500'000, 'x'));
  show();
  list_.showPreview(0);
  dispatch_.runQueued();
  const auto end = [] { return QTextCursor(textPreview()->document()->lastBlock()); };
  const auto endFormat = [&] {
    auto cursor = end();
    cursor.movePosition(QTextCursor::EndOfBlock);
    return cursor.charFormat();
  };
  const QPalette light = QApplication::palette();
  QPalette dark = light;
  dark.setColor(QPalette::WindowText, Qt::white);
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  EXPECT_EQ(textPreview()->palette().color(QPalette::Text), QColor(Qt::white));
  EXPECT_EQ(endFormat().foreground().color().lightness(), 255);
  QApplication::setPalette(light);

  const QFont before = QApplication::font();
  QFont slanted = before;
  slanted.setItalic(true);
  slanted.setPointSizeF(before.pointSizeF() * 3);
  const double points = textPreview()->document()->defaultFont().pointSizeF();
  QApplication::setFont(slanted);
  QCoreApplication::processEvents();
  EXPECT_TRUE(textPreview()->document()->defaultFont().italic());
  EXPECT_EQ(textPreview()->document()->defaultFont().pointSizeF(), points);
  EXPECT_TRUE(endFormat().font().italic());
  QApplication::setFont(before);
}

TEST_F(ClipPreviewTest, AtMostOneIsShown) {
  const auto one = addText("one");
  const auto two = addText("two");
  show();
  moveTo(one);
  wait(0.3);
  moveTo(two);
  wait(0.3);
  ASSERT_NE(preview(), nullptr);
  EXPECT_EQ(textPreview()->toPlainText(), "two");
}

TEST_F(ClipPreviewTest, AskedForComesAtOnce) {
  addText("one");
  addText("two");
  show();
  list_.showPreview(1);
  ASSERT_NE(preview(), nullptr);
  EXPECT_EQ(textPreview()->toPlainText(), "two");
  list_.showPreview(7);
  EXPECT_EQ(textPreview()->toPlainText(), "two");
  list_.hidePreviews();
  EXPECT_EQ(preview(), nullptr);
}

TEST_F(ClipPreviewTest, IsNotShownOfAHiddenList) {
  addText("one");
  show();
  window_.hide();
  list_.showPreview(0);
  EXPECT_EQ(preview(), nullptr);
}

TEST_F(ClipPreviewTest, GoesWithTheList) {
  const auto id = addText("one");
  show();
  list_.showPreview(0);
  window_.hide();
  EXPECT_EQ(preview(), nullptr);
  show();
  moveTo(id);
  window_.hide();
  wait(1);
  EXPECT_EQ(preview(), nullptr);
}

TEST_F(ClipPreviewTest, GoesWhenTheDesktopClosesItAndComesAgain) {
  addText("one");
  show();
  list_.showPreview(0);
  QCloseEvent close;
  QSpontaneKeyEvent::setSpontaneous(&close);
  qApp->notify(preview(), &close);
  EXPECT_EQ(preview(), nullptr);
  EXPECT_FALSE(list_.previewShown());
  list_.showPreview(0);
  EXPECT_NE(preview(), nullptr);
}

TEST_F(ClipPreviewTest, ARowThatBecomesAnothersTakesItsPreviewAway) {
  const auto one = addText("one");
  show();
  moveTo(one);
  wait(0.2);
  items_.clear();
  addText("two");
  show();
  wait(1);
  EXPECT_EQ(preview(), nullptr) << "The one that was to come";
  list_.showPreview(0);
  items_.clear();
  addText("three");
  show();
  EXPECT_EQ(preview(), nullptr) << "The one that was shown";
}

TEST_F(ClipPreviewTest, GoesWhenTheListIsShownAnewThoughItsRowStays) {
  addText("one");
  show();
  list_.showPreview(0);
  addText("two");
  show();
  EXPECT_EQ(preview(), nullptr);
  list_.showPreview(0);
  list_.setEmpty(QStringLiteral("Nothing"));
  EXPECT_EQ(preview(), nullptr);
}

TEST_F(ClipPreviewTest, OfAnEntryThatIsGoneDoesNotCome) {
  addText("one");
  show();
  items_.clear();
  list_.showPreview(0);
  EXPECT_EQ(preview(), nullptr);
}

TEST_F(ClipPreviewTest, APressOnARowTakesItAway) {
  const auto one = addText("one");
  show();
  list_.showPreview(0);
  press(one, {100, 20});
  EXPECT_EQ(preview(), nullptr);
  release(one, {100, 20});
}

TEST_F(ClipPreviewTest, StandsBesideThePanelWhereThereIsRoom) {
  addText("one");
  show();
  list_.showPreview(0);
  EXPECT_GE(preview()->x(), window_.geometry().right());
  list_.hidePreviews();
  window_.move(1400, 100);
  list_.showPreview(0);
  EXPECT_LE(preview()->geometry().right(), window_.x());
  ASSERT_TRUE(list_.previewFrame());
  EXPECT_EQ(list_.previewFrame()->x, preview()->x());
}

TEST_F(ClipPreviewTest, StaysWholeOnTheScreen) {
  addText(std::string(5000, 'x'));
  show();
  window_.move(200, 0);
  list_.showPreview(0);
  EXPECT_GE(preview()->y(), 30) << "Below the bar at the top";
}

TEST_F(ClipPreviewTest, TextIsAsHighAsItNeeds) {
  EXPECT_EQ(sizeFor("one line"), (Size{360, 92}));
  EXPECT_EQ(sizeFor(""), (Size{360, 92}));
  EXPECT_EQ(sizeFor(std::string(200'000, 'x')), (Size{360, 340}));
  const auto some = sizeFor("1\n2\n3\n4\n5\n6\n7\n8");
  EXPECT_GT(some.height, 92);
  EXPECT_LT(some.height, 340);
}

TEST_F(ClipPreviewTest, OnASmallScreenItIsSmaller) {
  screens_.setScreens({{{0, 0, 320, 240}, {0, 0, 320, 240}, 1}});
  addText(std::string(5000, 'x'));
  show();
  list_.showPreview(0);
  EXPECT_EQ(preview()->size(), QSize(280, 180));
}

TEST_F(ClipPreviewTest, ALongTextScrolls) {
  std::string text;
  for (int i = 0; i < 100; ++i) text += "line " + std::to_string(i) + "\n";
  addText(text);
  show();
  list_.showPreview(0);
  EXPECT_EQ(preview()->size(), QSize(360, 340));
  EXPECT_GT(textPreview()->verticalScrollBar()->maximum(), 500);
  EXPECT_EQ(textPreview()->verticalScrollBar()->value(), 0);
}

TEST_F(ClipPreviewTest, AVeryLongTextComesPieceByPieceAndSaysWhereItEnds) {
  addText(std::string(5'000'000, 'x'));
  show();
  list_.showPreview(0);
  EXPECT_LT(textPreview()->document()->characterCount(), 10'000);
  EXPECT_GT(textPreview()->verticalScrollBar()->maximum(), 0);
  dispatch_.runQueued();
  EXPECT_GT(textPreview()->document()->characterCount(), 190'000);
  EXPECT_EQ(textPreview()->document()->lastBlock().text(),
            "The preview ends here; the clip goes on.");
}

TEST_F(ClipPreviewTest, ClosedWhileItIsFilledItIsLeftAlone) {
  addText(std::string(5'000'000, 'x'));
  show();
  list_.showPreview(0);
  list_.hidePreviews();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  dispatch_.runQueued();
  EXPECT_EQ(preview(), nullptr);
}

TEST_F(ClipPreviewTest, HebrewIsSetFromTheRight) {
  addText("שלום Hello");
  show();
  list_.showPreview(0);
  const auto option = textPreview()->document()->defaultTextOption();
  EXPECT_EQ(option.textDirection(), Qt::RightToLeft);
  EXPECT_TRUE(option.alignment().testFlag(Qt::AlignRight));
  const auto picture = pictureOf(*textPreview());
  const auto inkIn = [&](int from, int to) {
    for (int y = 14; y < 34; ++y) {
      for (int x = from; x < to; ++x) {
        if (qGray(picture.pixel(x, y)) < 100) return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(inkIn(320, 344));
  EXPECT_FALSE(inkIn(0, 200));
  EXPECT_FALSE(inkIn(345, 360));
}

TEST_F(ClipPreviewTest, LatinIsSetFromTheLeft) {
  addText("Hello שלום");
  show();
  list_.showPreview(0);
  const auto option = textPreview()->document()->defaultTextOption();
  EXPECT_EQ(option.textDirection(), Qt::LeftToRight);
  EXPECT_TRUE(option.alignment().testFlag(Qt::AlignLeft));
}

TEST_F(ClipPreviewTest, TextCanBeSelectedButNotChanged) {
  addText("some words to select");
  show();
  list_.showPreview(0);
  auto& text = *textPreview();
  EXPECT_TRUE(text.isReadOnly());
  QTest::mousePress(text.viewport(), Qt::LeftButton, {}, {17, 22});
  QTest::mouseMove(text.viewport(), {120, 22});
  QMouseEvent move(QEvent::MouseMove, QPointF(120, 22),
                   text.viewport()->mapToGlobal(QPointF(120, 22)), Qt::NoButton, Qt::LeftButton,
                   {});
  QApplication::sendEvent(text.viewport(), &move);
  QTest::mouseRelease(text.viewport(), Qt::LeftButton, {}, {120, 22});
  EXPECT_TRUE(text.textCursor().hasSelection());
  QTest::mousePress(text.viewport(), Qt::LeftButton, {}, {40, 22});
  EXPECT_FALSE(text.textCursor().hasSelection()) << "A selection is not dragged away";
  QTest::mouseRelease(text.viewport(), Qt::LeftButton, {}, {40, 22});
}

TEST_F(ClipPreviewTest, WhatIsMarkedIsCopiedAsText) {
  addText("some\nwords");
  show();
  list_.showPreview(0);
  auto& clipboard = *QGuiApplication::clipboard();
  clipboard.setText(QStringLiteral("before"));
  list_.copyFromPreview();
  EXPECT_EQ(clipboard.text(), QStringLiteral("before")) << "Nothing is marked";
  textPreview()->selectAll();
  list_.copyFromPreview();
  EXPECT_EQ(clipboard.text(), QStringLiteral("some\nwords"));
  EXPECT_FALSE(clipboard.mimeData()->hasHtml());
  list_.hidePreviews();
  list_.copyFromPreview();
}

TEST_F(ClipPreviewTest, APictureThatComesLateTakesThePlaceOfTheSymbol) {
  const auto id = addImage();
  show();
  list_.showPreview(0);
  ASSERT_NE(mediaPreview(), nullptr);
  EXPECT_EQ(preview()->size(), QSize(310, 320));
  EXPECT_EQ(mediaPreview()->image(), nullptr);
  const auto before = pictureOf(*mediaPreview());
  const auto picture = bitmap(80, 80, 0xFFD02020);
  list_.setThumbnail(id, picture);
  EXPECT_EQ(mediaPreview()->image(), picture);
  EXPECT_NE(pictureOf(*mediaPreview()), before);
  EXPECT_EQ(pictureOf(*mediaPreview()).pixel(155, 148), qRgb(0xD0, 0x20, 0x20));
}

TEST_F(ClipPreviewTest, APictureThatIsThereIsShownAtOnce) {
  const auto id = addImage();
  show();
  const auto picture = bitmap(80, 80, 0xFFD02020);
  list_.setThumbnail(id, picture);
  list_.showPreview(0);
  EXPECT_EQ(mediaPreview()->image(), picture);
}

TEST_F(ClipPreviewTest, AnEmptyPictureDrawsNothing) {
  const auto id = addImage();
  show();
  list_.setThumbnail(id, bitmap(0, 0, 0));
  list_.showPreview(0);
  const auto picture = pictureOf(*mediaPreview());
  const QRect backdrop(30, 30, 250, 230);
  for (int y = backdrop.top(); y <= backdrop.bottom(); ++y) {
    for (int x = backdrop.left(); x <= backdrop.right(); ++x) {
      // Black at 0.12 on white, and nothing else.
      ASSERT_NEAR(qGray(picture.pixel(x, y)), 224, 1) << x << ", " << y;
    }
  }
}

TEST_F(ClipPreviewTest, WithoutAPictureItsSymbolStandsAloneOnTheBackdrop) {
  addImage();
  show();
  list_.showPreview(0);
  const auto picture = pictureOf(*mediaPreview());
  // Inside and outside what would be a tile of its own the backdrop is the same.
  EXPECT_EQ(picture.pixel(155, 60), picture.pixel(14, 148));
  QRect symbol;
  for (int y = 20; y < 270; ++y) {
    for (int x = 20; x < 290; ++x) {
      if (qGray(picture.pixel(x, y)) < 128) symbol |= QRect(x, y, 1, 1);
    }
  }
  EXPECT_NEAR(symbol.width(), 50, 8);
  EXPECT_NEAR(symbol.center().x(), 155, 2);
}

TEST_F(ClipPreviewTest, OfAnotherEntryIsLeftAloneByALatePicture) {
  const auto one = addImage();
  addImage();
  show();
  list_.showPreview(1);
  list_.setThumbnail(one, bitmap(80, 80, 0xFFD02020));
  EXPECT_EQ(mediaPreview()->image(), nullptr);
}

TEST_F(ClipPreviewTest, SelectedTextIsGoldenInLightAndDark) {
  addText("one two three");
  show();
  list_.showPreview(0);
  const auto highlight = [] { return textPreview()->palette().color(QPalette::Highlight); };
  EXPECT_EQ(highlight().rgb(), VantorelTheme::gold().rgb());
  const QPalette light = QApplication::palette();
  QPalette dark = light;
  dark.setColor(QPalette::WindowText, Qt::white);
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  EXPECT_EQ(highlight().rgb(), VantorelTheme::gold().rgb());
  EXPECT_EQ(textPreview()->palette().color(QPalette::HighlightedText), QColor(Qt::white));
  QApplication::setPalette(light);
}

TEST_F(ClipPreviewTest, ALongTextEndsOnAWholeLineAndFadesWhereItGoesOn) {
  std::string text;
  for (int i = 0; i < 40; ++i) text += "HHHHHHHHHHHH\n";
  addText(text);
  show();
  list_.showPreview(0);
  wait(1);
  const auto darkestOfLast = [](int points) {
    const auto picture = pictureOf(*textPreview());
    int darkest = 255;
    for (int y = picture.height() - points; y < picture.height(); ++y) {
      for (int x = 16; x < 160; ++x) darkest = std::min(darkest, qGray(picture.pixel(x, y)));
    }
    return darkest;
  };
  EXPECT_GT(darkestOfLast(3), 150);
  EXPECT_LT(darkestOfLast(40), 60);
  auto* bar = textPreview()->verticalScrollBar();
  bar->setValue(bar->maximum() - 15);
  EXPECT_GT(darkestOfLast(1), 150);
  bar->setValue(bar->maximum());
  const auto atEnd = pictureOf(*textPreview());
  EXPECT_EQ(atEnd.pixel(30, atEnd.height() - 2), qRgb(255, 255, 255)) << "nothing follows";
}

TEST_F(ClipPreviewTest, AShortTextDoesNotFade) {
  addText("one");
  show();
  list_.showPreview(0);
  const auto picture = pictureOf(*textPreview());
  EXPECT_EQ(picture.pixel(30, picture.height() - 2), qRgb(255, 255, 255));
}

TEST_F(ClipPreviewTest, ACaptionIsOneLineWhateverTheNameIs) {
  ClipItem item;
  item.kind = ClipKind::files;
  item.title = "File";
  item.preview = "evil\n\u202Egpj.exe" + std::string(100'000, 'x');
  item.filePaths = {"/nonexistent"};
  add(item);
  show();
  list_.showPreview(0);
  EXPECT_TRUE(mediaPreview()->accessibleName().startsWith("evil gpj.exe"));
  EXPECT_LT(mediaPreview()->accessibleName().size(), 500);
  EXPECT_FALSE(pictureOf(*mediaPreview()).isNull());
}

}  // namespace
}  // namespace vantorel
