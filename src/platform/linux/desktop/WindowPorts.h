// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "platform/Dispatch.h"
#include "platform/EventMonitors.h"
#include "platform/HotKeys.h"
#include "platform/Image.h"
#include "platform/KeyboardGrabs.h"
#include "platform/Pasteboard.h"
#include "platform/Screens.h"
#include "platform/StatusItem.h"
#include "platform/SyntheticInput.h"
#include "platform/WindowBackdrops.h"
#include "platform/WindowSpaces.h"
#include "platform/Workspace.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/windows/DesktopSettings.h"

namespace vantorel {

class Portal;
class SessionBus;

/// The ports that depend on what the session has for windows, one implementation for each. Main
/// thread.
class WindowPorts {
 public:
  struct Services {
    Dispatch& dispatch;
    SessionBus& bus;
    Portal& portal;
    const ImageDecoder& images;
    std::filesystem::path iconThemes;  // where the program's own icons were installed
  };

  struct All {
    Pasteboard& pasteboard;
    Workspace& workspace;
    SyntheticInput& input;
    HotKeys& hotKeys;
    StatusItem& statusItem;
    KeyboardGrabs& keyboardGrabs;
    EventMonitors& monitors;
    Screens& screens;
    const DesktopSettings& settings;
    const WindowBackdrops& backdrops;
    const WindowSpaces& spaces;
    const DesktopEntries& applications;
    bool tellsFront = true;  // whether it is known which application is in front
  };

  virtual ~WindowPorts() = default;

  /// They end with this.
  [[nodiscard]] virtual All all() = 0;
  /// The program is about to end: what it wrote is handed over, where somebody takes it. 300 ms at
  /// most.
  virtual void handOver() {}
};

}  // namespace vantorel
