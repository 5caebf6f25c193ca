// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/LinuxDesktop.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "platform/linux/bus/BusSessionLock.h"
#include "platform/linux/bus/DesktopNotifications.h"
#include "platform/linux/confined/WorkerProgram.h"
#include "platform/linux/decoding/ConfinedImageDecoder.h"
#include "platform/linux/desktop/DefaultsFile.h"
#include "platform/linux/desktop/DesktopColors.h"
#include "platform/linux/desktop/WaylandPorts.h"
#include "platform/linux/desktop/X11Ports.h"
#include "platform/linux/pictures/LinuxFileThumbnails.h"
#include "platform/linux/pictures/ThemeIcons.h"
#include "platform/linux/settings/JsonUserDefaults.h"
#include "platform/linux/shortcuts/GnomeCommandShortcuts.h"
#include "platform/linux/shortcuts/OwnCommand.h"
#include "platform/linux/start/AutostartLoginItem.h"
#include "platform/linux/start/HistoryLock.h"
#include "platform/linux/textinpictures/TextModels.h"
#include "platform/linux/textinpictures/WorkerTextRecognition.h"
#include "platform/linux/windows/KeyCodeTable.h"
#include "platform/linux/xdg/NoDump.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {
namespace {

/// Beside the directory of the program, where an installation puts them.
std::filesystem::path installedIconThemes(const std::filesystem::path& program) {
  return program.parent_path().parent_path() / "share" / "icons";
}

}  // namespace

struct LinuxDesktop::Ports {
  Ports(const Services& services, Session session)
      : dispatch(services.dispatch),
        keychain(services.keychain),
        bus(services.bus),
        historyLock(services.historyLock),
        isInsideWayland(session.windows == Session::Windows::xwayland),
        windows(openWindows(services.portal, std::move(session))) {}

  Dispatch& dispatch;
  Keychain& keychain;
  SessionBus& bus;
  HistoryLock& historyLock;
  const bool isInsideWayland;
  XdgDirectories directories = XdgDirectories::fromEnvironment(processEnvironment);
  PosixFileSystem files{setNoDump, [this](const std::filesystem::path& directory) {
                          return historyLock.claim(directory);
                        }};
  std::shared_ptr<FileSystem> distantFiles = std::make_shared<PosixFileSystem>();
  JsonUserDefaults defaults{files, defaultsFile(directories)};
  AutostartLoginItem loginItem{files, AutostartPlaces::fromEnvironment(processEnvironment),
                               ownProgramPath()};
  ConfinedImageDecoder images{{.program = workerProgram(pictureWorker)}};
  WorkerTextRecognition recognition{
      {workerProgram(textWorker),
       modelDirectories(processEnvironment("TESSDATA_PREFIX").value_or(std::string()))}};
  DesktopNotifications notifications{bus};
  BusSessionLock sessionLock{dispatch, bus};
  std::unique_ptr<WindowPorts> windows;  // null where there are none
  MimeTypeDatabase types{MimeTypeDatabase::directories(processEnvironment)};
  LinuxFileThumbnails fileThumbnails{
      dispatch,
      {files,
       images,
       types,
       directories.cacheHome ? *directories.cacheHome / "thumbnails" : "",
       Thumbnailers::Places::fromEnvironment(processEnvironment),
       std::make_shared<PosixFileSystem>(),
       {directories.runtime.value_or("/tmp"), "/usr/bin/bwrap"}}};
  IconThemeSource themes{files, IconThemeSource::Places::fromEnvironment(processEnvironment),
                         [this] { return windows->all().settings.iconTheme(); }};
  std::optional<ThemeIcons> icons;
  std::optional<DesktopColors> colors;
  std::unique_ptr<GnomeCommandShortcuts> commandShortcuts = openCommandShortcuts();

  [[nodiscard]] std::unique_ptr<WindowPorts> openWindows(Portal& portal, Session session) {
    const WindowPorts::Services services{dispatch, bus, portal, images,
                                         installedIconThemes(ownProgramPath())};
    if (session.windows == Session::Windows::wayland) {
      return WaylandPorts::open(services, std::move(session));
    }
    return X11Ports::open(services, std::move(session));
  }

  /// Settings that a desktop of another name may have installed, but does not read.
  [[nodiscard]] std::unique_ptr<GnomeCommandShortcuts> openCommandShortcuts() const {
    const bool isGnome = desktopName(processEnvironment).find("GNOME") != std::string::npos;
    return isInsideWayland && isGnome ? GnomeCommandShortcuts::open() : nullptr;
  }

  /// Once the desktop is known to be there.
  void openIcons() {
    const auto shown = windows->all();
    double scale = 1;
    for (const auto& screen : shown.screens.screens()) scale = std::max(scale, screen.scale);
    icons.emplace(
        dispatch,
        ThemeIcons::Sources{files, images, themes, types, std::make_shared<PosixFileSystem>(),
                            [&entries = shown.applications] { return entries.index(); }},
        ThemeIcons::Sides{.application = applicationIconSide(scale)});
  }
};

LinuxDesktop::LinuxDesktop(std::unique_ptr<Ports> ports) : ports_(std::move(ports)) {}

LinuxDesktop::~LinuxDesktop() = default;

std::unique_ptr<LinuxDesktop> LinuxDesktop::open(const Services& services, Session session) {
  auto ports = std::make_unique<Ports>(services, std::move(session));
  if (ports->defaults.areLost()) {
    std::fputs("vantorel: the settings cannot be read; nothing is recorded until resumed.\n",
               stderr);
  }
  if (!ports->windows) return nullptr;
  ports->colors.emplace(ports->windows->all().settings, services.portal,
                        processEnvironment("GTK_THEME").value_or(std::string()));
  ports->openIcons();
  return std::unique_ptr<LinuxDesktop>(new LinuxDesktop(std::move(ports)));
}

void LinuxDesktop::prepareToEnd() {
  ports_->images.stopShowing();
  // First: the clipboard manager may want a form that is yet to be made.
  ports_->windows->handOver();
  ports_->images.stopConverting();
}

Desktop LinuxDesktop::ports() {
  const auto windows = ports_->windows->all();
  return {
      .dispatch = ports_->dispatch,
      .files = ports_->files,
      .distantFiles = ports_->distantFiles,
      .keychain = ports_->keychain,
      .defaults = ports_->defaults,
      .pasteboard = windows.pasteboard,
      .workspace = windows.workspace,
      .input = windows.input,
      .hotKeys = windows.hotKeys,
      .commandShortcuts = ports_->commandShortcuts.get(),
      .loginItem = ports_->loginItem,
      .statusItem = windows.statusItem,
      .notifications = ports_->notifications,
      .keyboardGrabs = windows.keyboardGrabs,
      .monitors = windows.monitors,
      .screens = windows.screens,
      .accessibility = windows.settings,
      .sessionLock = ports_->sessionLock,
      .images = ports_->images,
      .recognition = ports_->recognition,
      .fileThumbnails = ports_->fileThumbnails,
      .icons = *ports_->icons,
      .backdrops = &windows.backdrops,
      .spaces = windows.spaces,
      .keyCodeForScanCode = keyCodeFromX11,
      .name = desktopName(processEnvironment),
      .tellsFront = windows.tellsFront,
      .programName = ownCommand(ownProgramPath(), processEnvironment),
      .applicationSupport = ports_->directories.dataHome.value_or(""),
  };
}

}  // namespace vantorel
