// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>
#include <optional>
#include <string_view>

namespace vantorel {

/// A rounded button with a title, drawn for glass. It is reached with Tab and pressed with Space;
/// a key equivalent is the window's affair.
class PushButton : public QPushButton {
  Q_OBJECT

 public:
  enum class Prominence {
    standard,
    primary,  // what Return does: filled with the accent
  };
  enum class ControlSize { regular, large };

  PushButton(const QString& title, QWidget* parent, Prominence prominence = Prominence::standard,
             ControlSize size = ControlSize::regular);

  [[nodiscard]] Prominence prominence() const { return prominence_; }

  /// Washes the button in a colour that means something, and shows a symbol in it before the title.
  void setTint(const QColor& tint, std::string_view symbol);
  [[nodiscard]] const std::optional<QColor>& tint() const { return tint_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  [[nodiscard]] QColor background() const;
  [[nodiscard]] QColor foreground() const;
  void drawTitle(QPainter& painter) const;

  Prominence prominence_;
  ControlSize size_;
  std::optional<QColor> tint_;
  std::string_view symbol_;  // a name of `Symbols`, which lives as long as the program
};

}  // namespace vantorel
