// SPDX-License-Identifier: MIT
#include "platform/linux/portal/Portal.h"

#include <optional>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/portal/SettingsReading.h"
#include "platform/linux/portal/ShortcutSession.h"

namespace vantorel {
namespace {

/// For what nobody waits for.
Deadline longPatience() { return std::chrono::steady_clock::now() + std::chrono::seconds(5); }

}  // namespace

struct Portal::Conversation {
  std::optional<PortalBus> bus;
  std::optional<SettingsReading> settings;
  std::optional<ShortcutSession> shortcut;
  bool isStarting = false;  // the portal, at the start of the program
  GlibThread thread{"portal", [this] {
                      shortcut.reset();
                      settings.reset();
                      bus.reset();
                    }};
};

Portal::Portal(Dispatch& dispatch, PortalAnswers::Extent extent, Start start,
               std::function<void()> asked)
    : deadline_(std::chrono::steady_clock::now() +
                (start == Start::atOnce ? startPatience : patience)),
      conversation_(std::make_unique<Conversation>()) {
  auto tell = onMainQueue(dispatch, life_.guard([this](const PortalAnswers& answers) {
    answers_ = answers;
    observers_.notify();
  }));
  conversation_->thread.post([this, &all = *conversation_, extent, start, asked = std::move(asked),
                              tell = std::move(tell)] {
    const auto answersDeadline = std::chrono::steady_clock::now() + patience;
    all.bus.emplace(all.thread);
    all.settings.emplace(*all.bus, extent, tell);
    const bool isJoined = all.bus->join(deadline_);
    all.isStarting = isJoined && start == Start::atOnce;
    if (all.isStarting) {
      all.bus->start([&all](GVariant* reply) {
        if (!reply) all.isStarting = false;
      });
      all.thread.runUntil(deadline_, [&all] { return all.bus->isThere() || !all.isStarting; });
    }
    all.thread.runUntil(answersDeadline, [&all] { return all.bus->isQuiet(); });
    asked();
    {
      const std::lock_guard lock(mutex_);
      asked_ = true;
    }
    changed_.notify_all();
    if (!isJoined) all.bus->join(longPatience());
  });
}

Portal::~Portal() = default;

void Portal::waitUntilAsked() {
  std::unique_lock lock(mutex_);
  changed_.wait_until(lock, deadline_, [this] { return asked_; });
}

void Portal::rejoin() {
  conversation_->thread.post([&all = *conversation_] { all.bus->join(longPatience()); });
}

void Portal::hearOfShortcut(ShortcutNews news) {
  conversation_->thread.post(
      [&all = *conversation_, news = std::move(news)] { all.shortcut.emplace(*all.bus, news); });
}

void Portal::wantShortcut(const ShortcutWish& wish) {
  conversation_->thread.post([&all = *conversation_, wish] { all.shortcut->want(wish); });
}

void Portal::giveShortcutBack() {
  conversation_->thread.post([&all = *conversation_] { all.shortcut->giveBack(); });
}

}  // namespace vantorel
