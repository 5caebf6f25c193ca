// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <string_view>

namespace vantorel {

/// A borderless button that shows one symbol, and answers the pointer with a faint wash. What is
/// drawn and what can be hit fill its frame exactly. By itself it takes no keyboard.
class SymbolButton : public QAbstractButton {
  Q_OBJECT

 public:
  /// `side` and `symbolPoints` in points.
  SymbolButton(int side, double symbolPoints, QWidget* parent);

  /// A name of `Symbols`, which has to live as long as the program.
  void setSymbol(std::string_view name);
  [[nodiscard]] std::string_view symbol() const { return symbol_; }
  /// Shows the symbol in the accent's colour: what it stands for is in force.
  void setAccented(bool accented);

  [[nodiscard]] QSize sizeHint() const override { return {side_, side_}; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  [[nodiscard]] QColor tint() const;
  void drawSymbol(QPainter& painter) const;

  int side_;
  double symbolPoints_;
  std::string_view symbol_;
  bool accented_ = false;
  bool hovering_ = false;
};

}  // namespace vantorel
