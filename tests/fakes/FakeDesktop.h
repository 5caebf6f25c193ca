// SPDX-License-Identifier: MIT
#pragma once

#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/FakeCommandShortcuts.h"
#include "fakes/FakeEventMonitors.h"
#include "fakes/FakeFileThumbnails.h"
#include "fakes/FakeHotKeys.h"
#include "fakes/FakeIcons.h"
#include "fakes/FakeImageDecoder.h"
#include "fakes/FakeKeyboardGrabs.h"
#include "fakes/FakeKeychain.h"
#include "fakes/FakeLoginItem.h"
#include "fakes/FakeNotifications.h"
#include "fakes/FakePasteboard.h"
#include "fakes/FakeScreens.h"
#include "fakes/FakeSessionLock.h"
#include "fakes/FakeStatusItem.h"
#include "fakes/FakeSyntheticInput.h"
#include "fakes/FakeTextRecognition.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/FakeWindowBackdrops.h"
#include "fakes/FakeWindowSpaces.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/FaultyFileSystem.h"
#include "fakes/ManualDispatch.h"
#include "fakes/TemporaryDirectory.h"
#include "platform/Desktop.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {

/// A whole desktop that the test plays, with real files in a directory that goes with it.
struct FakeDesktop {
  TemporaryDirectory directory;
  ManualDispatch dispatch;
  PosixFileSystem disk;
  FaultyFileSystem files{disk};
  FakeKeychain keychain;
  FakeUserDefaults defaults;
  FakePasteboard pasteboard{dispatch};
  FakeWorkspace workspace{dispatch};
  FakeSyntheticInput input;
  FakeHotKeys hotKeys;
  FakeLoginItem loginItem;
  FakeKeyboardGrabs keyboardGrabs;
  FakeStatusItem statusItem;
  FakeNotifications notifications;
  FakeEventMonitors monitors;
  FakeScreens screens;
  FakeAccessibilityPreferences accessibility;
  FakeSessionLock sessionLock;
  FakeImageDecoder images;
  FakeTextRecognition recognition;
  FakeFileThumbnails fileThumbnails;
  FakeIcons icons;
  FakeWindowBackdrops backdrops;
  FakeWindowSpaces spaces;
  std::string name = "sway";
  bool tellsFront = true;
  FakeCommandShortcuts commandShortcuts;
  bool hasCommandShortcuts = false;

  [[nodiscard]] Desktop ports() {
    return Desktop{.dispatch = dispatch,
                   .files = files,
                   .distantFiles = std::make_shared<PosixFileSystem>(),
                   .keychain = keychain,
                   .defaults = defaults,
                   .pasteboard = pasteboard,
                   .workspace = workspace,
                   .input = input,
                   .hotKeys = hotKeys,
                   .commandShortcuts = hasCommandShortcuts ? &commandShortcuts : nullptr,
                   .loginItem = loginItem,
                   .statusItem = statusItem,
                   .notifications = notifications,
                   .keyboardGrabs = keyboardGrabs,
                   .monitors = monitors,
                   .screens = screens,
                   .accessibility = accessibility,
                   .sessionLock = sessionLock,
                   .images = images,
                   .recognition = recognition,
                   .fileThumbnails = fileThumbnails,
                   .icons = icons,
                   .backdrops = &backdrops,
                   .spaces = spaces,
                   .keyCodeForScanCode = {},
                   .name = name,
                   .tellsFront = tellsFront,
                   .programName = "vantorel",
                   .applicationSupport = directory.path()};
  }
};

}  // namespace vantorel
