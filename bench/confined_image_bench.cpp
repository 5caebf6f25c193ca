// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <cstdint>
#include <memory>

#include "platform/linux/confined/WorkerProgram.h"
#include "platform/linux/decoding/ConfinedImageDecoder.h"
#include "platform/qt/QtImageDecoder.h"

namespace {

using namespace vantorel;

/// Smooth slopes with the noise of a sensor.
std::shared_ptr<const Bytes> photograph(int width, int height, const char* format) {
  QImage pixels(width, height, QImage::Format_RGB32);
  std::uint32_t random = 1;
  for (int y = 0; y < height; ++y) {
    auto* row = reinterpret_cast<QRgb*>(pixels.scanLine(y));
    for (int x = 0; x < width; ++x) {
      random = random * 1'664'525 + 1'013'904'223;
      const int noise = static_cast<int>(random >> 28) / 4;
      row[x] = qRgb((x / 4 + noise) % 256, (y / 3 + noise) % 256, ((x + y) / 5 + noise) % 256);
    }
  }
  QByteArray encoded;
  QBuffer buffer(&encoded);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter(&buffer, format).write(pixels);
  const auto* const data = reinterpret_cast<const std::byte*>(encoded.constData());
  return std::make_shared<const Bytes>(data, data + encoded.size());
}

ConfinedImageDecoder behindWalls() {
  return ConfinedImageDecoder({.program = workerProgram(pictureWorker)});
}

/// What a capture of a format costs that is kept as PNG: pixels of some megabytes at most.
template <class Decoder>
void converting(benchmark::State& state, const Decoder& decoder) {
  const auto tiff = photograph(700, 500, "tiff");
  for (auto _ : state) benchmark::DoNotOptimize(decoder.decode(tiff)->pngData());
  state.counters["MB"] = static_cast<double>(tiff->size()) / 1e6;
}

/// What showing a file costs.
template <class Decoder>
void showing(benchmark::State& state, const Decoder& decoder, const char* format) {
  const auto picture = photograph(1920, 1080, format);
  for (auto _ : state) benchmark::DoNotOptimize(decoder.bitmap(*picture, {240, 240}));
  state.counters["MB"] = static_cast<double>(picture->size()) / 1e6;
}

void convertingConfined(benchmark::State& state) { converting(state, behindWalls()); }
void convertingHere(benchmark::State& state) { converting(state, QtImageDecoder()); }
BENCHMARK(convertingConfined)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(convertingHere)->Unit(benchmark::kMillisecond)->UseRealTime();

void showingConfined(benchmark::State& state, const char* format) {
  showing(state, behindWalls(), format);
}
void showingHere(benchmark::State& state, const char* format) {
  showing(state, QtImageDecoder(), format);
}
BENCHMARK_CAPTURE(showingConfined, webp, "webp")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(showingHere, webp, "webp")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(showingConfined, png, "png")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(showingHere, png, "png")->Unit(benchmark::kMillisecond)->UseRealTime();

/// A small picture for which the process has to be started first.
void starting(benchmark::State& state) {
  const auto picture = photograph(64, 64, "png");
  for (auto _ : state) benchmark::DoNotOptimize(behindWalls().bitmap(*picture, {64, 64}));
}
BENCHMARK(starting)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The same when it waits for work.
void asking(benchmark::State& state) {
  const auto picture = photograph(64, 64, "png");
  const auto decoder = behindWalls();
  for (auto _ : state) benchmark::DoNotOptimize(decoder.bitmap(*picture, {64, 64}));
}
BENCHMARK(asking)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
