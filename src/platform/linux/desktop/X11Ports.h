// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/linux/desktop/CompositorWorkspace.h"
#include "platform/linux/desktop/LinuxStatusItem.h"
#include "platform/linux/desktop/Session.h"
#include "platform/linux/desktop/WindowPorts.h"
#include "platform/linux/wayland/DataControlPasteboard.h"
#include "platform/linux/x11/X11DesktopSettings.h"
#include "platform/linux/x11/X11EventMonitors.h"
#include "platform/linux/x11/X11Pasteboard.h"
#include "platform/linux/x11/X11SyntheticInput.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/toolkit/X11KeyboardGrabs.h"
#include "platform/linux/x11/toolkit/X11WindowBackdrops.h"
#include "platform/linux/x11/toolkit/X11WindowSpaces.h"

namespace vantorel {

/// The ports of an X server. Inside of a Wayland compositor it knows only of what belongs to X11
/// programs, so the compositor is asked for what it tells of the rest.
class X11Ports : public WindowPorts {
 public:
  /// Null when the server cannot be reached. What `services` name outlives the result.
  [[nodiscard]] static std::unique_ptr<X11Ports> open(const Services& services, Session session);

  [[nodiscard]] All all() override;
  void handOver() override;

 private:
  X11Ports(const Services& services, Session session);
  [[nodiscard]] bool areComplete() const;
  [[nodiscard]] bool alsoOfferPrimary() const;
  [[nodiscard]] std::unique_ptr<SyntheticInput> openX11Input() const;
  [[nodiscard]] std::unique_ptr<SyntheticInput> openInput(Session& session) const;

  Dispatch& dispatch_;
  const bool isInsideWayland_;
  std::unique_ptr<Screens> screens_;
  LinuxStatusItem statusItem_;
  X11EventMonitors monitors_;
  // In this order: each of them may use what stands above it until it has ended.
  std::unique_ptr<X11DesktopSettings> settings_;
  // One of the two: an X server inside of a compositor knows of some of the copies alone.
  std::unique_ptr<DataControlPasteboard> compositorClipboard_;
  std::unique_ptr<X11Pasteboard> x11Clipboard_;
  std::unique_ptr<X11Workspace> x11Workspace_;
  std::unique_ptr<CompositorWorkspace> compositorWorkspace_;  // around the other
  std::unique_ptr<SyntheticInput> input_;
  std::unique_ptr<X11WindowBackdrops> backdrops_;
  X11WindowSpaces spaces_;
  std::unique_ptr<HotKeys> hotKeys_;
  X11KeyboardGrabs keyboardGrabs_;
};

}  // namespace vantorel
