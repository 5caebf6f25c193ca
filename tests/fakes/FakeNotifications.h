// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include "platform/Notifications.h"

namespace vantorel {

/// A desktop that shows one message, whose button the test presses.
class FakeNotifications : public Notifications {
 public:
  void post(const Notification& notification, std::function<void()> onAction) override {
    shown_ = notification;
    onAction_ = std::move(onAction);
    ++posts_;
  }
  void withdraw() override { shown_.reset(); }

  // The test's side.

  [[nodiscard]] const std::optional<Notification>& shown() const { return shown_; }
  [[nodiscard]] int posts() const { return posts_; }
  void pressAction() const { onAction_(); }

 private:
  std::optional<Notification> shown_;
  std::function<void()> onAction_;
  int posts_ = 0;
};

}  // namespace vantorel
