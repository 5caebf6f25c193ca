// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11EventMonitors.h"

#include <xcb/xinput.h>

#include <utility>

#include "base/Lifetime.h"
#include "platform/MainQueue.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

class MouseDownMonitor : public Observation {
 public:
  explicit MouseDownMonitor(std::unique_ptr<X11Connection> connection)
      : thread_(std::move(connection), "mouse monitor") {}
  ~MouseDownMonitor() override { thread_.stop(); }
  MouseDownMonitor(const MouseDownMonitor&) = delete;
  MouseDownMonitor& operator=(const MouseDownMonitor&) = delete;

  /// False when the server does not report raw presses.
  [[nodiscard]] bool begin(Dispatch& dispatch, std::function<void()> handler) {
    auto& connection = thread_.connection();
    const auto* extension = connection.extension(xcb_input_id);
    if (extension == nullptr) return false;
    opcode_ = extension->major_opcode;
    const auto version = connection.reply(xcb_input_xi_query_version_reply,
                                          xcb_input_xi_query_version(connection.xcb(), 2, 2));
    // Before 2.1 a grab by another client hides the presses.
    if (!version || version->major_version < 2) return false;
    if (!select(connection)) return false;
    thread_.start(
        [this, tell = onMainQueue(dispatch, life_.guard(std::move(handler)))](
            const xcb_generic_event_t& event) {
          if (isMouseDown(event)) tell();
        },
        [] {});
    return true;
  }

 private:
  static bool select(const X11Connection& connection) {
    struct {
      xcb_input_event_mask_t head;
      std::uint32_t mask;
    } request{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    const auto cookie =
        xcb_input_xi_select_events_checked(connection.xcb(), connection.root(), 1, &request.head);
    return !connection.error(cookie) && !connection.broken();
  }

  [[nodiscard]] bool isMouseDown(const xcb_generic_event_t& event) const {
    if ((event.response_type & 0x7FU) != XCB_GE_GENERIC) return false;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != opcode_ || generic.event_type != XCB_INPUT_RAW_BUTTON_PRESS) {
      return false;
    }
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    return press.detail == leftButton || press.detail == rightButton;
  }

  X11Thread thread_;
  std::uint8_t opcode_ = 0;
  Lifetime life_;
};

}  // namespace

X11EventMonitors::X11EventMonitors(Dispatch& dispatch, std::string display,
                                   std::function<bool()> isOurs)
    : dispatch_(dispatch), display_(std::move(display)), isOurs_(std::move(isOurs)) {}

std::unique_ptr<Observation> X11EventMonitors::addGlobalMouseDownMonitor(
    std::function<void()> handler) {
  auto connection = X11Connection::open(display_);
  if (!connection) return nullptr;
  auto monitor = std::make_unique<MouseDownMonitor>(std::move(connection));
  auto ofOthers = [isOurs = isOurs_, handler = std::move(handler)] {
    if (!isOurs || !isOurs()) handler();
  };
  if (!monitor->begin(dispatch_, std::move(ofOthers))) return nullptr;
  return monitor;
}

}  // namespace vantorel
