// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QtTest/qtestspontaneevent.h>
#include <QApplication>
#include <QHelpEvent>
#include <QHideEvent>

#include "chrome/ToolTipPanel.h"
#include "chrome/VantorelTheme.h"
#include "fakes/LeftInString.h"
#include "panel/ClipRowView.h"
#include "panel/PinButton.h"
#include "ui/ClipListTest.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t red = 0xFFD02020;
constexpr std::uint32_t blue = 0xFF2030D0;
constexpr double fadeTime = 0.15;

class ClipRowTest : public ClipListTest {
 protected:
  Uuid addImage() {
    ClipItem item;
    item.kind = ClipKind::image;
    item.title = "Image";
    item.preview = "800 × 600 px";
    return add(item);
  }
  Uuid addFile(const std::string& path) {
    ClipItem item;
    item.kind = ClipKind::files;
    item.title = "File";
    item.preview = path;
    item.filePaths = {path};
    return add(item);
  }
  /// Whether anything of about that colour is drawn within.
  [[nodiscard]] static bool hasColor(const QImage& image, QRgb color, const QRect& area) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
      for (int x = area.left(); x <= area.right(); ++x) {
        const QRgb pixel = image.pixel(x, y);
        if (std::abs(qRed(pixel) - qRed(color)) < 12 &&
            std::abs(qGreen(pixel) - qGreen(color)) < 12 &&
            std::abs(qBlue(pixel) - qBlue(color)) < 12) {
          return true;
        }
      }
    }
    return false;
  }
  /// How much ink there is in the title's line, in points, at that scale.
  [[nodiscard]] static double titleInk(QWidget& row, double scale) {
    const QImage image = pictureOf(row, scale);
    double ink = 0;
    for (int y = static_cast<int>(2 * scale); y < static_cast<int>(27 * scale); ++y) {
      for (int x = static_cast<int>(33 * scale); x < static_cast<int>(352 * scale); ++x) {
        ink += 255 - qGray(image.pixel(x, y));
      }
    }
    return ink / scale / scale;
  }
};

constexpr QRect imageArea(8, 6, 56, 36);
constexpr QRect iconAreaOfText(33, 27, 13, 13);

TEST_F(ClipRowTest, AThumbnailKeepsItsProportionsInTheMiddleOfItsPlace) {
  const auto id = addImage();
  show();
  list_.setThumbnail(id, bitmap(100, 100, red));
  const auto picture = pictureOf(rowOf(id));
  EXPECT_TRUE(hasColor(picture, red, QRect(22, 10, 28, 28)));
  EXPECT_FALSE(hasColor(picture, red, QRect(8, 6, 9, 36)));
  EXPECT_FALSE(hasColor(picture, red, QRect(55, 6, 9, 36)));
  EXPECT_FALSE(hasColor(picture, red, QRect(8, 0, 56, 6)));
}

TEST_F(ClipRowTest, NoThumbnailLeavesTheOneThatIsShown) {
  const auto id = addImage();
  show();
  const auto picture = bitmap(20, 20, red);
  list_.setThumbnail(id, picture);
  list_.setThumbnail(id, nullptr);
  EXPECT_EQ(rowOf(id).thumbnail(), picture);
}

TEST_F(ClipRowTest, AThumbnailThatComesTooLateIsDropped) {
  const auto gone = addImage();
  show();
  items_.clear();
  const auto other = addImage();
  show();
  list_.setThumbnail(gone, bitmap(20, 20, red));
  EXPECT_EQ(rowOf(other).thumbnail(), nullptr);
}

TEST_F(ClipRowTest, ARowGivenAnotherEntryForgetsThePictures) {
  const auto id = addImage();
  items_[0].sourceBundleIdentifier = "org.example.One";
  show();
  list_.setThumbnail(id, bitmap(20, 20, red));
  list_.setSourceIcon("org.example.One", bitmap(32, 32, blue));
  items_.clear();
  const auto other = addImage();
  items_[0].sourceBundleIdentifier = "org.example.Two";
  show();
  EXPECT_EQ(rowOf(other).thumbnail(), nullptr);
  EXPECT_EQ(rowOf(other).sourceIconState(), SourceIconView::State::pending);
}

TEST_F(ClipRowTest, TheSameEntryShownAnewKeepsItsPicture) {
  const auto id = addImage();
  show();
  const auto picture = bitmap(20, 20, red);
  list_.setThumbnail(id, picture);
  show();
  EXPECT_EQ(rowOf(id).thumbnail(), picture);
}

TEST_F(ClipRowTest, AHiddenListKeepsNothingOfItsEntries) {
  const auto id = addImage();
  items_[0].sourceBundleIdentifier = "org.example.One";
  show();
  list_.setThumbnail(id, bitmap(20, 20, red));
  list_.setSourceIcon("org.example.One", bitmap(32, 32, blue));
  const auto& row = rowOf(id);
  window_.hide();
  EXPECT_EQ(row.thumbnail(), nullptr);
  EXPECT_EQ(row.sourceIconState(), SourceIconView::State::unknown);
  EXPECT_EQ(row.content(), RowContent());
  EXPECT_TRUE(row.accessibleName().isEmpty());
  show();
  EXPECT_EQ(row.content().id, id);
}

TEST_F(ClipRowTest, AHiddenRowKeepsNoTextBehindItsEnd) {
  for (const auto* text : {"hunter2", "a text that is too long to stand in the string itself"}) {
    items_.clear();
    const auto id = addText(text);
    items_[0].sourceBundleIdentifier = "org.example.OneWithALongName";
    show();
    const auto& row = rowOf(id);
    ASSERT_EQ(row.content().title, text);
    window_.hide();
    const auto& content = row.content();
    for (const auto* left : {&content.title, &content.metadata, &content.accessibilityText,
                             &content.sourceBundleIdentifier})
      EXPECT_FALSE(isAnythingLeftIn(*left)) << text;
  }
}

TEST_F(ClipRowTest, AListThatTheDesktopPutsOutOfSightStaysAsItIs) {
  const auto id = addImage();
  show();
  const auto picture = bitmap(20, 20, red);
  list_.setThumbnail(id, picture);
  list_.select(0);
  list_.showPreview(0);
  const auto& row = rowOf(id);
  QHideEvent hide;
  QSpontaneKeyEvent::setSpontaneous(&hide);
  QCoreApplication::instance()->notify(&list_, &hide);
  EXPECT_EQ(row.content().id, id);
  EXPECT_EQ(row.thumbnail(), picture);
  EXPECT_TRUE(row.isSelected());
  EXPECT_TRUE(list_.previewShown());
}

TEST_F(ClipRowTest, PicturesOfAnySizeAreDrawn) {
  const auto id = addImage();
  show();
  for (const auto& [width, height] :
       std::vector<std::pair<int, int>>{{1, 20000}, {20000, 1}, {1, 1}, {0, 0}, {3000, 2000}}) {
    list_.setThumbnail(id, bitmap(width, height, red));
    const auto picture = pictureOf(rowOf(id), 2);
    EXPECT_EQ(hasColor(picture, red, QRect(imageArea.topLeft() * 2, imageArea.size() * 2)),
              width > 0)
        << width << " × " << height;
  }
}

TEST_F(ClipRowTest, APictureWithoutExtentDrawsNothing) {
  const auto id = addImage();
  show();
  list_.setThumbnail(id, bitmap(0, 0, 0));
  const auto picture = pictureOf(rowOf(id));
  for (int y = imageArea.top(); y <= imageArea.bottom(); ++y) {
    for (int x = imageArea.left(); x <= imageArea.right(); ++x) {
      ASSERT_EQ(picture.pixel(x, y), picture.pixel(4, 4)) << x << ", " << y;
    }
  }
}

TEST_F(ClipRowTest, TheWordAboutThePinStaysOverTheListAndGoesWithThePointer) {
  const auto id = addText("one");
  show();
  auto* pin = rowOf(id).findChild<PinButton*>();
  const auto toolTip = [] {
    const auto widgets = QApplication::topLevelWidgets();
    const auto found = std::find_if(widgets.begin(), widgets.end(), [](const QWidget* widget) {
      return qobject_cast<const ToolTipPanel*>(widget) != nullptr && widget->isVisible();
    });
    return found == widgets.end() ? nullptr : *found;
  };
  QHelpEvent help(QEvent::ToolTip, {5, 5}, pin->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(pin, &help);
  ASSERT_NE(toolTip(), nullptr);
  const QRect button(pin->mapToGlobal(QPoint(0, 0)), pin->size());
  EXPECT_EQ(toolTip()->geometry().right(), button.right());
  EXPECT_GT(toolTip()->geometry().top(), button.bottom());
  EXPECT_TRUE(toolTip()->windowFlags().testFlag(Qt::WindowTransparentForInput));
  EXPECT_EQ(toolTip()->grab().toImage().pixel(4, 12),
            VantorelTheme::window(QApplication::palette()).rgb());
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(pin, &leave);
  EXPECT_EQ(toolTip(), nullptr);
}

TEST_F(ClipRowTest, NoLineTouchesTheSelectedRow) {
  for (const char* text : {"one", "two", "three", "four"}) addText(text);
  show();
  std::vector<RowContent> rows;
  for (std::size_t i = 0; i < 4; ++i) {
    rows.push_back(list_.row(i)->content());
    rows.back().divided = i < 3;
  }
  list_.setRows(rows, std::nullopt);
  list_.select(2);
  wait(0.2);
  const auto hasLine = [&](std::size_t index) {
    const auto picture = pictureOf(*list_.row(index));
    return picture.pixel(200, 47) != picture.pixel(200, 44);
  };
  EXPECT_TRUE(hasLine(0));
  EXPECT_FALSE(hasLine(1));
  list_.select(0);
  wait(0.2);
  EXPECT_TRUE(hasLine(1));
  EXPECT_TRUE(hasLine(2));
}

TEST_F(ClipRowTest, APictureWithFewerPixelsThanItSaysDrawsNothing) {
  const auto id = addImage();
  show();
  Bitmap broken;
  broken.size = {100, 100};
  broken.pixelSize = {100, 100};
  broken.pixels.assign(50, red);
  list_.setThumbnail(id, std::make_shared<const Bitmap>(broken));
  EXPECT_FALSE(hasColor(pictureOf(rowOf(id)), red, imageArea));
}

TEST_F(ClipRowTest, APictureOfThePanelsColourHasAFrame) {
  const auto id = addImage();
  show();
  list_.setThumbnail(id, bitmap(56, 36, 0xFFFFFFFF));
  const auto picture = pictureOf(rowOf(id));
  EXPECT_LT(qGray(picture.pixel(36, 6)), 235);
  EXPECT_EQ(qGray(picture.pixel(36, 20)), 255);
}

TEST_F(ClipRowTest, ATransparentPictureIsSeenOnWhateverIsBehind) {
  const auto id = addImage();
  show();
  list_.setThumbnail(id, bitmap(56, 36, 0x00000000));
  const auto gray = qGray(pictureOf(rowOf(id)).pixel(36, 20));
  EXPECT_GT(gray, 120);
  EXPECT_LT(gray, 220);
}

TEST_F(ClipRowTest, TheIconOfAFileStandsFree) {
  const auto id = addFile("/etc/passwd");
  show();
  auto icon = *bitmap(36, 36, 0);
  for (int y = 10; y < 26; ++y) {
    for (int x = 10; x < 26; ++x) icon.pixels[static_cast<std::size_t>(y * 36 + x)] = red;
  }
  list_.setThumbnail(id, std::make_shared<const Bitmap>(icon));
  const auto picture = pictureOf(rowOf(id));
  EXPECT_TRUE(hasColor(picture, red, imageArea));
  EXPECT_EQ(qGray(picture.pixel(36, 6)), 255) << "No frame, nothing behind";
}

TEST_F(ClipRowTest, TheSourceIconAppearsWhenItIsKnown) {
  const auto id = addText("one");
  items_[0].sourceBundleIdentifier = "org.example.One";
  show();
  EXPECT_EQ(rowOf(id).sourceIconState(), SourceIconView::State::pending);
  const auto empty = pictureOf(rowOf(id)).copy(iconAreaOfText);
  EXPECT_FALSE(hasColor(empty, qRgb(0, 0, 0), empty.rect()));
  list_.setSourceIcon("org.example.One", bitmap(32, 32, blue));
  EXPECT_TRUE(hasColor(pictureOf(rowOf(id)), blue, iconAreaOfText));
  EXPECT_FALSE(hasColor(pictureOf(rowOf(id)), blue, QRect(47, 20, 300, 28)));
}

TEST_F(ClipRowTest, ItsCornersAreRounded) {
  const auto id = addText("one");
  items_[0].sourceBundleIdentifier = "org.example.One";
  show();
  list_.setSourceIcon("org.example.One", bitmap(32, 32, blue));
  const auto picture = pictureOf(rowOf(id), 2);
  EXPECT_GT(qGray(picture.pixel(66, 54)), 200);
  EXPECT_LT(qGray(picture.pixel(66 + 13, 54 + 13)), 100);
}

TEST_F(ClipRowTest, ASourceThatNobodyKnowsHasAQuestionMark) {
  const auto nobody = addText("one");
  const auto removed = addText("two");
  items_[1].sourceBundleIdentifier = "org.example.Removed";
  show();
  EXPECT_EQ(rowOf(nobody).sourceIconState(), SourceIconView::State::unknown);
  list_.setSourceIcon("org.example.Removed", nullptr);
  EXPECT_EQ(rowOf(removed).sourceIconState(), SourceIconView::State::unknown);
  EXPECT_EQ(pictureOf(rowOf(nobody)).copy(iconAreaOfText),
            pictureOf(rowOf(removed)).copy(iconAreaOfText));
  EXPECT_TRUE(hasColor(pictureOf(rowOf(nobody)), qRgb(90, 90, 90), iconAreaOfText) ||
              hasColor(pictureOf(rowOf(nobody)), qRgb(110, 110, 110), iconAreaOfText) ||
              hasColor(pictureOf(rowOf(nobody)), qRgb(130, 130, 130), iconAreaOfText));
}

TEST_F(ClipRowTest, AnIconGoesToEveryRowOfItsApplication) {
  const auto one = addText("one");
  const auto two = addText("two");
  const auto other = addText("three");
  items_[0].sourceBundleIdentifier = items_[1].sourceBundleIdentifier = "org.example.One";
  items_[2].sourceBundleIdentifier = "org.example.Other";
  show();
  list_.setSourceIcon("org.example.One", bitmap(32, 32, blue));
  EXPECT_EQ(rowOf(one).sourceIconState(), SourceIconView::State::icon);
  EXPECT_EQ(rowOf(two).sourceIconState(), SourceIconView::State::icon);
  EXPECT_EQ(rowOf(other).sourceIconState(), SourceIconView::State::pending);
}

TEST_F(ClipRowTest, NoGlyphIsCutAtAnyScale) {
  for (const char* title : {"שלום לכולם, קץ", "Hgjpqy ÅÇ", "اختبار", "e\u0301\u0302 ক্ষ"}) {
    items_.clear();
    const auto id = addText(title);
    show();
    const double exact = titleInk(rowOf(id), 8);
    EXPECT_GT(exact, 1000) << title;
    EXPECT_NEAR(titleInk(rowOf(id), 2) / exact, 1, 0.05) << title;
    EXPECT_NEAR(titleInk(rowOf(id), 1.25) / exact, 1, 0.08) << title;
  }
}

TEST_F(ClipRowTest, StrangeTitlesAreDrawnWithinTheirPlace) {
  const std::vector<std::string> titles = {std::string(1'000'000, 'W'),
                                           "\x01\x02\x03",
                                           "",
                                           "\u202Egnissorc\u202C \u2067x\u2069",
                                           "👩‍👩‍👧‍👦🎉👍🏽",
                                           "Z" + std::string(200, '\xcc') + "a",
                                           std::string(80, 'M')};
  for (const auto& title : titles) {
    items_.clear();
    auto id = addText(title);
    items_[0].customName = title.substr(0, 80);
    show();
    const auto picture = pictureOf(rowOf(id));
    EXPECT_FALSE(hasColor(picture, qRgb(0, 0, 0), QRect(351, 0, 5, 48))) << title.substr(0, 20);
  }
}

TEST_F(ClipRowTest, TheBackgroundFadesToWhatItIsToBe) {
  const auto one = addText("one");
  const auto two = addText("two");
  show();
  list_.select(0);
  wait(fadeTime);
  const QRgb before = pictureOf(rowOf(two)).pixel(200, 3);
  list_.select(1);
  EXPECT_EQ(pictureOf(rowOf(two)).pixel(200, 3), before);
  wait(0.06);
  const QRgb between = pictureOf(rowOf(two)).pixel(200, 3);
  wait(fadeTime);
  const QRgb after = pictureOf(rowOf(two)).pixel(200, 3);
  EXPECT_GT(qBlue(before), qBlue(between));
  EXPECT_GT(qBlue(between), qBlue(after));
  EXPECT_EQ(pictureOf(rowOf(one)).pixel(200, 3), before);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(ClipRowTest, WithLittleMotionItDoesNotFade) {
  accessibility_.setReduceMotion(true);
  addText("one");
  const auto two = addText("two");
  show();
  const QRgb before = pictureOf(rowOf(two)).pixel(200, 3);
  list_.select(1);
  EXPECT_NE(pictureOf(rowOf(two)).pixel(200, 3), before);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(ClipRowTest, AListThatIsShownAnewIsMarkedAtOnce) {
  const auto one = addText("one");
  show();
  list_.select(0);
  window_.hide();
  list_.select(std::nullopt);
  list_.select(0);
  show();
  EXPECT_EQ(dispatch_.timerCount(), 0U);
  EXPECT_EQ(pictureOf(rowOf(one)).pixel(2, 24), VantorelTheme::gold().rgba());
}

TEST_F(ClipRowTest, APressLooksLikeASelectionAndAClickChooses) {
  const auto one = addText("one");
  const auto two = addText("two");
  show();
  list_.select(0);
  press(two, {100, 20});
  EXPECT_TRUE(rowOf(two).isSelected());
  EXPECT_THAT(commands_, IsEmpty());
  release(two, {100, 20});
  EXPECT_THAT(commands_, ElementsAre("choose two"));
  click(one, {100, 20});
  EXPECT_THAT(commands_, ElementsAre("choose two", "choose one"));
}

TEST_F(ClipRowTest, APressThatEndsElsewhereDoesNothingAndLeavesTheSelection) {
  const auto one = addText("one");
  const auto two = addText("two");
  show();
  list_.select(0);
  press(two, {100, 20});
  moveTo(two, {100, 90});
  release(two, {100, 90});
  EXPECT_THAT(commands_, IsEmpty());
  EXPECT_TRUE(rowOf(one).isSelected());
  EXPECT_FALSE(rowOf(two).isSelected());
}

TEST_F(ClipRowTest, APressIsForgottenWhenTheRowBecomesAnothers) {
  const auto one = addText("one");
  show();
  press(one, {100, 20});
  items_.clear();
  const auto two = addText("two");
  show();
  release(two, {100, 20});
  EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(ClipRowTest, TheOtherButtonTakesAPressBack) {
  const auto one = addText("one");
  show();
  press(one, {100, 20});
  press(one, {100, 20}, Qt::RightButton);
  EXPECT_EQ(menu(), nullptr);
  release(one, {100, 20}, Qt::RightButton);
  release(one, {100, 20});
  EXPECT_THAT(commands_, IsEmpty());
  EXPECT_FALSE(rowOf(one).isSelected());
}

TEST_F(ClipRowTest, ThePinIsPressedByItself) {
  const auto one = addText("one");
  show();
  click(one, {370, 24});
  EXPECT_THAT(commands_, ElementsAre("toggle pin one"));
}

TEST_F(ClipRowTest, WithFivePinsOthersCannotBePinnedAndItSaysWhy) {
  canPinMore_ = false;
  const auto one = addText("one");
  const auto pin = addPin("pin");
  show();
  const auto& disabled = *rowOf(one).findChild<PinButton*>();
  EXPECT_FALSE(disabled.isEnabled());
  EXPECT_EQ(disabled.toolTip(), "Up to 5 pins. Unpin an item first.");
  const auto& enabled = *rowOf(pin).findChild<PinButton*>();
  EXPECT_TRUE(enabled.isEnabled());
  EXPECT_EQ(enabled.toolTip(), "Unpin (Ctrl+P)");
}

}  // namespace
}  // namespace vantorel
