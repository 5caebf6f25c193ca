// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "chrome/GlassField.h"

namespace vantorel {

class SymbolButton;

/// The panel's search field: a magnifying glass, the text, and a button that clears it.
class SearchField : public GlassField {
  Q_OBJECT

 public:
  explicit SearchField(QWidget* parent);

  /// Empties the field for good: what was typed cannot be brought back by undoing.
  void forget();

  /// The user has changed the text.
  std::function<void()> onEdit;
  /// A key pressed in the field, before the field takes it; true: it is done.
  std::function<bool(const QKeyEvent&)> onKeyPress;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void drawOnBackground(QPainter& painter) const override;

 private:
  void clearByButton();

  SymbolButton* clearButton_;
};

}  // namespace vantorel
