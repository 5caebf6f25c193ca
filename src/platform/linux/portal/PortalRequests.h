// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "base/Lifetime.h"
#include "platform/linux/portal/PortalBus.h"

namespace vantorel {

/// Options of a portal's method; floating.
[[nodiscard]] GVariant* portalOptions(const std::map<std::string, std::string>& texts);

/// What a portal answers by a signal, perhaps after its user was asked. On the portal's thread.
class PortalRequests {
 public:
  /// The results, a dictionary, whatever the user said; null when there are none to come.
  using Responded = std::function<void(GVariant* results)>;
  /// The method's arguments, with this text as the option "handle_token".
  using Arguments = std::function<GVariant*(const std::string& token)>;

  /// The bus outlives this.
  explicit PortalRequests(PortalBus& bus);

  /// One at a time: a request that is open is given up.
  void make(const char* interface, const char* method, const Arguments& arguments,
            Responded responded);
  /// The portal need not ask any more, and is not listened to.
  void giveUp();

 private:
  void heard(const std::string& object, GVariant* arguments);
  void finish(GVariant* results);

  PortalBus& bus_;
  int made_ = 0;
  std::string object_;  // of the open request; empty: none
  Responded responded_;
  Lifetime life_;
};

}  // namespace vantorel
