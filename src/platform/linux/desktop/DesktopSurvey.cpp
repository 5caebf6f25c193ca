// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/DesktopSurvey.h"

#include <xcb/xfixes.h>
#include <xcb/xtest.h>

#include <chrono>
#include <string>
#include <system_error>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/linux/confined/WorkerProgram.h"
#include "platform/linux/desktop/DefaultsFile.h"
#include "platform/linux/desktop/Session.h"
#include "platform/linux/glib/BusConnection.h"
#include "platform/linux/glib/SessionBusAddress.h"
#include "platform/linux/keyring/KeyringState.h"
#include "platform/linux/settings/JsonUserDefaults.h"
#include "platform/linux/shortcuts/OwnCommand.h"
#include "platform/linux/textinpictures/TextModels.h"
#include "platform/linux/textinpictures/WorkerTextRecognition.h"
#include "platform/linux/wayland/DataControl.h"
#include "platform/linux/wayland/OfferedProtocols.h"
#include "platform/linux/x11/TrayManager.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11KeyGrabber.h"
#include "platform/linux/x11/X11Property.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {
namespace {

constexpr std::chrono::seconds patience{5};

/// Reads; whatever would change anything fails.
class UntouchedFiles : public PosixFileSystem {
 public:
  [[nodiscard]] Error createDirectories(const Path&, unsigned) override { return refusal(); }
  [[nodiscard]] Error setPermissions(const Path&, unsigned) override { return refusal(); }
  [[nodiscard]] Error writeNewFile(const Path&, ByteView, unsigned) override { return refusal(); }
  [[nodiscard]] Error rename(const Path&, const Path&) override { return refusal(); }
  [[nodiscard]] Error remove(const Path&) override { return refusal(); }

 private:
  static Error refusal() { return std::make_error_code(std::errc::read_only_file_system); }
};

/// A program of another make knows no such question.
bool isNotUnderstood(const GError* error) {
  return g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD) ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_INTERFACE) ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY) ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS);
}

/// The answers of the message bus and of the tray on it.
class Bus {
 public:
  explicit Bus(const std::string& address)
      : served_(loop_), connection_(openBusConnection(address, [this](const auto& start) {
          return loop_.await(deadline_, start);
        })) {}

  [[nodiscard]] bool answers() const { return connection_ != nullptr; }

  [[nodiscard]] bool has(const char* name) {
    const auto reply = ask("NameHasOwner", g_variant_new("(s)", name));
    gboolean owned = FALSE;
    if (reply) g_variant_get(reply.get(), "(b)", &owned);
    return owned != FALSE;
  }

  [[nodiscard]] bool starts(std::string_view name) {
    const auto reply = ask("ListActivatableNames", nullptr);
    if (!reply) return false;
    const VariantPointer names(g_variant_get_child_value(reply.get(), 0));
    for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
      const VariantPointer each(g_variant_get_child_value(names.get(), i));
      if (g_variant_get_string(each.get(), nullptr) == name) return true;
    }
    return false;
  }

  /// Whether the portal gives programs shortcuts, and GNOME's own part of it does. The portal is
  /// not started for this.
  [[nodiscard]] bool hasShortcutsOfGnome() {
    const auto offers = [this](const char* program, const char* interface) {
      return call({program, "/org/freedesktop/portal/desktop", "org.freedesktop.DBus.Properties",
                   "GetAll"},
                  g_variant_new("(s)", interface), nullptr) != nullptr;
    };
    return offers("org.freedesktop.portal.Desktop", "org.freedesktop.portal.GlobalShortcuts") &&
           offers("org.freedesktop.impl.portal.desktop.gnome",
                  "org.freedesktop.impl.portal.GlobalShortcuts");
  }

  /// Whether somebody shows the items that a tray's watcher collects. One that is a tray itself
  /// need not know the question.
  [[nodiscard]] bool showsItems() {
    constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
    GError* raw = nullptr;
    const auto reply =
        call({watcher, "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get"},
             g_variant_new("(ss)", watcher, "IsStatusNotifierHostRegistered"), &raw);
    const ErrorPointer error(raw);
    if (!reply) return isNotUnderstood(raw);
    if (!g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(v)"))) return false;
    GVariant* inner = nullptr;
    g_variant_get(reply.get(), "(v)", &inner);
    const VariantPointer value(inner);
    return g_variant_is_of_type(inner, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(inner);
  }

 private:
  struct Question {
    const char* program;
    const char* object;
    const char* interface;
    const char* method;
  };

  VariantPointer ask(const char* method, GVariant* arguments) {
    constexpr const char* bus = "org.freedesktop.DBus";
    return call({bus, "/org/freedesktop/DBus", bus, method}, arguments, nullptr);
  }

  VariantPointer call(const Question& question, GVariant* arguments, GError** error) {
    const VariantPointer kept(arguments ? g_variant_ref_sink(arguments) : nullptr);
    const auto result = loop_.await(deadline_, [&](auto* cancellable, auto done, gpointer slot) {
      g_dbus_connection_call(connection_.get(), question.program, question.object,
                             question.interface, question.method, kept.get(), nullptr,
                             G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable, done, slot);
    });
    return VariantPointer(g_dbus_connection_call_finish(connection_.get(), result.get(), error));
  }

  const Deadline deadline_ = std::chrono::steady_clock::now() + patience;
  GlibLoop loop_;
  GlibLoop::Served served_;
  ObjectPointer<GDBusConnection> connection_;
};

/// Who takes keys for programs inside of a compositor; nobody without a name.
void lookForShortcutService(DesktopFacts& facts, Bus& bus) {
  constexpr auto service = "org.kde.kglobalaccel";
  if (bus.has("org.kde.KWin") && bus.has(service)) facts.shortcutService = service;
  const bool isGnome = desktopName(processEnvironment).find("GNOME") != std::string::npos;
  facts.asksForShortcut = isGnome && bus.hasShortcutsOfGnome();
  if (facts.asksForShortcut) facts.shortcutService = "org.freedesktop.portal.GlobalShortcuts";
}

void lookAtBus(DesktopFacts& facts) {
  const auto address = sessionBusAddress(processEnvironment);
  if (!address) return;
  Bus bus(*address);
  facts.hasSessionBus = bus.answers();
  if (!facts.hasSessionBus) return;
  facts.isRunning = bus.has(applicationId::name);
  lookForShortcutService(facts, bus);
  constexpr auto portal = "org.freedesktop.portal.Desktop";
  facts.hasSettingsPortal = bus.has(portal) || bus.starts(portal);
  // Last: a tray that is silent takes all the time that is left.
  if (bus.showsItems()) facts.tray = DesktopFacts::Tray::items;
}

std::string windowManager(X11Connection& x11) {
  const auto check = x11.atom("_NET_SUPPORTING_WM_CHECK");
  const auto window = values32Property(x11, x11.root(), check);
  if (window.empty() || values32Property(x11, window.front(), check) != window) return {};
  return stringProperty(x11, window.front(), x11.atom("_NET_WM_NAME")).value_or("no name");
}

std::string dotted(unsigned major, unsigned minor) {
  return std::to_string(major) + "." + std::to_string(minor);
}

std::string xfixes(const X11Connection& x11) {
  const auto told = x11.reply(
      xcb_xfixes_query_version_reply,
      xcb_xfixes_query_version(x11.xcb(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION));
  return told ? "XFIXES " + dotted(told->major_version, told->minor_version) : "XFIXES";
}

std::string xtest(const X11Connection& x11) {
  const auto told =
      x11.reply(xcb_test_get_version_reply,
                xcb_test_get_version(x11.xcb(), XCB_TEST_MAJOR_VERSION, XCB_TEST_MINOR_VERSION));
  return told ? "XTEST " + dotted(told->major_version, told->minor_version) : "XTEST";
}

/// Inside of a compositor.
DesktopFacts::Shortcut shortcutOf(const DesktopFacts& facts) {
  using Shortcut = DesktopFacts::Shortcut;
  if (facts.shortcutService.empty()) return Shortcut::absent;
  return facts.isRunning ? Shortcut::held : Shortcut::offered;
}

void lookAtCompositor(DesktopFacts& facts, const WaylandConnection& compositor) {
  constexpr auto layers = "zwlr_layer_shell_v1";
  facts.hasWindowSystem = true;
  facts.hasCompositor = true;
  facts.layersProtocol = std::string(layers) + " " + std::to_string(compositor.version(layers));
  facts.clipboardProtocol =
      "the compositor's (" + DataControl::protocol(compositor).value_or("") + ")";
  facts.windowsProtocol = toplevelProtocol(compositor).value_or("");
  facts.wantsInstalledPrograms = wantsInstalledPrograms(compositor);
  if (!facts.windowsProtocol.empty()) {
    facts.keysProtocol = keyboardProtocol(compositor).value_or("");
    facts.canPressKeys = !facts.keysProtocol.empty();
  }
  facts.shortcut = shortcutOf(facts);
}

void lookAtWindows(DesktopFacts& facts, ShortcutKeys shortcut) {
  using Shortcut = DesktopFacts::Shortcut;
  const auto session = Session::find(processEnvironment);
  const bool isInside = session.windows == Session::Windows::xwayland;
  facts.isWayland = isInside || session.wayland;
  if (session.windows == Session::Windows::wayland)
    return lookAtCompositor(facts, *session.wayland);
  auto x11 = X11Connection::open();
  if (!x11 || !x11->extension(xcb_xfixes_id)) return;
  facts.hasWindowSystem = true;
  const auto dataControl = session.wayland ? DataControl::protocol(*session.wayland) : std::nullopt;
  facts.clipboardProtocol = dataControl ? "the compositor's (" + *dataControl + ")"
                                        : "X11 selections (" + xfixes(*x11) + ")";
  if (session.wayland) {
    facts.windowsProtocol = toplevelProtocol(*session.wayland).value_or("");
    facts.wantsInstalledPrograms = wantsInstalledPrograms(*session.wayland);
    if (!facts.windowsProtocol.empty()) {
      facts.compositorKeysProtocol = keyboardProtocol(*session.wayland).value_or("");
    }
  }
  facts.isClipboardBridged = isInside && !dataControl;
  facts.windowManager = windowManager(*x11);
  const auto compositor = x11->atom("_NET_WM_CM_S" + std::to_string(x11->screenNumber()));
  const auto owner =
      x11->reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x11->xcb(), compositor));
  facts.hasCompositor = owner && owner->owner != XCB_WINDOW_NONE;
  facts.canPressKeys = x11->extension(xcb_test_id) != nullptr;
  const bool takesWindows = TrayManager(*x11).facts().window != XCB_WINDOW_NONE;
  if (takesWindows && facts.tray == DesktopFacts::Tray::none) {
    facts.tray = DesktopFacts::Tray::windows;
  }
  if (facts.canPressKeys) facts.keysProtocol = xtest(*x11);
  if (isInside) {
    facts.shortcut = shortcutOf(facts);
    return;
  }
  facts.shortcutService.clear();
  X11KeyGrabber grabber(std::move(x11), [](HotKeyRef /*pressed*/) {});
  if (facts.isRunning) {
    facts.shortcut = Shortcut::held;
  } else if (grabber.isAvailable() && grabber.add(1, {shortcut.keyCode, shortcut.modifiers})) {
    facts.shortcut = Shortcut::free;
  }
}

}  // namespace

DesktopFacts surveyDesktop(const std::function<ShortcutKeys(const UserDefaults&)>& chosen) {
  DesktopFacts facts;
  UntouchedFiles files;
  const auto directories = XdgDirectories::fromEnvironment(processEnvironment);
  const JsonUserDefaults defaults(files, defaultsFile(directories));
  lookAtBus(facts);
  lookAtWindows(facts, chosen(defaults));
  if (facts.hasSessionBus) facts.keyring = keyringState(patience);
  facts.hasTextReader = files.isWithinReach(workerProgram(textWorker));
  const auto models = processEnvironment("TESSDATA_PREFIX").value_or(std::string());
  facts.textLanguages = installedModels(modelDirectories(models)).names;
  return facts;
}

}  // namespace vantorel
