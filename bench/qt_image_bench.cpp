// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <cstdint>
#include <memory>

#include "platform/qt/PngWriter.h"
#include "platform/qt/QtImage.h"
#include "platform/qt/QtImageDecoder.h"

namespace {

using namespace vantorel;

enum Picture { screenshot, photograph };

constexpr int width = 3840;
constexpr int height = 2160;

/// Windows of one colour with lines of letter-like strokes.
QImage screenshotPixels() {
  QImage pixels(width, height, QImage::Format_RGB32);
  pixels.fill(qRgb(46, 52, 64));
  std::uint32_t random = 1;
  for (int y = 100; y < height - 100; ++y) {
    auto* row = reinterpret_cast<QRgb*>(pixels.scanLine(y));
    for (int x = 200; x < width - 200; ++x) row[x] = qRgb(250, 250, 250);
    if (y % 20 > 12) continue;
    for (int x = 240; x < width - 900; ++x) {
      random = random * 1'664'525 + 1'013'904'223;
      if (random >> 30 == 0) row[x] = qRgb(40, 40, static_cast<int>(random >> 16 & 0x7F));
    }
  }
  return pixels;
}

/// Smooth slopes with the noise of a sensor.
QImage photographPixels() {
  QImage pixels(width, height, QImage::Format_RGB32);
  std::uint32_t random = 1;
  for (int y = 0; y < height; ++y) {
    auto* row = reinterpret_cast<QRgb*>(pixels.scanLine(y));
    for (int x = 0; x < width; ++x) {
      random = random * 1'664'525 + 1'013'904'223;
      const int noise = static_cast<int>(random >> 28) / 4;
      row[x] = qRgb((x / 16 + noise) % 256, (y / 9 + noise) % 256, ((x + y) / 25 + noise) % 256);
    }
  }
  return pixels;
}

QImage pixelsOf(std::int64_t picture) {
  return picture == screenshot ? screenshotPixels() : photographPixels();
}

std::shared_ptr<const Bytes> writtenByTheToolkit(const QImage& pixels, const char* format) {
  QByteArray encoded;
  QBuffer buffer(&encoded);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  writer.write(pixels);
  const auto* const data = reinterpret_cast<const std::byte*>(encoded.constData());
  return std::make_shared<const Bytes>(data, data + encoded.size());
}

void megabytes(benchmark::State& state, const std::shared_ptr<const Bytes>& data) {
  state.counters["MB"] = data ? static_cast<double>(data->size()) / 1e6 : 0;
}

void encodingPng(benchmark::State& state) {
  const auto pixels = pixelsOf(state.range(0));
  std::shared_ptr<const Bytes> png;
  for (auto _ : state) png = encodedPng(pixels);
  megabytes(state, png);
}
BENCHMARK(encodingPng)->Arg(screenshot)->Arg(photograph)->Unit(benchmark::kMillisecond);

void encodingPngByTheToolkit(benchmark::State& state) {
  const auto pixels = pixelsOf(state.range(0));
  std::shared_ptr<const Bytes> png;
  for (auto _ : state) png = writtenByTheToolkit(pixels, "png");
  megabytes(state, png);
}
BENCHMARK(encodingPngByTheToolkit)->Arg(screenshot)->Arg(photograph)->Unit(benchmark::kMillisecond);

void encodingJpeg(benchmark::State& state) {
  const auto pixels = pixelsOf(state.range(0));
  std::shared_ptr<const Bytes> jpeg;
  for (auto _ : state) jpeg = QtImage::fromPixels(pixels)->jpegData(0.86);
  megabytes(state, jpeg);
}
BENCHMARK(encodingJpeg)->Arg(screenshot)->Arg(photograph)->Unit(benchmark::kMillisecond);

/// What a capture costs at once: the structure of the bytes is checked, nothing is decoded.
void taking(benchmark::State& state, const char* format) {
  const QtImageDecoder decoder;
  const auto data = writtenByTheToolkit(pixelsOf(state.range(0)), format);
  for (auto _ : state) benchmark::DoNotOptimize(decoder.decode(data));
  megabytes(state, data);
}
BENCHMARK_CAPTURE(taking, png, "png")
    ->Arg(screenshot)
    ->Arg(photograph)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(taking, jpeg, "jpg")
    ->Arg(screenshot)
    ->Arg(photograph)
    ->Unit(benchmark::kMillisecond);

/// What showing a picture costs: its pixels, as many as are shown, on a screen of two pixels a
/// point.
void reducing(benchmark::State& state, const char* format) {
  const QtImageDecoder decoder;
  const auto data = writtenByTheToolkit(pixelsOf(state.range(0)), format);
  for (auto _ : state) benchmark::DoNotOptimize(decoder.bitmap(*data, {572, 544}));
  megabytes(state, data);
}
BENCHMARK_CAPTURE(reducing, png, "png")
    ->Arg(screenshot)
    ->Arg(photograph)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reducing, jpeg, "jpg")
    ->Arg(screenshot)
    ->Arg(photograph)
    ->Unit(benchmark::kMillisecond);

void reducingPngByTheToolkit(benchmark::State& state) {
  const auto data = writtenByTheToolkit(pixelsOf(state.range(0)), "png");
  for (auto _ : state) {
    const auto pixels = QImage::fromData(reinterpret_cast<const uchar*>(data->data()),
                                         static_cast<int>(data->size()));
    benchmark::DoNotOptimize(
        pixels.scaled(572, 544, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  }
  megabytes(state, data);
}
BENCHMARK(reducingPngByTheToolkit)->Arg(screenshot)->Arg(photograph)->Unit(benchmark::kMillisecond);

}  // namespace
