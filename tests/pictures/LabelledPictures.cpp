// SPDX-License-Identifier: MIT
#include "pictures/LabelledPictures.h"

#include <QBuffer>
#include <QHash>
#include <QPainter>
#include <QTextLayout>

namespace vantorel {
namespace {

struct Theme {
  const char* name;
  QColor paper;
  QColor ink;
};

QStringList fontsFor(Language language) {
  if (language == Language::hebrew)
    return {"DejaVu Sans", "Noto Sans Hebrew", "Simple CLM", "Nachlieli CLM", "Miriam CLM"};
  if (language == Language::mixed) return {"DejaVu Sans", "Noto Sans"};
  return {"DejaVu Sans", "Noto Sans", "Nimbus Sans", "DejaVu Serif", "DejaVu Sans Mono"};
}

Bytes encoded(const QImage& image, const char* format, int quality) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format, quality);
  const auto view = bytesOf({bytes.constData(), static_cast<std::size_t>(bytes.size())});
  return {view.begin(), view.end()};
}

void drawLine(QPainter& painter, const QFont& font, const QString& text, QPointF at, int width,
              bool fromRight) {
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::NoWrap);
  option.setTextDirection(fromRight ? Qt::RightToLeft : Qt::LeftToRight);
  option.setAlignment(fromRight ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeft);
  layout.setTextOption(option);
  layout.beginLayout();
  layout.createLine().setLineWidth(width);
  layout.endLayout();
  layout.draw(&painter, at);
}

LabelledPicture linePicture(Language language, int size, const QString& family, const Theme& theme,
                            int first) {
  constexpr int width = 640;
  constexpr int margin = 16;
  const QStringList& lines = labelledLines(language);
  const auto count = lines.size() / 2;
  LabelledPicture picture{
      "lines",
      theme.name,
      family.toStdString(),
      language,
      size,
      QImage(width, static_cast<int>(2 * margin + count * size * 2), QImage::Format_RGB32),
      {}};
  picture.image.fill(theme.paper);
  QFont font(family);
  font.setPixelSize(size);
  QPainter painter(&picture.image);
  painter.setPen(theme.ink);
  for (qsizetype i = 0; i < count; ++i) {
    const QString& line = lines[(first + i) % lines.size()];
    drawLine(painter, font, line, QPointF(margin, margin + static_cast<double>(i) * size * 2),
             width - 2 * margin, language != Language::english);
    picture.text += line + "\n";
  }
  return picture;
}

}  // namespace

Bytes pngOf(const QImage& image) { return encoded(image, "PNG", 90); }

Bytes jpegOf(const QImage& image, int quality) { return encoded(image, "JPG", quality); }

Bytes LabelledPicture::png() const { return pngOf(image); }

std::vector<LabelledPicture> linePictures(Language language, int size) {
  static const std::vector<Theme> themes = {{"light", "#ffffff", "#1a1a1a"},
                                            {"dark", "#1e1e1e", "#d4d4d4"},
                                            {"grey", "#f0f0f0", "#505050"},
                                            {"blue", "#0b5fa5", "#ffffff"}};
  std::vector<LabelledPicture> pictures;
  const auto half = static_cast<int>(labelledLines(language).size() / 2);
  for (const QString& font : fontsFor(language))
    for (const Theme& theme : themes)
      pictures.push_back(
          linePicture(language, size, font, theme, static_cast<int>(pictures.size() % 2) * half));
  return pictures;
}

QImage pageOfText(QSize picture, int size, int lines) {
  QImage image(picture, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  QFont font("Noto Sans");
  font.setPixelSize(size);
  painter.setFont(font);
  const QStringList& texts = labelledLines(Language::english);
  const int lineHeight = picture.height() / (lines + 1);
  qsizetype next = 0;
  for (int i = 0; i < lines; ++i) {
    QString line;
    for (;;) {
      const QString longer = line + texts[next % texts.size()] + ". ";
      if (painter.fontMetrics().horizontalAdvance(longer) > picture.width() - 2 * size) break;
      line = longer;
      ++next;
    }
    painter.drawText(size, lineHeight * (i + 1), line);
  }
  return image;
}

WordCount& WordCount::operator+=(const WordCount& other) {
  found += other.found;
  all += other.all;
  return *this;
}

double WordCount::percent() const { return all > 0 ? 100.0 * found / all : 0; }

WordCount foundWords(const QString& expected, const QString& read) {
  QHash<QString, int> words;
  for (const QString& word : read.simplified().split(' ')) ++words[word];
  WordCount count;
  for (const QString& word : expected.simplified().split(' ')) {
    ++count.all;
    if (words[word]-- > 0) ++count.found;
  }
  return count;
}

}  // namespace vantorel
