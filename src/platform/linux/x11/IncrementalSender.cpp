// SPDX-License-Identifier: MIT
#include "platform/linux/x11/IncrementalSender.h"

#include <algorithm>

namespace vantorel {

namespace {

// Large enough that a screenshot takes few steps, small enough that one receiver holds up the
// others, and the server, for well under a millisecond.
constexpr std::size_t preferredPieceBytes = 262144;
constexpr std::size_t requestOverheadBytes = 1024;

std::size_t pieceBytesFor(const X11Connection& connection) {
  const std::size_t request = std::size_t{4} * xcb_get_maximum_request_length(connection.xcb());
  if (request <= 2 * requestOverheadBytes) return requestOverheadBytes;
  return std::min(preferredPieceBytes, request - requestOverheadBytes);
}

}  // namespace

IncrementalSender::IncrementalSender(X11Thread& thread)
    : thread_(thread),
      connection_(thread.connection()),
      incr_(connection_.atom("INCR")),
      pieceBytes_(pieceBytesFor(connection_)) {}

void IncrementalSender::put(PropertyAddress address, xcb_atom_t type, ByteView bytes) const {
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, address.window, address.property,
                      type, 8, static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

void IncrementalSender::watch(xcb_window_t window, std::uint32_t events) const {
  xcb_change_window_attributes(connection_.xcb(), window, XCB_CW_EVENT_MASK, &events);
}

void IncrementalSender::send(PropertyAddress address, xcb_atom_t type, OfferedBytes bytes) {
  if (const auto previous = transfers_.find(address); previous != transfers_.end()) end(previous);
  if (bytes.bytes.size() <= pieceBytes_) {
    put(address, type, bytes.bytes);
    return;
  }
  // Before the property is there, so that its removal cannot be missed.
  watch(address.window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  const auto size =
      static_cast<std::uint32_t>(std::min<std::size_t>(bytes.bytes.size(), std::size_t{INT32_MAX}));
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, address.window, address.property,
                      incr_, 32, 1, &size);
  Transfer& transfer = transfers_[address];
  transfer.type = type;
  transfer.data = std::move(bytes);
  startStallTimer(address, transfer);
}

void IncrementalSender::startStallTimer(PropertyAddress address, Transfer& transfer) {
  thread_.cancel(transfer.stallTimer);
  transfer.stallTimer = thread_.after(stallLimit, [this, address] {
    if (const auto found = transfers_.find(address); found != transfers_.end()) end(found);
  });
}

void IncrementalSender::handle(const xcb_property_notify_event_t& event) {
  if (event.state != XCB_PROPERTY_DELETE) return;
  const PropertyAddress address{event.window, event.atom};
  const auto found = transfers_.find(address);
  if (found == transfers_.end()) return;
  Transfer& transfer = found->second;
  const std::size_t left = transfer.data.bytes.size() - transfer.sent;
  const ByteView piece = transfer.data.bytes.subspan(transfer.sent, std::min(left, pieceBytes_));
  put(address, transfer.type, piece);
  transfer.sent += piece.size();
  if (piece.empty()) {  // which says that this was all
    end(found);
  } else {
    startStallTimer(address, transfer);
  }
}

void IncrementalSender::handle(const xcb_destroy_notify_event_t& event) {
  for (auto it = transfers_.begin(); it != transfers_.end();) {
    const auto next = std::next(it);
    if (it->first.window == event.window) end(it);
    it = next;
  }
}

bool IncrementalSender::sendsTo(xcb_window_t window) const {
  const auto first = transfers_.lower_bound(PropertyAddress{window, XCB_ATOM_NONE});
  return first != transfers_.end() && first->first.window == window;
}

void IncrementalSender::end(Transfers::iterator transfer) {
  const xcb_window_t window = transfer->first.window;
  thread_.cancel(transfer->second.stallTimer);
  transfers_.erase(transfer);
  if (!sendsTo(window)) watch(window, XCB_EVENT_MASK_NO_EVENT);
}

}  // namespace vantorel
