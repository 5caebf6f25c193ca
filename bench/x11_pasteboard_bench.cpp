// SPDX-License-Identifier: MIT
// What a copy and a paste cost between two programs on a private X server. Needs Xvfb.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <stdexcept>

#include "desktop/x11pasteboard/MainLoop.h"
#include "desktop/x11pasteboard/PrivateXServer.h"
#include "desktop/x11pasteboard/Requestor.h"
#include "desktop/x11pasteboard/ScriptedOwner.h"
#include "platform/linux/x11/X11Pasteboard.h"

namespace vantorel {
namespace {

constexpr std::size_t incrementalFrom = 256 * 1024;

class NoImages : public ImageDecoder {
 public:
  [[nodiscard]] std::shared_ptr<const Image> decode(
      std::shared_ptr<const Bytes> /*bytes*/) const override {
    return nullptr;
  }
};

struct Desk {
  PrivateXServer server;
  MainLoop loop;
  NoImages decoder;
  std::unique_ptr<X11Pasteboard> pasteboard =
      X11Pasteboard::open({loop, decoder}, server.display());
};

double percentile95(const std::vector<double>& values) {
  auto sorted = values;
  std::sort(sorted.begin(), sorted.end());
  return sorted[(sorted.size() - 1) * 95 / 100];
}

/// From another program's copy to its text in this process: notice, TARGETS, text.
void copyToText(benchmark::State& state) {
  Desk desk;
  ScriptedOwner owner(desk.server.display());
  ScriptedForm text;
  text.bytes = Bytes(static_cast<std::size_t>(state.range(0)), std::byte{'x'});
  text.manner = text.bytes.size() > incrementalFrom ? Manner::incremental : Manner::give;
  text.pieceBytes = incrementalFrom;
  owner.offer("UTF8_STRING", text);
  std::size_t read = 0;
  auto& pasteboard = *desk.pasteboard;
  pasteboard.setChangeHandler([&] {
    const auto change = pasteboard.changeCount();
    pasteboard.readTypes(change, [&, change](const auto&) {
      pasteboard.readString(change,
                            [&](const auto& string) { read = string ? string->size() : 0; });
    });
  });
  for (auto iteration : state) {
    (void)iteration;
    read = 0;
    owner.own();
    if (!desk.loop.runUntil([&] { return read == text.bytes.size(); })) {
      throw std::runtime_error("not read");
    }
  }
}

/// A program that asks for the text which this process wrote.
void paste(benchmark::State& state) {
  Desk desk;
  if (!desk.pasteboard->writeString(std::string(static_cast<std::size_t>(state.range(0)), 'x'))) {
    throw std::runtime_error("not written");
  }
  Requestor program(desk.server.display());
  for (auto iteration : state) {
    (void)iteration;
    if (!program.get("UTF8_STRING")) throw std::runtime_error("not served");
  }
}

/// What the main thread waits for at a write.
void write(benchmark::State& state) {
  Desk desk;
  for (auto iteration : state) {
    (void)iteration;
    if (!desk.pasteboard->writeString("text")) throw std::runtime_error("not written");
  }
}

void measured(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Iterations(1)
      ->Repetitions(40)
      ->ReportAggregatesOnly()
      ->ComputeStatistics("p95", percentile95);
}

BENCHMARK(copyToText)->Arg(1'000)->Arg(2'500'000)->Arg(20'000'000)->Apply(measured);
BENCHMARK(paste)->Arg(1'000)->Arg(2'500'000)->Arg(20'000'000)->Apply(measured);
BENCHMARK(write)->Apply(measured);

}  // namespace
}  // namespace vantorel
