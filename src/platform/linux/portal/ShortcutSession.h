// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "platform/linux/portal/PortalRequests.h"
#include "platform/linux/portal/ShortcutWish.h"

namespace vantorel {

/// The one shortcut that the portal gives this program. The portal asks its user once, remembers
/// who agreed, and gives the same keys without a question from then on. What cannot be had is
/// wished for until somebody says no, and asked for anew from each portal that comes and serves
/// this process. On the portal's thread.
class ShortcutSession {
 public:
  /// How often a session that the portal ends by itself is had again, counted from the last press.
  static constexpr int endingsBorne = 3;

  /// The bus outlives this.
  ShortcutSession(PortalBus& bus, ShortcutNews news);

  /// In place of what was wished before.
  void want(const ShortcutWish& wish);
  void giveBack();

 private:
  enum class State { idle, starting, asking, held, lost };  // lost: until a portal comes anew

  void begin();
  void came();
  void left();
  void create();
  void bind();
  void bound(GVariant* results);
  void activated(GVariant* arguments);
  void changed(GVariant* arguments);
  void closed(const std::string& object);
  void hold(const std::string& keys);
  void lose();
  void refuse();
  void close();
  [[nodiscard]] bool isOurs(GVariant* arguments, const char* type) const;

  PortalBus& bus_;
  ShortcutNews news_;
  PortalRequests requests_;
  State state_ = State::idle;
  std::optional<ShortcutWish> wish_;
  std::string session_;  // its object; empty: none
  int endings_ = 0;
  int sessions_ = 0;
  Lifetime life_;
};

}  // namespace vantorel
