// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "platform/KeyboardGrabs.h"

namespace vantorel {

/// A keyboard that can be had unless the test says otherwise.
class FakeKeyboardGrabs : public KeyboardGrabs {
 public:
  [[nodiscard]] std::unique_ptr<Observation> grabKeyboard(WindowNumber window) override {
    ++attempts_;
    if (!available_) return nullptr;
    *holder_ = window;
    return std::make_unique<Grab>(holder_);
  }

  // The test's side.

  void setAvailable(bool available) { available_ = available; }
  /// The window that has the keyboard now.
  [[nodiscard]] std::optional<WindowNumber> holder() const { return *holder_; }
  [[nodiscard]] int attempts() const { return attempts_; }

 private:
  using Holder = std::shared_ptr<std::optional<WindowNumber>>;

  class Grab : public Observation {
   public:
    explicit Grab(Holder holder) : holder_(std::move(holder)) {}
    ~Grab() override { holder_->reset(); }
    Grab(const Grab&) = delete;
    Grab& operator=(const Grab&) = delete;

   private:
    Holder holder_;
  };

  Holder holder_ = std::make_shared<std::optional<WindowNumber>>();
  bool available_ = true;
  int attempts_ = 0;
};

}  // namespace vantorel
