#include "platform/linux/desktop/X11WindowSpaces.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include "platform/linux/desktop/ToolkitConnection.h"

namespace vantorel {
namespace {

constexpr std::string_view desktopPropertyName = "_NET_WM_DESKTOP";
constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;

xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name) {
  const auto question =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> answer(
      xcb_intern_atom_reply(connection, question, nullptr), &std::free);
  return answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

void X11WindowSpaces::joinAll(WindowNumber window) const {
  auto* connection = toolkitConnection();
  if (connection == nullptr) return;
  if (desktopProperty_ == XCB_ATOM_NONE) {
    desktopProperty_ = atomNamed(connection, desktopPropertyName);
  }
  if (desktopProperty_ == XCB_ATOM_NONE) return;
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window),
                      desktopProperty_, XCB_ATOM_CARDINAL, 32, 1, &everyDesktop);
}

}  // namespace vantorel
