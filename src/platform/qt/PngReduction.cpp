// SPDX-License-Identifier: MIT
#include "platform/qt/PngReduction.h"

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/qt/AreaAverage.h"
#include "platform/qt/ImageReading.h"
#include "platform/qt/PngRows.h"
#include "platform/qt/PngStructure.h"

namespace vantorel {

SharedBitmap reducedPng(ByteView png, PixelSize fitting) {
  if (!checkedPng(png)) return nullptr;
  PngRows rows(png);
  if (!rows.begin()) return nullptr;
  if (rows.isInterlaced()) return reducedPixels(png, fitting);

  const PixelSize whole = rows.size();
  const PixelSize reduced = reducedSize(whole, fitting);
  AreaAverage average(whole, reduced, rows.pixelBytes());
  std::vector<std::uint8_t> row(static_cast<std::size_t>(whole.width) *
                                static_cast<std::size_t>(rows.pixelBytes()));
  for (int y = 0; y < whole.height; ++y) {
    if (!rows.read(row.data())) return nullptr;
    average.addRow(row.data());
  }
  const Size size{static_cast<double>(whole.width), static_cast<double>(whole.height)};
  return std::make_shared<const Bitmap>(Bitmap{size, reduced, average.takePixels()});
}

}  // namespace vantorel
