// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/X11Ports.h"

#include <utility>

#include "platform/linux/desktop/CompositorInput.h"
#include "platform/linux/desktop/OwnFocus.h"
#include "platform/linux/portal/PortalHotKeys.h"
#include "platform/linux/shortcuts/KGlobalAccelHotKeys.h"
#include "platform/linux/shortcuts/OwnCommand.h"
#include "platform/linux/wayland/OfferedProtocols.h"
#include "platform/linux/wayland/ToplevelInput.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/toolkit/XwaylandScreens.h"
#include "platform/qt/QtScreens.h"

namespace vantorel {
namespace {

std::unique_ptr<Screens> openScreens(bool isInsideWayland) {
  if (isInsideWayland) return std::make_unique<XwaylandScreens>();
  return std::make_unique<QtScreens>();
}

/// What an X server inside of a compositor grabs holds over the windows of X11 programs alone.
std::unique_ptr<HotKeys> openHotKeys(const WindowPorts::Services& services,
                                     const Session& session) {
  if (session.windows != Session::Windows::xwayland) return X11HotKeys::open(services.dispatch);
  if (session.hasShortcutOfPortal(processEnvironment)) {
    return std::make_unique<PortalHotKeys>(services.dispatch, services.portal);
  }
  return std::make_unique<KGlobalAccelHotKeys>(services.dispatch, services.bus);
}

}  // namespace

std::unique_ptr<X11Ports> X11Ports::open(const Services& services, Session session) {
  std::unique_ptr<X11Ports> ports(new X11Ports(services, std::move(session)));
  return ports->areComplete() ? std::move(ports) : nullptr;
}

X11Ports::X11Ports(const Services& services, Session session)
    : dispatch_(services.dispatch),
      isInsideWayland_(session.windows == Session::Windows::xwayland),
      screens_(openScreens(isInsideWayland_)),
      statusItem_({dispatch_, *screens_, services.bus}, LinuxStatusItem::Trays::ofBothKinds,
                  services.iconThemes),
      monitors_(dispatch_, {}, [this] { return statusItem_.isUnderPointer(); }),
      settings_(X11DesktopSettings::open(dispatch_)),
      compositorClipboard_(
          DataControlPasteboard::open({dispatch_, services.images}, std::move(session.wayland))),
      x11Workspace_(
          X11Workspace::open(dispatch_, DesktopEntryPlaces::fromEnvironment(processEnvironment))),
      hotKeys_(openHotKeys(services, session)) {
  using Bridge = SelectionService::Bridge;
  if (!compositorClipboard_) {
    x11Clipboard_ = X11Pasteboard::open(
        {dispatch_, services.images, isInsideWayland_ ? Bridge::compositor : Bridge::none});
  }
  if (!settings_ || !x11Workspace_ || !(compositorClipboard_ || x11Clipboard_)) return;
  compositorWorkspace_ = CompositorWorkspace::open(
      {dispatch_, x11Workspace_->desktopEntries(), x11Workspace_.get()}, session.takeAnother());
  input_ = openInput(session);
  backdrops_ = std::make_unique<X11WindowBackdrops>(*settings_);
}

bool X11Ports::areComplete() const { return input_ && hotKeys_; }

bool X11Ports::alsoOfferPrimary() const {
  return compositorClipboard_ ? compositorClipboard_->alsoOfferPrimary()
                              : x11Clipboard_->alsoOfferPrimary();
}

std::unique_ptr<SyntheticInput> X11Ports::openX11Input() const {
  ListedTo isListedTo;
  if (x11Clipboard_) {
    isListedTo = [this](xcb_window_t window) { return x11Clipboard_->isListedTo(window); };
  }
  return std::make_unique<X11SyntheticInput>(
      dispatch_, x11Workspace_->applications(), [this] { return alsoOfferPrimary(); }, isListedTo);
}

std::unique_ptr<SyntheticInput> X11Ports::openInput(Session& session) const {
  auto x11 = openX11Input();
  auto keyboard = compositorWorkspace_ ? openKeyboard(compositorWorkspace_->windows().thread(),
                                                      session.takeAnother())
                                       : nullptr;
  if (!keyboard) return x11;
  auto toplevels = std::make_unique<ToplevelInput>(
      ToplevelInput::Services{.dispatch = dispatch_,
                              .windows = compositorWorkspace_->windows(),
                              .entries = x11Workspace_->desktopEntries(),
                              .offerPrimary = [this] { return alsoOfferPrimary(); },
                              .isKeyboardElsewhere = isNoShownWindowFocused},
      std::move(keyboard));
  return std::make_unique<CompositorInput>(std::move(toplevels), std::move(x11));
}

WindowPorts::All X11Ports::all() {
  return {
      .pasteboard =
          compositorClipboard_ ? static_cast<Pasteboard&>(*compositorClipboard_) : *x11Clipboard_,
      .workspace =
          compositorWorkspace_ ? static_cast<Workspace&>(*compositorWorkspace_) : *x11Workspace_,
      .input = *input_,
      .hotKeys = *hotKeys_,
      .statusItem = statusItem_,
      .keyboardGrabs = keyboardGrabs_,
      .monitors = monitors_,
      .screens = *screens_,
      .settings = *settings_,
      .backdrops = *backdrops_,
      .spaces = spaces_,
      .applications = x11Workspace_->desktopEntries(),
      .tellsFront = !isInsideWayland_ || compositorWorkspace_,
  };
}

void X11Ports::handOver() {
  if (x11Clipboard_) x11Clipboard_->handOver();
}

}  // namespace vantorel
