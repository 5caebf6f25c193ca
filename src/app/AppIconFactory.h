// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <string_view>

namespace vantorel::AppIconFactory {

/// The picture called `name` among the program's resources; null when there is none. The program's
/// own is "vt". The name is older than the pictures, which are SVG.
[[nodiscard]] QIcon bundledPNG(std::string_view name);

}  // namespace vantorel::AppIconFactory
