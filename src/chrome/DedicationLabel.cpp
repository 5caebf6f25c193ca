// SPDX-License-Identifier: MIT
#include "chrome/DedicationLabel.h"

#include <QPainter>
#include <QVariantAnimation>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double fontPoints = 11;
constexpr double textAlpha = 0.42;
constexpr int appearMilliseconds = 100;
constexpr int vanishMilliseconds = 220;

}  // namespace

DedicationLabel::DedicationLabel(QWidget* parent)
    : QWidget(parent), fade_(new QVariantAnimation(this)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFont(VantorelTheme::systemFont(fontPoints, QFont::Medium));
  connect(fade_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setAlpha(value.toDouble()); });
}

void DedicationLabel::setShown(bool shown, Motion motion) {
  if (motion == Motion::none) {
    fade_->stop();
    shown_ = shown;
    setAlpha(shown ? 1 : 0);
    return;
  }
  if (shown == shown_) return;
  shown_ = shown;
  fade_->stop();
  fade_->setStartValue(alpha_);
  fade_->setEndValue(shown ? 1.0 : 0.0);
  fade_->setDuration(shown ? appearMilliseconds : vanishMilliseconds);
  fade_->start();
}

void DedicationLabel::setAlpha(double alpha) {
  if (alpha == alpha_) return;
  alpha_ = alpha;
  update();
}

void DedicationLabel::paintEvent(QPaintEvent* /*event*/) {
  if (alpha_ <= 0) return;
  QPainter painter(this);
  painter.setFont(font());
  painter.setPen(VantorelTheme::labelWash(palette(), textAlpha * alpha_));
  painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("For everyone who keeps things."));
}

}  // namespace vantorel
