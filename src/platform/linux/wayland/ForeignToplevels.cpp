// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/ForeignToplevels.h"

#include <foreign-toplevel-client.h>
#include <wayland-client.h>

#include <algorithm>
#include <chrono>

namespace vantorel {

namespace {

constexpr std::uint32_t protocolVersion = 3;
constexpr std::chrono::seconds answerLimit{1};

bool holdsActivated(const wl_array* states) {
  const auto* const first = static_cast<const std::uint32_t*>(states->data);
  const auto* const last = first + states->size / sizeof(std::uint32_t);
  return std::find(first, last, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != last;
}

}  // namespace

/// What the compositor calls.
struct ForeignToplevels::Listeners {
  using Handle = zwlr_foreign_toplevel_handle_v1;

  static Toplevel& window(void* self, Handle* handle) {
    return static_cast<ForeignToplevels*>(self)->described_.at(handle);
  }
  static void ignoreText(void* /*self*/, Handle* /*handle*/, const char* /*text*/) {}
  static void ignoreOutput(void* /*self*/, Handle* /*handle*/, wl_output* /*output*/) {}
  static void ignoreParent(void* /*self*/, Handle* /*handle*/, Handle* /*parent*/) {}

  static constexpr zwlr_foreign_toplevel_handle_v1_listener handle{
      ignoreText,
      [](void* self, Handle* handle, const char* appId) { window(self, handle).appId = appId; },
      ignoreOutput,
      ignoreOutput,
      [](void* self, Handle* handle, wl_array* states) {
        window(self, handle).isActive = holdsActivated(states);
      },
      [](void* data, Handle* handle) {
        static_cast<ForeignToplevels*>(data)->settle(window(data, handle));
      },
      [](void* self, Handle* handle) { static_cast<ForeignToplevels*>(self)->closed(handle); },
      ignoreParent};
  static constexpr zwlr_foreign_toplevel_manager_v1_listener manager{
      [](void* data, zwlr_foreign_toplevel_manager_v1* /*manager*/, Handle* handle) {
        auto& self = *static_cast<ForeignToplevels*>(data);
        zwlr_foreign_toplevel_handle_v1_add_listener(handle, &Listeners::handle, data);
        self.described_[handle].token = self.add();
      },
      [](void* data, zwlr_foreign_toplevel_manager_v1* manager) {
        auto& self = *static_cast<ForeignToplevels*>(data);
        zwlr_foreign_toplevel_manager_v1_destroy(manager);
        self.manager_ = nullptr;
        self.tellLoss();
      }};
};

std::optional<std::string> ForeignToplevels::protocol(const WaylandConnection& connection) {
  const auto* const name = zwlr_foreign_toplevel_manager_v1_interface.name;
  const bool isThere =
      connection.version(name) >= protocolVersion && connection.version(wl_seat_interface.name) > 0;
  return isThere ? std::optional(name + (" " + std::to_string(protocolVersion))) : std::nullopt;
}

bool ForeignToplevels::bind() {
  seat_ = static_cast<wl_seat*>(connection().bind(wl_seat_interface, 1));
  manager_ = static_cast<zwlr_foreign_toplevel_manager_v1*>(
      connection().bind(zwlr_foreign_toplevel_manager_v1_interface, protocolVersion));
  zwlr_foreign_toplevel_manager_v1_add_listener(manager_, &Listeners::manager, this);
  return connection().catchUp(WorkLine::Clock::now() + answerLimit);
}

ForeignToplevels::~ForeignToplevels() {
  stop();
  for (const auto& [handle, window] : described_) zwlr_foreign_toplevel_handle_v1_destroy(handle);
  if (manager_ != nullptr) zwlr_foreign_toplevel_manager_v1_destroy(manager_);
  if (seat_ != nullptr) wl_seat_destroy(seat_);
}

void ForeignToplevels::closed(zwlr_foreign_toplevel_handle_v1* handle) {
  remove(described_.at(handle).token);
  described_.erase(handle);
  zwlr_foreign_toplevel_handle_v1_destroy(handle);
}

void ForeignToplevels::bringToFront(WindowToken token) {
  for (const auto& [handle, window] : described_) {
    if (window.token == token) zwlr_foreign_toplevel_handle_v1_activate(handle, seat_);
  }
}

}  // namespace vantorel
