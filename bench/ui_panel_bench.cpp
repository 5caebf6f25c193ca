// SPDX-License-Identifier: MIT
// What the history panel costs, up to and including the painting of its window. Runs without a
// screen; what the window system adds is measured from outside.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeEventMonitors.h"
#include "fakes/FakeFileThumbnails.h"
#include "fakes/FakeIcons.h"
#include "fakes/FakeImage.h"
#include "fakes/FakeImageDecoder.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeSyntheticInput.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/TestStore.h"
#include "panel/HistoryPanelController.h"
#include "platform/posix/PosixFileSystem.h"

namespace {

using namespace vantorel;

constexpr int entryCount = 50;
constexpr int imageCount = 20;
constexpr PixelSize thumbnailSize{286, 161};
constexpr std::size_t previewLength = 500;

enum class Contents { texts, textsAndImages };

struct PanelBench {
  explicit PanelBench(std::size_t textSize, Contents contents = Contents::texts) {
    screens.setMouseLocation({1, 1});
    const bool withImages = contents == Contents::textsAndImages;
    const int textCount = withImages ? entryCount - imageCount : entryCount;
    for (int i = 0; i < textCount; ++i) {
      std::string text = "entry number " + std::to_string(i) + " is ";
      while (text.size() < textSize) text += "The quick brown fox jumps over the lazy dog. ";
      ClipItem item = textItem(text, dispatch.now());
      item.preview = text.substr(0, previewLength);  // as entries are captured
      store->insert(item);
    }
    if (withImages) addImages();
    dispatch.runQueued();
  }

  /// Copied screenshots from an application with an icon, above the texts: all rows that are seen
  /// at once have a picture.
  void addImages() {
    const auto pixels = static_cast<std::size_t>(thumbnailSize.width * thumbnailSize.height);
    const auto picture = std::make_shared<const Bitmap>(
        Bitmap{{3840, 2160}, thumbnailSize, std::vector<std::uint32_t>(pixels, 0xFF336699)});
    icons.setApplication("org.example.Camera", picture);
    for (int i = 0; i < imageCount; ++i) {
      const auto bytes = "picture " + std::to_string(i);
      images.introduce(toBytes(bytes), picture);
      store->captureImage(FakeImage({3840, 2160}, bytes), {"Camera", "org.example.Camera"});
    }
  }

  void open() {
    controller.toggle(std::nullopt);
    QCoreApplication::processEvents();
  }
  void hide() {
    controller.hide();
    QCoreApplication::processEvents();
  }
  static void type(int key, const QString& text) {
    auto* window = QGuiApplication::focusWindow();
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(window, &press);
    QCoreApplication::processEvents();
  }

  TestStore store;
  ManualDispatch& dispatch = store.dispatch();
  FakePasteboard pasteboard{dispatch};
  FakeWorkspace workspace{dispatch};
  FakeSyntheticInput input;
  FakeImageDecoder images;
  FakeFileThumbnails thumbnails;
  FakeIcons icons;
  FakeScreens screens;
  FakeEventMonitors monitors;
  FakeAccessibilityPreferences accessibility;
  FakeWindowBackdrops backdrops;
  PasteController paste{*store, PasteServices{pasteboard, workspace, input, dispatch,
                                              std::make_shared<PosixFileSystem>(), images}};
  HistoryPanelController controller{
      *store, paste,
      PanelServices{dispatch, screens, monitors, accessibility, store.files(),
                    std::make_shared<PosixFileSystem>(), images, thumbnails, icons, &backdrops}};
};

Contents contents(std::int64_t images) {
  return images != 0 ? Contents::textsAndImages : Contents::texts;
}

/// Runs `measured` once in each iteration, `prepare` before it unmeasured, and reports the median
/// and the 95th percentile in milliseconds.
template <class Prepare, class Measured>
void measure(benchmark::State& state, Prepare prepare, Measured measured) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> times;
  for (auto _ : state) {
    prepare();
    const auto start = Clock::now();
    measured();
    const std::chrono::duration<double> time = Clock::now() - start;
    state.SetIterationTime(time.count());
    times.push_back(time.count() * 1000);
  }
  std::sort(times.begin(), times.end());
  state.counters["median_ms"] = times[times.size() / 2];
  state.counters["p95_ms"] = times[times.size() * 95 / 100];
}

void firstOpening(benchmark::State& state) {
  std::unique_ptr<PanelBench> bench;
  measure(
      state, [&] { bench = std::make_unique<PanelBench>(20'000); }, [&] { bench->open(); });
}
BENCHMARK(firstOpening)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void opening(benchmark::State& state) {
  PanelBench bench(static_cast<std::size_t>(state.range(0)), contents(state.range(1)));
  bench.open();
  bench.dispatch.runQueued();  // the pictures are made
  measure(
      state, [&] { bench.hide(); }, [&] { bench.open(); });
}
BENCHMARK(opening)
    ->ArgNames({"bytes", "images"})
    ->Args({20'000, 0})
    ->Args({20'000, 1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(200);

void firstKey(benchmark::State& state) {
  PanelBench bench(static_cast<std::size_t>(state.range(0)));
  measure(
      state,
      [&] {
        bench.hide();
        bench.open();
        if (state.range(1) != 0) bench.dispatch.runQueued();
      },
      [&] { PanelBench::type(Qt::Key_E, QStringLiteral("e")); });
}
BENCHMARK(firstKey)
    ->ArgNames({"bytes", "prepared"})
    ->Args({20'000, 1})
    ->Args({20'000, 0})
    ->Args({1'000'000, 1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(50);

void laterKey(benchmark::State& state) {
  PanelBench bench(static_cast<std::size_t>(state.range(0)), contents(state.range(1)));
  measure(
      state,
      [&] {
        bench.hide();
        bench.open();
        bench.dispatch.runQueued();
        PanelBench::type(Qt::Key_E, QStringLiteral("e"));
      },
      [&] { PanelBench::type(Qt::Key_N, QStringLiteral("n")); });
}
BENCHMARK(laterKey)
    ->ArgNames({"bytes", "images"})
    ->Args({20'000, 0})
    ->Args({20'000, 1})
    ->Args({1'000'000, 0})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(50);

void arrow(benchmark::State& state) {
  PanelBench bench(20'000);
  bench.open();
  int presses = 0;
  measure(
      state, [&] { ++presses; },
      [&] { PanelBench::type(presses / 49 % 2 == 0 ? Qt::Key_Down : Qt::Key_Up, {}); });
}
BENCHMARK(arrow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(200);

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
