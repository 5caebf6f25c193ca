#include "platform/linux/desktop/LinuxDesktop.h"

#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/bus/DesktopNotifications.h"
#include "platform/linux/confined/WorkerProgram.h"
#include "platform/linux/decoding/ConfinedImageDecoder.h"
#include "platform/linux/desktop/CompositorInput.h"
#include "platform/linux/desktop/CompositorWorkspace.h"
#include "platform/linux/desktop/DefaultsFile.h"
#include "platform/linux/desktop/DesktopColors.h"
#include "platform/linux/desktop/LinuxStatusItem.h"
#include "platform/linux/pictures/LinuxFileThumbnails.h"
#include "platform/linux/pictures/ThemeIcons.h"
#include "platform/linux/settings/JsonUserDefaults.h"
#include "platform/linux/shortcuts/KGlobalAccelHotKeys.h"
#include "platform/linux/shortcuts/OwnCommand.h"
#include "platform/linux/start/AutostartLoginItem.h"
#include "platform/linux/start/HistoryLock.h"
#include "platform/linux/textinpictures/TextModels.h"
#include "platform/linux/textinpictures/WorkerTextRecognition.h"
#include "platform/linux/wayland/DataControlPasteboard.h"
#include "platform/linux/wayland/ToplevelInput.h"
#include "platform/linux/wayland/VirtualKeyboard.h"
#include "platform/linux/windows/KeyCodeTable.h"
#include "platform/linux/x11/X11DesktopSettings.h"
#include "platform/linux/x11/X11EventMonitors.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11Pasteboard.h"
#include "platform/linux/x11/X11SyntheticInput.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/toolkit/X11KeyboardGrabs.h"
#include "platform/linux/x11/toolkit/X11WindowBackdrops.h"
#include "platform/linux/x11/toolkit/X11WindowSpaces.h"
#include "platform/linux/x11/toolkit/XwaylandScreens.h"
#include "platform/linux/xdg/NoDump.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/qt/QtScreens.h"

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
        compositorClipboard(
            DataControlPasteboard::open({services.dispatch, images}, std::move(session.wayland))) {
    if (!compositorClipboard) x11Clipboard = openX11Clipboard();
    if (x11Workspace) {
      compositorWorkspace =
          CompositorWorkspace::open(dispatch, *x11Workspace, session.connectAgain());
    }
    if (compositorWorkspace) {
      keyboard =
          VirtualKeyboard::open(compositorWorkspace->windows().thread(), session.connectAgain());
    }
  }

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
  const std::unique_ptr<Screens> screens = openScreens();
  LinuxStatusItem statusItem{{dispatch, *screens, bus}, installedIconThemes(ownProgramPath())};
  DesktopNotifications notifications{bus};
  using Bridge = SelectionService::Bridge;
  X11EventMonitors monitors{dispatch, {}, [this] { return statusItem.isUnderPointer(); }};
  // In this order: each of them may use what stands above it until it has ended.
  std::unique_ptr<X11DesktopSettings> accessibility = X11DesktopSettings::open(dispatch);
  // One of the two: an X server inside of a compositor knows of some of the copies alone.
  std::unique_ptr<DataControlPasteboard> compositorClipboard;
  std::unique_ptr<X11Pasteboard> x11Clipboard;
  std::unique_ptr<X11Workspace> x11Workspace =
      X11Workspace::open(dispatch, DesktopEntryPlaces::fromEnvironment(processEnvironment));
  std::unique_ptr<CompositorWorkspace> compositorWorkspace;  // around the other
  std::unique_ptr<VirtualKeyboard> keyboard;                 // until somebody presses on it
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
                         [this] { return accessibility->iconTheme(); }};
  std::optional<ThemeIcons> icons;
  std::unique_ptr<SyntheticInput> input;
  std::optional<X11WindowBackdrops> backdrops;
  X11WindowSpaces spaces;
  std::optional<DesktopColors> colors;
  std::unique_ptr<HotKeys> hotKeys = openHotKeys();
  X11KeyboardGrabs keyboardGrabs;

  [[nodiscard]] std::unique_ptr<Screens> openScreens() const {
    if (isInsideWayland) return std::make_unique<XwaylandScreens>();
    return std::make_unique<QtScreens>();
  }

  [[nodiscard]] std::unique_ptr<X11Pasteboard> openX11Clipboard() const {
    return X11Pasteboard::open(
        {dispatch, images, isInsideWayland ? Bridge::compositor : Bridge::none});
  }

  [[nodiscard]] Pasteboard* pasteboard() const {
    if (compositorClipboard) return compositorClipboard.get();
    return x11Clipboard.get();
  }

  [[nodiscard]] Workspace& workspace() const {
    if (compositorWorkspace) return *compositorWorkspace;
    return *x11Workspace;
  }

  [[nodiscard]] bool alsoOfferPrimary() const {
    return compositorClipboard ? compositorClipboard->alsoOfferPrimary()
                               : x11Clipboard->alsoOfferPrimary();
  }

  [[nodiscard]] std::unique_ptr<SyntheticInput> openX11Input() const {
    ListedTo isListedTo;
    if (x11Clipboard) {
      isListedTo = [this](xcb_window_t window) { return x11Clipboard->isListedTo(window); };
    }
    return std::make_unique<X11SyntheticInput>(
        dispatch, x11Workspace->applications(), [this] { return alsoOfferPrimary(); }, isListedTo);
  }

  [[nodiscard]] std::unique_ptr<SyntheticInput> openInput() {
    auto x11 = openX11Input();
    if (!keyboard) return x11;
    auto toplevels = std::make_unique<ToplevelInput>(
        ToplevelInput::Services{
            .dispatch = dispatch,
            .windows = compositorWorkspace->windows(),
            .entries = x11Workspace->desktopEntries(),
            .offerPrimary = [this] { return alsoOfferPrimary(); },
            .isKeyboardElsewhere = [] { return QGuiApplication::focusWindow() == nullptr; }},
        std::move(keyboard));
    return std::make_unique<CompositorInput>(std::move(toplevels), std::move(x11));
  }

  /// What an X server inside of a compositor grabs holds over the windows of X11 programs alone.
  [[nodiscard]] std::unique_ptr<HotKeys> openHotKeys() const {
    if (isInsideWayland) return std::make_unique<KGlobalAccelHotKeys>(dispatch, bus);
    return X11HotKeys::open(dispatch);
  }

  /// Once the desktop is known to be there.
  void openIcons() {
    double scale = 1;
    for (const auto& screen : screens->screens()) scale = std::max(scale, screen.scale);
    icons.emplace(
        dispatch,
        ThemeIcons::Sources{files, images, themes, types, std::make_shared<PosixFileSystem>(),
                            [this] { return x11Workspace->desktopEntries().index(); }},
        ThemeIcons::Sides{.application = applicationIconSide(scale)});
  }

  [[nodiscard]] bool areComplete() const {
    return accessibility && pasteboard() && x11Workspace && input && hotKeys;
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
  if (ports->pasteboard() && ports->x11Workspace) ports->input = ports->openInput();
  if (!ports->areComplete()) return nullptr;
  ports->backdrops.emplace(*ports->accessibility);
  ports->colors.emplace(*ports->accessibility, services.bus, services.portal,
                        processEnvironment("GTK_THEME").value_or(std::string()));
  ports->openIcons();
  return std::unique_ptr<LinuxDesktop>(new LinuxDesktop(std::move(ports)));
}

void LinuxDesktop::prepareToEnd() {
  ports_->images.stopShowing();
  // First: the clipboard manager may want a form that is yet to be made.
  if (ports_->x11Clipboard) ports_->x11Clipboard->handOver();
  ports_->images.stopConverting();
}

Desktop LinuxDesktop::ports() {
  return {
      .dispatch = ports_->dispatch,
      .files = ports_->files,
      .distantFiles = ports_->distantFiles,
      .keychain = ports_->keychain,
      .defaults = ports_->defaults,
      .pasteboard = *ports_->pasteboard(),
      .workspace = ports_->workspace(),
      .input = *ports_->input,
      .hotKeys = *ports_->hotKeys,
      .loginItem = ports_->loginItem,
      .statusItem = ports_->statusItem,
      .notifications = ports_->notifications,
      .keyboardGrabs = ports_->keyboardGrabs,
      .monitors = ports_->monitors,
      .screens = *ports_->screens,
      .accessibility = *ports_->accessibility,
      .images = ports_->images,
      .recognition = ports_->recognition,
      .fileThumbnails = ports_->fileThumbnails,
      .icons = *ports_->icons,
      .backdrops = &*ports_->backdrops,
      .spaces = ports_->spaces,
      .keyCodeForScanCode = keyCodeFromX11,
      .name = desktopName(processEnvironment),
      .programName = ownCommand(ownProgramPath(), processEnvironment),
      .applicationSupport = ports_->directories.dataHome.value_or(""),
  };
}

}  // namespace vantorel
