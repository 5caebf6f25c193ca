// SPDX-License-Identifier: MIT
#include "program/wayland/TargetWindow.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <windows-client.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace vantorel::bench {

namespace {

constexpr int width = 300;
constexpr int height = 200;
constexpr int bytesOfPixel = 4;
constexpr std::uint32_t control = 4;  // a bit of every keymap's real modifiers

}  // namespace

/// What the compositor calls.
struct TargetWindow::Listeners {
  static TargetWindow& of(void* self) { return *static_cast<TargetWindow*>(self); }

  static constexpr xdg_wm_base_listener windows{
      [](void* /*self*/, xdg_wm_base* base, std::uint32_t serial) {
        xdg_wm_base_pong(base, serial);
      }};
  static constexpr xdg_surface_listener role{
      [](void* self, xdg_surface* role, std::uint32_t serial) {
        xdg_surface_ack_configure(role, serial);
        of(self).show();
      }};
  static constexpr xdg_toplevel_listener window{
      [](void* /*self*/, xdg_toplevel* /*window*/, std::int32_t /*width*/, std::int32_t /*height*/,
         wl_array* /*states*/) {},
      [](void* /*self*/, xdg_toplevel* /*window*/) {}};

  static constexpr wl_keyboard_listener keyboard = [] {
    wl_keyboard_listener all{};
    all.keymap = [](void* /*self*/, wl_keyboard* /*keyboard*/, std::uint32_t /*format*/, int file,
                    std::uint32_t /*size*/) { close(file); };
    all.enter = [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                   wl_surface* /*surface*/, wl_array* /*keys*/) { of(self).hasKeyboard_ = true; };
    all.leave = [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                   wl_surface* /*surface*/) { of(self).hasKeyboard_ = false; };
    all.key = [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                 std::uint32_t /*time*/, std::uint32_t key, std::uint32_t state) {
      if (state == WL_KEYBOARD_KEY_STATE_PRESSED) of(self).keyDown(key);
    };
    all.modifiers = [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
                       std::uint32_t held, std::uint32_t /*latched*/, std::uint32_t /*locked*/,
                       std::uint32_t /*group*/) {
      of(self).isControlDown_ = (held & control) != 0;
    };
    return all;
  }();

  static constexpr wl_data_offer_listener offer = [] {
    wl_data_offer_listener all{};
    all.offer = [](void* /*self*/, wl_data_offer* /*offer*/, const char* /*type*/) {};
    return all;
  }();
  static constexpr wl_data_device_listener clipboard = [] {
    wl_data_device_listener all{};
    all.data_offer = [](void* self, wl_data_device* /*clipboard*/, wl_data_offer* made) {
      wl_data_offer_add_listener(made, &offer, self);
    };
    all.selection = [](void* self, wl_data_device* /*clipboard*/, wl_data_offer* selected) {
      auto* const before = std::exchange(of(self).offer_, selected);
      if (before != nullptr) wl_data_offer_destroy(before);
    };
    return all;
  }();
};

TargetWindow::TargetWindow(Compositor& compositor)
    : compositor_(compositor),
      surfaces_(compositor.bind<wl_compositor>(wl_compositor_interface, 1)),
      windows_(compositor.bind<xdg_wm_base>(xdg_wm_base_interface, 1)),
      surface_(wl_compositor_create_surface(surfaces_)),
      role_(xdg_wm_base_get_xdg_surface(windows_, surface_)),
      window_(xdg_surface_get_toplevel(role_)),
      keyboard_(wl_seat_get_keyboard(compositor.seat())),
      clipboards_(compositor.bind<wl_data_device_manager>(wl_data_device_manager_interface, 1)),
      clipboard_(wl_data_device_manager_get_data_device(clipboards_, compositor.seat())) {
  xdg_wm_base_add_listener(windows_, &Listeners::windows, this);
  xdg_surface_add_listener(role_, &Listeners::role, this);
  xdg_toplevel_add_listener(window_, &Listeners::window, this);
  wl_keyboard_add_listener(keyboard_, &Listeners::keyboard, this);
  wl_data_device_add_listener(clipboard_, &Listeners::clipboard, this);
  xdg_toplevel_set_title(window_, "bench target");
  xdg_toplevel_set_app_id(window_, "bench-target");
  wl_surface_commit(surface_);
  compositor.listenUntil("the target to have the keyboard", [this] { return hasKeyboard_; });
}

TargetWindow::~TargetWindow() {
  if (offer_ != nullptr) wl_data_offer_destroy(offer_);
  wl_data_device_destroy(clipboard_);
  wl_data_device_manager_destroy(clipboards_);
  wl_keyboard_destroy(keyboard_);
  xdg_toplevel_destroy(window_);
  xdg_surface_destroy(role_);
  wl_surface_destroy(surface_);
  if (buffer_ != nullptr) wl_buffer_destroy(buffer_);
  xdg_wm_base_destroy(windows_);
  wl_compositor_destroy(surfaces_);
}

void TargetWindow::show() {
  if (buffer_ != nullptr) return;
  constexpr int size = width * height * bytesOfPixel;
  const int file = memfd_create("target", MFD_CLOEXEC);
  if (ftruncate(file, size) != 0) throw std::runtime_error("no memory for the target");
  auto* const pool = wl_shm_create_pool(compositor_.memory(), file, size);
  buffer_ = wl_shm_pool_create_buffer(pool, 0, width, height, width * bytesOfPixel,
                                      WL_SHM_FORMAT_XRGB8888);
  wl_shm_pool_destroy(pool);
  close(file);
  wl_surface_attach(surface_, buffer_, 0, 0);
  wl_surface_damage(surface_, 0, 0, width, height);
  wl_surface_commit(surface_);
}

void TargetWindow::keyDown(std::uint32_t key) {
  if (key == kernelkey::v && isControlDown_ && offer_ != nullptr) paste();
}

void TargetWindow::paste() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  wl_data_offer_receive(offer_, "text/plain;charset=utf-8", ends[1]);
  compositor_.settle();
  close(ends[1]);
  std::array<char, 65536> buffer{};
  std::size_t length = 0;
  for (;;) {
    const auto count = read(ends[0], buffer.data(), buffer.size());
    if (count <= 0) break;
    length += static_cast<std::size_t>(count);
  }
  close(ends[0]);
  if (length > 0) arrived_ = Clock::now();
}

Clock::time_point TargetWindow::waitForText() {
  compositor_.listenUntil("text in the target", [this] { return arrived_.has_value(); });
  return *std::exchange(arrived_, std::nullopt);
}

}  // namespace vantorel::bench
