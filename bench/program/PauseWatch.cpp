// SPDX-License-Identifier: MIT
#include "program/PauseWatch.h"

#include <algorithm>
#include <deque>

namespace vantorel::bench {

PauseWatch::PauseWatch(xcb_window_t window)
    : window_(window),
      protocols_(screen_.atom("WM_PROTOCOLS")),
      pingAtom_(screen_.atom("_NET_WM_PING")),
      thread_([this] { run(); }) {
  try {
    waitFor("an answer of the program to a ping", [this] { return answered_.load(); });
  } catch (...) {
    stopping_ = true;
    thread_.join();
    throw;
  }
}

PauseWatch::~PauseWatch() {
  stopping_ = true;
  if (thread_.joinable()) thread_.join();
}

double PauseWatch::finish() {
  stopping_ = true;
  thread_.join();
  return longest_;
}

void PauseWatch::ping(std::uint32_t number) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window_;
  message.type = protocols_;
  message.data.data32[0] = pingAtom_;
  message.data.data32[1] = number;
  message.data.data32[2] = window_;
  xcb_send_event(screen_.connection(), 0, window_, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(screen_.connection());
}

void PauseWatch::run() {
  const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(screen_.connection(), screen_.root(), XCB_CW_EVENT_MASK, &mask);
  std::deque<std::pair<std::uint32_t, Clock::time_point>> pending;
  std::uint32_t number = 0;
  auto last = Clock::now() + std::chrono::seconds(60);
  while (Clock::now() < last) {
    if (!stopping_) {
      pending.emplace_back(++number, Clock::now());
      ping(number);
    } else if (pending.empty()) {
      return;
    } else {
      last = std::min(last, Clock::now() + std::chrono::seconds(10));
    }
    const auto next = Clock::now() + std::chrono::microseconds(500);
    while (const auto event = screen_.nextEvent(next)) {
      if ((event->response_type & 0x7fU) != XCB_CLIENT_MESSAGE) continue;
      const auto* answer = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
      if (answer->type != protocols_) continue;
      const auto now = Clock::now();
      answered_ = true;
      while (!pending.empty() && pending.front().first <= answer->data.data32[1]) {
        longest_ = std::max(longest_, milliseconds(now - pending.front().second));
        pending.pop_front();
      }
    }
  }
}

}  // namespace vantorel::bench
