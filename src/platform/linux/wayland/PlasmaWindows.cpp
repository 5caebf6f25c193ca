// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/PlasmaWindows.h"

#include <plasma-window-management-client.h>
#include <wayland-client.h>

#include <chrono>

namespace vantorel {

namespace {

constexpr std::uint32_t protocolVersion = 16;
constexpr std::chrono::seconds answerLimit{1};
constexpr std::uint32_t activeState = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE;

}  // namespace

/// What the compositor calls.
struct PlasmaWindows::Listeners {
  using Handle = org_kde_plasma_window;
  using Manager = org_kde_plasma_window_management;

  static PlasmaWindows& of(void* self) { return *static_cast<PlasmaWindows*>(self); }
  static void ignore(void* /*self*/, Handle* /*handle*/) {}
  static void ignoreText(void* /*self*/, Handle* /*handle*/, const char* /*text*/) {}

  static constexpr org_kde_plasma_window_listener handle{
      .title_changed = ignoreText,
      .app_id_changed =
          [](void* self, Handle* handle, const char* appId) {
            auto& window = of(self).windows_.at(handle);
            window.described.appId = appId;
            of(self).changed(window);
          },
      .state_changed =
          [](void* self, Handle* handle, std::uint32_t states) {
            auto& window = of(self).windows_.at(handle);
            window.described.isActive = (states & activeState) != 0;
            of(self).changed(window);
          },
      .virtual_desktop_changed = [](void* /*self*/, Handle* /*handle*/, std::int32_t) {},
      .themed_icon_name_changed = ignoreText,
      .unmapped = [](void* self, Handle* handle) { of(self).closed(handle); },
      .initial_state =
          [](void* self, Handle* handle) {
            auto& window = of(self).windows_.at(handle);
            window.isWhole = true;
            of(self).changed(window);
          },
      .parent_window = [](void* /*self*/, Handle* /*handle*/, Handle* /*parent*/) {},
      .geometry = [](void* /*self*/, Handle* /*handle*/, std::int32_t, std::int32_t, std::uint32_t,
                     std::uint32_t) {},
      .icon_changed = ignore,
      .pid_changed = [](void* /*self*/, Handle* /*handle*/, std::uint32_t) {},
      .virtual_desktop_entered = ignoreText,
      .virtual_desktop_left = ignoreText,
      .application_menu = [](void* /*self*/, Handle* /*handle*/, const char*, const char*) {},
      .activity_entered = ignoreText,
      .activity_left = ignoreText,
      .resource_name_changed = ignoreText};
  static constexpr org_kde_plasma_window_management_listener manager{
      .show_desktop_changed = [](void* /*self*/, Manager* /*manager*/, std::uint32_t) {},
      .window = [](void* /*self*/, Manager* /*manager*/, std::uint32_t) {},
      .stacking_order_changed = [](void* /*self*/, Manager* /*manager*/, wl_array*) {},
      .stacking_order_uuid_changed = [](void* /*self*/, Manager* /*manager*/, const char*) {},
      .window_with_uuid =
          [](void* self, Manager* manager, std::uint32_t /*number*/, const char* uuid) {
            auto* const handle = org_kde_plasma_window_management_get_window_by_uuid(manager, uuid);
            org_kde_plasma_window_add_listener(handle, &Listeners::handle, self);
            of(self).windows_[handle].described.token = of(self).add();
          }};
};

std::optional<std::string> PlasmaWindows::protocol(const WaylandConnection& connection) {
  const auto* const name = org_kde_plasma_window_management_interface.name;
  return connection.version(name) >= protocolVersion
             ? std::optional(name + (" " + std::to_string(protocolVersion)))
             : std::nullopt;
}

bool PlasmaWindows::bind() {
  manager_ = static_cast<org_kde_plasma_window_management*>(
      connection().bind(org_kde_plasma_window_management_interface, protocolVersion));
  org_kde_plasma_window_management_add_listener(manager_, &Listeners::manager, this);
  // The first answer names the windows, the second describes them.
  const auto limit = WorkLine::Clock::now() + answerLimit;
  return connection().catchUp(limit) && connection().catchUp(limit);
}

PlasmaWindows::~PlasmaWindows() {
  stop();
  for (const auto& [handle, window] : windows_) org_kde_plasma_window_destroy(handle);
  if (manager_ != nullptr) org_kde_plasma_window_management_destroy(manager_);
}

void PlasmaWindows::changed(const Window& window) {
  if (window.isWhole) settle(window.described);
}

void PlasmaWindows::closed(org_kde_plasma_window* handle) {
  remove(windows_.at(handle).described.token);
  windows_.erase(handle);
  org_kde_plasma_window_destroy(handle);
}

void PlasmaWindows::bringToFront(WindowToken token) {
  for (const auto& [handle, window] : windows_) {
    if (window.described.token != token) continue;
    org_kde_plasma_window_set_state(handle, activeState, activeState);
  }
}

}  // namespace vantorel
