// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <memory>
#include <string_view>

#include "base/Bytes.h"

namespace vantorel {

enum class Transparency { none, some };

/// A picture in which no two neighbouring pixels are alike.
[[nodiscard]] QImage colourful(int width, int height, Transparency transparency);

[[nodiscard]] Bytes encoded(const QImage& pixels, const char* format, int quality = -1);

/// A camera's note on how its picture lies, from 1 to 8, put where a camera puts it.
[[nodiscard]] Bytes withOrientation(const Bytes& jpeg, char orientation);

[[nodiscard]] std::shared_ptr<const Bytes> shared(Bytes bytes);

[[nodiscard]] Bytes copied(std::string_view text);

}  // namespace vantorel
