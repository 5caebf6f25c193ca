// SPDX-License-Identifier: MIT
// A program with windows that say of themselves what the command line tells them to say. Each
// "--window" begins a window; "name=value" describes it. It reports to its standard output what it
// opened and which keys came in, a line each, and ends when its input ends.

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Description = std::map<std::string, std::string, std::less<>>;

class Client {
 public:
  Client() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) std::exit(1);
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  }

  void open(const Description& description) {
    const auto window = xcb_generate_id(connection_);
    const std::array<std::uint32_t, 2> values{
        description.contains("override") ? 1U : 0U,
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 10, 10, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    describe(window, description);
    xcb_map_window(connection_, window);
    xcb_flush(connection_);
    std::printf("window %u\n", window);
  }

  void run() {
    std::array<pollfd, 2> descriptors{pollfd{0, POLLIN, 0},
                                      pollfd{xcb_get_file_descriptor(connection_), POLLIN, 0}};
    for (;;) {
      report();
      poll(descriptors.data(), descriptors.size(), -1);
      char byte = 0;
      if (descriptors[0].revents != 0 && read(0, &byte, 1) <= 0) return;
      if (xcb_connection_has_error(connection_) != 0) return;
    }
  }

 private:
  xcb_atom_t atom(std::string_view name) {
    auto* reply = xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const auto result = reply->atom;
    std::free(reply);
    return result;
  }

  void setText(xcb_window_t window, xcb_atom_t property, const std::string& text) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
  }

  void setNumber(xcb_window_t window, const char* property, xcb_atom_t type, std::uint32_t value) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32, 1,
                        &value);
  }

  void describe(xcb_window_t window, const Description& description) {
    for (const auto& [name, value] : description) {
      if (name == "class") {
        const auto comma = value.find(',');
        setText(window, XCB_ATOM_WM_CLASS,
                value.substr(0, comma) + '\0' + value.substr(comma + 1) + '\0');
      } else if (name == "machine") {
        setText(window, XCB_ATOM_WM_CLIENT_MACHINE, value);
      } else if (name == "pid") {
        setNumber(window, "_NET_WM_PID", XCB_ATOM_CARDINAL,
                  static_cast<std::uint32_t>(std::stoul(value)));
      } else if (name == "type") {
        setNumber(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                  atom("_NET_WM_WINDOW_TYPE_" + value));
      } else if (name == "state") {
        setNumber(window, "_NET_WM_STATE", XCB_ATOM_ATOM, atom("_NET_WM_STATE_" + value));
      } else if (name == "gtk") {
        setText(window, atom("_GTK_APPLICATION_ID"), value);
      } else if (name == "kde") {
        setText(window, atom("_KDE_NET_WM_DESKTOP_FILE"), value);
      } else if (name == "title") {
        setText(window, XCB_ATOM_WM_NAME, value);
      }
    }
  }

  void report() {
    while (auto* event = xcb_poll_for_event(connection_)) {
      const auto type = event->response_type & 0x7F;
      if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
        const auto* key = reinterpret_cast<xcb_key_press_event_t*>(event);
        std::printf("%s %u %u\n", type == XCB_KEY_PRESS ? "press" : "release",
                    unsigned{key->detail}, unsigned{key->state} & 0xFFU);
      } else if (type == XCB_MAP_NOTIFY) {
        std::printf("mapped %u\n", reinterpret_cast<xcb_map_notify_event_t*>(event)->window);
      }
      std::free(event);
    }
    std::fflush(stdout);
  }

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
};

}  // namespace

int main(int count, char** arguments) {
  std::vector<Description> descriptions;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    if (argument == "--window") {
      descriptions.emplace_back();
    } else if (!descriptions.empty()) {
      const auto equals = argument.find('=');
      descriptions.back()[argument.substr(0, equals)] = argument.substr(equals + 1);
    }
  }
  Client client;
  for (const auto& description : descriptions) client.open(description);
  client.run();
}
