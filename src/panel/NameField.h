// SPDX-License-Identifier: MIT
#pragma once

#include "chrome/GlassField.h"
#include "chrome/SheetWindow.h"

namespace vantorel {

/// A field for a short name, on a sheet. Text stands at the side where its first letter says that
/// reading begins.
class NameField : public GlassField {
  Q_OBJECT

 public:
  static constexpr int fieldWidth = SheetWindow::contentWidth;
  static constexpr int fieldHeight = 24;

  explicit NameField(const QString& name);

 private:
  void followDirection();
};

}  // namespace vantorel
