// SPDX-License-Identifier: MIT
#include "ui/pictures/PictureSamples.h"

#include <QBuffer>
#include <QImageWriter>
#include <stdexcept>

namespace vantorel {

std::string encodedPicture(int width, int height, QRgb colour, const char* format,
                           const std::map<std::string, std::string>& texts) {
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(colour);
  for (const auto& [key, text] : texts) {
    image.setText(QString::fromStdString(key), QString::fromStdString(text));
  }
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  if (!writer.write(image)) throw std::runtime_error(writer.errorString().toStdString());
  return data.toStdString();
}

std::string drawing(int width, int height, const std::string& colour) {
  const auto size = "width='" + std::to_string(width) + "' height='" + std::to_string(height) + "'";
  return "<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg' " + size + "><rect " + size +
         " fill='" + colour + "'/></svg>";
}

std::uint32_t middleOf(const SharedBitmap& picture) {
  return picture ? picture->pixels[picture->pixels.size() / 2] : 0;
}

std::string sizeOf(const SharedBitmap& picture) {
  if (!picture) return "(none)";
  return std::to_string(picture->pixelSize.width) + " x " +
         std::to_string(picture->pixelSize.height);
}

}  // namespace vantorel
