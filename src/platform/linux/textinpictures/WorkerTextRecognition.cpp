// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/WorkerTextRecognition.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/linux/confined/ConfinedProcess.h"
#include "platform/linux/confined/Messages.h"
#include "platform/linux/textinpictures/TextModels.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

using Outcome = Recognition::Outcome;
using Status = TextReply::Status;
using std::chrono::steady_clock;

constexpr std::chrono::seconds longestDeath{60};  // of a process that gets only idle time
constexpr std::chrono::seconds tidyingUp{1};      // of the processor, between two pictures

std::string joined(const std::vector<std::string>& names) {
  std::string result;
  for (const std::string& name : names) {
    if (!result.empty()) result += ',';
    result += name;
  }
  return result;
}

Recognition recognitionOf(TextReply reply) {
  if (reply.status == Status::noEngine) return {Outcome::unavailable, {}};
  if (reply.status != Status::read) return {Outcome::unreadable, {}};
  for (auto& line : reply.lines) line = validUtf8(std::move(line));
  return {Outcome::recognized, std::move(reply.lines)};
}

}  // namespace

WorkerTextRecognition::WorkerTextRecognition(Settings settings) : settings_(std::move(settings)) {}

WorkerTextRecognition::~WorkerTextRecognition() = default;

std::vector<std::string> WorkerTextRecognition::supportedLanguages() {
  std::vector<std::string> languages;
  for (const std::string& name : installedModels(settings_.modelDirectories).names)
    languages.push_back(languageOfModel(name));
  return languages;
}

Recognition WorkerTextRecognition::recognize(ByteView image,
                                             const std::vector<std::string>& languages,
                                             const std::stop_token& stop) {
  const TextModels models = installedModels(settings_.modelDirectories);
  const auto names = modelsFor(models, languages);
  if (names.empty()) return {Outcome::unavailable, {}};
  const std::vector<std::string> arguments{models.directory.string(), joined(names),
                                           std::to_string(settings_.idleLimit.count())};
  const std::lock_guard lock(mutex_);
  share_ = worker_ && worker_->isRunning() ? share_ : Share::leftOver;
  for (bool isAskedAgain = true; isAskedAgain;) {
    if (stop.stop_requested()) return {Outcome::stopped, {}};
    const bool wasWaiting = worker_ && worker_->isRunning();
    if (!ensureWorker(arguments)) return {Outcome::unavailable, {}};
    Attempt result;
    {
      const std::stop_callback onStop(stop, [this] { worker_->terminate(); });
      result = attempt(image, wasWaiting, stop);
    }
    if (!result.reply || result.reply->status == Status::noEngine) worker_.reset();
    if (result.reply) return recognitionOf(std::move(*result.reply));
    isAskedAgain = result.isWorthAnother;
  }
  return {stop.stop_requested() ? Outcome::stopped : Outcome::unreadable, {}};
}

/// A worker that waited too long may go just as it is asked, and one that gets no time is replaced:
/// then another attempt is worth it. One that dies of the picture, or never comes to an end with
/// it, is not followed by another.
WorkerTextRecognition::Attempt WorkerTextRecognition::attempt(ByteView image, bool wasWaiting,
                                                              const std::stop_token& stop) {
  const auto begin = steady_clock::now();
  const auto deadline = begin + settings_.pictureLimit;
  worker_->allowProcessorTime(settings_.processorLimit);
  // Nor does a worker that gets no time take a large picture.
  const auto sentBy = share_ == Share::leftOver ? begin + settings_.patience : deadline;
  const bool wasSent = sendPicture(worker_->socket(), image, std::min(deadline, sentBy));
  if (wasSent && waitForReply(deadline, stop)) {
    if (auto reply = receiveReply(worker_->socket(), deadline)) {
      worker_->allowProcessorTime(tidyingUp);
      return {std::move(reply), false};
    }
  } else if (share_ == Share::leftOver && (wasSent || steady_clock::now() >= sentBy) &&
             steady_clock::now() < deadline) {
    share_ = Share::small;
    return {std::nullopt, true};
  }
  if (!wasWaiting || steady_clock::now() >= deadline) return {};
  return {std::nullopt,
          worker_->wentIdle(stop, std::min(deadline, steady_clock::now() + longestDeath))};
}

/// False at the deadline, or as soon as it is clear that the worker gets no time.
bool WorkerTextRecognition::waitForReply(Deadline deadline, const std::stop_token& stop) {
  constexpr int leastShare = 4;  // a quarter of a processor
  while (!stop.stop_requested() && steady_clock::now() < deadline) {
    const auto before = worker_->processorTime();
    const auto begin = steady_clock::now();
    if (hasInput(worker_->socket(), std::min(deadline, begin + settings_.patience))) return true;
    const auto used = worker_->processorTime() - before;
    if (share_ == Share::leftOver && used * leastShare < steady_clock::now() - begin) return false;
  }
  return false;
}

bool WorkerTextRecognition::ensureWorker(std::vector<std::string> arguments) {
  arguments.emplace_back(share_ == Share::small ? "small" : "left-over");
  if (worker_ && worker_->isRunning() && arguments == arguments_) return true;
  worker_.reset();
  arguments_ = std::move(arguments);
  if (settings_.program.empty()) return false;
  worker_ = ConfinedProcess::start(settings_.program, arguments_);
  return worker_ != nullptr;
}

int WorkerTextRecognition::workerProcessId() {
  const std::lock_guard lock(mutex_);
  return worker_ && worker_->isRunning() ? worker_->processId() : 0;
}

}  // namespace vantorel
