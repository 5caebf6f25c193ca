// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "base/FileSystem.h"
#include "platform/AccessibilityPreferences.h"
#include "platform/CommandShortcuts.h"
#include "platform/Dispatch.h"
#include "platform/EventMonitors.h"
#include "platform/FileThumbnails.h"
#include "platform/HotKeys.h"
#include "platform/Icons.h"
#include "platform/Image.h"
#include "platform/KeyEvent.h"
#include "platform/KeyboardGrabs.h"
#include "platform/Keychain.h"
#include "platform/LoginItem.h"
#include "platform/Notifications.h"
#include "platform/Pasteboard.h"
#include "platform/Screens.h"
#include "platform/SessionLock.h"
#include "platform/StatusItem.h"
#include "platform/SyntheticInput.h"
#include "platform/TextRecognition.h"
#include "platform/UserDefaults.h"
#include "platform/WindowBackdrops.h"
#include "platform/WindowSpaces.h"
#include "platform/Workspace.h"

namespace vantorel {

/// Everything the program needs of the desktop it runs on. Built by that desktop's factory, which
/// owns the ports and outlives whoever was given this.
///
/// The core speaks of one desktop's services, by that desktop's names, numbers and shapes, and so
/// do the ports. Each implementation maps what its desktop has to them, and each port says where
/// one may ignore what it is given.
struct Desktop {
  Dispatch& dispatch;
  FileSystem& files;
  /// For questions on threads that nobody waits for, which may outlive the program's parts.
  std::shared_ptr<FileSystem> distantFiles;
  Keychain& keychain;
  UserDefaults& defaults;
  Pasteboard& pasteboard;
  Workspace& workspace;
  SyntheticInput& input;
  HotKeys& hotKeys;
  CommandShortcuts* commandShortcuts;  // null: the desktop has no such list, or none is needed
  LoginItem& loginItem;
  StatusItem& statusItem;
  Notifications& notifications;
  KeyboardGrabs& keyboardGrabs;
  EventMonitors& monitors;
  Screens& screens;
  const AccessibilityPreferences& accessibility;
  const SessionLock& sessionLock;
  const ImageDecoder& images;
  TextRecognition& recognition;
  FileThumbnails& fileThumbnails;
  Icons& icons;
  const WindowBackdrops* backdrops;  // null: nothing is seen through a window
  const WindowSpaces& spaces;
  KeyCodeForScanCode keyCodeForScanCode;
  /// What the session calls the desktop, perhaps several names joined by ":"; empty when it does
  /// not say.
  std::string name;
  /// Whether it says which application is in front, whatever that draws its windows with.
  bool tellsFront = true;
  /// The command that starts this program: its name where that is found, else its path.
  std::string programName;
  /// Where this user's applications keep their data.
  std::filesystem::path applicationSupport;
};

}  // namespace vantorel
