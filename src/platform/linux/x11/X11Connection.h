// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

struct X11Free {
  void operator()(void* memory) const { std::free(memory); }
};

/// What libxcb hands over to be freed: replies, events, errors.
template <class Type>
using X11Reply = std::unique_ptr<Type, X11Free>;

/// One connection to the X server, closed when destroyed.
///
/// Requests may be made on any thread. After the server has gone every call still returns at once,
/// with null or "none", and nothing ends the process. Writing to a server that has just died
/// raises SIGPIPE in the writing thread: `X11Thread` blocks it on its own; elsewhere the program
/// must ignore it.
class X11Connection {
 public:
  /// Connects to `display`, or to the one the environment names when that is empty. Null when the
  /// server cannot be reached or does not let this program in.
  [[nodiscard]] static std::unique_ptr<X11Connection> open(const std::string& display = {});
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  [[nodiscard]] xcb_connection_t* xcb() const { return connection_; }
  [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  /// Which screen of the display this is, from 0.
  [[nodiscard]] int screenNumber() const { return screenNumber_; }
  [[nodiscard]] int fileDescriptor() const { return xcb_get_file_descriptor(connection_); }
  /// Whether the connection is lost for good.
  [[nodiscard]] bool broken() const { return xcb_connection_has_error(connection_) != 0; }
  void flush() const { xcb_flush(connection_); }
  /// A window that is never shown and gets the changes of its properties; the caller's to destroy.
  [[nodiscard]] xcb_window_t createHiddenWindow() const;
  /// What the numbers of all windows of one client have in common. Asks nobody.
  [[nodiscard]] std::uint32_t clientOf(xcb_window_t window) const;
  /// Whether that window was made through this connection. Asks nobody.
  [[nodiscard]] bool made(xcb_window_t window) const;

  /// The answer to a request, as in `reply(xcb_get_property_reply, xcb_get_property(...))`. Waits
  /// for the server. Null on an error of any kind.
  template <class Type, class Cookie>
  [[nodiscard]] X11Reply<Type> reply(Type* (*function)(xcb_connection_t*, Cookie,
                                                       xcb_generic_error_t**),
                                     Cookie cookie) const {
    xcb_generic_error_t* error = nullptr;
    X11Reply<Type> answer(function(connection_, cookie, &error));
    const X11Reply<xcb_generic_error_t> freed(error);
    return answer;
  }

  /// The error of a checked request without an answer; null when it succeeded. Waits for the
  /// server. On a lost connection null too: ask `broken()`.
  [[nodiscard]] X11Reply<xcb_generic_error_t> error(xcb_void_cookie_t checked) const {
    return X11Reply<xcb_generic_error_t>(xcb_request_check(connection_, checked));
  }

  /// The extension's codes, asked once; null when the server lacks it.
  [[nodiscard]] const xcb_query_extension_reply_t* extension(xcb_extension_t& extension) const;

  /// The atom of that name, created when new. Asked of the server once for each name.
  /// XCB_ATOM_NONE when the connection is lost.
  [[nodiscard]] xcb_atom_t atom(std::string_view name);
  /// Makes the later `atom()` calls for these names answer from memory, in one round trip.
  void internAtoms(const std::vector<std::string_view>& names);
  /// The atom's name; absent when there is no such atom.
  [[nodiscard]] std::optional<std::string> atomName(xcb_atom_t atom);
  /// The names of those that exist, in order, in one round trip.
  [[nodiscard]] std::vector<std::string> atomNames(const std::vector<xcb_atom_t>& atoms);

 private:
  X11Connection(xcb_connection_t* connection, xcb_screen_t* screen, int screenNumber);
  void remember(const std::string& name, xcb_atom_t atom);

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
  int screenNumber_;
  std::mutex mutex_;  // both maps
  std::map<std::string, xcb_atom_t, std::less<>> atoms_;
  std::map<xcb_atom_t, std::string> names_;
};

}  // namespace vantorel
