// SPDX-License-Identifier: MIT
#pragma once

#include "chrome/SymbolButton.h"

namespace vantorel {

/// The pencil beside the shortcut. Unlike the symbols of the history panel it can be reached with
/// Tab.
class EditSymbolButton : public SymbolButton {
  Q_OBJECT

 public:
  EditSymbolButton(int side, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantorel
