// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <string>

#include "fakes/FakeImage.h"
#include "fakes/FakeKeychain.h"
#include "fakes/ManualDispatch.h"
#include "fakes/TestStore.h"
#include "platform/posix/PosixFileSystem.h"
#include "store/ClipStore.h"
#include "store/HistoryFile.h"

namespace {

using namespace vantorel;

/// Prose of `size` bytes in lines, one word in four Hebrew, different for each `seed`.
std::string prose(std::size_t size, unsigned seed) {
  static constexpr std::array words = {"clipboard ", "history ", "\"quoted\" ", "שלום "};
  std::mt19937 random(seed);
  std::string text = std::to_string(seed) + " ";
  while (text.size() < size) {
    text += words.at(random() % words.size());
    if (random() % 12 == 0) text += '\n';
  }
  return text;
}

std::vector<ClipItem> history(std::int64_t count, std::int64_t textSize) {
  std::vector<ClipItem> items;
  for (std::int64_t i = 0; i < count; ++i) {
    items.push_back(textItem(prose(static_cast<std::size_t>(textSize), static_cast<unsigned>(i)),
                             testDate(static_cast<double>(-i))));
    items.back().preview.resize(80);
  }
  return items;
}

/// A store on the disk that the program was started on, not in memory.
class DiskStore {
 public:
  DiskStore() : base_(std::filesystem::current_path() / ("bench-" + Uuid::random().string())) {
    open();
  }
  ~DiskStore() {
    store_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(base_, ignored);
  }
  void open() {
    store_.reset();
    store_ = std::make_unique<ClipStore>(
        ClipStoreServices{dispatch_, disk_, keychain_, base_, recognition_, *recognitionQueue_},
        base_, storage_, ClipStoreLimits());
  }
  void fill(const std::vector<ClipItem>& items) {
    for (auto item = items.rbegin(); item != items.rend(); ++item) store_->insert(*item);
  }
  ClipStore& store() { return *store_; }
  /// A long history is saved on a queue, which here is run when it is asked to.
  void finishSaving() { dispatch_.runQueued(); }
  Date tick() {
    dispatch_.setNow(dispatch_.now() + std::chrono::seconds(1));
    return dispatch_.now();
  }

 private:
  std::filesystem::path base_;
  ManualDispatch dispatch_;
  PosixFileSystem disk_;
  FakeKeychain keychain_;
  AbsentTextRecognition recognition_;
  std::unique_ptr<SerialQueue> recognitionQueue_ = dispatch_.serialQueue("bench.recognition");
  std::shared_ptr<SecureStorage> storage_ = SecureStorage::ephemeral();
  std::unique_ptr<ClipStore> store_;
};

void encoding(benchmark::State& state) {
  const auto items = history(state.range(0), state.range(1));
  for (auto _ : state) benchmark::DoNotOptimize(EncodedHistory(items).view().size());
  state.SetBytesProcessed(state.iterations() * state.range(0) * state.range(1));
}

void decoding(benchmark::State& state) {
  const Bytes json = encodeHistory(history(state.range(0), state.range(1)));
  for (auto _ : state) {
    state.PauseTiming();
    Bytes copy = json;
    state.ResumeTiming();
    benchmark::DoNotOptimize(decodeHistory(std::move(copy)));
  }
  state.SetBytesProcessed(state.iterations() * state.range(0) * state.range(1));
}

/// A new text of range(2) bytes into a full history, sealed and on the disk when it returns.
void insertingText(benchmark::State& state) {
  DiskStore disk;
  disk.fill(history(state.range(0), state.range(1)));
  const std::string text = prose(static_cast<std::size_t>(state.range(2)), 1'000'000);
  int number = 0;
  Uuid last;
  for (auto _ : state) {
    state.PauseTiming();
    disk.store().remove(last);
    ClipItem item = textItem(text + std::to_string(++number), disk.tick());
    item.preview.resize(80);
    last = item.id;
    state.ResumeTiming();
    disk.store().insert(item);
  }
}

/// A new image whose PNG form is there already.
void capturingImage(benchmark::State& state) {
  DiskStore disk;
  disk.fill(history(40, 20'000));
  Bytes png(static_cast<std::size_t>(state.range(0)));
  std::mt19937 random(1);
  for (std::byte& byte : png) byte = static_cast<std::byte>(random());
  for (auto _ : state) {
    state.PauseTiming();
    disk.tick();
    for (std::size_t i = 0; i < 8; ++i) png[i] = static_cast<std::byte>(random());
    FakeImage image({3840, 2160});
    image.setPng(png);
    state.ResumeTiming();
    if (!disk.store().captureImage(image, {})) state.SkipWithError("not captured");
  }
}

std::vector<std::filesystem::path> manyPaths(std::int64_t count) {
  std::vector<std::filesystem::path> paths;
  for (std::int64_t i = 0; i < count; ++i) {
    paths.emplace_back("/home/user/Pictures/2024/holiday/IMG_" + std::to_string(10'000'000 + i) +
                       ".jpg");
  }
  return paths;
}

/// What the main thread does when range(0) files are copied.
void capturingFiles(benchmark::State& state) {
  DiskStore disk;
  const auto paths = manyPaths(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(disk.store().captureFiles(paths, {}));
    state.PauseTiming();
    (void)disk.store().clear(true);
    state.ResumeTiming();
  }
}

/// What it does when a short text is copied afterwards.
void insertingTextAfterFiles(benchmark::State& state) {
  DiskStore disk;
  disk.store().captureFiles(manyPaths(state.range(0)), {});
  int number = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const ClipItem item = textItem(std::to_string(++number), disk.tick());
    disk.finishSaving();
    state.ResumeTiming();
    disk.store().insert(item);
  }
}

/// What a start does with the history: read, open, decode, tidy and save it.
void loading(benchmark::State& state) {
  DiskStore disk;
  disk.fill(history(state.range(0), state.range(1)));
  for (auto _ : state) disk.open();
  if (disk.store().items().size() != static_cast<std::size_t>(state.range(0))) {
    state.SkipWithError("the history did not load");
  }
}

BENCHMARK(encoding)
    ->Args({50, 20'000})
    ->Args({50, 1'000'000})
    ->Args({1, 10'000'000})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(decoding)
    ->Args({50, 20'000})
    ->Args({50, 1'000'000})
    ->Args({1, 10'000'000})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(insertingText)
    ->Args({0, 0, 1'000})
    ->Args({50, 20'000, 1'000})
    ->Args({50, 20'000, 10'000'000})
    ->Iterations(40)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(capturingImage)
    ->Arg(2'000'000)
    ->Arg(12'000'000)
    ->Iterations(20)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(capturingFiles)
    ->Arg(10'000)
    ->Arg(150'000)
    ->Iterations(10)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(insertingTextAfterFiles)
    ->Arg(10'000)
    ->Arg(150'000)
    ->Iterations(20)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(loading)->Args({50, 20'000})->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
