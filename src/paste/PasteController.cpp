// SPDX-License-Identifier: MIT
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
    : store_(store),
      services_(std::move(services)),
      presence_(services_.dispatch, services_.files) {}

PasteController::~PasteController() = default;

void PasteController::setTargetApplication(const std::optional<RunningApplication>& application) {
  target_.reset();
  if (application && !isOwnApplication(services_.workspace, *application)) target_ = application;
}

std::optional<RunningApplication> PasteController::resolveTargetApplication() {
  return resolve(target_);
}

std::optional<RunningApplication> PasteController::resolve(
    const std::optional<RunningApplication>& target) {
  if (!target) return std::nullopt;
  auto& workspace = services_.workspace;
  if (auto still = workspace.stillThere(*target)) return still;
  if (!target->bundleIdentifier) return std::nullopt;
  // Here each window of an application may be a process of its own, so a namesake that was there
  // all along is a bystander, not the target launched anew.
  const auto namesakes = workspace.runningApplications(*target->bundleIdentifier);
  const auto relaunched = std::find_if(namesakes.begin(), namesakes.end(), [&](const auto& each) {
    return workspace.startedAfter(each, *target);
  });
  return relaunched == namesakes.end() ? std::nullopt : std::optional(*relaunched);
}

void PasteController::whenThere(const ClipItem& item, FilePresence::Answer answer) {
  if (item.kind == ClipKind::files) {
    presence_.ask({item.filePaths.begin(), item.filePaths.end()}, std::move(answer));
  } else {
    answer(true);
  }
}

void PasteController::restoreToPasteboard(const ClipItem& item, std::function<void(bool)> written) {
  const auto change = services_.pasteboard.changeCount();
  whenThere(item, [this, item, change, written = std::move(written)](bool there) {
    // Before anything is cleared: what is on the pasteboard may still be somebody's.
    auto picture = pictureOf(item);
    const bool isWhole = there && (item.kind != ClipKind::image || picture) &&
                         (item.kind != ClipKind::text || item.text);
    if (!isWhole || services_.pasteboard.changeCount() != change) {
      written(false);
      return;
    }
    services_.pasteboard.clearContents();
    written(put(item, false, std::move(picture)));
  });
}

bool PasteController::writeToPasteboard(const ClipItem& item, bool asPlainText) {
  // First, so that a write that fails leaves nothing old to be pasted by mistake.
  services_.pasteboard.clearContents();
  return put(item, asPlainText, pictureOf(item));
}

bool PasteController::put(const ClipItem& item, bool asPlainText,
                          std::shared_ptr<const Image> picture) {
  switch (item.kind) {
    case ClipKind::text:
      return putText(item, asPlainText);
    case ClipKind::image:
      return picture && services_.pasteboard.writeImage(std::move(picture));
    case ClipKind::files:
      return !item.filePaths.empty() &&
             services_.pasteboard.writeFileURLs({item.filePaths.begin(), item.filePaths.end()});
  }
  return false;
}

bool PasteController::putText(const ClipItem& item, bool asPlainText) {
  if (!item.text) return false;
  if (asPlainText) return services_.pasteboard.writeString(item.text->get());
  PasteboardItem richText;
  richText.string = item.text->get();
  if (item.rtfData) richText.rtf = item.rtfData->get();
  if (item.htmlData) richText.html = item.htmlData->get();
  return services_.pasteboard.writeItem(std::move(richText));
}

std::shared_ptr<const Image> PasteController::pictureOf(const ClipItem& item) const {
  if (item.kind != ClipKind::image || !item.assetFilename) return nullptr;
  auto bytes = store_.assetData(item);
  if (!bytes) return nullptr;
  return services_.images.decode(std::make_shared<const Bytes>(std::move(*bytes)));
}

void PasteController::paste(const ClipItem& item, bool asPlainText) {
  withdraw();  // what an older paste waits to paste is about to be replaced
  underWay_ = std::make_shared<UnderWay>();
  underWay_->target = target_;
  whenThere(item, [this, item, asPlainText, current = std::weak_ptr(underWay_)](bool there) {
    if (current.expired()) return;
    if (!there) services_.pasteboard.clearContents();
    if (!there || !writeToPasteboard(item, asPlainText)) {
      finish(PasteOutcome::unavailable);
      return;
    }
    if (onInternalPasteboardWrite) onInternalPasteboardWrite();
    bringTargetToFront();
  });
}

void PasteController::bringTargetToFront() {
  if (!services_.input.isTrusted(TrustPrompt::ask)) {
    finish(PasteOutcome::clipboardOnlyNeedsAccessibility);
    return;
  }
  const auto target = resolve(underWay_->target);
  if (!target) {
    finish(PasteOutcome::clipboardOnlyNoTarget);
    return;
  }
  activations_ =
      services_.workspace.observeActivations([this, target = *target](const auto& application) {
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
    postPaste(target);
    return;
  }
  services_.workspace.activate(target);
  nextCheck_ = services_.dispatch.after(activationCheckInterval,
                                        [this, target = std::move(target), attemptsRemaining] {
                                          lookAgain(target, attemptsRemaining - 1);
                                        });
}

void PasteController::lookAgain(const RunningApplication& target, int attemptsRemaining) {
  if (services_.workspace.stillThere(target)) {
    waitForActivation(target, attemptsRemaining);
  } else if (services_.workspace.runningApplication(target.processIdentifier)) {
    // Its window was closed, and no other one of its windows was meant.
    finish(PasteOutcome::clipboardOnlyNoTarget);
  } else {
    withdraw();  // it has ended: nobody is left to paste to, or to be told about
  }
}

void PasteController::targetAnnounced(const RunningApplication& target) {
  // Where it is not in front after all, the next regular check will see to it.
  if (isInFront(target)) postPaste(target);
}

bool PasteController::isInFront(const RunningApplication& target) {
  const auto front = services_.workspace.frontmostApplication();
  return front && front->processIdentifier == target.processIdentifier &&
         (target.window == 0 || front->window == target.window);
}

void PasteController::postPaste(const RunningApplication& target) {
  nextCheck_.reset();
  activations_.reset();
  std::vector<SyntheticKeyEvent> events;
  if (const auto source = services_.input.createEventSource()) {
    for (const auto& key : pasteChord) {
      auto event = services_.input.createKeyboardEvent(*source, key.keyCode, key.direction);
      if (!event) continue;
      event->flags = key.flags;
      events.push_back(*event);
    }
  }
  const bool pastes = std::any_of(events.begin(), events.end(), [](const auto& event) {
    return event.keyCode == keys::v && event.direction == KeyDirection::down;
  });
  if (!pastes) {  // the user has to press it
    finish(PasteOutcome::clipboardOnlyNoTarget);
    return;
  }
  const auto paste = underWay_;
  paste->keysAwaited = events.size();
  for (const auto& event : events) {
    services_.input.post(event, target,
                         [this, current = std::weak_ptr(paste)](KeyDelivery delivery) {
                           // The controller owns the paste under way: while there is one, there is
                           // a controller.
                           if (const auto living = current.lock()) keyAnswered(*living, delivery);
                         });
  }
}

void PasteController::keyAnswered(UnderWay& paste, KeyDelivery delivery) {
  if (delivery == KeyDelivery::failed) paste.allDelivered = false;
  if (--paste.keysAwaited > 0) return;
  finish(paste.allDelivered ? PasteOutcome::pasted : PasteOutcome::clipboardOnlyNoTarget);
}

void PasteController::withdraw() {
  if (underWay_ && underWay_->keysAwaited > 0) services_.input.withdraw();
  underWay_.reset();
  nextCheck_.reset();
  activations_.reset();
}

void PasteController::finish(PasteOutcome outcome) {
  withdraw();
  const auto report = onOutcome;
  if (report) report(outcome);
}

}  // namespace vantorel
