// SPDX-License-Identifier: MIT
#include "platform/linux/x11/SelectionOwner.h"

#include <algorithm>
#include <utility>

#include "platform/linux/x11/X11Property.h"

namespace vantorel {

namespace {

constexpr std::size_t maximumPairsBytes = 16384;

/// Server time wraps around every 49 days.
bool isBefore(xcb_timestamp_t a, xcb_timestamp_t b) { return static_cast<std::int32_t>(a - b) < 0; }

}  // namespace

/// One SelectionRequest: a single conversion, or the several of a MULTIPLE. It is answered when all
/// are settled.
struct SelectionOwner::Request {
  xcb_selection_request_event_t event{};
  Ownership ownership;
  std::vector<Conversion> conversions;
  std::size_t open = 0;
};

SelectionOwner::SelectionOwner(X11Thread& thread, xcb_window_t window, Worker runElsewhere)
    : thread_(thread),
      connection_(thread.connection()),
      window_(window),
      runElsewhere_(std::move(runElsewhere)),
      sender_(thread) {}

bool SelectionOwner::isServer(xcb_window_t window, xcb_atom_t selection) const {
  const auto answer = connection_.reply(xcb_get_selection_owner_reply,
                                        xcb_get_selection_owner(connection_.xcb(), selection));
  return answer && answer->owner == window;
}

bool SelectionOwner::acquire(xcb_atom_t selection, Offer offer, xcb_timestamp_t time) {
  xcb_set_selection_owner(connection_.xcb(), window_, selection, time);
  if (!isServer(window_, selection)) return false;
  owned_[selection] = {std::move(offer), time};
  return true;
}

void SelectionOwner::release(xcb_atom_t selection) {
  const auto found = owned_.find(selection);
  if (found == owned_.end()) return;
  // With the time of our own ownership the server passes over it when somebody has it since.
  xcb_set_selection_owner(connection_.xcb(), XCB_WINDOW_NONE, selection, found->second.time);
  owned_.erase(found);
}

SelectionOwner::Offer SelectionOwner::offer(xcb_atom_t selection) const {
  const auto found = owned_.find(selection);
  return found == owned_.end() ? nullptr : found->second.offer;
}

void SelectionOwner::drop() {
  owned_.clear();
  sender_.drop();
}

void SelectionOwner::handle(const xcb_selection_clear_event_t& event) {
  // It may tell of an earlier ownership, lost before the present one was taken.
  if (event.owner != window_ || isServer(window_, event.selection)) return;
  owned_.erase(event.selection);
}

void SelectionOwner::handle(const xcb_selection_request_event_t& event) {
  // Nothing here asks itself. Another program that asks in the name of our windows would have the
  // answer written over what they wait for; a refusal would be told to them alone.
  if (connection_.made(event.requestor)) return;
  auto request = std::make_shared<Request>();
  request->event = event;
  const auto found = owned_.find(event.selection);
  const bool served = found != owned_.end() && event.owner == window_ &&
                      (event.time == XCB_CURRENT_TIME || !isBefore(event.time, found->second.time));
  if (!served) {
    request->event.property = XCB_ATOM_NONE;
    settle(request);
    return;
  }
  request->ownership = found->second;
  request->conversions = conversionsOf(event);
  // One more than there are, so that the answer goes out after the loop at the earliest.
  request->open = request->conversions.size() + 1;
  for (std::size_t i = 0; i < request->conversions.size(); ++i) convert(request, i);
  if (--request->open == 0) settle(request);
}

std::vector<SelectionOwner::Conversion> SelectionOwner::conversionsOf(
    const xcb_selection_request_event_t& event) {
  if (event.target != connection_.atom("MULTIPLE")) {
    // Very old programs leave the property to the owner.
    return {{event.target, event.property == XCB_ATOM_NONE ? event.target : event.property}};
  }
  std::vector<Conversion> conversions;
  const auto pairs =
      values32Property(connection_, event.requestor, event.property, maximumPairsBytes);
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    conversions.push_back({pairs[i], pairs[i + 1]});
  }
  return conversions;
}

void SelectionOwner::convert(const std::shared_ptr<Request>& request, std::size_t index) {
  const Conversion& conversion = request->conversions[index];
  const PropertyAddress address{request->event.requestor, conversion.property};
  if (conversion.property == XCB_ATOM_NONE) {
    --request->open;
  } else if (conversion.target == connection_.atom("TARGETS")) {
    putTargets(address, *request->ownership.offer);
    --request->open;
  } else if (conversion.target == connection_.atom("TIMESTAMP")) {
    put32(address, XCB_ATOM_INTEGER, {request->ownership.time});
    --request->open;
  } else if (conversion.target == connection_.atom("SAVE_TARGETS")) {
    save(request, index);
  } else {
    convertForm(request, index);
  }
}

void SelectionOwner::convertForm(const std::shared_ptr<Request>& request, std::size_t index) {
  const auto& forms = request->ownership.offer->forms;
  const auto target = request->conversions[index].target;
  const auto form = std::find_if(forms.begin(), forms.end(), [this, target](const auto& candidate) {
    return connection_.atom(candidate.target) == target;
  });
  if (form == forms.end()) {
    request->conversions[index].property = XCB_ATOM_NONE;
    --request->open;
    return;
  }
  if (form->cost == EncodingCost::instant) {
    deliver(request, index, *form, form->encode());
    --request->open;
    return;
  }
  // The request keeps the offer, and so the form, alive.
  runElsewhere_([this, request, index, form = &*form] {
    thread_.post([this, request, index, form, bytes = form->encode()] {
      deliver(request, index, *form, bytes);
      if (--request->open == 0) settle(request);
    });
  });
}

void SelectionOwner::save(const std::shared_ptr<Request>& request, std::size_t index) {
  const auto answer = [this, request, index](bool saved) {
    Conversion& conversion = request->conversions[index];
    if (saved) {
      put32({request->event.requestor, conversion.property}, connection_.atom("NULL"), {});
    } else {
      conversion.property = XCB_ATOM_NONE;
    }
    if (--request->open == 0) settle(request);
  };
  const auto& offer = *request->ownership.offer;
  if (offer.save) {
    offer.save(request->event.requestor, answer);
  } else {
    answer(true);
  }
}

void SelectionOwner::deliver(const std::shared_ptr<Request>& request, std::size_t index,
                             const OfferedForm& form, OfferedBytes bytes) {
  Conversion& conversion = request->conversions[index];
  if (!bytes.owner) {
    conversion.property = XCB_ATOM_NONE;
    return;
  }
  sender_.send({request->event.requestor, conversion.property}, connection_.atom(form.type),
               std::move(bytes));
}

void SelectionOwner::settle(const std::shared_ptr<Request>& request) {
  const auto& event = request->event;
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.time = event.time;
  notify.requestor = event.requestor;
  notify.selection = event.selection;
  notify.target = event.target;
  notify.property = event.property;
  if (event.target == connection_.atom("MULTIPLE") && event.property != XCB_ATOM_NONE) {
    // The pairs tell the requestor which conversions there are.
    std::vector<std::uint32_t> pairs;
    for (const auto& conversion : request->conversions) {
      pairs.push_back(conversion.target);
      pairs.push_back(conversion.property);
    }
    put32({event.requestor, event.property}, connection_.atom("ATOM_PAIR"), pairs);
  } else if (!request->conversions.empty()) {
    notify.property = request->conversions.front().property;
  }
  xcb_send_event(connection_.xcb(), 0, event.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&notify));
  if (event.target != connection_.atom("TARGETS") || notify.property == XCB_ATOM_NONE) return;
  connection_.flush();  // so that it has the answer before whatever follows from this
  if (listed_) listed_(event.selection, event.requestor);
}

void SelectionOwner::putTargets(PropertyAddress address, const SelectionOffer& offer) {
  std::vector<std::uint32_t> atoms;
  for (const char* name : {"TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS"}) {
    atoms.push_back(connection_.atom(name));
  }
  for (const auto& form : offer.forms) atoms.push_back(connection_.atom(form.target));
  put32(address, XCB_ATOM_ATOM, atoms);
}

void SelectionOwner::put32(PropertyAddress address, xcb_atom_t type,
                           const std::vector<std::uint32_t>& values) {
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, address.window, address.property,
                      type, 32, static_cast<std::uint32_t>(values.size()), values.data());
}

}  // namespace vantorel
