// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <utility>

#include "platform/linux/windows/SelectionOffer.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// Where an answer goes.
struct PropertyAddress {
  xcb_window_t window = XCB_WINDOW_NONE;
  xcb_atom_t property = XCB_ATOM_NONE;
  friend bool operator<(const PropertyAddress& a, const PropertyAddress& b) {
    return std::pair(a.window, a.property) < std::pair(b.window, b.property);
  }
};

/// Puts bytes into other programs' properties: small ones at once, large ones piece by piece, each
/// when the receiver has taken the one before. Any number of receivers at the same time; one that
/// dies or stops taking is dropped. On the X thread.
class IncrementalSender {
 public:
  /// How long a receiver may leave a piece lying.
  static constexpr std::chrono::seconds stallLimit{10};

  /// `thread` outlives the sender.
  explicit IncrementalSender(X11Thread& thread);

  /// Answers at `address`; takes the place of an answer still under way there.
  void send(PropertyAddress address, xcb_atom_t type, OfferedBytes bytes);
  /// Whether any receiver still takes pieces.
  [[nodiscard]] bool idle() const { return transfers_.empty(); }
  /// Forgets every receiver.
  void drop() { transfers_.clear(); }

  void handle(const xcb_property_notify_event_t& event);
  void handle(const xcb_destroy_notify_event_t& event);

 private:
  struct Transfer {
    xcb_atom_t type = XCB_ATOM_NONE;
    OfferedBytes data;
    std::size_t sent = 0;
    X11Thread::TimerId stallTimer = 0;
  };
  using Transfers = std::map<PropertyAddress, Transfer>;

  void put(PropertyAddress address, xcb_atom_t type, ByteView bytes) const;
  void startStallTimer(PropertyAddress address, Transfer& transfer);
  void watch(xcb_window_t window, std::uint32_t events) const;
  void end(Transfers::iterator transfer);
  [[nodiscard]] bool sendsTo(xcb_window_t window) const;

  X11Thread& thread_;
  X11Connection& connection_;
  xcb_atom_t incr_;
  std::size_t pieceBytes_;
  Transfers transfers_;
};

}  // namespace vantorel
