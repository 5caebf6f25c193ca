#include "panel/SearchField.h"

#include <QEvent>
#include <QPainter>

#include "chrome/SymbolButton.h"
#include "chrome/Symbols.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double fontPoints = 12.5;
constexpr double cornerRadius = 9;
constexpr double glassPoints = 15;
constexpr double glassSpace = 32;
constexpr int textStart = 28;  // the field keeps two more points of its own
constexpr int clearSide = 24;
constexpr double clearPoints = 15;
constexpr int clearSpace = 28;
constexpr double fillAlpha = 0.06;
constexpr double rimAlpha = 0.08;

}  // namespace

SearchField::SearchField(QWidget* parent)
    : QLineEdit(parent), clearButton_(new SymbolButton(clearSide, clearPoints, this)) {
  setFrame(false);
  setFont(VantorelTheme::systemFont(fontPoints, QFont::Medium));
  setPlaceholderText(QStringLiteral("Search clips"));
  setAccessibleName(QStringLiteral("Search clips"));
  setTextMargins(textStart, 0, clearSpace, 0);
  setContextMenuPolicy(Qt::NoContextMenu);
  clearButton_->setSymbol("xmark.circle.fill");
  clearButton_->setAccessibleName(QStringLiteral("Clear search"));
  clearButton_->hide();
  connect(clearButton_, &QAbstractButton::clicked, this, [this] { clearByButton(); });
  connect(this, &QLineEdit::textChanged, this,
          [this](const QString& text) { clearButton_->setVisible(!text.isEmpty()); });
  connect(this, &QLineEdit::textEdited, this, [this] {
    if (onEdit) onEdit();
  });
  applyColors();
}

void SearchField::forget() { setText(QString()); }

void SearchField::clearByButton() {
  clear();
  setFocus(Qt::OtherFocusReason);
  if (onEdit) onEdit();
}

void SearchField::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double half = 0.5;
    painter.setPen(QPen(VantorelTheme::labelWash(palette(), rimAlpha), 1));
    painter.setBrush(VantorelTheme::labelWash(palette(), fillAlpha));
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), cornerRadius,
                            cornerRadius);
    Symbols::draw(painter, "magnifyingglass", QRectF(0, 0, glassSpace, height()), glassPoints,
                  VantorelTheme::secondaryLabel(palette()));
  }
  QLineEdit::paintEvent(event);
}

void SearchField::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  const int inset = (height() - clearSide) / 2;
  clearButton_->move(width() - clearSide - inset, inset);
}

void SearchField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) applyColors();
}

void SearchField::applyColors() {
  QPalette colors = palette();
  const QColor text = VantorelTheme::label(colors);
  const QColor placeholder = VantorelTheme::secondaryLabel(colors);
  const bool same = colors.color(QPalette::Base).alpha() == 0 &&
                    colors.color(QPalette::Text) == text &&
                    colors.color(QPalette::PlaceholderText) == placeholder;
  if (same) return;
  colors.setColor(QPalette::Base, Qt::transparent);
  colors.setColor(QPalette::Text, text);
  colors.setColor(QPalette::PlaceholderText, placeholder);
  setPalette(colors);
}

}  // namespace vantorel
