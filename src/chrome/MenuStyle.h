// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace vantorel {

/// How the product's menus are measured and drawn: rows on rounded glass, the chosen one washed
/// with the accent.
class MenuStyle : public QProxyStyle {
  Q_OBJECT

 public:
  MenuStyle();

  static constexpr int cornerRadius = 10;

  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const override;
  [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* returned) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                       const QSize& contents, const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace vantorel
