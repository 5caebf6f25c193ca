// SPDX-License-Identifier: MIT
#include <QPainter>

#include "pictures/LabelledPictures.h"

namespace vantorel {
namespace {

constexpr int width = 800;
constexpr int height = 440;

struct Theme {
  const char* name;
  QColor title, sidebar, content, alternate, ink, sidebarInk, selection, weakInk;
};

struct Words {
  QString title;
  QStringList menu, sidebar, columns, rows;
  QString accept, cancel, note, warning, status;
};

const QStringList dates = {"14/03/2025", "02/11/2024", "27/08/2024", "19/01/2025",
                           "30/06/2023", "08/12/2024", "21/05/2025"};
const QStringList sizes = {"1.2 MB", "348 KB", "97 KB", "4.6 GB", "12 KB", "720 MB", "53 KB"};

const Words& wordsIn(Language language) {
  static const Words english = {
      "Office Archive",
      {"File", "Edit", "View", "History", "Bookmarks", "Window", "Help"},
      {"Favorites", "Documents", "Downloads", "Pictures", "Music", "Shared", "Trash", "Network"},
      {"Name", "Modified", "Size"},
      {"Annual budget draft.xlsx", "Holiday photos", "Contract signed.pdf", "Interview notes.txt",
       "Apartment lease", "Backup of the website", "Recipe collection"},
      "Save Changes",
      "Cancel",
      "The file was last saved three minutes ago",
      "No network connection",
      "12 items, 3 selected"};
  static const Words hebrew = {
      "ארכיון המשרד",
      {"קובץ", "עריכה", "תצוגה", "היסטוריה", "סימניות", "חלון", "עזרה"},
      {"מועדפים", "מסמכים", "הורדות", "תמונות", "מוזיקה", "משותף", "אשפה", "רשת"},
      {"שם", "תאריך", "גודל"},
      {"טיוטת תקציב שנתי", "תמונות מהחופשה", "חוזה חתום", "הערות מהריאיון", "שכירות דירה",
       "גיבוי של האתר", "אוסף מתכונים"},
      "שמירת שינויים",
      "ביטול",
      "הקובץ נשמר לאחרונה לפני שלוש דקות",
      "אין חיבור לרשת",
      "12 פריטים, 3 נבחרו"};
  return language == Language::hebrew ? hebrew : english;
}

/// Draws a window and writes down what it drew.
class Window {
 public:
  Window(const Words& words, const Theme& theme, QFont font, bool isMirrored)
      : words_(words),
        theme_(theme),
        font_(std::move(font)),
        isMirrored_(isMirrored),
        image_(width, height, QImage::Format_RGB32),
        painter_(&image_) {
    image_.fill(theme.content);
    painter_.setFont(font_);
    painter_.setLayoutDirection(isMirrored ? Qt::RightToLeft : Qt::LeftToRight);
    drawTop();
    drawSidebar();
    drawTable();
    drawBottom();
    painter_.end();
  }
  [[nodiscard]] const QImage& image() const { return image_; }
  [[nodiscard]] const QString& text() const { return text_; }

 private:
  [[nodiscard]] QRect at(int x, int y, int w, int h) const {
    return {isMirrored_ ? width - x - w : x, y, w, h};
  }
  void write(const QRect& where, const QString& text, const QColor& colour,
             Qt::Alignment side = Qt::AlignLeading) {
    painter_.setPen(colour);
    painter_.drawText(where, static_cast<int>(Qt::AlignVCenter | side) | Qt::TextSingleLine, text);
    text_ += text + "\n";
  }
  void fill(const QRect& where, const QColor& colour) { painter_.fillRect(where, colour); }
  void round(const QRect& where, const QBrush& brush, const QPen& pen) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setBrush(brush);
    painter_.setPen(pen);
    painter_.drawRoundedRect(where, 6, 6);
  }

  void drawTop() {
    fill({0, 0, width, 28}, theme_.title);
    write({0, 0, width, 28}, words_.title, theme_.ink, Qt::AlignHCenter);
    for (int i = 0; i < 3; ++i) round(at(10 + i * 18, 8, 12, 12), QColor("#ff5f57"), Qt::NoPen);
    fill({0, 28, width, 24}, theme_.alternate);
    int x = 12;
    for (const QString& entry : words_.menu) {
      const int length = painter_.fontMetrics().horizontalAdvance(entry) + 4;
      write(at(x, 28, length, 24), entry, theme_.ink);
      x += length + 14;
    }
  }
  void drawSidebar() {
    fill(at(0, 52, 170, height - 52), theme_.sidebar);
    for (int i = 0; i < words_.sidebar.size(); ++i) {
      const int y = 60 + i * 26;
      const bool isSelected = i == 1;
      if (isSelected) round(at(6, y + 1, 158, 24), theme_.selection, Qt::NoPen);
      fill(at(12, y + 8, 10, 10), theme_.sidebarInk);
      write(at(28, y, 130, 26), words_.sidebar[i],
            isSelected ? QColor(Qt::white) : theme_.sidebarInk);
    }
  }
  void drawTable() {
    static constexpr int columns[] = {186, 480, 640};
    fill(at(170, 52, 630, 24), theme_.title);
    for (int i = 0; i < 3; ++i)
      write(at(columns[i], 52, 140, 24), words_.columns[i], theme_.weakInk);
    for (int i = 0; i < words_.rows.size(); ++i) {
      const int y = 76 + i * 28;
      const bool isSelected = i == 3;
      const QColor ink = isSelected ? QColor(Qt::white) : theme_.ink;
      fill(at(170, y, 630, 28),
           isSelected ? theme_.selection : (i % 2 != 0 ? theme_.alternate : theme_.content));
      write(at(columns[0], y, 280, 28), words_.rows[i], ink);
      write(at(columns[1], y, 140, 28), dates[i], ink);
      write(at(columns[2], y, 120, 28), sizes[i], ink);
    }
  }
  void drawBottom() {
    round(at(640, 330, 140, 30), QColor("#0a84ff"), Qt::NoPen);
    write(at(640, 330, 140, 30), words_.accept, Qt::white, Qt::AlignHCenter);
    round(at(520, 330, 100, 30), Qt::NoBrush, QColor("#888888"));
    write(at(520, 330, 100, 30), words_.cancel, theme_.ink, Qt::AlignHCenter);
    write(at(186, 290, 330, 24), words_.note, theme_.ink);
    write(at(186, 312, 330, 24), words_.warning, QColor("#c0392b"));
    fill(at(170, height - 24, 630, 24), theme_.title);
    font_.setPixelSize(font_.pixelSize() - 1);
    painter_.setFont(font_);
    write(at(186, height - 24, 400, 24), words_.status, theme_.weakInk);
  }

  const Words& words_;
  const Theme& theme_;
  QFont font_;
  bool isMirrored_;
  QImage image_;
  QPainter painter_;
  QString text_;
};

}  // namespace

std::vector<LabelledPicture> interfacePictures(Language language, int size) {
  static const std::vector<Theme> themes = {{"light", "#e4e4e4", "#f3f3f5", "#ffffff", "#f6f6f8",
                                             "#202020", "#404048", "#2f6fde", "#555555"},
                                            {"dark", "#2b2b2b", "#252526", "#1e1e1e", "#242424",
                                             "#d8d8d8", "#b8b8b8", "#094771", "#a0a0a0"},
                                            {"split", "#dcdcdc", "#2c3e50", "#ffffff", "#f4f6f8",
                                             "#2a2a2a", "#e6ecf1", "#3498db", "#555555"}};
  const bool isHebrew = language == Language::hebrew;
  const QStringList fonts = isHebrew ? QStringList{"DejaVu Sans", "Noto Sans Hebrew", "Simple CLM"}
                                     : QStringList{"DejaVu Sans", "Noto Sans", "Nimbus Sans"};
  std::vector<LabelledPicture> pictures;
  for (const QString& family : fonts) {
    for (const Theme& theme : themes) {
      QFont font(family);
      font.setPixelSize(size);
      const Window window(wordsIn(language), theme, font, isHebrew);
      pictures.push_back({"interface", theme.name, family.toStdString(), language, size,
                          window.image(), window.text()});
    }
  }
  return pictures;
}

}  // namespace vantorel
