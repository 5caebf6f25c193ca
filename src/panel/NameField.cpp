// SPDX-License-Identifier: MIT
#include "panel/NameField.h"

#include "chrome/TextPresentation.h"

namespace vantorel {
namespace {

constexpr int textInset = 5;  // the field keeps two more points of its own

}  // namespace

NameField::NameField(const QString& name) : GlassField({.focus = Look::Focus::gold}, nullptr) {
  setPlaceholderText(QStringLiteral("Name"));
  setAccessibleName(QStringLiteral("Name"));
  setFixedSize(fieldWidth, fieldHeight);
  setTextMargins(textInset, 0, textInset, 0);
  connect(this, &QLineEdit::textChanged, this, [this] { followDirection(); });
  setText(name);
  selectAll();
}

void NameField::followDirection() {
  setLayoutDirection(TextPresentation::isPrimarilyRTL(text().toStdString()) ? Qt::RightToLeft
                                                                            : Qt::LeftToRight);
}

}  // namespace vantorel
