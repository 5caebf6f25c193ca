// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vantorel {

/// What a desktop gives a clipboard history, and what it lacks, as found by looking once.
struct DesktopFacts {
  enum class Keyring { absent, noCollection, locked, unlocked };
  /// held: this user's running instance has it, or asked for it; offered: by a service that says
  /// when it is asked whether it is free; absent: no program can have one that reaches it over
  /// every window.
  enum class Shortcut { free, held, offered, taken, absent };
  /// items: one that speaks StatusNotifierItem. windows: of the older kind, which takes windows in.
  enum class Tray { none, windows, items };

  bool hasWindowSystem = false;  // that this program can speak to
  bool isWayland = false;        // a compositor answers: the X server, if any, stands inside of it
  std::string layersProtocol{};  // by which windows stand above others; empty: X11 windows do
  std::string windowManager;     // its name; empty when none runs or it does not say
  bool hasCompositor = false;
  bool hasSessionBus = false;
  bool isRunning = false;  // an instance of this program, on that bus
  Keyring keyring = Keyring::absent;
  Shortcut shortcut = Shortcut::taken;
  bool canPressKeys = false;
  // What the ports speak, with its version.
  std::string clipboardProtocol;
  std::string windowsProtocol = {};  // empty: X11 windows alone are told
  bool isClipboardBridged = false;   // told only of what another window system hands on
  std::string keysProtocol;
  std::string compositorKeysProtocol = {};  // empty: keys reach X11 windows alone
  /// Windows are told to programs alone that are installed, and keys taken from them.
  bool wantsInstalledPrograms = false;
  bool asksForShortcut = false;      // the service for it asks its user first
  std::string shortcutService = {};  // empty: the window system itself
  Tray tray = Tray::none;
  bool hasSettingsPortal = false;
  bool hasTextReader = false;              // the program that reads the text in pictures
  std::vector<std::string> textLanguages;  // the models it finds, as the engine names them
};

}  // namespace vantorel
