// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/linux/desktop/CompositorWorkspace.h"
#include "platform/linux/desktop/InstalledApplications.h"
#include "platform/linux/desktop/LinuxStatusItem.h"
#include "platform/linux/desktop/Session.h"
#include "platform/linux/desktop/WindowPorts.h"
#include "platform/linux/portal/PortalSettings.h"
#include "platform/linux/wayland/DataControlPasteboard.h"
#include "platform/linux/wayland/toolkit/LayerWindows.h"
#include "platform/linux/wayland/toolkit/WaylandBackdrops.h"
#include "platform/linux/wayland/toolkit/WaylandKeyboardGrabs.h"
#include "platform/linux/wayland/toolkit/WaylandScreens.h"

namespace vantorel {

/// The ports of a Wayland compositor that lets a program keep the clipboard and stand above the
/// windows. An X server inside of it is not asked for anything.
class WaylandPorts : public WindowPorts {
 public:
  /// Null when the compositor takes back what it offered. What `services` name outlives the result.
  [[nodiscard]] static std::unique_ptr<WaylandPorts> open(const Services& services,
                                                          Session session);

  [[nodiscard]] All all() override;

 private:
  WaylandPorts(const Services& services, std::unique_ptr<ToolkitCompositor> compositor,
               std::unique_ptr<DataControlPasteboard> clipboard, Session& session);
  [[nodiscard]] std::unique_ptr<Workspace> openWorkspace(Session& session);
  [[nodiscard]] std::unique_ptr<SyntheticInput> openInput(Session& session);

  Dispatch& dispatch_;
  // In this order: each of them may use what stands above it until it has ended.
  std::unique_ptr<ToolkitCompositor> compositor_;
  LayerScrim scrim_{*compositor_};
  LayerWindows windows_{*compositor_, scrim_};
  WaylandScreens screens_{*compositor_, scrim_};
  WaylandKeyboardGrabs keyboardGrabs_{*compositor_};
  WaylandBackdrops backdrops_;
  PortalSettings settings_;
  LinuxStatusItem statusItem_;
  std::unique_ptr<DataControlPasteboard> clipboard_;
  InstalledApplications applications_;
  ToplevelSource* toplevels_ = nullptr;  // of the next; null where none are told
  std::unique_ptr<Workspace> workspace_;
  std::unique_ptr<SyntheticInput> input_;
  std::unique_ptr<HotKeys> hotKeys_;
};

}  // namespace vantorel
