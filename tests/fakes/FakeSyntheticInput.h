// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <utility>
#include <vector>

#include "platform/SyntheticInput.h"

namespace vantorel {

/// Trusted, and able to press every key, unless the test says otherwise.
class FakeSyntheticInput : public SyntheticInput {
 public:
  struct Posted {
    SyntheticKeyEvent event;
    ProcessId pid = 0;
    WindowToken window = 0;
  };

  [[nodiscard]] bool isTrusted(TrustPrompt prompt) override {
    prompts_.push_back(prompt);
    return trusted_;
  }
  [[nodiscard]] std::optional<EventSource> createEventSource() override {
    return hasEventSource_ ? std::optional(EventSource{}) : std::nullopt;
  }
  [[nodiscard]] std::optional<SyntheticKeyEvent> createKeyboardEvent(
      const EventSource& /*source*/, KeyCode keyCode, KeyDirection direction) override {
    if (impossible_.contains({keyCode, direction})) return std::nullopt;
    return SyntheticKeyEvent{keyCode, direction, 0};
  }
  void post(const SyntheticKeyEvent& event, const RunningApplication& target,
            std::function<void(KeyDelivery)> done) override {
    posted_.push_back({event, target.processIdentifier, target.window});
    if (answering_ == Answering::later) {
      unanswered_.push_back(std::move(done));
    } else {
      done(delivery_);
    }
  }

  void withdraw() override { ++withdrawals_; }

  // The test's side.

  void setTrusted(bool trusted) { trusted_ = trusted; }
  void setHasEventSource(bool has) { hasEventSource_ = has; }
  /// That event cannot be created from now on.
  void makeImpossible(KeyCode keyCode, KeyDirection direction) {
    impossible_.insert({keyCode, direction});
  }
  /// How posted keys end from now on.
  void setDelivery(KeyDelivery delivery) { delivery_ = delivery; }
  /// Posted keys have no answer from now on, until `answerAll()`.
  void answerLater() { answering_ = Answering::later; }
  void answerAll() {
    for (const auto& done : std::exchange(unanswered_, {})) done(delivery_);
  }
  [[nodiscard]] int withdrawals() const { return withdrawals_; }
  /// How each question for trust was put.
  [[nodiscard]] const std::vector<TrustPrompt>& prompts() const { return prompts_; }
  [[nodiscard]] const std::vector<Posted>& posted() const { return posted_; }

 private:
  int withdrawals_ = 0;
  enum class Answering { atOnce, later } answering_ = Answering::atOnce;
  KeyDelivery delivery_ = KeyDelivery::delivered;
  std::vector<std::function<void(KeyDelivery)>> unanswered_;
  bool trusted_ = true;
  bool hasEventSource_ = true;
  std::set<std::pair<KeyCode, KeyDirection>> impossible_;
  std::vector<TrustPrompt> prompts_;
  std::vector<Posted> posted_;
};

}  // namespace vantorel
