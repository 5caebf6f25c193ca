// SPDX-License-Identifier: MIT
#include "app/HistoryIntake.h"

#include <utility>

#include "chrome/TextPresentation.h"
#include "platform/MainQueue.h"

namespace vantorel {

HistoryIntake::HistoryIntake(ClipStore& store, Dispatch& dispatch,
                             std::shared_ptr<FileSystem> files)
    : store_(store), dispatch_(dispatch), files_(std::move(files)) {}

void HistoryIntake::takeIn(const std::filesystem::path& directory, const ActionAnswer& answer) {
  auto tell = onMainQueue(
      dispatch_, life_.guard([this, answer](const auto& reading) { taken(*reading, answer); }));
  dispatch_.detach([files = files_, directory, now = dispatch_.now(), tell = std::move(tell)] {
    tell(std::make_shared<const ExportReading>(readExport(*files, directory, now)));
  });
}

void HistoryIntake::taken(const ExportReading& reading, const ActionAnswer& answer) {
  const auto refuse = [&](const std::string& sentence) {
    if (onNotice) onNotice(sentence);
    answer(sentence);
  };
  constexpr std::size_t longest = 300;
  // A directory's name may have line ends, and marks that turn the direction of what follows.
  if (!reading.trouble.empty()) {
    return refuse(TextPresentation::singleLine(reading.trouble, longest));
  }
  const auto kept = store_.takeIn(reading.clips);
  if (!kept) return refuse("The exported history could not be taken in.");
  if (onNotice) onNotice(intakeSentence(*kept, reading.clips.size()));
  store_.whenSaved([answer](bool saved) {
    answer(saved ? "" : "What was taken in could not be saved yet; is the disk full?");
  });
}

}  // namespace vantorel
