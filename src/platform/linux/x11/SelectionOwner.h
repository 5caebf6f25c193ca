// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "platform/linux/windows/SelectionOffer.h"
#include "platform/linux/x11/IncrementalSender.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// Owns selections for one window and serves them: TARGETS, TIMESTAMP, MULTIPLE, every offered
/// form, to any number of requestors at once, without ever waiting for one. On the X thread.
class SelectionOwner {
 public:
  using Worker = std::function<void(Work)>;
  using Offer = std::shared_ptr<const SelectionOffer>;
  /// Called when a program has been told what is offered there.
  using Listed = std::function<void(xcb_atom_t selection, xcb_window_t requestor)>;

  /// `runElsewhere` runs what is slow on another thread, and nothing any more once `thread` has
  /// stopped. `thread` outlives the owner.
  SelectionOwner(X11Thread& thread, xcb_window_t window, Worker runElsewhere);

  /// Becomes the owner as of `time`, the server's present. Waits for the server alone. False when
  /// the server refused or another program was quicker; an earlier offer is kept then if it is
  /// still ours.
  [[nodiscard]] bool acquire(xcb_atom_t selection, Offer offer, xcb_timestamp_t time);
  /// Leaves the selection without an owner, if it is still ours.
  void release(xcb_atom_t selection);
  /// What is offered there; null when another program owns the selection.
  [[nodiscard]] Offer offer(xcb_atom_t selection) const;
  /// Forgets every offer and every requestor: the server has gone.
  void drop();
  void onListed(Listed listed) { listed_ = std::move(listed); }
  [[nodiscard]] bool idle() const { return sender_.idle(); }

  void handle(const xcb_selection_request_event_t& event);
  void handle(const xcb_selection_clear_event_t& event);
  void handle(const xcb_property_notify_event_t& event) { sender_.handle(event); }
  void handle(const xcb_destroy_notify_event_t& event) { sender_.handle(event); }

 private:
  struct Ownership {
    Offer offer;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
  };
  struct Conversion {
    xcb_atom_t target = XCB_ATOM_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;  // none once refused
  };
  struct Request;

  [[nodiscard]] bool isServer(xcb_window_t window, xcb_atom_t selection) const;
  [[nodiscard]] std::vector<Conversion> conversionsOf(const xcb_selection_request_event_t& event);
  void convert(const std::shared_ptr<Request>& request, std::size_t index);
  void convertForm(const std::shared_ptr<Request>& request, std::size_t index);
  void save(const std::shared_ptr<Request>& request, std::size_t index);
  void deliver(const std::shared_ptr<Request>& request, std::size_t index, const OfferedForm& form,
               OfferedBytes bytes);
  void settle(const std::shared_ptr<Request>& request);
  void putTargets(PropertyAddress address, const SelectionOffer& offer);
  void put32(PropertyAddress address, xcb_atom_t type, const std::vector<std::uint32_t>& values);

  X11Thread& thread_;
  X11Connection& connection_;
  xcb_window_t window_;
  Worker runElsewhere_;
  Listed listed_;
  IncrementalSender sender_;
  std::map<xcb_atom_t, Ownership> owned_;
};

}  // namespace vantorel
