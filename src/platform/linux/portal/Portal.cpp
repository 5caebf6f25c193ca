// SPDX-License-Identifier: MIT
#include "platform/linux/portal/Portal.h"

#include <optional>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/portal/SettingsReading.h"

namespace vantorel {

struct Portal::Conversation {
  std::optional<PortalBus> bus;
  std::optional<SettingsReading> settings;
  GlibThread thread{"portal", [this] {
                      settings.reset();
                      bus.reset();
                    }};
};

Portal::Portal(Dispatch& dispatch, PortalAnswers::Extent extent, std::function<void()> asked)
    : conversation_(std::make_unique<Conversation>()) {
  auto tell = onMainQueue(dispatch, life_.guard([this](const PortalAnswers& answers) {
    answers_ = answers;
    observers_.notify();
  }));
  conversation_->thread.post(
      [this, &all = *conversation_, extent, asked = std::move(asked), tell = std::move(tell)] {
        all.bus.emplace(all.thread);
        all.settings.emplace(*all.bus, extent, tell);
        all.bus->join(deadline_);
        all.thread.runUntil(deadline_, [&all] { return all.bus->isQuiet(); });
        asked();
        {
          const std::lock_guard lock(mutex_);
          asked_ = true;
        }
        changed_.notify_all();
      });
}

Portal::~Portal() = default;

void Portal::waitUntilAsked() {
  std::unique_lock lock(mutex_);
  changed_.wait_until(lock, deadline_, [this] { return asked_; });
}

void Portal::rejoin() {
  conversation_->thread.post([&all = *conversation_] {
    constexpr std::chrono::seconds limit{5};
    all.bus->join(std::chrono::steady_clock::now() + limit);
  });
}

}  // namespace vantorel
