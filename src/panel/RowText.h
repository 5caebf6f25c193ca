// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "panel/RowContent.h"

class QPainter;
class QPalette;

namespace vantorel {

/// The title and the metadata of a row, each cut to what fits. What was cut is kept from one
/// drawing to the next.
class RowText {
 public:
  /// The content, the width or the font has changed.
  void forget();
  /// `width` is the row's.
  void draw(QPainter& painter, const RowContent& content, double width, const QPalette& palette);

 private:
  struct Title {
    QString text;
    double width = 0;
  };
  void drawTitle(QPainter& painter, const RowContent& content, double width,
                 const QPalette& palette);
  void drawMetadata(QPainter& painter, const RowContent& content, double width,
                    const QPalette& palette);

  std::optional<Title> title_;
  std::optional<QString> metadata_;
};

}  // namespace vantorel
