// SPDX-License-Identifier: MIT
#include "platform/linux/x11/SelectionService.h"

#include <xcb/xfixes.h>

#include <utility>

#include "platform/linux/windows/PasteboardTargets.h"

namespace vantorel {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;

bool enableOwnerChanges(const X11Connection& connection) {
  return connection.reply(xcb_xfixes_query_version_reply,
                          xcb_xfixes_query_version(connection.xcb(), 1, 0)) != nullptr;
}

template <class Event>
const Event& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

}  // namespace

std::unique_ptr<SelectionService> SelectionService::create(X11Thread& thread, Observer observer,
                                                           SelectionOwner::Worker runElsewhere,
                                                           std::chrono::milliseconds patience,
                                                           Bridge bridge) {
  X11Connection& connection = thread.connection();
  const auto* xfixes = connection.extension(xcb_xfixes_id);
  if (xfixes == nullptr || !enableOwnerChanges(connection)) return nullptr;
  connection.internAtoms({"CLIPBOARD",
                          "CLIPBOARD_MANAGER",
                          "INCR",
                          "MANAGER",
                          "TARGETS",
                          "TIMESTAMP",
                          "MULTIPLE",
                          "SAVE_TARGETS",
                          "ATOM_PAIR",
                          "NULL",
                          targets::anyString,
                          targets::compoundText,
                          "VANTOREL_SELECTION",
                          "VANTOREL_TIME",
                          "text/plain",
                          "text/rtf",
                          "text/plain;charset=utf-8",
                          "application/rtf",
                          "text/richtext",
                          targets::utf8String,
                          targets::uriList,
                          targets::copiedFiles,
                          targets::mateCopiedFiles,
                          targets::htmlText,
                          targets::png});
  const auto event = static_cast<std::uint8_t>(xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
  return std::unique_ptr<SelectionService>(new SelectionService(
      thread, std::move(observer), std::move(runElsewhere), patience, bridge, event));
}

SelectionService::SelectionService(X11Thread& thread, Observer observer,
                                   SelectionOwner::Worker runElsewhere,
                                   std::chrono::milliseconds patience, Bridge bridge,
                                   std::uint8_t ownerChangeEvent)
    : thread_(thread),
      connection_(thread.connection()),
      observer_(std::move(observer)),
      ownerChangeEvent_(ownerChangeEvent),
      clipboard_(connection_.atom("CLIPBOARD")),
      timeProperty_(connection_.atom("VANTOREL_TIME")),
      window_(connection_.createHiddenWindow()),
      reader_(thread, patience),
      owner_(thread, window_, std::move(runElsewhere)),
      role_(thread, owner_, window_),
      bridge_(bridge),
      processes_(connection_) {
  xcb_xfixes_select_selection_input(connection_.xcb(), window_, clipboard_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  owner_.onListed([this](xcb_atom_t selection, xcb_window_t requestor) {
    if (selection != clipboard_) return;
    const std::lock_guard lock(mutex_);
    listedTo_.insert(connection_.clientOf(requestor));
  });
  noteFirstOwner();
}

// A read under way and its contents keep each other alive until the read has ended.
SelectionService::~SelectionService() { reader_.abortAll(); }

void SelectionService::noteFirstOwner() {
  const auto answer = connection_.reply(xcb_get_selection_owner_reply,
                                        xcb_get_selection_owner(connection_.xcb(), clipboard_));
  if (!answer || answer->owner == XCB_WINDOW_NONE) return;
  // When it took the selection is not known; any later time will do for asking.
  holder_ = Holder::other;
  foreignWindow_ = answer->owner;
  foreign_ = foreignSince(XCB_CURRENT_TIME);
}

SelectionPasteboard::Foreign SelectionService::foreignSince(xcb_timestamp_t time) {
  return std::make_shared<ForeignContents>(
      std::make_unique<SelectionForms>(reader_, connection_, clipboard_, time));
}

void SelectionService::handle(const xcb_generic_event_t& event) {
  const auto type = static_cast<std::uint8_t>(event.response_type & ~sentEventBit);
  if (type == ownerChangeEvent_) {
    handleOwnerChange(event);
    return;
  }
  switch (type) {
    case XCB_SELECTION_REQUEST:
      owner_.handle(as<xcb_selection_request_event_t>(event));
      break;
    case XCB_SELECTION_CLEAR:
      owner_.handle(as<xcb_selection_clear_event_t>(event));
      break;
    case XCB_SELECTION_NOTIFY:
      handleNotify(as<xcb_selection_notify_event_t>(event));
      break;
    case XCB_PROPERTY_NOTIFY:
      handleProperty(as<xcb_property_notify_event_t>(event));
      break;
    case XCB_DESTROY_NOTIFY:
      owner_.handle(as<xcb_destroy_notify_event_t>(event));
      break;
    default:  // errors of requestors that are gone, and events that nobody asked for
      break;
  }
}

void SelectionService::handleLoss() {
  reader_.abortAll();
  owner_.drop();
  thread_.cancel(successionTimer_);
  holder_ = Holder::nobody;
  own_ = nullptr;
  foreign_ = nullptr;
  emptiness_ = Emptiness::published;
  finishHandOver();
}

SelectionPasteboard::Contents SelectionService::contents(ChangeCount change) const {
  if (change != count_) return SelectionPasteboard::Superseded{};
  if (holder_ == Holder::self) return own_;
  if (holder_ == Holder::other) return foreign_;
  return SelectionPasteboard::Empty{};
}

void SelectionService::changeHands(Holder holder) {
  thread_.cancel(successionTimer_);
  ownerHasEnded_ = false;
  reader_.abortAll();
  {
    const std::lock_guard lock(mutex_);
    listedTo_.clear();
  }
  holder_ = holder;
  own_ = nullptr;
  foreign_ = nullptr;
  foreignWindow_ = XCB_WINDOW_NONE;
  savedAt_.reset();
  emptiness_ = Emptiness::published;
}

std::optional<ProcessId> SelectionService::ownerProcess(ChangeCount change) const {
  const std::lock_guard lock(mutex_);
  return ownerProcess_.first == change ? ownerProcess_.second : std::nullopt;
}

bool SelectionService::isListedTo(xcb_window_t window) const {
  const std::lock_guard lock(mutex_);
  return listedTo_.contains(connection_.clientOf(window));
}

/// Of the change that is about to be counted: later the owner may be gone.
void SelectionService::noteOwnerProcess(xcb_window_t owner) {
  const auto process = processes_.of(owner);
  const std::lock_guard lock(mutex_);
  ownerProcess_ = {count_ + 1, process};
}

bool SelectionService::isBridge(xcb_window_t owner) const {
  if (bridge_ == Bridge::none || owner == XCB_WINDOW_NONE) return false;
  const auto manager = values32Property(connection_, connection_.root(),
                                        connection_.atom("_NET_SUPPORTING_WM_CHECK"));
  return !manager.empty() && connection_.clientOf(manager.front()) == connection_.clientOf(owner);
}

void SelectionService::handleOwnerChange(const xcb_generic_event_t& event) {
  const auto& change = as<xcb_xfixes_selection_notify_event_t>(event);
  if (change.selection == role_.selection()) role_.handle(change);
  if (change.selection != clipboard_) return;
  if (change.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) {
    handleOwnerEnd();
    return;
  }
  if (change.owner == window_) {
    adopt();
    return;
  }
  // A program that destroys its window as it ends, and then clears, has cleared nothing on purpose.
  if (change.owner == XCB_WINDOW_NONE && ownerHasEnded_) return;
  if (isFarewell(change)) {
    savedAt_.reset();
    thread_.post([this] { takeBack(); });
    return;
  }
  changeHands(change.owner == XCB_WINDOW_NONE ? Holder::nobody : Holder::other);
  if (holder_ == Holder::other) {
    foreignWindow_ = change.owner;
    foreign_ = foreignSince(change.selection_timestamp);
  }
  noteOwnerProcess(change.owner);
  if (isBridge(change.owner)) bridgedCount_ = count_ + 1;
  ++count_;
  observer_.onForeignChange();
}

void SelectionService::handleOwnerEnd() {
  // The end of a window and of its client are both told; the first is enough.
  if (holder_ != Holder::other) return;
  changeHands(Holder::nobody);
  ownerHasEnded_ = true;
  successionTimer_ = thread_.after(successionLimit, [this] {
    ownerHasEnded_ = false;
    observer_.onOwnerExit(count_);
  });
}

void SelectionService::handleProperty(const xcb_property_notify_event_t& event) {
  if (event.window == window_) {
    if (event.atom == timeProperty_) serverTime_ = event.time;
    return;
  }
  reader_.handle(event);
  owner_.handle(event);
}

void SelectionService::handleNotify(const xcb_selection_notify_event_t& event) {
  if (event.requestor == window_ && event.selection == role_.selection()) {
    finishHandOver();
  } else {
    reader_.handle(event);
  }
}

xcb_timestamp_t SelectionService::serverTime() {
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_APPEND, window_, timeProperty_,
                      XCB_ATOM_INTEGER, 32, 0, nullptr);
  return thread_.catchUp() ? serverTime_ : XCB_CURRENT_TIME;
}

bool SelectionService::take(Own contents, Counting counting) {
  const xcb_timestamp_t time = serverTime();
  auto offer = std::make_shared<const SelectionOffer>(offerOf(contents));
  taking_ = Taking{std::move(contents), counting};
  const bool taken = owner_.acquire(clipboard_, std::move(offer), time);
  // The server's own word of it has arrived by now, in its place among other programs' changes.
  thread_.handleArrivedEvents();
  if (taken) adopt();
  taking_.reset();
  return taken && holder_ == Holder::self;
}

void SelectionService::adopt() {
  if (!taking_) return;
  Taking taking = std::move(*taking_);
  taking_.reset();
  changeHands(Holder::self);
  own_ = std::move(taking.contents);
  if (taking.counting == Counting::count) ownCount_ = ++count_;
}

bool SelectionService::write(Own contents) { return take(std::move(contents), Counting::count); }

void SelectionService::clear() {
  changeHands(Holder::self);
  own_ = std::make_shared<const PasteboardContents>();
  emptiness_ = Emptiness::pending;
  ownCount_ = ++count_;
}

void SelectionService::publishEmptiness() {
  if (emptiness_ != Emptiness::pending || connection_.broken()) return;
  const bool taken = take(std::make_shared<const PasteboardContents>(), Counting::countedAlready);
  // When another program was quicker its change is told like any other.
  if (!taken) emptiness_ = Emptiness::published;
}

bool SelectionService::servesContents() const {
  const auto offer = owner_.offer(clipboard_);
  return offer && holder_ == Holder::self && emptiness_ == Emptiness::published &&
         !offer->forms.empty();
}

bool SelectionService::offerPrimary() {
  auto offer = owner_.offer(clipboard_);
  if (!offer || holder_ != Holder::self || offer->forms.empty()) return false;
  return owner_.acquire(XCB_ATOM_PRIMARY, std::move(offer), serverTime());
}

void SelectionService::keepForOthers() {
  role_.play([this](xcb_window_t requestor,
                    std::function<void(bool)> done) { save(requestor, std::move(done)); },
             serverTime());
}

void SelectionService::save(xcb_window_t requestor, std::function<void(bool)> done) {
  const bool asksForItsOwn = holder_ == Holder::other && connection_.clientOf(requestor) ==
                                                             connection_.clientOf(foreignWindow_);
  if (!asksForItsOwn) {
    done(false);
    return;
  }
  observer_.onSave(count_, [this, done = std::move(done)] {
    const bool saved = servesContents();
    if (saved) savedAt_ = X11Thread::Clock::now();
    done(saved);
  });
}

bool SelectionService::isFarewell(const xcb_xfixes_selection_notify_event_t& change) {
  return change.owner == XCB_WINDOW_NONE && holder_ == Holder::self && savedAt_ &&
         X11Thread::Clock::now() - *savedAt_ < farewellLimit;
}

void SelectionService::takeBack() {
  if (holder_ != Holder::self || !own_) return;
  const Own contents = own_;
  if (take(contents, Counting::countedAlready) || holder_ != Holder::self) return;
  // The server did not let us: then the clipboard is as empty as that program left it.
  changeHands(Holder::nobody);
  ++count_;
  observer_.onForeignChange();
}

void SelectionService::handOver(Work done) {
  publishEmptiness();
  const auto offer = owner_.offer(clipboard_);
  const auto manager = connection_.reply(
      xcb_get_selection_owner_reply, xcb_get_selection_owner(connection_.xcb(), role_.selection()));
  const bool toBeHad = manager && manager->owner != XCB_WINDOW_NONE && manager->owner != window_;
  if (!offer || offer->forms.empty() || !toBeHad) {
    done();
    return;
  }
  std::vector<xcb_atom_t> forms;
  for (const auto& form : offer->forms) forms.push_back(connection_.atom(form.target));
  const xcb_atom_t property = connection_.atom("VANTOREL_SELECTION");
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, window_, property, XCB_ATOM_ATOM,
                      32, static_cast<std::uint32_t>(forms.size()), forms.data());
  handOverDone_ = std::move(done);
  handOverTimer_ = thread_.after(handOverLimit, [this] { finishHandOver(); });
  xcb_convert_selection(connection_.xcb(), window_, role_.selection(),
                        connection_.atom("SAVE_TARGETS"), property, serverTime());
}

void SelectionService::finishHandOver() {
  thread_.cancel(handOverTimer_);
  if (const auto done = std::exchange(handOverDone_, nullptr)) done();
}

}  // namespace vantorel
