// SPDX-License-Identifier: MIT
#include "desktop/wayland/FakeKwin.h"

#include <fake-input-server.h>
#include <keystate-server.h>
#include <plasma-window-management-server.h>
#include <wayland-server.h>

#include <algorithm>

namespace vantorel {

/// What clients call.
struct FakeKwin::Protocols {
  static FakeKwin& of(wl_resource* resource) {
    return *static_cast<FakeKwin*>(wl_resource_get_user_data(resource));
  }

  static void setState(wl_client* /*client*/, wl_resource* window, std::uint32_t /*flags*/,
                       std::uint32_t /*state*/) {
    for (const auto& [appId, each] : of(window).windows_) {
      if (each == window) of(window).activations_.push_back(appId);
    }
  }
  static void destroy(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
  }
  // What a client does not ask for stays null.
  static constexpr struct org_kde_plasma_window_interface windowCalls {
    .set_state = setState, .set_virtual_desktop = nullptr, .set_minimized_geometry = nullptr,
    .unset_minimized_geometry = nullptr, .close = nullptr, .request_move = nullptr,
    .request_resize = nullptr, .destroy = destroy, .get_icon = nullptr,
    .request_enter_virtual_desktop = nullptr, .request_enter_new_virtual_desktop = nullptr,
    .request_leave_virtual_desktop = nullptr, .request_enter_activity = nullptr,
    .request_leave_activity = nullptr, .send_to_output = nullptr
  };
  static void getWindow(wl_client* client, wl_resource* manager, std::uint32_t id,
                        const char* uuid) {
    auto& self = of(manager);
    auto* const made = wl_resource_create(client, &org_kde_plasma_window_interface, 16, id);
    wl_resource_set_implementation(made, &windowCalls, &self, nullptr);
    self.windows_[uuid] = made;
    org_kde_plasma_window_send_state_changed(
        made, self.front_ == uuid ? ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE : 0);
    org_kde_plasma_window_send_pid_changed(made, 4711);
    org_kde_plasma_window_send_app_id_changed(made, uuid);
    org_kde_plasma_window_send_initial_state(made);
  }
  static constexpr struct org_kde_plasma_window_management_interface managerCalls {
    .show_desktop = nullptr, .get_window = nullptr, .get_window_by_uuid = getWindow
  };
  static void managerGone(wl_resource* manager) { of(manager).manager_ = nullptr; }
  static void bindManager(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* const made = wl_resource_create(client, &org_kde_plasma_window_management_interface,
                                          static_cast<int>(version), id);
    wl_resource_set_implementation(made, &managerCalls, self, managerGone);
    static_cast<FakeKwin*>(self)->manager_ = made;
  }

  static void authenticate(wl_client* /*client*/, wl_resource* /*input*/, const char* /*name*/,
                           const char* /*reason*/) {}
  static void key(wl_client* /*client*/, wl_resource* input, std::uint32_t code,
                  std::uint32_t state) {
    const bool isDown = state == WL_KEYBOARD_KEY_STATE_PRESSED;
    of(input).pressed_.push_back((isDown ? "down " : "up ") + std::to_string(code));
  }
  static constexpr struct org_kde_kwin_fake_input_interface inputCalls {
    .authenticate = authenticate, .pointer_motion = nullptr, .button = nullptr, .axis = nullptr,
    .touch_down = nullptr, .touch_motion = nullptr, .touch_up = nullptr, .touch_cancel = nullptr,
    .touch_frame = nullptr, .pointer_motion_absolute = nullptr, .keyboard_key = key
  };
  static void bindInput(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* const made = wl_resource_create(client, &org_kde_kwin_fake_input_interface,
                                          static_cast<int>(version), id);
    wl_resource_set_implementation(made, &inputCalls, self, nullptr);
  }

  static void fetchStates(wl_client* /*client*/, wl_resource* states) {
    for (const auto& [key, isHeld] : of(states).held_) {
      org_kde_kwin_keystate_send_stateChanged(states, key,
                                              isHeld ? ORG_KDE_KWIN_KEYSTATE_STATE_PRESSED : 0);
    }
  }
  static constexpr struct org_kde_kwin_keystate_interface statesCalls { fetchStates, destroy };
  static void statesGone(wl_resource* states) { of(states).states_ = nullptr; }
  static void bindStates(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* const made =
        wl_resource_create(client, &org_kde_kwin_keystate_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(made, &statesCalls, self, statesGone);
    static_cast<FakeKwin*>(self)->states_ = made;
  }
};

FakeKwin::FakeKwin(FakeCompositor& compositor, States states) : compositor_(compositor) {
  compositor_.call([this, states] {
    auto* const display = compositor_.display();
    wl_global_create(display, &org_kde_plasma_window_management_interface, 16, this,
                     Protocols::bindManager);
    wl_global_create(display, &org_kde_kwin_fake_input_interface, 4, this, Protocols::bindInput);
    wl_global_create(display, &org_kde_kwin_keystate_interface, states == States::telling ? 5 : 1,
                     this, Protocols::bindStates);
  });
}

void FakeKwin::open(const std::string& appId) {
  compositor_.call([&] {
    windows_[appId] = nullptr;
    front_ = appId;
    tellFront();
    if (manager_ == nullptr) return;
    org_kde_plasma_window_management_send_window_with_uuid(manager_, 0, appId.c_str());
  });
}

void FakeKwin::bringToFront(const std::string& appId) {
  compositor_.call([&] {
    front_ = appId;
    tellFront();
  });
}

void FakeKwin::tellFront() {
  for (const auto& [appId, window] : windows_) {
    if (window == nullptr) continue;
    org_kde_plasma_window_send_state_changed(
        window, appId == front_ ? ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE : 0);
  }
}

void FakeKwin::close(const std::string& appId) {
  compositor_.call([&] {
    org_kde_plasma_window_send_unmapped(windows_.at(appId));
    windows_.erase(appId);
  });
}

std::vector<std::string> FakeKwin::activations() {
  std::vector<std::string> found;
  compositor_.call([&] { found = activations_; });
  return found;
}

void FakeKwin::hold(std::uint32_t key, bool isHeld) {
  compositor_.call([&] {
    held_[key] = isHeld;
    if (states_ != nullptr) Protocols::fetchStates(nullptr, states_);
  });
}

std::vector<std::string> FakeKwin::pressed() {
  std::vector<std::string> found;
  compositor_.call([&] { found = pressed_; });
  return found;
}

}  // namespace vantorel
