// SPDX-License-Identifier: MIT
#include "program/PasteTarget.h"

#include <xcb/xcb_icccm.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace vantorel::bench {

PasteTarget::PasteTarget(const Screen& screen)
    : screen_(screen),
      window_(xcb_generate_id(screen.connection())),
      place_(screen.atom("VANTOREL_BENCH_PASTE")) {
  const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
  xcb_create_window(screen.connection(), XCB_COPY_FROM_PARENT, window_, screen.root(), 60, 60, 300,
                    200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &events);
  static constexpr char windowClass[] = "bench-target\0BenchTarget";
  xcb_icccm_set_wm_class(screen.connection(), window_, sizeof windowClass, windowClass);
  xcb_icccm_set_wm_name(screen.connection(), window_, XCB_ATOM_STRING, 8, 12, "bench target");
  xcb_icccm_wm_hints_t hints{};
  xcb_icccm_wm_hints_set_input(&hints, 1);
  xcb_icccm_set_wm_hints(screen.connection(), window_, &hints);
}

void PasteTarget::show() {
  xcb_map_window(screen_.connection(), window_);
  xcb_flush(screen_.connection());
  waitFor("the target to have the keyboard",
          [&] { return screen_.focus() == window_ && screen_.active() == window_; });
}

Clock::time_point PasteTarget::waitForText(Clock::time_point deadline) {
  while (const auto event = screen_.nextEvent(deadline)) {
    const auto type = event->response_type & 0x7fU;
    if (type == XCB_KEY_PRESS) {
      const auto* press = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
      if (press->detail == key::v && (press->state & XCB_MOD_MASK_CONTROL) != 0) ask();
    } else if (type == XCB_SELECTION_NOTIFY && take()) {
      return Clock::now();
    }
  }
  throw std::runtime_error("no text arrived in the target");
}

void PasteTarget::ask() const {
  xcb_convert_selection(screen_.connection(), window_, screen_.atom("CLIPBOARD"),
                        screen_.atom("UTF8_STRING"), place_, XCB_CURRENT_TIME);
  xcb_flush(screen_.connection());
}

bool PasteTarget::take() {
  const auto cookie = xcb_get_property(screen_.connection(), 1, window_, place_,
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, 1U << 24U);
  const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
      xcb_get_property_reply(screen_.connection(), cookie, nullptr), &std::free);
  if (!reply) return false;
  text_.assign(static_cast<const char*>(xcb_get_property_value(reply.get())),
               static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
  return !text_.empty();
}

}  // namespace vantorel::bench
