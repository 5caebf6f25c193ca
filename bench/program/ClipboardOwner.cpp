// SPDX-License-Identifier: MIT
#include "program/ClipboardOwner.h"

#include <algorithm>
#include <array>

namespace vantorel::bench {

namespace {

constexpr std::size_t pieceSize = std::size_t{256} * 1024;

}  // namespace

ClipboardOwner::ClipboardOwner(const Screen& screen)
    : screen_(screen),
      window_(xcb_generate_id(screen.connection())),
      clipboard_(screen.atom("CLIPBOARD")),
      targets_(screen.atom("TARGETS")),
      incr_(screen.atom("INCR")) {
  xcb_create_window(screen.connection(), XCB_COPY_FROM_PARENT, window_, screen.root(), 0, 0, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_flush(screen.connection());
}

Clock::time_point ClipboardOwner::own(std::string target, std::string contents) {
  target_ = screen_.atom(target);
  contents_ = std::move(contents);
  asked_.reset();
  served_.reset();
  const auto moment = Clock::now();
  xcb_set_selection_owner(screen_.connection(), window_, clipboard_, XCB_CURRENT_TIME);
  xcb_flush(screen_.connection());
  return moment;
}

bool ClipboardOwner::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7fU) {
    case XCB_SELECTION_REQUEST:
      answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
      return true;
    case XCB_PROPERTY_NOTIFY:
      proceed(reinterpret_cast<const xcb_property_notify_event_t&>(event));
      return true;
    default:
      return false;
  }
}

void ClipboardOwner::answer(const xcb_selection_request_event_t& request) {
  if (request.target == targets_) {
    answerTargets(request);
  } else if (request.target == target_) {
    if (!asked_) asked_ = Clock::now();
    answerContents(request);
  } else {
    notify(request, XCB_ATOM_NONE);
  }
}

void ClipboardOwner::answerTargets(const xcb_selection_request_event_t& request) {
  const std::array<xcb_atom_t, 2> offered{targets_, target_};
  xcb_change_property(screen_.connection(), XCB_PROP_MODE_REPLACE, request.requestor,
                      request.property, XCB_ATOM_ATOM, 32, offered.size(), offered.data());
  notify(request, request.property);
}

void ClipboardOwner::answerContents(const xcb_selection_request_event_t& request) {
  if (contents_.size() <= pieceSize) {
    xcb_change_property(screen_.connection(), XCB_PROP_MODE_REPLACE, request.requestor,
                        request.property, request.target, 8,
                        static_cast<std::uint32_t>(contents_.size()), contents_.data());
    served_ = Clock::now();
  } else {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(screen_.connection(), request.requestor, XCB_CW_EVENT_MASK, &mask);
    const auto size = static_cast<std::uint32_t>(contents_.size());
    xcb_change_property(screen_.connection(), XCB_PROP_MODE_REPLACE, request.requestor,
                        request.property, incr_, 32, 1, &size);
    transfers_[{request.requestor, request.property}] = {contents_, 0};
  }
  notify(request, request.property);
}

void ClipboardOwner::proceed(const xcb_property_notify_event_t& event) {
  if (event.state != XCB_PROPERTY_DELETE) return;
  const auto found = transfers_.find({event.window, event.atom});
  if (found == transfers_.end()) return;
  auto& [contents, sent] = found->second;
  const auto size = std::min(pieceSize, contents.size() - sent);
  xcb_change_property(screen_.connection(), XCB_PROP_MODE_REPLACE, event.window, event.atom,
                      target_, 8, static_cast<std::uint32_t>(size), contents.data() + sent);
  xcb_flush(screen_.connection());
  sent += size;
  if (size == 0) {
    served_ = Clock::now();
    transfers_.erase(found);
  }
}

void ClipboardOwner::notify(const xcb_selection_request_event_t& request,
                            xcb_atom_t property) const {
  xcb_selection_notify_event_t answer{};
  answer.response_type = XCB_SELECTION_NOTIFY;
  answer.time = request.time;
  answer.requestor = request.requestor;
  answer.selection = request.selection;
  answer.target = request.target;
  answer.property = property;
  xcb_send_event(screen_.connection(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&answer));
  xcb_flush(screen_.connection());
}

}  // namespace vantorel::bench
