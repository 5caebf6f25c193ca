// SPDX-License-Identifier: MIT
#include "thumbnails/PictureScale.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vantorel {

double pictureScale(double screenScale, Size place, std::size_t byteLimit, std::size_t pictures) {
  if (pictures == 0) return screenScale;
  const double bytesAtOne = place.width * place.height * sizeof(std::uint32_t);
  const double share = static_cast<double>(byteLimit) / static_cast<double>(pictures);
  const double affordable = std::max(1.0, std::sqrt(share / bytesAtOne));
  return std::min(screenScale, affordable);
}

}  // namespace vantorel
