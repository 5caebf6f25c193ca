#include "platform/linux/x11/LinuxAccessibilityPreferences.h"

#include <xcb/xfixes.h>

#include <string_view>
#include <utility>

#include "platform/linux/x11/X11Property.h"
#include "platform/linux/x11/XSettings.h"
#include "text/Unicode.h"

namespace vantorel {

namespace {

constexpr std::size_t maximumSettings = std::size_t{1} << 20U;  // bytes; some KB are usual

bool saysNoAnimations(const XSettings& settings) {
  const auto found = settings.find("Gtk/EnableAnimations");
  if (found == settings.end()) return false;
  const auto* value = std::get_if<std::int32_t>(&found->second);
  return value != nullptr && *value == 0;
}

bool saysHighContrast(const XSettings& settings) {
  const auto found = settings.find("Net/ThemeName");
  if (found == settings.end()) return false;
  const auto* theme = std::get_if<std::string>(&found->second);
  return theme != nullptr && lowerCased(*theme).starts_with("highcontrast");
}

}  // namespace

std::unique_ptr<LinuxAccessibilityPreferences> LinuxAccessibilityPreferences::open(
    const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  return std::unique_ptr<LinuxAccessibilityPreferences>(
      new LinuxAccessibilityPreferences(std::move(connection)));
}

LinuxAccessibilityPreferences::LinuxAccessibilityPreferences(
    std::unique_ptr<X11Connection> connection)
    : thread_(std::move(connection), "preferences") {
  auto& x11 = thread_.connection();
  const auto screen = std::to_string(x11.screenNumber());
  compositorSelection_ = x11.atom("_NET_WM_CM_S" + screen);
  settingsSelection_ = x11.atom("_XSETTINGS_S" + screen);
  settingsProperty_ = x11.atom("_XSETTINGS_SETTINGS");
  watchSelections();
  readCompositor();
  followManager();
  thread_.start([this](const xcb_generic_event_t& event) { handle(event); }, [] {});
}

LinuxAccessibilityPreferences::~LinuxAccessibilityPreferences() { thread_.stop(); }

void LinuxAccessibilityPreferences::watchSelections() {
  auto& x11 = thread_.connection();
  const auto* fixes = x11.extension(xcb_xfixes_id);
  if (fixes == nullptr) return;
  fixesEvent_ = fixes->first_event;
  const auto version =
      x11.reply(xcb_xfixes_query_version_reply, xcb_xfixes_query_version(x11.xcb(), 5, 0));
  constexpr std::uint32_t changes = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
  for (const auto selection : {compositorSelection_, settingsSelection_}) {
    xcb_xfixes_select_selection_input(x11.xcb(), x11.root(), selection, changes);
  }
}

xcb_window_t LinuxAccessibilityPreferences::ownerOf(xcb_atom_t selection) const {
  const auto& x11 = thread_.connection();
  const auto owner =
      x11.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x11.xcb(), selection));
  return owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void LinuxAccessibilityPreferences::readCompositor() {
  composited_ = ownerOf(compositorSelection_) != XCB_WINDOW_NONE;
}

void LinuxAccessibilityPreferences::followManager() {
  const auto& x11 = thread_.connection();
  manager_ = ownerOf(settingsSelection_);
  if (manager_ != XCB_WINDOW_NONE) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(x11.xcb(), manager_, XCB_CW_EVENT_MASK, &mask);
  }
  readSettings();
}

void LinuxAccessibilityPreferences::readSettings() {
  XSettings settings;
  if (manager_ != XCB_WINDOW_NONE) {
    const auto reading =
        readProperty(thread_.connection(), manager_, settingsProperty_, maximumSettings);
    settings = parseXSettings(reading.property.bytes);
  }
  reduceMotion_ = saysNoAnimations(settings);
  highContrast_ = saysHighContrast(settings);
}

void LinuxAccessibilityPreferences::handle(const xcb_generic_event_t& event) {
  const auto type = event.response_type & 0x7FU;
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.window == manager_ && change.atom == settingsProperty_) readSettings();
  } else if (fixesEvent_ != 0 && type == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection == compositorSelection_) readCompositor();
    if (change.selection == settingsSelection_) followManager();
  }
}

}  // namespace vantorel
