#include "paste/PasteController.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>
#include <vector>

#include "platform/OwnApplication.h"

namespace vantorel {
namespace {

/// Command-V as a keyboard sends it.
constexpr std::array pasteChord = {
    SyntheticKeyEvent{keys::command, KeyDirection::down, flags::command},
    SyntheticKeyEvent{keys::v, KeyDirection::down, flags::command},
    SyntheticKeyEvent{keys::v, KeyDirection::up, flags::command},
    SyntheticKeyEvent{keys::command, KeyDirection::up, 0}};

}  // namespace

PasteController::PasteController(ClipStore& store, PasteServices services)
    : store_(store), services_(services) {}

PasteController::~PasteController() = default;

void PasteController::setTargetApplication(const std::optional<RunningApplication>& application) {
  if (!application || isOwnApplication(services_.workspace, *application)) {
    targetPid_.reset();
    targetBundleIdentifier_.reset();
    return;
  }
  targetPid_ = application->processIdentifier;
  targetBundleIdentifier_ = application->bundleIdentifier;
}

std::optional<RunningApplication> PasteController::resolveTargetApplication() {
  if (targetPid_) {
    auto running = services_.workspace.runningApplication(*targetPid_);
    if (running) return running;
  }
  if (!targetBundleIdentifier_) return std::nullopt;
  const auto relaunched = services_.workspace.runningApplications(*targetBundleIdentifier_);
  return relaunched.empty() ? std::nullopt : std::optional(relaunched.front());
}

bool PasteController::writeToPasteboard(const ClipItem& item, bool asPlainText) {
  // First, so that a write that fails leaves nothing old to be pasted by mistake.
  services_.pasteboard.clearContents();
  switch (item.kind) {
    case ClipKind::text:
      return writeText(item, asPlainText);
    case ClipKind::image:
      return writeImage(item);
    case ClipKind::files:
      return writeFiles(item);
  }
  return false;
}

bool PasteController::writeText(const ClipItem& item, bool asPlainText) {
  if (!item.text) return false;
  if (asPlainText) return services_.pasteboard.writeString(item.text->get());
  PasteboardItem richText;
  richText.string = item.text->get();
  if (item.rtfData) richText.rtf = item.rtfData->get();
  if (item.htmlData) richText.html = item.htmlData->get();
  return services_.pasteboard.writeItem(std::move(richText));
}

bool PasteController::writeImage(const ClipItem& item) {
  if (!item.assetFilename) return false;
  auto bytes = store_.assetData(item);
  if (!bytes) return false;
  auto image = services_.images.decode(std::make_shared<const Bytes>(std::move(*bytes)));
  return image && services_.pasteboard.writeImage(std::move(image));
}

bool PasteController::writeFiles(const ClipItem& item) {
  const std::vector<std::filesystem::path> paths(item.filePaths.begin(), item.filePaths.end());
  const bool allThere = std::all_of(paths.begin(), paths.end(), [this](const auto& path) {
    return services_.files.exists(path);
  });
  return !paths.empty() && allThere && services_.pasteboard.writeFileURLs(paths);
}

void PasteController::paste(const ClipItem& item, bool asPlainText) {
  endWait();  // what an older paste waits to paste is about to be replaced
  if (!writeToPasteboard(item, asPlainText)) {
    finish(PasteOutcome::unavailable);
    return;
  }
  if (onInternalPasteboardWrite) onInternalPasteboardWrite();
  if (!services_.input.isTrusted(TrustPrompt::ask)) {
    finish(PasteOutcome::clipboardOnlyNeedsAccessibility);
    return;
  }
  const auto target = resolveTargetApplication();
  if (!target) {
    finish(PasteOutcome::clipboardOnlyNoTarget);
    return;
  }
  activations_ = services_.workspace.observeActivations(
      [this, target = *target](const RunningApplication& application) {
        if (application.processIdentifier == target.processIdentifier) targetAnnounced(target);
      });
  services_.workspace.activate(*target);
  waitForActivation(*target, activationChecks);
}

void PasteController::waitForActivation(RunningApplication target, int attemptsRemaining) {
  if (attemptsRemaining < 1) {
    finish(PasteOutcome::clipboardOnlyNoTarget);
    return;
  }
  if (isInFront(target)) {
    finish(postPaste(target.processIdentifier));
    return;
  }
  services_.workspace.activate(target);
  nextCheck_ = services_.dispatch.after(
      activationCheckInterval, [this, target = std::move(target), attemptsRemaining] {
        if (services_.workspace.runningApplication(target.processIdentifier)) {
          waitForActivation(target, attemptsRemaining - 1);
        } else {
          endWait();  // it has ended: nobody is left to paste to, or to be told about
        }
      });
}

void PasteController::targetAnnounced(const RunningApplication& target) {
  // Where it is not in front after all, the next regular check will see to it.
  if (isInFront(target)) finish(postPaste(target.processIdentifier));
}

bool PasteController::isInFront(const RunningApplication& target) {
  const auto front = services_.workspace.frontmostApplication();
  return front && front->processIdentifier == target.processIdentifier;
}

PasteOutcome PasteController::postPaste(ProcessId pid) {
  const auto source = services_.input.createEventSource();
  // Without a source not one key can be pressed: the user has to.
  if (!source) return PasteOutcome::clipboardOnlyNoTarget;
  std::vector<SyntheticKeyEvent> events;
  for (const auto& key : pasteChord) {
    auto event = services_.input.createKeyboardEvent(*source, key.keyCode, key.direction);
    if (!event) continue;
    event->flags = key.flags;
    events.push_back(*event);
  }
  for (const auto& event : events) services_.input.post(event, pid);
  return PasteOutcome::pasted;
}

void PasteController::endWait() {
  nextCheck_.reset();
  activations_.reset();
}

void PasteController::finish(PasteOutcome outcome) {
  endWait();
  const auto report = onOutcome;
  if (report) report(outcome);
}

}  // namespace vantorel
