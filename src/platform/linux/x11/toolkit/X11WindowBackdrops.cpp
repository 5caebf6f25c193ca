#include "platform/linux/x11/toolkit/X11WindowBackdrops.h"

#include <cstdint>
#include <utility>

#include "platform/linux/x11/toolkit/ToolkitConnection.h"

namespace vantorel {

Backdrop X11WindowBackdrops::available() const {
  if (preferences_.blurs()) return Backdrop::blurrable;
  return preferences_.composited() ? Backdrop::translucent : Backdrop::none;
}

std::unique_ptr<Observation> X11WindowBackdrops::observe(std::function<void()> changed) const {
  return preferences_.observe(std::move(changed));
}

void X11WindowBackdrops::blurBehind(WindowNumber window,
                                    const std::vector<PixelRect>& pixels) const {
  auto* connection = toolkitConnection();
  if (connection == nullptr) return;
  const auto target = static_cast<xcb_window_t>(window);
  const auto property = preferences_.blurProperty();
  if (pixels.empty()) {
    // An empty region would mean the whole window.
    xcb_delete_property(connection, target, property);
  } else {
    std::vector<std::uint32_t> numbers;
    constexpr std::size_t numbersPerRectangle = 4;
    numbers.reserve(pixels.size() * numbersPerRectangle);
    for (const auto& each : pixels) {
      for (const int number : {each.x, each.y, each.width, each.height}) {
        numbers.push_back(static_cast<std::uint32_t>(number));
      }
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, target, property, XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(numbers.size()), numbers.data());
  }
  xcb_flush(connection);
}

}  // namespace vantorel
