// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/HeardToplevels.h"

namespace vantorel {

HeardToplevels::HeardToplevels(std::unique_ptr<WaylandConnection> connection, Observer observer)
    : thread_(std::move(connection), "windows"), observer_(std::move(observer)) {}

void HeardToplevels::start() {
  thread_.start([this] { tellLoss(); });
}

bool HeardToplevels::activate(WindowToken token) {
  if (!find(token)) return false;
  return thread_.post([this, token] { bringToFront(token); });
}

void HeardToplevels::settle(const Toplevel& described) {
  const auto front = list_.settle(described);
  if (front) observer_.onActivated(*front);
}

void HeardToplevels::tellLoss() {
  list_.forgetFront();
  observer_.onLost();
}

}  // namespace vantorel
