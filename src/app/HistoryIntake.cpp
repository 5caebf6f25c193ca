// SPDX-License-Identifier: MIT
#include "app/HistoryIntake.h"

#include <utility>

#include "platform/MainQueue.h"

namespace vantorel {

HistoryIntake::HistoryIntake(ClipStore& store, Dispatch& dispatch,
                             std::shared_ptr<FileSystem> files)
    : store_(store), dispatch_(dispatch), files_(std::move(files)) {}

void HistoryIntake::takeIn(const std::filesystem::path& directory) {
  auto tell = onMainQueue(dispatch_, life_.guard([this](const auto& reading) { taken(*reading); }));
  dispatch_.detach([files = files_, directory, now = dispatch_.now(), tell = std::move(tell)] {
    tell(std::make_shared<const ExportReading>(readExport(*files, directory, now)));
  });
}

void HistoryIntake::taken(const ExportReading& reading) {
  if (!onNotice) return;
  if (!reading.trouble.empty()) return onNotice(reading.trouble);
  if (!store_.takeIn(reading.clips)) return onNotice("The exported history could not be taken in.");
  const auto count = reading.clips.size();
  onNotice(count == 1 ? "1 clip was taken in." : std::to_string(count) + " clips were taken in.");
}

}  // namespace vantorel
