// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Connection.h"

#include <utility>

namespace vantorel {

namespace {

// Other programs may intern names without end; the cache does not follow them.
constexpr std::size_t maximumCachedAtoms = 4096;

xcb_screen_t* screenOf(xcb_connection_t* connection, int number) {
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screens.rem > 0; xcb_screen_next(&screens), --number) {
    if (number == 0) return screens.data;
  }
  return nullptr;
}

std::string nameOf(const xcb_get_atom_name_reply_t* reply) {
  return {xcb_get_atom_name_name(reply),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply))};
}

}  // namespace

std::unique_ptr<X11Connection> X11Connection::open(const std::string& display) {
  int number = 0;
  xcb_connection_t* connection = xcb_connect(display.empty() ? nullptr : display.c_str(), &number);
  xcb_screen_t* screen =
      xcb_connection_has_error(connection) == 0 ? screenOf(connection, number) : nullptr;
  if (screen == nullptr) {
    xcb_disconnect(connection);
    return nullptr;
  }
  return std::unique_ptr<X11Connection>(new X11Connection(connection, screen, number));
}

X11Connection::X11Connection(xcb_connection_t* connection, xcb_screen_t* screen, int screenNumber)
    : connection_(connection), screen_(screen), screenNumber_(screenNumber) {}

X11Connection::~X11Connection() { xcb_disconnect(connection_); }

const xcb_query_extension_reply_t* X11Connection::extension(xcb_extension_t& extension) const {
  const auto* data = xcb_get_extension_data(connection_, &extension);
  return data != nullptr && data->present != 0 ? data : nullptr;
}

std::uint32_t X11Connection::clientOf(xcb_window_t window) const {
  return window & ~xcb_get_setup(connection_)->resource_id_mask;
}

bool X11Connection::made(xcb_window_t window) const {
  return clientOf(window) == xcb_get_setup(connection_)->resource_id_base;
}

void X11Connection::remember(const std::string& name, xcb_atom_t atom) {
  const std::lock_guard lock(mutex_);
  if (atoms_.size() >= maximumCachedAtoms || names_.size() >= maximumCachedAtoms) {
    atoms_.clear();
    names_.clear();
  }
  atoms_.insert_or_assign(name, atom);
  names_.insert_or_assign(atom, name);
}

xcb_window_t X11Connection::createHiddenWindow() const {
  const xcb_window_t window = xcb_generate_id(connection_);
  const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(connection_, 0, window, root(), -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                    XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  return window;
}

xcb_atom_t X11Connection::atom(std::string_view name) {
  {
    const std::lock_guard lock(mutex_);
    if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
  }
  const auto answer =
      reply(xcb_intern_atom_reply,
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  if (!answer) return XCB_ATOM_NONE;
  remember(std::string(name), answer->atom);
  return answer->atom;
}

void X11Connection::internAtoms(const std::vector<std::string_view>& names) {
  std::vector<xcb_intern_atom_cookie_t> cookies;
  cookies.reserve(names.size());
  for (const auto name : names) {
    cookies.push_back(
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto answer = reply(xcb_intern_atom_reply, cookies[i]);
    if (answer) remember(std::string(names[i]), answer->atom);
  }
}

std::optional<std::string> X11Connection::atomName(xcb_atom_t atom) {
  auto names = atomNames({atom});
  if (names.empty()) return std::nullopt;
  return std::move(names.front());
}

std::vector<std::string> X11Connection::atomNames(const std::vector<xcb_atom_t>& atoms) {
  std::vector<std::optional<std::string>> found(atoms.size());
  std::vector<std::pair<std::size_t, xcb_get_atom_name_cookie_t>> asked;
  {
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < atoms.size(); ++i) {
      if (const auto known = names_.find(atoms[i]); known != names_.end()) {
        found[i] = known->second;
      } else if (atoms[i] != XCB_ATOM_NONE) {
        asked.emplace_back(i, xcb_get_atom_name(connection_, atoms[i]));
      }
    }
  }
  for (const auto& [index, cookie] : asked) {
    const auto answer = reply(xcb_get_atom_name_reply, cookie);
    if (!answer) continue;
    found[index] = nameOf(answer.get());
    remember(*found[index], atoms[index]);
  }
  std::vector<std::string> names;
  for (auto& name : found) {
    if (name) names.push_back(std::move(*name));
  }
  return names;
}

}  // namespace vantorel
