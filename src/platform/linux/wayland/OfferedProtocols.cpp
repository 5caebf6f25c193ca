// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/OfferedProtocols.h"

#include <utility>

#include "platform/linux/wayland/FakeInput.h"
#include "platform/linux/wayland/ForeignToplevels.h"
#include "platform/linux/wayland/PlasmaWindows.h"
#include "platform/linux/wayland/VirtualKeyboard.h"

namespace vantorel {

std::optional<std::string> toplevelProtocol(const WaylandConnection& connection) {
  auto protocol = ForeignToplevels::protocol(connection);
  return protocol ? protocol : PlasmaWindows::protocol(connection);
}

std::unique_ptr<ToplevelSource> openToplevels(std::unique_ptr<WaylandConnection> connection,
                                              ToplevelSource::Observer observer) {
  if (!connection) return nullptr;
  if (ForeignToplevels::protocol(*connection)) {
    return ForeignToplevels::open(std::move(connection), std::move(observer));
  }
  return PlasmaWindows::open(std::move(connection), std::move(observer));
}

std::optional<std::string> keyboardProtocol(const WaylandConnection& connection) {
  auto protocol = VirtualKeyboard::protocol(connection);
  return protocol ? protocol : FakeInput::protocol(connection);
}

std::unique_ptr<ChordKeyboard> openKeyboard(WaylandThread& thread,
                                            std::unique_ptr<WaylandConnection> connection) {
  if (!connection) return nullptr;
  if (VirtualKeyboard::protocol(*connection)) {
    return VirtualKeyboard::open(thread, std::move(connection));
  }
  return FakeInput::open(thread, std::move(connection));
}

bool wantsInstalledPrograms(const WaylandConnection& connection) {
  return connection.version("org_kde_plasma_shell") > 0;
}

}  // namespace vantorel
