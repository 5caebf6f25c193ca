// SPDX-License-Identifier: MIT
#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "pictures/LabelledPictures.h"

namespace vantorel {
namespace {

using Entries = std::vector<std::pair<QString, QString>>;

const Entries& entriesIn(Language language) {
  static const Entries english = {{"Harbor Market Ltd", ""},    {"12 Prophets Street Haifa", ""},
                                  {"Receipt number 48213", ""}, {"Date 14/03/2025 18:22", ""},
                                  {"Fresh milk", "6.90"},       {"Whole bread", "14.50"},
                                  {"Yellow cheese", "23.80"},   {"Tomatoes", "9.45"},
                                  {"Black coffee", "31.20"},    {"Olive oil", "42.00"},
                                  {"TOTAL", "127.85"},          {"Cash", "150.00"},
                                  {"Change", "22.15"},          {"Thank you and goodbye", ""}};
  static const Entries hebrew = {
      {"סופר הכרמל בע\"מ", ""}, {"רחוב הנביאים 12 חיפה", ""}, {"חשבונית מס 48213", ""},
      {"תאריך 14/03/2025", ""}, {"חלב טרי", "6.90"},          {"לחם מלא", "14.50"},
      {"גבינה צהובה", "23.80"}, {"עגבניות", "9.45"},          {"קפה שחור", "31.20"},
      {"שמן זית", "42.00"},     {"סך הכול", "127.85"},        {"מזומן", "150.00"},
      {"עודף", "22.15"},        {"תודה ולהתראות", ""}};
  return language == Language::hebrew ? hebrew : english;
}

QImage paper(const Entries& entries, const QFont& font, bool fromRight, QString& text) {
  constexpr int width = 900;
  constexpr int height = 1200;
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(QColor("#fbfaf5"));
  QPainter painter(&image);
  painter.setFont(font);
  painter.setPen(QColor("#2a2a2a"));
  QRect line(70, 60, width - 140, font.pixelSize() * 3 / 2);
  const auto draw = [&](const QString& words, bool right) {
    painter.drawText(line, Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft), words);
    text += words + "\n";
  };
  for (const auto& [name, price] : entries) {
    draw(name, fromRight);
    if (!price.isEmpty()) draw(price, !fromRight);
    line.translate(0, font.pixelSize() * 9 / 5);
  }
  return image;
}

/// On a table, seen at an angle, in the light of a window.
QImage photographed(const QImage& paper, int number) {
  QTransform angle;
  angle.rotate(number - 2.5);
  const QImage tilted = paper.transformed(angle, Qt::SmoothTransformation);
  QImage photo(tilted.size(), QImage::Format_RGB32);
  photo.fill(QColor("#6b4f3a"));
  QPainter(&photo).drawImage(0, 0, tilted);
  std::mt19937 random(static_cast<unsigned>(number));
  std::normal_distribution<double> noise(0, 6);
  for (int y = 0; y < photo.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(photo.scanLine(y));
    for (int x = 0; x < photo.width(); ++x) {
      const double light = 0.55 + 0.45 * std::sin(0.3 + 1.2 * x / photo.width()) *
                                      std::cos(0.7 * y / photo.height() - 0.2 * number);
      const double grain = noise(random);
      const auto seen = [&](int value) {
        return std::clamp(static_cast<int>(value * light + grain), 0, 255);
      };
      row[x] = qRgb(seen(qRed(row[x])), seen(qGreen(row[x])), seen(qBlue(row[x])));
    }
  }
  return photo.scaledToWidth(700 + number * 60, Qt::SmoothTransformation);
}

}  // namespace

std::vector<LabelledPicture> receiptPictures(Language language) {
  constexpr int count = 6;
  constexpr int quality = 82;
  const bool isHebrew = language == Language::hebrew;
  const QStringList fonts = isHebrew ? QStringList{"Noto Sans Hebrew", "Miriam CLM"}
                                     : QStringList{"Nimbus Sans", "DejaVu Sans Mono"};
  std::vector<LabelledPicture> pictures;
  for (int i = 0; i < count; ++i) {
    QFont font(fonts[i % fonts.size()]);
    font.setPixelSize(30 + 2 * i);
    LabelledPicture picture{
        "receipt", "photo", font.family().toStdString(), language, font.pixelSize(), {}, {}};
    const QImage photo = photographed(paper(entriesIn(language), font, isHebrew, picture.text), i);
    const Bytes jpeg = jpegOf(photo, quality);
    picture.image = QImage::fromData(reinterpret_cast<const uchar*>(jpeg.data()),
                                     static_cast<int>(jpeg.size()));
    pictures.push_back(std::move(picture));
  }
  return pictures;
}

}  // namespace vantorel
