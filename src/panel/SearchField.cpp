// SPDX-License-Identifier: MIT
#include "panel/SearchField.h"

#include <QKeyEvent>

#include "chrome/SymbolButton.h"
#include "chrome/Symbols.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double glassPoints = 15;
constexpr double glassSpace = 32;
constexpr int textStart = 28;  // the field keeps two more points of its own
constexpr int clearSide = 24;
constexpr double clearPoints = 15;
constexpr int clearSpace = 28;

}  // namespace

SearchField::SearchField(QWidget* parent)
    : GlassField({.fontPoints = 12.5, .weight = QFont::Medium, .cornerRadius = 9, .rimAlpha = 0.08},
                 parent),
      clearButton_(new SymbolButton(clearSide, clearPoints, this)) {
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
}

void SearchField::forget() { setText(QString()); }

void SearchField::clearByButton() {
  clear();
  setFocus(Qt::OtherFocusReason);
  if (onEdit) onEdit();
}

void SearchField::keyPressEvent(QKeyEvent* event) {
  const bool copiesOwn = event->matches(QKeySequence::Copy) && hasSelectedText();
  if (!copiesOwn && onKeyPress && onKeyPress(*event)) return;
  GlassField::keyPressEvent(event);
}

void SearchField::drawOnBackground(QPainter& painter) const {
  Symbols::draw(painter, "magnifyingglass", QRectF(0, 0, glassSpace, height()), glassPoints,
                VantorelTheme::secondaryLabel(palette()));
}

void SearchField::resizeEvent(QResizeEvent* event) {
  GlassField::resizeEvent(event);
  const int inset = (height() - clearSide) / 2;
  clearButton_->move(width() - clearSide - inset, inset);
}

}  // namespace vantorel
