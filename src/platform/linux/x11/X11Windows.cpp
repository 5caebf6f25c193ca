#include "platform/linux/x11/X11Windows.h"

#include <xcb/res.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/linux/x11/X11Property.h"
#include "text/Unicode.h"

namespace vantorel {

namespace {

constexpr std::uint32_t longestText = 256;  // in units of four bytes
constexpr std::uint32_t longestList = 64;   // atoms
constexpr std::size_t maximumWindows = 4096;
constexpr int maximumDepth = 32;  // of windows within each other, on the way to the top
constexpr std::uint32_t sourceIsPager = 2;
constexpr std::chrono::seconds factsStayTrue{10};

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
  if (isValidUtf8(bytes)) return bytes;
  std::string result;
  for (const char character : bytes) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x80) {
      result += character;
    } else {
      result += static_cast<char>(0xC0U | (code >> 6U));
      result += static_cast<char>(0x80U | (code & 0x3FU));
    }
  }
  return result;
}

bool contains(const std::vector<std::uint32_t>& values, std::uint32_t value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

bool isApplicationWindow(const WindowFacts& facts) {
  return facts.management == WindowManagement::managed || !facts.wmClass.empty();
}

}  // namespace

struct X11Windows::Asked {
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
  std::optional<xcb_res_query_client_ids_cookie_t> clientIds;
};

X11Windows::X11Windows(X11Connection& connection)
    : connection_(connection), clock_(xcb_generate_id(connection.xcb())) {
  connection_.internAtoms({"WM_STATE", "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE",
                           "_NET_WM_PID", "_NET_WM_WINDOW_TYPE", "_NET_WM_STATE",
                           "_NET_WM_WINDOW_TYPE_NORMAL", "_NET_WM_WINDOW_TYPE_DIALOG",
                           "_NET_WM_STATE_SKIP_TASKBAR", "_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST",
                           "_NET_CLIENT_LIST_STACKING", "_NET_SUPPORTED",
                           "_NET_SUPPORTING_WM_CHECK"});
  const std::array<std::uint32_t, 2> values{1, XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(connection_.xcb(), 0, clock_, connection_.root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
  const auto version = connection_.extension(xcb_res_id) == nullptr
                           ? nullptr
                           : connection_.reply(xcb_res_query_version_reply,
                                               xcb_res_query_version(connection_.xcb(), 1, 2));
  knowsClientPids_ = version && std::pair(version->server_major, version->server_minor) >=
                                    std::pair<std::uint16_t, std::uint16_t>(1, 2);
}

X11Windows::~X11Windows() { xcb_destroy_window(connection_.xcb(), clock_); }

X11Windows::Asked X11Windows::ask(xcb_window_t window) const {
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
              std::nullopt};
  if (knowsClientPids_) {
    const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    asked.clientIds = xcb_res_query_client_ids(xcb, 1, &spec);
  }
  return asked;
}

std::optional<WindowFacts> X11Windows::answer(const Asked& asked) const {
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
  if (asked.clientIds) {
    const auto ids = connection_.reply(xcb_res_query_client_ids_reply, *asked.clientIds);
    for (auto it = ids ? xcb_res_query_client_ids_ids_iterator(ids.get())
                       : xcb_res_client_id_value_iterator_t{};
         it.rem > 0; xcb_res_client_id_value_next(&it)) {
      const bool tellsPid = (it.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
      if (!tellsPid || xcb_res_client_id_value_value_length(it.data) < 1) continue;
      facts.clientPid = *xcb_res_client_id_value_value(it.data);
    }
  }
  if (!exists) return std::nullopt;
  return facts;
}

std::optional<WindowFacts> X11Windows::facts(xcb_window_t window) const {
  return answer(ask(window));
}

std::vector<WindowFacts> X11Windows::factsOf(const std::vector<xcb_window_t>& windows) const {
  std::vector<Asked> asked;
  asked.reserve(windows.size());
  for (const auto window : windows) asked.push_back(ask(window));
  std::vector<WindowFacts> result;
  result.reserve(windows.size());
  for (const auto& each : asked) {
    if (auto facts = answer(each)) result.push_back(std::move(*facts));
  }
  return result;
}

std::optional<WindowFacts> X11Windows::active() const {
  const auto asked =
      xcb_get_property(connection_.xcb(), 0, connection_.root(),
                       connection_.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1);
  // This is asked several times a second and hardly ever news, and each of a dozen answers wakes
  // the process up once. The property may outlive its window, though, and the number be given to
  // another one.
  const auto now = std::chrono::steady_clock::now();
  const bool isFresh = lastActive_ && now - lastActive_->asked < factsStayTrue;
  const bool stillExists = isFresh && exists(lastActive_->facts.window);
  const auto reply = connection_.reply(xcb_get_property_reply, asked);
  if (!reply) return std::nullopt;
  const auto windows = valuesOf(reply);
  if (windows.empty()) return focused();
  if (windows.front() == XCB_WINDOW_NONE) return std::nullopt;
  if (stillExists && lastActive_->facts.window == windows.front()) return lastActive_->facts;
  lastActive_.reset();
  auto found = facts(windows.front());
  if (!found || !isApplicationWindow(*found)) return focused();
  lastActive_ = {*found, now};
  return found;
}

bool X11Windows::exists(xcb_window_t window) const {
  return connection_.reply(xcb_get_window_attributes_reply,
                           xcb_get_window_attributes(connection_.xcb(), window)) != nullptr;
}

std::optional<WindowFacts> X11Windows::focused() const {
  const auto focus =
      connection_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_.xcb()));
  if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE) return std::nullopt;
  if (focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT) return topLevelOf(windowUnderPointer());
  return topLevelOf(focus->focus);
}

xcb_window_t X11Windows::windowUnderPointer() const {
  xcb_window_t window = connection_.root();
  for (int depth = 0; depth < maximumDepth; ++depth) {
    const auto pointer =
        connection_.reply(xcb_query_pointer_reply, xcb_query_pointer(connection_.xcb(), window));
    if (!pointer || pointer->child == XCB_WINDOW_NONE) break;
    window = pointer->child;
  }
  return window;
}

std::optional<WindowFacts> X11Windows::topLevelOf(xcb_window_t window) const {
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

std::vector<xcb_window_t> X11Windows::clientList() const {
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
std::vector<xcb_window_t> X11Windows::unlistedClients() const {
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

std::vector<WindowFacts> X11Windows::all() const {
  auto windows = factsOf(clientList());
  std::erase_if(windows, [](const auto& facts) { return !isApplicationWindow(facts); });
  return windows;
}

bool X11Windows::managerActivates() const {
  const auto check = connection_.atom("_NET_SUPPORTING_WM_CHECK");
  const auto manager = values32Property(connection_, connection_.root(), check);
  if (manager.empty()) return false;
  // A manager that has gone leaves its properties on the root behind, but not its window.
  if (values32Property(connection_, manager.front(), check) != manager) return false;
  return contains(
      values32Property(connection_, connection_.root(), connection_.atom("_NET_SUPPORTED")),
      connection_.atom("_NET_ACTIVE_WINDOW"));
}

xcb_timestamp_t X11Windows::serverTime() const {
  auto* xcb = connection_.xcb();
  xcb_change_property(xcb, XCB_PROP_MODE_APPEND, clock_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                      nullptr);
  // The event comes before the answer to a later request.
  const auto after = connection_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(xcb));
  xcb_timestamp_t time = XCB_CURRENT_TIME;
  while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_queued_event(xcb)}) {
    if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY) continue;
    time = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
  }
  return time;
}

void X11Windows::activate(xcb_window_t window, xcb_window_t current) const {
  auto* xcb = connection_.xcb();
  const auto time = serverTime();
  if (!managerActivates()) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_map_window(xcb, window);
    xcb_configure_window(xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(xcb, XCB_INPUT_FOCUS_PARENT, window, time);
    connection_.flush();
    return;
  }
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = connection_.atom("_NET_ACTIVE_WINDOW");
  message.data.data32[0] = sourceIsPager;
  message.data.data32[1] = time;
  message.data.data32[2] = current;
  xcb_send_event(xcb, 0, connection_.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  connection_.flush();
}

std::uint32_t X11Windows::resourceMask() const {
  return xcb_get_setup(connection_.xcb())->resource_id_mask;
}

}  // namespace vantorel
