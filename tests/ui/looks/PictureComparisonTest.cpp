// SPDX-License-Identifier: MIT
#include "ui/looks/PictureComparison.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "ui/looks/FewColors.h"

namespace vantorel {
namespace {

constexpr QRect symbolPlace{12, 10, 14, 14};

/// Rows of a list, as a window draws them.
struct Sample {
  QPointF text{44, 24};
  QColor accent{0xed, 0xa8, 0x29};
  QColor glass{0xef, 0xef, 0xf0};
  int rows = 4;
  bool symbols = true;
  bool separators = true;
};

void drawRow(QPainter& painter, const Sample& sample) {
  if (sample.symbols) {
    painter.setPen(QPen(QColor(0x50, 0x50, 0x52), 1.4));
    painter.drawEllipse(symbolPlace);
  }
  painter.setPen(Qt::black);
  painter.drawText(sample.text, QStringLiteral("A clip of some length"));
  painter.fillRect(QRectF(4, 4, 3, 28), sample.accent);
  if (sample.separators) painter.fillRect(QRect(40, 37, 190, 1), QColor(0, 0, 0, 40));
}

QImage draw(const Sample& sample = {}) {
  QImage image(240, 180, QImage::Format_RGB32);
  image.fill(sample.glass);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  for (int row = 0; row < sample.rows; ++row) {
    drawRow(painter, sample);
    painter.translate(0, 38);
  }
  return image;
}

bool passes(const QImage& actual, const QImage& expected = draw()) {
  return comparePictures(actual, expected).none();
}

TEST(PictureComparison, APictureIsLikeItself) { EXPECT_TRUE(passes(draw())); }

TEST(PictureComparison, FewerColoursAreNoDifference) {
  QImage colorful = draw();
  QPainter painter(&colorful);
  QLinearGradient gradient(0, 0, 240, 0);
  gradient.setColorAt(0, QColor(0xed, 0xa8, 0x29));
  gradient.setColorAt(1, QColor(0x2d, 0x7d, 0xd2));
  painter.fillRect(QRect(0, 150, 240, 30), gradient);
  painter.end();
  const QImage few = inFewColors(colorful);
  EXPECT_LE(few.colorCount(), 255);
  EXPECT_NE(few.convertToFormat(QImage::Format_RGB32), colorful);
  EXPECT_TRUE(passes(few, colorful));
}

TEST(PictureComparison, OtherSmoothingIsNoDifference) {
  for (const double shift : {0.25, 0.5, 0.75, 1.0}) {
    const auto shifted = draw({.text = {44 + shift, 24}});
    EXPECT_TRUE(passes(shifted)) << shift;
    EXPECT_TRUE(passes(draw(), shifted)) << shift;
  }
}

TEST(PictureComparison, AnotherSizeIsADifference) {
  const auto wider = draw().copy(0, 0, 241, 180);
  EXPECT_FALSE(passes(wider));
  EXPECT_FALSE(passes(QImage()));
}

TEST(PictureComparison, AMissingRowIsADifference) { EXPECT_FALSE(passes(draw({.rows = 3}))); }

TEST(PictureComparison, MovedTextIsADifference) {
  EXPECT_FALSE(passes(draw({.text = {46, 24}})));
  EXPECT_FALSE(passes(draw({.text = {44, 26}})));
}

TEST(PictureComparison, AMissingSymbolIsADifference) {
  EXPECT_FALSE(passes(draw({.symbols = false})));
  EXPECT_FALSE(passes(draw(), draw({.symbols = false})));
}

TEST(PictureComparison, MissingHairlinesAreADifference) {
  EXPECT_FALSE(passes(draw({.separators = false})));
}

TEST(PictureComparison, AnotherColourIsADifference) {
  EXPECT_FALSE(passes(draw({.accent = {0xd9, 0x8a, 0x10}})));
  EXPECT_FALSE(passes(draw({.glass = {0xe8, 0xe8, 0xea}})));
}

TEST(PictureComparison, SaysWhereItIs) {
  QImage actual = draw();
  QPainter(&actual).fillRect(100, 100, 6, 6, Qt::red);
  const auto difference = comparePictures(actual, draw());
  ASSERT_EQ(difference.blocks.size(), 1U);
  EXPECT_TRUE(difference.blocks.front().contains(QRect(100, 100, 6, 6)));
  const auto shown = differencePicture(draw(), difference);
  EXPECT_EQ(shown.size(), actual.size());
  EXPECT_EQ(shown.pixelColor(difference.blocks.front().topLeft()), QColor(0xd0, 0, 0));
}

}  // namespace
}  // namespace vantorel
