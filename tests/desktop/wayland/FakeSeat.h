// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct wl_display;
struct wl_resource;

namespace vantorel {

/// The seat of a fake compositor, at first without a keyboard and whatever else. On the
/// compositor's thread.
class FakeSeat {
 public:
  explicit FakeSeat(wl_display* display);
  FakeSeat(const FakeSeat&) = delete;
  FakeSeat& operator=(const FakeSeat&) = delete;

  /// The user has a keyboard with that keymap, in the text form of xkb; another one if there was
  /// one already.
  void plugIn(const std::string& keymap);
  /// A pointer and a surface for fingers, too.
  void plugInMouseAndTouch();

  // Of a place on a surface, of whose client every pointer hears.
  void point(wl_resource* surface, int x, int y);
  void press(std::uint32_t button, bool isDown);
  void touch(wl_resource* surface, int x, int y);

 private:
  struct Protocols;
  void tell(wl_resource* seat) const;
  void tellKeymap(wl_resource* keyboard) const;

  std::vector<wl_resource*> seats_;
  std::vector<wl_resource*> keyboards_;
  std::string keymap_;  // empty: there is no keyboard
  bool hasMouseAndTouch_ = false;
  std::vector<wl_resource*> pointers_;
  std::vector<wl_resource*> touches_;
};

}  // namespace vantorel
