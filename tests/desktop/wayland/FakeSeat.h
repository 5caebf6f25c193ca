// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

struct wl_display;
struct wl_resource;

namespace vantorel {

/// The seat of a fake compositor, at first without a keyboard. On the compositor's thread.
class FakeSeat {
 public:
  explicit FakeSeat(wl_display* display);
  FakeSeat(const FakeSeat&) = delete;
  FakeSeat& operator=(const FakeSeat&) = delete;

  /// The user has a keyboard with that keymap, in the text form of xkb; another one if there was
  /// one already.
  void plugIn(const std::string& keymap);

 private:
  struct Protocols;
  void tell(wl_resource* seat) const;
  void tellKeymap(wl_resource* keyboard) const;

  std::vector<wl_resource*> seats_;
  std::vector<wl_resource*> keyboards_;
  std::string keymap_;  // empty: there is no keyboard
};

}  // namespace vantorel
