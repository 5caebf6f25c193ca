// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11DesktopSettings.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/MainQueue.h"
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

/// A text of that name; empty when there is none.
std::string textOf(const XSettings& settings, std::string_view name) {
  const auto found = settings.find(name);
  const auto* text = found != settings.end() ? std::get_if<std::string>(&found->second) : nullptr;
  return text != nullptr ? *text : std::string();
}

/// Window managers that compose shade what they have put a frame around. These stand alone, and
/// shade everything that their user has not excepted; whether at all, they tell nobody.
bool shadesByItself(std::string_view compositor) {
  constexpr std::array names = {"picom", "compton", "xcompmgr"};
  return std::find(names.begin(), names.end(), compositor) != names.end();
}

bool saysHighContrast(const std::string& theme) {
  return lowerCased(theme).starts_with("highcontrast");
}

}  // namespace

/// All that observers are told of.
struct X11DesktopSettings::State {
  bool reduceMotion = false;
  bool highContrast = false;
  bool composited = false;
  bool shadesWindows = false;
  bool announcesBlur = false;
  std::string theme;
  friend bool operator==(const State&, const State&) = default;
};

std::unique_ptr<X11DesktopSettings> X11DesktopSettings::open(Dispatch& dispatch,
                                                             const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  return std::unique_ptr<X11DesktopSettings>(
      new X11DesktopSettings(dispatch, std::move(connection)));
}

X11DesktopSettings::X11DesktopSettings(Dispatch& dispatch,
                                       std::unique_ptr<X11Connection> connection)
    : thread_(std::move(connection), "preferences") {
  auto& x11 = thread_.connection();
  const auto screen = std::to_string(x11.screenNumber());
  compositorSelection_ = x11.atom("_NET_WM_CM_S" + screen);
  settingsSelection_ = x11.atom("_XSETTINGS_S" + screen);
  settingsProperty_ = x11.atom("_XSETTINGS_SETTINGS");
  blurProperty_ = x11.atom("_KDE_NET_WM_BLUR_BEHIND_REGION");
  supportedProperty_ = x11.atom("_NET_SUPPORTED");
  watchSelections();
  watchRoot();
  readCompositor();
  readBlur();
  followManager();
  thread_.start(
      [this, tell = onMainQueue(dispatch, life_.guard([this] { observers_.notify(); }))](
          const xcb_generic_event_t& event) {
        const State before = state();
        read(event);
        if (state() != before) tell();
      },
      [] {});
}

X11DesktopSettings::~X11DesktopSettings() { thread_.stop(); }

std::unique_ptr<Observation> X11DesktopSettings::observe(std::function<void()> changed) const {
  return observers_.add(std::move(changed));
}

X11DesktopSettings::State X11DesktopSettings::state() const {
  return {reduceMotion_, highContrast_, composited_, shadesWindows_, announcesBlur_, theme()};
}

std::string X11DesktopSettings::theme() const {
  const std::lock_guard lock(mutex_);
  return theme_;
}

std::string X11DesktopSettings::iconTheme() const {
  const std::lock_guard lock(mutex_);
  return iconTheme_;
}

void X11DesktopSettings::watchSelections() {
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

void X11DesktopSettings::watchRoot() {
  const auto& x11 = thread_.connection();
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(x11.xcb(), x11.root(), XCB_CW_EVENT_MASK, &mask);
}

xcb_window_t X11DesktopSettings::ownerOf(xcb_atom_t selection) const {
  const auto& x11 = thread_.connection();
  const auto owner =
      x11.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x11.xcb(), selection));
  return owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void X11DesktopSettings::readCompositor() {
  const auto owner = ownerOf(compositorSelection_);
  const auto name = owner != XCB_WINDOW_NONE
                        ? stringProperty(thread_.connection(), owner, XCB_ATOM_WM_NAME)
                        : std::nullopt;
  shadesWindows_ = name && shadesByItself(*name);
  composited_ = owner != XCB_WINDOW_NONE;
}

/// A compositor says so by a property of that name on the root window, or in the list of what is
/// supported there.
void X11DesktopSettings::readBlur() {
  const auto& x11 = thread_.connection();
  const auto named = x11.reply(
      xcb_get_property_reply,
      xcb_get_property(x11.xcb(), 0, x11.root(), blurProperty_, XCB_GET_PROPERTY_TYPE_ANY, 0, 0));
  const auto supported = values32Property(x11, x11.root(), supportedProperty_);
  announcesBlur_ = (named && named->type != XCB_ATOM_NONE) ||
                   std::find(supported.begin(), supported.end(), blurProperty_) != supported.end();
}

void X11DesktopSettings::followManager() {
  const auto& x11 = thread_.connection();
  manager_ = ownerOf(settingsSelection_);
  if (manager_ != XCB_WINDOW_NONE) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(x11.xcb(), manager_, XCB_CW_EVENT_MASK, &mask);
  }
  readSettings();
}

void X11DesktopSettings::readSettings() {
  XSettings settings;
  if (manager_ != XCB_WINDOW_NONE) {
    const auto reading =
        readProperty(thread_.connection(), manager_, settingsProperty_, maximumSettings);
    settings = parseXSettings(reading.property.bytes);
  }
  reduceMotion_ = saysNoAnimations(settings);
  const auto theme = textOf(settings, "Net/ThemeName");
  highContrast_ = saysHighContrast(theme);
  const std::lock_guard lock(mutex_);
  theme_ = theme;
  iconTheme_ = textOf(settings, "Net/IconThemeName");
}

/// What the event says to have changed.
void X11DesktopSettings::read(const xcb_generic_event_t& event) {
  const auto type = event.response_type & 0x7FU;
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.window == manager_ && change.atom == settingsProperty_) readSettings();
    const bool ofBlur = change.atom == blurProperty_ || change.atom == supportedProperty_;
    if (change.window == thread_.connection().root() && ofBlur) readBlur();
  } else if (fixesEvent_ != 0 && type == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection == compositorSelection_) readCompositor();
    if (change.selection == settingsSelection_) followManager();
  }
}

}  // namespace vantorel
