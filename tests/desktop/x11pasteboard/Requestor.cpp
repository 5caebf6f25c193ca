// SPDX-License-Identifier: MIT
#include "desktop/x11pasteboard/Requestor.h"

#include <poll.h>

#include <stdexcept>

namespace vantorel {

namespace {

constexpr std::size_t noLimit = std::size_t{1} << 30U;

}  // namespace

Requestor::Requestor(const std::string& display) : connection_(X11Connection::open(display)) {
  if (!connection_) throw std::runtime_error("no display " + display);
  window_ = xcb_generate_id(connection_->xcb());
  property_ = connection_->atom("REQUESTOR_ANSWER");
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_->xcb(), 0, window_, connection_->root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

X11Reply<xcb_generic_event_t> Requestor::nextEvent() {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  connection_->flush();
  for (;;) {
    X11Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_->xcb()));
    if (event || connection_->broken()) return event;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return nullptr;
    pollfd descriptor{connection_->fileDescriptor(), POLLIN, 0};
    poll(&descriptor, 1, static_cast<int>(left.count()));
  }
}

void Requestor::ask(const std::string& target, const std::string& selection, xcb_timestamp_t time) {
  xcb_delete_property(connection_->xcb(), window_, property_);
  xcb_convert_selection(connection_->xcb(), window_, connection_->atom(selection),
                        connection_->atom(target), property_, time);
  connection_->flush();
}

bool Requestor::answered() {
  while (const auto event = nextEvent()) {
    if ((event->response_type & 0x7F) != XCB_SELECTION_NOTIFY) continue;
    return reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property != XCB_ATOM_NONE;
  }
  return false;
}

std::optional<X11Property> Requestor::take() {
  for (;;) {
    auto reading = readProperty(*connection_, window_, property_, noLimit, AfterReading::remove);
    if (reading.outcome == PropertyOutcome::read) return std::move(reading.property);
    const auto event = nextEvent();
    if (!event) return std::nullopt;
  }
}

bool Requestor::isIncremental(X11Connection& connection, const X11Property& property) {
  return property.type == connection.atom("INCR");
}

std::optional<X11Property> Requestor::get(const std::string& target, const std::string& selection,
                                          xcb_timestamp_t time) {
  ask(target, selection, time);
  if (!answered()) return std::nullopt;
  auto first = take();
  if (!first || !isIncremental(*connection_, *first)) return first;
  X11Property whole;
  for (;;) {
    auto piece = take();
    if (!piece) return std::nullopt;
    if (piece->bytes.empty()) return whole;
    whole.type = piece->type;
    whole.format = piece->format;
    whole.bytes.insert(whole.bytes.end(), piece->bytes.begin(), piece->bytes.end());
  }
}

std::vector<std::optional<X11Property>> Requestor::getMultiple(
    const std::vector<std::string>& names) {
  std::vector<std::uint32_t> pairs;
  for (std::size_t i = 0; i < names.size(); ++i) {
    pairs.push_back(connection_->atom(names[i]));
    pairs.push_back(connection_->atom("REQUESTOR_PART_" + std::to_string(i)));
  }
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, window_, property_,
                      connection_->atom("ATOM_PAIR"), 32, static_cast<std::uint32_t>(pairs.size()),
                      pairs.data());
  xcb_convert_selection(connection_->xcb(), window_, connection_->atom("CLIPBOARD"),
                        connection_->atom("MULTIPLE"), property_, XCB_CURRENT_TIME);
  std::vector<std::optional<X11Property>> parts(names.size());
  if (!answered()) return parts;
  const auto answeredPairs = values32Property(*connection_, window_, property_);
  for (std::size_t i = 0; i < names.size() && 2 * i + 1 < answeredPairs.size(); ++i) {
    if (answeredPairs[2 * i + 1] == XCB_ATOM_NONE) continue;
    auto reading =
        readProperty(*connection_, window_, pairs[2 * i + 1], noLimit, AfterReading::remove);
    if (reading.outcome == PropertyOutcome::read) parts[i] = std::move(reading.property);
  }
  return parts;
}

}  // namespace vantorel
