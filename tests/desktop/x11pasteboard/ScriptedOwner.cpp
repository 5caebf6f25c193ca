// SPDX-License-Identifier: MIT
#include "desktop/x11pasteboard/ScriptedOwner.h"

#include <sys/socket.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vantorel {

namespace {

std::unique_ptr<X11Connection> connected(const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) throw std::runtime_error("no display " + display);
  return connection;
}

constexpr std::chrono::seconds generously{30};

}  // namespace

ScriptedOwner::ScriptedOwner(const std::string& display, std::string selection)
    : selectionName_(std::move(selection)),
      thread_(std::make_unique<X11Thread>(connected(display), "scripted")),
      connection_(thread_->connection()),
      selection_(connection_.atom(selectionName_)) {
  createWindow();
  thread_->start([this](const xcb_generic_event_t& event) { handle(event); }, [] {});
}

ScriptedOwner::~ScriptedOwner() { thread_->stop(); }

void ScriptedOwner::createWindow() {
  window_ = xcb_generate_id(connection_.xcb());
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_.xcb(), 0, window_, connection_.root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

void ScriptedOwner::offer(const std::string& target, ScriptedForm form) {
  (void)thread_->runAndWait([&] {
    if (forms_.count(target) == 0) order_.push_back(target);
    forms_.insert_or_assign(target, std::move(form));
  });
}

void ScriptedOwner::offer(const std::string& target, std::string_view text) {
  ScriptedForm form;
  const auto bytes = bytesOf(text);
  form.bytes.assign(bytes.begin(), bytes.end());
  offer(target, std::move(form));
}

xcb_timestamp_t ScriptedOwner::serverTime() {
  lastTime_ = 0;
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_APPEND, window_,
                      connection_.atom("SCRIPTED_TIME"), XCB_ATOM_INTEGER, 32, 0, nullptr);
  (void)connection_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_.xcb()));
  thread_->handleArrivedEvents();
  return lastTime_;
}

void ScriptedOwner::own() {
  if (!tryToOwn()) throw std::runtime_error("could not own the selection");
}

bool ScriptedOwner::tryToOwn() {
  bool owned = false;
  const bool ran = thread_->runAndWait([this, &owned] {
    const auto time = serverTime();
    xcb_set_selection_owner(connection_.xcb(), window_, selection_, time);
    const auto owner = connection_.reply(xcb_get_selection_owner_reply,
                                         xcb_get_selection_owner(connection_.xcb(), selection_));
    owned = owner && owner->owner == window_;
    const std::lock_guard lock(mutex_);
    ownedSince_ = time;
    lost_ = false;
  });
  return ran && owned;
}

void ScriptedOwner::askToSave() {
  (void)thread_->runAndWait([this] {
    xcb_convert_selection(connection_.xcb(), window_, connection_.atom("CLIPBOARD_MANAGER"),
                          connection_.atom("SAVE_TARGETS"), connection_.atom("SCRIPTED_SAVE"),
                          serverTime());
    const std::lock_guard lock(mutex_);
    saved_.reset();
  });
}

std::optional<bool> ScriptedOwner::saved() {
  std::unique_lock lock(mutex_);
  condition_.wait_for(lock, generously, [&] { return saved_.has_value(); });
  return saved_;
}

void ScriptedOwner::disown() {
  (void)thread_->runAndWait([this] {
    xcb_set_selection_owner(connection_.xcb(), XCB_WINDOW_NONE, selection_, serverTime());
    (void)connection_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_.xcb()));
  });
}

void ScriptedOwner::destroyWindow() {
  (void)thread_->runAndWait([this] {
    xcb_destroy_window(connection_.xcb(), window_);
    (void)connection_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_.xcb()));
  });
}

void ScriptedOwner::die() { shutdown(connection_.fileDescriptor(), SHUT_RDWR); }

void ScriptedOwner::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7F) {
    case XCB_SELECTION_REQUEST:
      answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
      break;
    case XCB_SELECTION_CLEAR: {
      const std::lock_guard lock(mutex_);
      lost_ = true;
      condition_.notify_all();
      break;
    }
    case XCB_SELECTION_NOTIFY: {
      const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
      const std::lock_guard lock(mutex_);
      saved_ = answer.property != XCB_ATOM_NONE;
      condition_.notify_all();
      break;
    }
    case XCB_PROPERTY_NOTIFY: {
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      lastTime_ = change.time;
      if (change.state == XCB_PROPERTY_DELETE) {
        const Address address{change.window, change.atom};
        const auto found = sending_.find(address);
        if (found == sending_.end()) break;
        if (found->second.form.pause.count() == 0) {
          sendPiece(address);
        } else {
          thread_->after(found->second.form.pause, [this, address] { sendPiece(address); });
        }
      }
      break;
    }
    default:
      break;
  }
}

void ScriptedOwner::answer(const xcb_selection_request_event_t& request) {
  const auto target = connection_.atomName(request.target).value_or("?");
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(target);
    requestTimes_.push_back(request.time);
    condition_.notify_all();
  }
  const auto form = forms_.find(target);
  if (form != forms_.end()) {
    begin(request, form->second);
  } else if (target == "TARGETS") {
    giveTargets(request);
  } else {
    notify(request, XCB_ATOM_NONE);
  }
}

void ScriptedOwner::giveTargets(const xcb_selection_request_event_t& request) {
  std::vector<xcb_atom_t> atoms{request.target};
  for (const auto& name : order_) atoms.push_back(connection_.atom(name));
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
  notify(request, request.property);
}

void ScriptedOwner::begin(const xcb_selection_request_event_t& request, const ScriptedForm& form) {
  const xcb_atom_t type = form.type.empty() ? request.target : connection_.atom(form.type);
  switch (form.manner) {
    case Manner::stay_silent:
      return;
    case Manner::refuse:
      notify(request, XCB_ATOM_NONE);
      return;
    case Manner::answer_without_property:
      notify(request, request.property);
      return;
    case Manner::give:
      give(request, form, type);
      return;
    case Manner::incremental:
      break;
  }
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_.xcb(), request.requestor, XCB_CW_EVENT_MASK, &events);
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                      connection_.atom("INCR"), 32, 1, &form.claimedBytes);
  sending_[{request.requestor, request.property}] = {form, type, 0, 0};
  notify(request, request.property);
}

void ScriptedOwner::give(const xcb_selection_request_event_t& request, const ScriptedForm& form,
                         xcb_atom_t type) {
  const auto put = [this, request, form, type] {
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor,
                        request.property, type, form.format,
                        static_cast<std::uint32_t>(form.bytes.size() * 8 / form.format),
                        form.bytes.data());
    notify(request, request.property);
  };
  if (form.pause.count() == 0) {
    put();
  } else {
    thread_->after(form.pause, put);
  }
}

void ScriptedOwner::sendPiece(Address address) {
  const auto found = sending_.find(address);
  if (found == sending_.end()) return;
  Sending& sending = found->second;
  if (sending.pieces == sending.form.piecesBeforeStalling) return;
  if (sending.pieces == sending.form.piecesBeforeDying) {
    die();
    return;
  }
  ++sending.pieces;
  const auto left = sending.form.bytes.size() - sending.sent;
  const auto size = std::min(left, sending.form.pieceBytes);
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, address.first, address.second,
                      sending.type, 8, static_cast<std::uint32_t>(size),
                      sending.form.bytes.data() + sending.sent);
  sending.sent += size;
  if (size == 0) sending_.erase(found);
}

void ScriptedOwner::notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
  xcb_selection_notify_event_t event{};
  event.response_type = XCB_SELECTION_NOTIFY;
  event.time = request.time;
  event.requestor = request.requestor;
  event.selection = request.selection;
  event.target = request.target;
  event.property = property;
  xcb_send_event(connection_.xcb(), 0, request.requestor, 0, reinterpret_cast<const char*>(&event));
}

std::vector<std::string> ScriptedOwner::requests() {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::vector<xcb_timestamp_t> ScriptedOwner::requestTimes() {
  const std::lock_guard lock(mutex_);
  return requestTimes_;
}

xcb_timestamp_t ScriptedOwner::ownedSince() {
  const std::lock_guard lock(mutex_);
  return ownedSince_;
}

bool ScriptedOwner::waitForRequest(const std::string& target) {
  std::unique_lock lock(mutex_);
  return condition_.wait_for(lock, generously, [&] {
    return std::find(requests_.begin(), requests_.end(), target) != requests_.end();
  });
}

bool ScriptedOwner::waitForLoss() {
  std::unique_lock lock(mutex_);
  return condition_.wait_for(lock, generously, [&] { return lost_; });
}

}  // namespace vantorel
