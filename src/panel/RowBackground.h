// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>
#include <functional>

#include "chrome/ChromeServices.h"
#include "panel/BackgroundFade.h"

namespace vantorel {

/// The wash behind a row: a colour for each of its looks, and the way from one to another.
class RowBackground {
 public:
  explicit RowBackground(const ChromeServices& services);

  /// It is to be drawn anew.
  std::function<void()> onChange;

  enum class Look { plain, hovered, selected };
  enum class Change { animated, immediate };
  void setLook(Look look, Change change, const QPalette& palette);

  [[nodiscard]] QColor color(const QPalette& palette) const;

 private:
  BackgroundFade fade_;
  QColor from_{Qt::transparent};
  Look look_ = Look::plain;
};

}  // namespace vantorel
