// SPDX-License-Identifier: MIT
#include "chrome/ToastPanel.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>

#include "chrome/AccessibleRole.h"
#include "chrome/ReadableGlassView.h"
#include "chrome/TextPresentation.h"
#include "chrome/ToastText.h"
#include "chrome/VantorelTheme.h"
#include "chrome/WindowGlass.h"

namespace vantorel {
namespace {

constexpr double cornerRadius = 14;
constexpr int inset = 14;
constexpr std::size_t maxCharacters = 200;

}  // namespace

ToastPanel::ToastPanel(const QString& message, const ChromeServices& services)
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus) {
  setAccessibleRole(*this, QAccessible::Notification);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(message);
  setAccessibleName(message);
  setFixedSize(width, height);

  auto* glass = new ReadableGlassView(cornerRadius, this);
  glass->setGeometry(rect());
  new WindowGlass({*this, cornerRadius, services.accessibility, services.backdrops},
                  [glass](const GlassFinish& finish) { glass->setFinish(finish); });

  label_ = new QLabel(glass);
  label_->setGeometry(rect().adjusted(inset, 0, -inset, 0));
  label_->setAlignment(Qt::AlignCenter);
  label_->setTextFormat(Qt::PlainText);
  const auto utf8 = message.toStdString();
  label_->setLayoutDirection(TextPresentation::isPrimarilyRTL(utf8) ? Qt::RightToLeft
                                                                    : Qt::LeftToRight);
  const auto line = QString::fromStdString(TextPresentation::singleLine(utf8, maxCharacters));
  const auto fitted = ToastText::fitted(line, label_->width());
  label_->setFont(fitted.font);
  label_->setText(fitted.text);
  label_->setAccessibleName(message);
  tintLabel();
}

void ToastPanel::orderFrontRegardless() {
  show();
  raise();
  if (!QAccessible::isActive()) return;
  // The toolkit does not tell of windows of this type, and readers say a notification as it comes.
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

void ToastPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) tintLabel();
}

void ToastPanel::tintLabel() {
  VantorelTheme::setTextColor(*label_, VantorelTheme::label(palette()));
}

}  // namespace vantorel
