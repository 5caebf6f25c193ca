// SPDX-License-Identifier: MIT
#include "platform/qt/PngWriter.h"

#include <libdeflate.h>

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace vantorel {
namespace {

enum Filter : unsigned char { none = 0, up = 2 };

enum ColourType : unsigned char { trueColour = 2, trueColourWithAlpha = 6 };

/// Memory that is written before it is read, so it is not cleared first.
struct Buffer {
  std::unique_ptr<unsigned char[]> bytes;
  std::size_t size = 0;

  explicit Buffer(std::size_t capacity)
      : bytes(std::make_unique_for_overwrite<unsigned char[]>(capacity)), size(capacity) {}
  [[nodiscard]] std::span<const unsigned char> view() const { return {bytes.get(), size}; }
};

/// Whether most of a row repeats its left or its upper neighbour, as in pictures of windows and
/// text: those are smaller and faster as they are, and only pictures of nature gain by a filter.
bool isFlat(const unsigned char* row, const unsigned char* above, std::size_t size,
            std::size_t channels) {
  std::uint32_t likeAbove = 0;
  std::uint32_t likeLeft = 0;
  for (std::size_t i = channels; i < size; ++i) {
    likeAbove += row[i] == above[i] ? 1 : 0;
    likeLeft += row[i] == row[i - channels] ? 1 : 0;
  }
  return std::max(likeAbove, likeLeft) > size / 2;
}

void filterRow(const unsigned char* row, const unsigned char* above, std::size_t size,
               std::size_t channels, unsigned char* output) {
  if (isFlat(row, above, size, channels)) {
    *output = none;
    std::memcpy(output + 1, row, size);
    return;
  }
  *output = up;
  for (std::size_t i = 0; i < size; ++i) {
    output[i + 1] = static_cast<unsigned char>(row[i] - above[i]);
  }
}

/// All rows with their filters. Converts a few rows at a time, so that there is never a second
/// copy of the whole image.
Buffer filteredRows(const QImage& pixels, QImage::Format format, std::size_t channels) {
  constexpr int rowsAtOnce = 32;
  const auto rowSize = static_cast<std::size_t>(pixels.width()) * channels;
  Buffer filtered((rowSize + 1) * static_cast<std::size_t>(pixels.height()));
  auto* output = filtered.bytes.get();
  const auto zeroes = std::make_unique<unsigned char[]>(rowSize);
  const unsigned char* above = zeroes.get();
  QImage before;  // keeps the row above alive
  for (int y = 0; y < pixels.height(); y += rowsAtOnce) {
    const int count = std::min(rowsAtOnce, pixels.height() - y);
    const QImage rows = pixels.copy(0, y, pixels.width(), count).convertToFormat(format);
    for (int i = 0; i < count; ++i) {
      const auto* row = rows.constScanLine(i);
      filterRow(row, above, rowSize, channels, output);
      output += rowSize + 1;
      above = row;
    }
    before = rows;
  }
  return filtered;
}

/// Empty when there is no memory.
Buffer compressed(const Buffer& data) {
  constexpr int fastest = 1;
  const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
      libdeflate_alloc_compressor(fastest), libdeflate_free_compressor);
  if (!compressor) return Buffer(0);
  Buffer output(libdeflate_zlib_compress_bound(compressor.get(), data.size));
  output.size = libdeflate_zlib_compress(compressor.get(), data.bytes.get(), data.size,
                                         output.bytes.get(), output.size);
  return output;
}

void appendNumber(Bytes& png, std::uint32_t value) {
  for (const int shift : {24, 16, 8, 0}) png.push_back(static_cast<std::byte>(value >> shift));
}

void append(Bytes& png, std::span<const std::byte> bytes) {
  const auto end = png.size();
  png.resize(end + bytes.size());
  std::ranges::copy(bytes, std::span(png).subspan(end).begin());
}

void appendChunk(Bytes& png, std::string_view type, std::span<const unsigned char> data) {
  appendNumber(png, static_cast<std::uint32_t>(data.size()));
  const auto checked = png.size();
  append(png, bytesOf(type));
  append(png, std::as_bytes(data));
  appendNumber(png, libdeflate_crc32(0, png.data() + checked, png.size() - checked));
}

std::array<unsigned char, 13> header(const QImage& pixels, ColourType colourType) {
  constexpr unsigned char bitsPerChannel = 8;
  std::array<unsigned char, 13> made{};
  for (int i = 0; i < 4; ++i) {
    const int shift = 24 - 8 * i;
    made[static_cast<unsigned>(i)] = static_cast<unsigned char>(pixels.width() >> shift);
    made[static_cast<unsigned>(i + 4)] = static_cast<unsigned char>(pixels.height() >> shift);
  }
  made[8] = bitsPerChannel;
  made[9] = colourType;
  return made;
}

/// What the fast way would lose, more than eight bits a channel or a colour space of its own.
bool isBeyondTheFastWay(const QImage& pixels) {
  const bool isDeep = pixels.depth() > 32 || pixels.format() == QImage::Format_Grayscale16 ||
                      pixels.format() == QImage::Format_BGR30 ||
                      pixels.format() == QImage::Format_RGB30 ||
                      pixels.format() == QImage::Format_A2BGR30_Premultiplied ||
                      pixels.format() == QImage::Format_A2RGB30_Premultiplied;
  const auto space = pixels.colorSpace();
  return isDeep || (space.isValid() && space != QColorSpace(QColorSpace::SRgb));
}

std::shared_ptr<const Bytes> encodedByTheToolkit(const QImage& pixels) {
  constexpr int least = 11;  // of a hundred: the writer's fastest level that compresses at all
  QByteArray encoded;
  QBuffer buffer(&encoded);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "png");
  writer.setCompression(least);
  if (!writer.write(pixels)) return nullptr;
  const auto view = std::as_bytes(std::span(encoded.constData(), encoded.size()));
  return std::make_shared<const Bytes>(view.begin(), view.end());
}

}  // namespace

std::shared_ptr<const Bytes> encodedPng(const QImage& pixels) {
  if (pixels.isNull()) return nullptr;
  if (isBeyondTheFastWay(pixels)) return encodedByTheToolkit(pixels);

  const bool hasAlpha = pixels.hasAlphaChannel();
  const auto rows = hasAlpha ? compressed(filteredRows(pixels, QImage::Format_RGBA8888, 4))
                             : compressed(filteredRows(pixels, QImage::Format_RGB888, 3));
  if (rows.size == 0 || rows.size > 0x7FFF'FFFFU) return nullptr;

  constexpr std::string_view signature = "\x89PNG\r\n\x1A\n";
  constexpr std::size_t framing = 64;
  auto png = std::make_shared<Bytes>();
  png->reserve(rows.size + framing);
  const auto start = bytesOf(signature);
  png->assign(start.begin(), start.end());
  appendChunk(*png, "IHDR", header(pixels, hasAlpha ? trueColourWithAlpha : trueColour));
  appendChunk(*png, "IDAT", rows.view());
  appendChunk(*png, "IEND", {});
  return png;
}

}  // namespace vantorel
