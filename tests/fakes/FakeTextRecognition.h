// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/TextRecognition.h"

namespace vantorel {

/// Reads in pictures exactly what the test says stands in them. Until the test says something, this
/// is a desktop without a recogniser.
class FakeTextRecognition : public TextRecognition {
 public:
  struct Call {
    Bytes image;
    std::vector<std::string> languages;
  };

  [[nodiscard]] std::vector<std::string> supportedLanguages() override {
    const std::lock_guard lock(mutex_);
    return languages_;
  }

  [[nodiscard]] Recognition recognize(ByteView image, const std::vector<std::string>& languages,
                                      const std::stop_token& stop) override {
    std::function<void()> meanwhile;
    Recognition answer;
    {
      const std::lock_guard lock(mutex_);
      calls_.push_back({{image.begin(), image.end()}, languages});
      const auto found = answers_.find(calls_.back().image);
      answer = found != answers_.end() ? found->second : other_;
      meanwhile = meanwhile_;
      stop_ = stop;
    }
    if (meanwhile) meanwhile();
    if (stop.stop_requested()) return {Recognition::Outcome::stopped, {}};
    return answer;
  }

  // The test's side.

  void setSupportedLanguages(std::vector<std::string> languages) {
    const std::lock_guard lock(mutex_);
    languages_ = std::move(languages);
  }
  /// What stands in the picture with these bytes.
  void introduce(Bytes image, std::vector<std::string> lines) {
    introduce(std::move(image), Recognition{Recognition::Outcome::recognized, std::move(lines)});
  }
  void introduce(Bytes image, Recognition answer) {
    const std::lock_guard lock(mutex_);
    answers_[std::move(image)] = std::move(answer);
  }
  /// The answer for every picture that was not introduced.
  void answerOthers(Recognition answer) {
    const std::lock_guard lock(mutex_);
    other_ = std::move(answer);
  }
  /// Runs within each reading, before it answers.
  void duringReading(std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    meanwhile_ = std::move(work);
  }
  /// Of the reading that was asked for last.
  [[nodiscard]] bool isStopRequested() const {
    const std::lock_guard lock(mutex_);
    return stop_.stop_requested();
  }
  /// Every reading that was asked for, in order.
  [[nodiscard]] std::vector<Call> calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> languages_;
  std::map<Bytes, Recognition> answers_;
  Recognition other_;
  std::function<void()> meanwhile_;
  std::stop_token stop_;
  std::vector<Call> calls_;
};

}  // namespace vantorel
