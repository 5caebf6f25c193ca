// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "ui/looks/Look.h"

class QWidget;

namespace vantorel {

/// The window with that title, while it is shown.
[[nodiscard]] QWidget* shownWindow(const char* title);

/// Every window that is shown, as it stands beside the others, with a margin.
[[nodiscard]] QImage pictureOfShownWindows(Ground ground);

/// One window alone, drawn with that many pixels to a point.
[[nodiscard]] QImage pictureOnGround(QWidget& window, Ground ground, double scale);

/// The look in the colours that are set. No window is left.
[[nodiscard]] QImage pictureOf(const Look& look);

}  // namespace vantorel
