// SPDX-License-Identifier: MIT
#include "tool/Tool.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <variant>

#include "base/WipedText.h"
#include "chrome/TextPresentation.h"
#include "platform/ApplicationId.h"
#include "platform/linux/start/ClosedProcess.h"
#include "platform/linux/start/HistoryLock.h"
#include "platform/linux/start/RunningInstance.h"
#include "text/Unicode.h"
#include "tool/ExportConsent.h"
#include "tool/ImportHere.h"
#include "tool/OpenKeyring.h"
#include "tool/StandardStreams.h"
#include "tool/TerminalQuestions.h"
#include "tool/UnfinishedExports.h"
#include "tool/Uninterrupted.h"
#include "transfer/HistoryExport.h"
#include "transfer/HistoryImport.h"

namespace vantorel {
namespace {

using standardStreams::complain;

/// Says it in one line: a directory's name in it could rewrite what the terminal shows.
int failure(std::string_view sentence, int status = ToolStatus::failed) {
  constexpr std::size_t longest = 1000;
  complain(TextPresentation::singleLine(sentence, longest));
  return status;
}

int written(std::error_code error) {
  if (!error) return ToolStatus::done;
  // Whoever read it has enough.
  if (error == std::errc::broken_pipe) return ToolStatus::failed;
  return failure("the output could not be written: " + error.message() + ".");
}

int printWiped(std::string text) {
  const auto error = standardStreams::write(text);
  wipe(text);
  return written(error);
}

/// The directory that the user means, wherever a link leads.
std::filesystem::path place(const std::string& name) {
  std::error_code error;
  // Absolute first: of a name that nothing has yet the other step leaves just that name.
  const auto absolute = std::filesystem::absolute(name, error);
  if (error) return name;
  auto path = std::filesystem::weakly_canonical(absolute, error);
  if (error) path = absolute.lexically_normal();
  return path.has_filename() ? path : path.parent_path();
}

constexpr std::string_view notUnderstood =
    "the running Vantorel did not understand; quit it and start again.";

constexpr std::string_view unanswered =
    "the running Vantorel has not answered yet; a notice on the desktop says what comes of it.";

// The program answers within a moment, or is stuck; an export is as long as its pictures are.
constexpr std::chrono::seconds copyTimeLimit{5};
constexpr std::chrono::seconds importTimeLimit{60};

std::string countOf(std::size_t entries) {
  return std::to_string(entries) + (entries == 1 ? " entry" : " entries");
}

bool prints(ToolLine::Verb verb) {
  using Verb = ToolLine::Verb;
  return verb == Verb::list || verb == Verb::search || verb == Verb::get;
}

int noEntry(const ToolLine& line, std::size_t count) {
  return failure("there is no entry " + line.entry + "; the history has " + countOf(count) + ".",
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
  if (!hasOutput && prints(line.verb)) return failure("there is no standard output to write to.");
  leaveNoCore();
  if (!directories_.dataHome) return failure("there is no directory for a history; set HOME.");
  history_.emplace(files_, *directories_.dataHome / applicationId::historyDirectory);
  if (line.verb == ToolLine::Verb::importFrom) return importFrom(line);
  if (const auto status = open()) return *status;
  switch (line.verb) {
    case ToolLine::Verb::list:
      return printWiped(entryList(entries_, line.form));
    case ToolLine::Verb::search:
      return printWiped(entryList(found(entries_, line.words), line.form));
    case ToolLine::Verb::get:
      return get(line);
    case ToolLine::Verb::copy:
      return copy(line);
    case ToolLine::Verb::exportTo:
      return exportTo(line);
    case ToolLine::Verb::importFrom:
      break;
  }
  return ToolStatus::failed;
}

std::optional<int> Tool::open() {
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

int Tool::get(const ToolLine& line) {
  const auto* const entry = entryCalled(entries_, line.entry);
  if (entry == nullptr) return noEntry(line, entries_.size());
  const ClipItem& item = entry->item;
  switch (item.kind) {
    case ClipKind::text:
      return written(standardStreams::write(item.text ? std::string_view(**item.text) : ""));
    case ClipKind::files:
      return printWiped(pathList(item, line.form));
    case ClipKind::image:
      break;
  }
  auto picture = history_->picture(*storage_, item);
  if (!picture) return failure("the picture of this entry is missing or damaged.");
  const SharedBytes wiped(std::move(*picture));
  return written(standardStreams::write(textOf(wiped.get())));
}

/// The running instance has the contents itself: it is told the entry's identity, and no more.
int Tool::copy(const ToolLine& line) {
  const auto* const entry = entryCalled(entries_, line.entry);
  if (entry == nullptr) return noEntry(line, entries_.size());
  const ActionRequest request{.action = "copy", .argument = entry->item.id.string()};
  using Outcome = AwaitedRequest::Outcome;
  switch (awaitRunningInstance(request, lookup_, copyTimeLimit).outcome) {
    case Outcome::done:
      return ToolStatus::done;
    case Outcome::failed:
      return failure(
          "the entry is not on the clipboard: its contents are gone, or another program took the "
          "clipboard. Look at 'vantorel list' and try again.");
    case Outcome::unanswered:
      return failure(unanswered);
    case Outcome::notRunning:
      return failure(
          "no Vantorel runs, which would hold the clipboard. "
          "Start it with 'vantorel --background &' and try again.");
    case Outcome::refused:
      return failure(notUnderstood);
    case Outcome::noBus:
      break;
  }
  return failure("there is no session bus to reach a running Vantorel by.");
}

int Tool::exportTo(const ToolLine& line) {
  const auto directory = place(line.directory);
  const auto refuse = [&](const FileSystem::Error& error) {
    return failure("nothing was exported to " + directory.string() + ": " + error.message() + ".");
  };
  removeUnfinishedExports(directory.parent_path());
  removeUnfinishedExports(directory);
  if (const auto obstacle = exportObstacle(files_, directory)) return refuse(obstacle);
  switch (consentToExport(line.inTheClear, directory.filename().string(), terminalQuestions())) {
    case ExportConsent::nobodyToAsk:
      return failure(
          "an export can be read by who can read the directory. "
          "Say --in-the-clear where nobody can be asked.",
          ToolStatus::usage);
    case ExportConsent::withheld:
      return failure("nothing was exported.");
    case ExportConsent::given:
      break;
  }
  std::vector<ClipItem> items;
  for (const auto& entry : entries_) items.push_back(entry.item);
  const auto pictureOf = [this](const ClipItem& item) {
    return history_->picture(*storage_, item);
  };
  const Uninterrupted uninterrupted;
  HistoryLock lock;
  PosixFileSystem files({}, [&lock](const auto& unfinished) { return lock.claim(unfinished); });
  const auto result = exportHistory(files, items, pictureOf, directory, dispatch_.now());
  if (result.error) return refuse(result.error);
  if (result.missing == 0) return ToolStatus::done;
  return failure("exported, but for " + countOf(result.missing) +
                 " that had to be left out, with contents that are missing or damaged.");
}

int Tool::importFrom(const ToolLine& line) {
  const auto directory = place(line.directory);
  if (!isValidUtf8(directory.native())) return failure("the directory's name is not UTF-8.");
  // Read here first: whoever gave the command hears what is wrong with it.
  const auto reading = readExport(files_, directory, dispatch_.now());
  if (!reading.trouble.empty()) return failure(reading.trouble);
  // What keeps a running program from it, too, it would tell on the desktop alone.
  if (history_->state() == HistoryOnDisk::State::sealed) {
    if (const auto status = open()) return *status;
  }
  using Outcome = AwaitedRequest::Outcome;
  const ActionRequest request{.action = "import", .argument = directory.string()};
  const auto answer = awaitRunningInstance(request, lookup_, importTimeLimit);
  switch (answer.outcome) {
    case Outcome::done:
      return ToolStatus::done;
    case Outcome::failed:
      return failure(answer.trouble);
    case Outcome::unanswered:
      return failure(unanswered);
    case Outcome::refused:
      return failure(notUnderstood);
    case Outcome::notRunning:
    case Outcome::noBus:
      break;
  }
  const Uninterrupted uninterrupted;
  const auto done = importHere(dispatch_, *directories_.dataHome, reading.clips);
  if (const auto* const failed = std::get_if<ToolFailure>(&done)) {
    return failure(failed->sentence, failed->status);
  }
  const auto kept = std::get<std::size_t>(done);
  if (kept < reading.clips.size()) complain(intakeSentence(kept, reading.clips.size()));
  return ToolStatus::done;
}

}  // namespace vantorel
