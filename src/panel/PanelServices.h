// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "base/FileSystem.h"
#include "chrome/ChromeServices.h"
#include "chrome/KeyTranslation.h"
#include "platform/AccessibilityPreferences.h"
#include "platform/Dispatch.h"
#include "platform/EventMonitors.h"
#include "platform/FileThumbnails.h"
#include "platform/Icons.h"
#include "platform/Image.h"
#include "platform/Screens.h"
#include "platform/WindowBackdrops.h"
#include "platform/WindowSpaces.h"

namespace vantorel {

/// What the history panel needs of the desktop. All outlive its controller.
struct PanelServices {
  Dispatch& dispatch;
  const Screens& screens;
  EventMonitors& eventMonitors;
  const AccessibilityPreferences& accessibility;
  FileSystem& files;
  std::shared_ptr<FileSystem> distantFiles;  // asked on threads that may outlive everything here
  const ImageDecoder& images;
  FileThumbnails& fileThumbnails;
  Icons& icons;
  const WindowBackdrops* backdrops = nullptr;  // null: nothing is seen through a window
  const WindowSpaces* spaces = nullptr;        // null: there is one desktop only
  KeyCodeForScanCode keyCodeForScanCode{};

  [[nodiscard]] ChromeServices chrome() const {
    return {dispatch, screens, accessibility, backdrops, spaces};
  }
};

}  // namespace vantorel
