// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/WaylandPorts.h"

#include <utility>

#include "platform/linux/desktop/OwnFocus.h"
#include "platform/linux/desktop/UntoldWorkspace.h"
#include "platform/linux/shortcuts/KGlobalAccelHotKeys.h"
#include "platform/linux/wayland/OfferedProtocols.h"
#include "platform/linux/wayland/ToplevelInput.h"
#include "platform/linux/windows/AbsentSyntheticInput.h"

namespace vantorel {

std::unique_ptr<WaylandPorts> WaylandPorts::open(const Services& services, Session session) {
  auto compositor = ToolkitCompositor::open();
  auto clipboard =
      DataControlPasteboard::open({services.dispatch, services.images}, std::move(session.wayland));
  if (!compositor || !clipboard) return nullptr;
  return std::unique_ptr<WaylandPorts>(
      new WaylandPorts(services, std::move(compositor), std::move(clipboard), session));
}

WaylandPorts::WaylandPorts(const Services& services, std::unique_ptr<ToolkitCompositor> compositor,
                           std::unique_ptr<DataControlPasteboard> clipboard, Session& session)
    : dispatch_(services.dispatch),
      compositor_(std::move(compositor)),
      settings_(services.portal),
      statusItem_({dispatch_, screens_, services.bus}, LinuxStatusItem::Trays::ofItems,
                  services.iconThemes),
      clipboard_(std::move(clipboard)),
      workspace_(openWorkspace(session)),
      input_(openInput(session)),
      hotKeys_(std::make_unique<KGlobalAccelHotKeys>(dispatch_, services.bus)) {}

std::unique_ptr<Workspace> WaylandPorts::openWorkspace(Session& session) {
  auto told = CompositorWorkspace::open(
      {dispatch_, applications_.entries(), nullptr, [this] { applications_.readAgain(); },
       [this] { windows_.releaseKeyboard(); }},
      session.takeAnother());
  if (told) {
    toplevels_ = &told->windows();
    return told;
  }
  return std::make_unique<UntoldWorkspace>(applications_.entries());
}

std::unique_ptr<SyntheticInput> WaylandPorts::openInput(Session& session) {
  auto keyboard =
      toplevels_ == nullptr ? nullptr : openKeyboard(toplevels_->thread(), session.takeAnother());
  if (!keyboard) return std::make_unique<AbsentSyntheticInput>();
  return std::make_unique<ToplevelInput>(
      ToplevelInput::Services{
          .dispatch = dispatch_,
          .windows = *toplevels_,
          .entries = applications_.entries(),
          .offerPrimary = [this] { return clipboard_->alsoOfferPrimary(); },
          .isKeyboardElsewhere =
              [this] { return isNoShownWindowFocused() && windows_.haveLeft(); }},
      std::move(keyboard));
}

WindowPorts::All WaylandPorts::all() {
  return {
      .pasteboard = *clipboard_,
      .workspace = *workspace_,
      .input = *input_,
      .hotKeys = *hotKeys_,
      .statusItem = statusItem_,
      .keyboardGrabs = keyboardGrabs_,
      .monitors = scrim_,
      .screens = screens_,
      .settings = settings_,
      .backdrops = backdrops_,
      .spaces = windows_,
      .applications = applications_.entries(),
      .tellsFront = toplevels_ != nullptr,
  };
}

}  // namespace vantorel
