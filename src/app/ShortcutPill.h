// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <string_view>

namespace vantorel {

/// The desktop's font for what stands in columns.
[[nodiscard]] QFont monospacedFont(double points, QFont::Weight weight);

/// Shows a shortcut as this desktop's keys on a golden ground.
class ShortcutPill : public QLabel {
  Q_OBJECT

 public:
  /// `display` with the symbols of the keys, as shortcuts give it.
  ShortcutPill(std::string_view display, QWidget* parent);

  void setShortcut(std::string_view display);

  /// As designed, and wider only for a shortcut that would not be legible otherwise.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantorel
