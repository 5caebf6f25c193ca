#include "panel/NameField.h"

#include <QEvent>
#include <QPainter>

#include "chrome/TextPresentation.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double fontPoints = 13;
constexpr double cornerRadius = 6;
constexpr int textInset = 5;  // the field keeps two more points of its own
constexpr double fillAlpha = 0.06;
constexpr double rimAlpha = 0.16;
constexpr double focusedRim = 1.5;

}  // namespace

NameField::NameField(const QString& name) {
  setPlaceholderText(QStringLiteral("Name"));
  setAccessibleName(QStringLiteral("Name"));
  setFrame(false);
  setFont(VantorelTheme::systemFont(fontPoints));
  setFixedSize(fieldWidth, fieldHeight);
  setTextMargins(textInset, 0, textInset, 0);
  connect(this, &QLineEdit::textChanged, this, [this] { followDirection(); });
  setText(name);
  selectAll();
  applyColors();
}

void NameField::followDirection() {
  setLayoutDirection(TextPresentation::isPrimarilyRTL(text().toStdString()) ? Qt::RightToLeft
                                                                            : Qt::LeftToRight);
}

void NameField::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double rim = hasFocus() ? focusedRim : 1;
    painter.setPen(QPen(
        hasFocus() ? VantorelTheme::gold() : VantorelTheme::labelWash(palette(), rimAlpha), rim));
    painter.setBrush(VantorelTheme::labelWash(palette(), fillAlpha));
    const double inset = rim / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), cornerRadius,
                            cornerRadius);
  }
  QLineEdit::paintEvent(event);
}

void NameField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) applyColors();
}

void NameField::applyColors() {
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
