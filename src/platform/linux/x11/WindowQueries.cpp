// SPDX-License-Identifier: MIT
#include "platform/linux/x11/WindowQueries.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/linux/windows/PasteboardText.h"
#include "platform/linux/x11/X11Property.h"
#include "text/Unicode.h"

namespace vantorel {

namespace {

constexpr std::uint32_t longestText = 256;  // in units of four bytes
constexpr std::uint32_t longestList = 64;   // atoms
constexpr std::size_t maximumWindows = 4096;
constexpr int maximumDepth = 32;  // of windows within each other, on the way to the top

using PropertyReply = X11Reply<xcb_get_property_reply_t>;

std::string bytesOf(const PropertyReply& reply) {
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> valuesOf(const PropertyReply& reply) {
  if (!reply || reply->format != 32) return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

/// Old properties are Latin-1 by their definition, and UTF-8 by the habit of programs.
std::string text(std::string bytes) {
  bytes.resize(std::min(bytes.size(), bytes.find('\0')));
  return decodedText(vantorel::bytesOf(bytes), TextEncoding::unmarked);
}

bool contains(const std::vector<std::uint32_t>& values, std::uint32_t value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

struct WindowQueries::Asked {
  xcb_window_t window;
  xcb_get_window_attributes_cookie_t exists;
  xcb_get_property_cookie_t state;
  xcb_get_property_cookie_t wmClass;
  xcb_get_property_cookie_t gtkId;
  xcb_get_property_cookie_t kdeFile;
  xcb_get_property_cookie_t machine;
  xcb_get_property_cookie_t pid;
  xcb_get_property_cookie_t type;
  xcb_get_property_cookie_t netState;
  ClientProcesses::Question process;
};

WindowQueries::WindowQueries(X11Connection& connection)
    : connection_(connection), processes_(connection) {
  connection_.internAtoms({"WM_STATE", "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE",
                           "_NET_WM_PID", "_NET_WM_WINDOW_TYPE", "_NET_WM_STATE",
                           "_NET_WM_WINDOW_TYPE_NORMAL", "_NET_WM_WINDOW_TYPE_DIALOG",
                           "_NET_WM_STATE_SKIP_TASKBAR", "_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST",
                           "_NET_CLIENT_LIST_STACKING", "_NET_SUPPORTED",
                           "_NET_SUPPORTING_WM_CHECK"});
  // Not the list of states, which changes with every change of the focus: whether a window skips
  // the taskbar counts only until it has been in front.
  facts_ = {connection_.atom("WM_STATE"),
            connection_.atom("_GTK_APPLICATION_ID"),
            connection_.atom("_KDE_NET_WM_DESKTOP_FILE"),
            connection_.atom("_NET_WM_PID"),
            connection_.atom("_NET_WM_WINDOW_TYPE"),
            XCB_ATOM_WM_CLASS,
            XCB_ATOM_WM_CLIENT_MACHINE};
}

bool WindowQueries::isFact(xcb_atom_t property) const {
  return std::find(facts_.begin(), facts_.end(), property) != facts_.end();
}

WindowQueries::Asked WindowQueries::ask(xcb_window_t window) const {
  auto* xcb = connection_.xcb();
  const auto property = [&](xcb_atom_t atom, std::uint32_t length) {
    return xcb_get_property(xcb, 0, window, atom, XCB_GET_PROPERTY_TYPE_ANY, 0, length);
  };
  Asked asked{window,
              xcb_get_window_attributes(xcb, window),
              property(connection_.atom("WM_STATE"), 1),
              property(XCB_ATOM_WM_CLASS, longestText),
              property(connection_.atom("_GTK_APPLICATION_ID"), longestText),
              property(connection_.atom("_KDE_NET_WM_DESKTOP_FILE"), longestText),
              property(XCB_ATOM_WM_CLIENT_MACHINE, longestText),
              property(connection_.atom("_NET_WM_PID"), 1),
              property(connection_.atom("_NET_WM_WINDOW_TYPE"), longestList),
              property(connection_.atom("_NET_WM_STATE"), longestList),
              processes_.ask(window)};
  return asked;
}

std::optional<WindowFacts> WindowQueries::answer(const Asked& asked) const {
  const auto property = [&](xcb_get_property_cookie_t cookie) {
    return connection_.reply(xcb_get_property_reply, cookie);
  };
  WindowFacts facts;
  facts.window = asked.window;
  const auto exists = connection_.reply(xcb_get_window_attributes_reply, asked.exists);
  if (!valuesOf(property(asked.state)).empty()) facts.management = WindowManagement::managed;
  auto names = bytesOf(property(asked.wmClass));
  const auto end = std::min(names.find('\0'), names.size());
  facts.wmInstance = text(names.substr(0, end));
  if (end < names.size()) facts.wmClass = text(names.substr(end + 1));
  facts.desktopFile = text(bytesOf(property(asked.gtkId)));
  const auto kdeFile = text(bytesOf(property(asked.kdeFile)));
  if (facts.desktopFile.empty()) facts.desktopFile = kdeFile;
  facts.clientMachine = text(bytesOf(property(asked.machine)));
  const auto pids = valuesOf(property(asked.pid));
  if (!pids.empty() && pids.front() != 0) facts.statedPid = pids.front();
  const auto types = valuesOf(property(asked.type));
  const auto states = valuesOf(property(asked.netState));
  const bool normal = types.empty() ||
                      contains(types, connection_.atom("_NET_WM_WINDOW_TYPE_NORMAL")) ||
                      contains(types, connection_.atom("_NET_WM_WINDOW_TYPE_DIALOG"));
  const bool skips = contains(states, connection_.atom("_NET_WM_STATE_SKIP_TASKBAR"));
  facts.kind = normal && !skips ? WindowKind::normal : WindowKind::other;
  facts.clientPid = processes_.answer(asked.process);
  if (!exists) return std::nullopt;
  return facts;
}

std::optional<WindowFacts> WindowQueries::facts(xcb_window_t window) const {
  return answer(ask(window));
}

std::vector<std::optional<WindowFacts>> WindowQueries::facts(
    const std::vector<xcb_window_t>& windows) const {
  std::vector<Asked> asked;
  asked.reserve(windows.size());
  for (const auto window : windows) asked.push_back(ask(window));
  std::vector<std::optional<WindowFacts>> result;
  result.reserve(windows.size());
  for (const auto& each : asked) result.push_back(answer(each));
  return result;
}

std::optional<xcb_window_t> WindowQueries::activeWindow() const {
  const auto windows =
      values32Property(connection_, connection_.root(), connection_.atom("_NET_ACTIVE_WINDOW"));
  return windows.empty() ? std::nullopt : std::optional(windows.front());
}

xcb_window_t WindowQueries::inputFocus() const {
  const auto focus =
      connection_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_.xcb()));
  if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE) return XCB_WINDOW_NONE;
  return focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT ? windowUnderPointer() : focus->focus;
}

xcb_window_t WindowQueries::windowUnderPointer() const {
  xcb_window_t window = connection_.root();
  for (int depth = 0; depth < maximumDepth; ++depth) {
    const auto pointer =
        connection_.reply(xcb_query_pointer_reply, xcb_query_pointer(connection_.xcb(), window));
    if (!pointer || pointer->child == XCB_WINDOW_NONE) break;
    window = pointer->child;
  }
  return window;
}

std::optional<WindowFacts> WindowQueries::topLevelOf(xcb_window_t window) const {
  std::optional<WindowFacts> best;
  for (int depth = 0; depth < maximumDepth && window != connection_.root(); ++depth) {
    const auto asked = ask(window);
    const auto tree = xcb_query_tree(connection_.xcb(), window);
    auto found = answer(asked);
    const auto parent = connection_.reply(xcb_query_tree_reply, tree);
    if (!found || !parent) break;
    if (found->management == WindowManagement::managed) return found;
    if (isApplicationWindow(*found)) best = std::move(found);
    window = parent->parent;
  }
  return best;
}

std::vector<xcb_window_t> WindowQueries::candidates() const {
  const auto list = [&](std::string_view name) {
    return values32Property(connection_, connection_.root(), connection_.atom(name),
                            maximumWindows * sizeof(xcb_window_t));
  };
  auto windows = list("_NET_CLIENT_LIST_STACKING");
  if (windows.empty()) windows = list("_NET_CLIENT_LIST");
  if (windows.empty()) windows = unlistedClients();
  return windows;
}

/// Without a list: the root's children and theirs, for a frame stands between the two.
std::vector<xcb_window_t> WindowQueries::unlistedClients() const {
  std::vector<xcb_window_t> result;
  std::vector<xcb_window_t> parents{connection_.root()};
  for (int level = 0; level < 2; ++level) {
    std::vector<xcb_query_tree_cookie_t> cookies;
    cookies.reserve(parents.size());
    for (const auto parent : parents) cookies.push_back(xcb_query_tree(connection_.xcb(), parent));
    parents.clear();
    for (const auto cookie : cookies) {
      const auto tree = connection_.reply(xcb_query_tree_reply, cookie);
      if (!tree) continue;
      const auto* children = xcb_query_tree_children(tree.get());
      parents.insert(parents.end(), children,
                     children + xcb_query_tree_children_length(tree.get()));
    }
    parents.resize(std::min(parents.size(), maximumWindows));
    result.insert(result.end(), parents.begin(), parents.end());
  }
  return result;
}

std::optional<WindowQueries::Manager> WindowQueries::manager() const {
  const auto check = connection_.atom("_NET_SUPPORTING_WM_CHECK");
  const auto named = values32Property(connection_, connection_.root(), check);
  if (named.empty()) return std::nullopt;
  // A manager that has gone leaves its properties on the root behind, but not its window.
  if (values32Property(connection_, named.front(), check) != named) {
    return Manager{.check = named.front(), .hasEnded = true};
  }
  const bool activates = contains(
      values32Property(connection_, connection_.root(), connection_.atom("_NET_SUPPORTED")),
      connection_.atom("_NET_ACTIVE_WINDOW"));
  return Manager{.check = named.front(), .activates = activates};
}

std::uint32_t WindowQueries::resourceMask() const {
  return xcb_get_setup(connection_.xcb())->resource_id_mask;
}

}  // namespace vantorel
