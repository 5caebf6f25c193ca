// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "program/Timing.h"

struct wl_display;
struct wl_interface;
struct wl_output;
struct wl_registry;
struct wl_seat;
struct wl_shm;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace vantorel::bench {

/// Places of the keys that the measurements press, as the kernel counts them.
namespace kernelkey {
inline constexpr std::uint32_t escape = 1;
inline constexpr std::uint32_t backSpace = 14;
inline constexpr std::uint32_t enter = 28;
inline constexpr std::uint32_t a = 30;
inline constexpr std::uint32_t v = 47;
}  // namespace kernelkey

/// One connection to the compositor, with a keyboard plugged in, and what every measurement does
/// with it. One thread.
class Compositor {
 public:
  /// Connects to $WAYLAND_DISPLAY; throws std::runtime_error when there is none or it lacks
  /// something.
  Compositor();
  ~Compositor();
  Compositor(const Compositor&) = delete;
  Compositor& operator=(const Compositor&) = delete;

  /// What it offers under a name; throws std::runtime_error when it does not.
  template <class Object>
  [[nodiscard]] Object* bind(const wl_interface& interface, std::uint32_t version) const {
    return static_cast<Object*>(bindAny(interface, version));
  }
  [[nodiscard]] bool offers(std::string_view name) const { return globals_.contains(name); }
  [[nodiscard]] int descriptor() const;
  [[nodiscard]] wl_seat* seat() const { return seat_; }
  [[nodiscard]] wl_shm* memory() const { return memory_; }
  [[nodiscard]] wl_output* output() const { return output_; }

  void tapKey(std::uint32_t key) const;

  /// Handles what has arrived, waiting for something until `deadline`; false when nothing came.
  bool listen(Clock::time_point deadline) const;
  /// Listens until the condition holds; throws with `what` after 10 s.
  void listenUntil(std::string_view what, const std::function<bool()>& condition) const;
  /// Until it has dealt with all that was asked.
  void settle() const;

 private:
  struct Listeners;
  [[nodiscard]] void* bindAny(const wl_interface& interface, std::uint32_t version) const;
  void plugIn();

  wl_display* display_;
  wl_registry* registry_;
  std::map<std::string, std::uint32_t, std::less<>> globals_;
  wl_seat* seat_ = nullptr;
  wl_shm* memory_ = nullptr;
  wl_output* output_ = nullptr;
  zwp_virtual_keyboard_manager_v1* keyboards_ = nullptr;
  zwp_virtual_keyboard_v1* keyboard_ = nullptr;
};

}  // namespace vantorel::bench
