#include "tool/Tool.h"

#include <cstdio>
#include <string>
#include <utility>

#include "base/WipedText.h"
#include "platform/ApplicationId.h"
#include "platform/linux/start/ClosedProcess.h"
#include "platform/linux/start/RunningInstance.h"
#include "tool/OpenKeyring.h"
#include "tool/StandardStreams.h"

namespace vantorel {
namespace {

using standardStreams::complain;

int failure(std::string_view sentence, int status = ToolStatus::failed) {
  complain(sentence);
  return status;
}

int written(std::error_code error) {
  if (!error) return ToolStatus::done;
  // Whoever read it has enough.
  if (error == std::errc::broken_pipe) return ToolStatus::failed;
  return failure("the output could not be written: " + error.message() + ".");
}

int noEntry(const ToolLine& line, std::size_t count) {
  return failure("there is no entry " + line.entry + "; the history has " + std::to_string(count) +
                     (count == 1 ? " entry." : " entries."),
                 ToolStatus::noEntry);
}

}  // namespace

Tool::Tool(EnvironmentLookup lookup)
    : lookup_(std::move(lookup)), directories_(XdgDirectories::fromEnvironment(lookup_)) {}

int Tool::run(const ToolLine& line) {
  const bool hasOutput = standardStreams::occupy();
  if (!line.error.empty()) {
    std::fprintf(stderr, "%s\n", line.error.c_str());
    return ToolStatus::usage;
  }
  if (!hasOutput) return failure("there is no standard output to write to.");
  leaveNoCore();
  if (const auto status = open()) return *status;
  switch (line.verb) {
    case ToolLine::Verb::list:
      return print(entries_, line.form);
    case ToolLine::Verb::search:
      return print(found(entries_, line.words), line.form);
    case ToolLine::Verb::get:
      return get(line);
    case ToolLine::Verb::copy:
      return copy(line);
  }
  return ToolStatus::failed;
}

std::optional<int> Tool::open() {
  if (!directories_.dataHome) return failure("there is no directory for a history; set HOME.");
  history_.emplace(files_, *directories_.dataHome / applicationId::historyDirectory);
  switch (history_->state()) {
    case HistoryOnDisk::State::absent:
      return std::nullopt;
    case HistoryOnDisk::State::old:
      return failure("the history is that of an old version. Start Vantorel once.");
    case HistoryOnDisk::State::sealed:
      break;
  }
  OpenKeyring keyring(dispatch_);
  storage_ = keyring.storage();
  if (!storage_) return failure(keyring.trouble(), ToolStatus::noKey);
  auto items = history_->read(storage_, dispatch_.now());
  if (!items) {
    return failure(
        "the history does not open with the key in the keyring, or is damaged. "
        "'vantorel --new-history' puts it aside and begins another.");
  }
  entries_ = numbered(std::move(*items));
  return std::nullopt;
}

int Tool::print(const std::vector<NumberedEntry>& entries, ToolLine::Form form) {
  std::string list = entryList(entries, form);
  const auto error = standardStreams::write(list);
  wipe(list);
  return written(error);
}

int Tool::get(const ToolLine& line) {
  const auto* const entry = entryCalled(entries_, line.entry);
  if (entry == nullptr) return noEntry(line, entries_.size());
  const ClipItem& item = entry->item;
  switch (item.kind) {
    case ClipKind::text:
      return written(standardStreams::write(item.text ? item.text->get() : std::string()));
    case ClipKind::files:
      return written(standardStreams::write(pathList(item, line.form)));
    case ClipKind::image:
      break;
  }
  const auto picture = history_->picture(*storage_, item);
  if (!picture) return failure("the picture of this entry is missing or damaged.");
  return written(standardStreams::write(textOf(*picture)));
}

/// The running instance has the contents itself: it is told the entry's identity, and no more.
int Tool::copy(const ToolLine& line) {
  const auto* const entry = entryCalled(entries_, line.entry);
  if (entry == nullptr) return noEntry(line, entries_.size());
  const ActionRequest request{.action = "copy", .argument = entry->item.id.string()};
  switch (forwardToRunningInstance(request, lookup_)) {
    case ForwardResult::forwarded:
      return ToolStatus::done;
    case ForwardResult::notRunning:
      return failure(
          "no Vantorel runs, which would hold the clipboard. "
          "Start it with 'vantorel --background &' and try again.");
    case ForwardResult::refused:
      return failure("the running Vantorel did not understand; quit it and start again.");
    case ForwardResult::noBus:
      break;
  }
  return failure("there is no session bus to reach a running Vantorel by.");
}

}  // namespace vantorel
