#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

namespace vantorel::VantorelTheme {

/// The accent, and two faint washes of it; the one called strong is the fainter and marks the
/// selected row.
[[nodiscard]] QColor gold();
[[nodiscard]] QColor goldSoft();
[[nodiscard]] QColor goldStrong();

/// Text and glyphs by importance, and what they stand on, from the desktop's own colours.
[[nodiscard]] QColor label(const QPalette& palette);
[[nodiscard]] QColor secondaryLabel(const QPalette& palette);
[[nodiscard]] QColor tertiaryLabel(const QPalette& palette);
[[nodiscard]] QColor window(const QPalette& palette);
/// The label colour at `alpha`, for hairlines and washes.
[[nodiscard]] QColor labelWash(const QPalette& palette, double alpha);
[[nodiscard]] bool isDark(const QPalette& palette);

/// The desktop's font at `points`, which are device-independent pixels here as for every length.
[[nodiscard]] QFont systemFont(double points, QFont::Weight weight = QFont::Normal);

}  // namespace vantorel::VantorelTheme
