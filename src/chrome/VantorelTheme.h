// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QWidget;

namespace vantorel::VantorelTheme {

/// The accent, and two washes of it. The strong one, behind the selected row, has less colour than
/// the soft one.
[[nodiscard]] QColor gold();
[[nodiscard]] QColor goldSoft();
[[nodiscard]] QColor goldStrong();
/// `color` for a line or a small sign: darker on light windows, where bright colours dissolve.
[[nodiscard]] QColor sign(const QColor& color, const QPalette& palette);

/// Text and glyphs by importance, and what they stand on, from the desktop's own colours.
[[nodiscard]] QColor label(const QPalette& palette);
[[nodiscard]] QColor secondaryLabel(const QPalette& palette);
[[nodiscard]] QColor tertiaryLabel(const QPalette& palette);
[[nodiscard]] QColor window(const QPalette& palette);
/// The label colour at `alpha`, for hairlines and washes.
[[nodiscard]] QColor labelWash(const QPalette& palette, double alpha);
[[nodiscard]] bool isDark(const QPalette& palette);

/// Has selected text washed with the accent.
void setSelectionColors(QPalette& palette);

/// Writes a label's text in that colour. Nothing happens if it has it already, so this may be
/// called whenever the palette has changed.
void setTextColor(QWidget& label, const QColor& color);

/// The desktop's font at `points`, which are device-independent pixels here as for every length.
[[nodiscard]] QFont systemFont(double points, QFont::Weight weight = QFont::Normal);

}  // namespace vantorel::VantorelTheme
