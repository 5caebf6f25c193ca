// SPDX-License-Identifier: MIT
#include "program/PaintWatch.h"

#include <xcb/damage.h>

#include <stdexcept>
#include <utility>

#include "program/Paintings.h"

namespace vantorel::bench {

namespace {

constexpr auto quietTime = std::chrono::milliseconds(150);
constexpr auto longestWait = std::chrono::seconds(5);
// Of the pixels: a blinking caret is no more.
constexpr double toleratedShare = 0.002;

}  // namespace

PaintWatch::PaintWatch(const Screen& screen, std::string title)
    : screen_(screen), title_(std::move(title)) {}

void PaintWatch::begin() {
  const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(screen_.connection(), screen_.root(), XCB_CW_EVENT_MASK, &mask);
  if (const auto window = screen_.visibleWindow(title_)) watch(*window);
  xcb_flush(screen_.connection());
}

void PaintWatch::watch(xcb_window_t window) {
  if (!watched_.emplace(window, false).second) return;
  const auto damage = xcb_generate_id(screen_.connection());
  xcb_damage_create(screen_.connection(), damage, window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
  xcb_flush(screen_.connection());
}

bool PaintWatch::isOurs(xcb_window_t window) {
  const auto known = watched_.find(window);
  if (known == watched_.end()) return false;
  if (!known->second) known->second = screen_.title(window) == title_;
  return known->second;
}

double PaintWatch::measure(const std::function<Clock::time_point()>& act) {
  screen_.discardEvents();
  // Made meanwhile and not shown yet: such a window is still the root's own child.
  for (const auto child : screen_.children(screen_.root())) watch(child);
  std::vector<std::pair<Clock::time_point, Paintings::Pixels>> seen;
  xcb_window_t window = XCB_WINDOW_NONE;
  const auto beginning = act();
  auto deadline = beginning + longestWait;
  while (const auto event = screen_.nextEvent(deadline)) {
    const auto moment = Clock::now();
    const auto type = event->response_type & 0x7fU;
    if (type == XCB_CREATE_NOTIFY) {
      watch(reinterpret_cast<const xcb_create_notify_event_t*>(event.get())->window);
    } else if (type == static_cast<unsigned>(screen_.firstDamageEvent() + XCB_DAMAGE_NOTIFY)) {
      const auto* damage = reinterpret_cast<const xcb_damage_notify_event_t*>(event.get());
      if (!isOurs(damage->drawable)) continue;
      window = damage->drawable;
      // Of a stroke in many rectangles the last one finishes the picture.
      const bool more = (damage->level & 0x80U) != 0;
      if (!more) seen.emplace_back(moment, screen_.pixels(window));
      deadline = moment + quietTime;
    }
  }
  if (seen.empty()) throw std::runtime_error("nothing was painted in " + title_);
  const auto final = screen_.pixels(window);
  Paintings paintings(static_cast<std::size_t>(toleratedShare * static_cast<double>(final.size())));
  for (auto& [moment, pixels] : seen) paintings.add(moment, std::move(pixels));
  if (const auto moment = paintings.firstLike(final)) return milliseconds(*moment - beginning);
  throw std::runtime_error("the picture of " + title_ + " did not come to rest");
}

}  // namespace vantorel::bench
