// SPDX-License-Identifier: MIT
#include "panel/RowBackground.h"

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double hoverAlpha = 0.055;

QColor colorOf(RowBackground::Look look, const QPalette& palette) {
  switch (look) {
    case RowBackground::Look::selected:
      return VantorelTheme::goldStrong();
    case RowBackground::Look::hovered:
      return VantorelTheme::labelWash(palette, hoverAlpha);
    case RowBackground::Look::plain:
      break;
  }
  return Qt::transparent;
}

/// Weighed by how much of each colour is seen, so that nothing turns dark on its way to nothing.
QColor between(const QColor& from, const QColor& to, double progress) {
  const auto weightTo = static_cast<float>(progress);
  const float seenFrom = from.alphaF() * (1 - weightTo);
  const float seenTo = to.alphaF() * weightTo;
  const float alpha = seenFrom + seenTo;
  if (alpha <= 0) return Qt::transparent;
  const auto mixed = [&](float a, float b) { return (a * seenFrom + b * seenTo) / alpha; };
  return QColor::fromRgbF(mixed(from.redF(), to.redF()), mixed(from.greenF(), to.greenF()),
                          mixed(from.blueF(), to.blueF()), alpha);
}

}  // namespace

RowBackground::RowBackground(const ChromeServices& services)
    : fade_(services.dispatch, services.accessibility) {
  fade_.onStep = [this] {
    if (onChange) onChange();
  };
}

void RowBackground::setLook(Look look, Change change, const QPalette& palette) {
  if (look == look_ && change == Change::animated) return;
  const QColor seen = color(palette);
  look_ = look;
  if (change == Change::animated) {
    from_ = seen;
    fade_.start();
  } else {
    fade_.finish();
  }
  if (onChange) onChange();
}

QColor RowBackground::color(const QPalette& palette) const {
  const QColor target = colorOf(look_, palette);
  return fade_.progress() >= 1 ? target : between(from_, target, fade_.progress());
}

}  // namespace vantorel
