// SPDX-License-Identifier: MIT
#include "platform/linux/portal/ShortcutSession.h"

#include <string_view>
#include <utility>

namespace vantorel {
namespace {

constexpr const char* shortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* action = "toggle";
constexpr const char* actionName = "Open or close the history";

/// What the list calls the keys of the action, perhaps nothing; absent when it lacks the action.
std::optional<std::string> keysOf(GVariant* shortcuts) {
  for (gsize i = 0; i < g_variant_n_children(shortcuts); ++i) {
    const VariantPointer each(g_variant_get_child_value(shortcuts, i));
    const gchar* id = nullptr;
    GVariant* raw = nullptr;
    g_variant_get(each.get(), "(&s@a{sv})", &id, &raw);
    const VariantPointer facts(raw);
    if (std::string_view(id) != action) continue;
    const gchar* keys = "";
    g_variant_lookup(facts.get(), "trigger_description", "&s", &keys);
    return keys;
  }
  return std::nullopt;
}

}  // namespace

ShortcutSession::ShortcutSession(PortalBus& bus, ShortcutNews news)
    : bus_(bus), news_(std::move(news)), requests_(bus) {
  bus_.onNews([this] { came(); }, [this] { left(); });
  using Object = const std::string&;
  bus_.onSignal(shortcutsInterface, "Activated",
                [this](Object, GVariant* arguments) { activated(arguments); });
  bus_.onSignal(shortcutsInterface, "ShortcutsChanged",
                [this](Object, GVariant* arguments) { changed(arguments); });
  bus_.onSignal(sessionInterface, "Closed", [this](Object object, GVariant*) { closed(object); });
}

void ShortcutSession::want(const ShortcutWish& wish) {
  giveBack();
  wish_ = wish;
  endings_ = 0;
  begin();
}

void ShortcutSession::giveBack() {
  close();
  wish_.reset();
  state_ = State::idle;
}

void ShortcutSession::begin() {
  if (bus_.isRefused()) return lose();
  if (!bus_.isThere()) {
    state_ = State::starting;
    return bus_.start(life_.guard([this](GVariant* reply) {
      if (!reply) lose();  // else it comes
    }));
  }
  state_ = State::asking;
  const auto answered = [this](GVariant* reply) {
    if (!reply) return lose();
    if (!wish_->mayAsk) return refuse();
    create();
  };
  bus_.ask("org.freedesktop.DBus.Properties", "Get",
           g_variant_new("(ss)", shortcutsInterface, "version"),
           life_.guard([this, answered](GVariant* version) {
             if (!version) return answered(nullptr);
             bus_.askGnome("org.freedesktop.impl.portal.GlobalShortcuts", life_.guard(answered));
           }));
}

void ShortcutSession::came() {
  if (state_ == State::starting || state_ == State::lost) begin();
}

void ShortcutSession::left() {
  // With what its sessions were.
  session_.clear();
  requests_.giveUp();
  if (state_ == State::held) state_ = State::lost;
  if (state_ == State::asking || state_ == State::starting) lose();
}

void ShortcutSession::create() {
  const auto arguments = [this](const std::string& token) {
    const auto name = "vantorel" + std::to_string(++sessions_);
    return g_variant_new("(@a{sv})",
                         portalOptions({{"handle_token", token}, {"session_handle_token", name}}));
  };
  requests_.make(shortcutsInterface, "CreateSession", arguments, [this](GVariant* results) {
    const gchar* session = nullptr;
    // Some portals say it as text, some as what it is.
    const bool isNamed = results && (g_variant_lookup(results, "session_handle", "&s", &session) ||
                                     g_variant_lookup(results, "session_handle", "&o", &session));
    if (!isNamed || !g_variant_is_object_path(session)) return lose();
    session_ = session;
    bind();
  });
}

void ShortcutSession::bind() {
  const auto arguments = [this](const std::string& token) {
    std::map<std::string, std::string> facts{{"description", actionName}};
    if (!wish_->trigger.empty()) facts.emplace("preferred_trigger", wish_->trigger);
    GVariantBuilder shortcuts;
    g_variant_builder_init(&shortcuts, G_VARIANT_TYPE("a(sa{sv})"));
    g_variant_builder_add(&shortcuts, "(s@a{sv})", action, portalOptions(facts));
    return g_variant_new("(oa(sa{sv})s@a{sv})", session_.c_str(), &shortcuts, "",
                         portalOptions({{"handle_token", token}}));
  };
  requests_.make(shortcutsInterface, "BindShortcuts", arguments,
                 [this](GVariant* results) { bound(results); });
}

/// The code of the response does not tell yes from no: GNOME's is the same for both.
void ShortcutSession::bound(GVariant* results) {
  if (!results) return lose();
  const VariantPointer shortcuts(
      g_variant_lookup_value(results, "shortcuts", G_VARIANT_TYPE("a(sa{sv})")));
  const auto keys = shortcuts ? keysOf(shortcuts.get()) : std::nullopt;
  if (!keys) return refuse();
  state_ = State::held;
  hold(*keys);
}

bool ShortcutSession::isOurs(GVariant* arguments, const char* type) const {
  if (state_ != State::held || !g_variant_is_of_type(arguments, G_VARIANT_TYPE(type))) return false;
  const gchar* session = nullptr;
  g_variant_get_child(arguments, 0, "&o", &session);
  return session_ == session;
}

void ShortcutSession::activated(GVariant* arguments) {
  if (!isOurs(arguments, "(osta{sv})")) return;
  const gchar* pressed = nullptr;
  g_variant_get_child(arguments, 1, "&s", &pressed);
  if (std::string_view(pressed) != action) return;
  endings_ = 0;
  news_.pressed(wish_->reference);
}

/// In the desktop's own settings the user gave the action other keys, or none any more.
void ShortcutSession::changed(GVariant* arguments) {
  if (!isOurs(arguments, "(oa(sa{sv}))")) return;
  const auto keys = keysOf(VariantPointer(g_variant_get_child_value(arguments, 1)).get());
  if (!keys) return refuse();
  hold(*keys);
}

void ShortcutSession::closed(const std::string& object) {
  if (session_.empty() || object != session_) return;
  session_.clear();
  if (state_ != State::held || ++endings_ > endingsBorne) return lose();
  begin();
}

/// An action without keys opens nothing, until the user gives it some in the desktop's settings.
void ShortcutSession::hold(const std::string& keys) {
  const auto answer = keys.empty() ? HotKeyAnswer::absent : HotKeyAnswer::held;
  news_.answered(wish_->reference, answer, keys);
}

void ShortcutSession::lose() {
  close();
  state_ = State::lost;
  news_.answered(wish_->reference, HotKeyAnswer::absent, {});
}

void ShortcutSession::refuse() {
  const HotKeyRef reference = wish_->reference;
  giveBack();
  news_.answered(reference, HotKeyAnswer::refused, {});
}

/// Not awaited by anybody: the process may be about to end.
void ShortcutSession::close() {
  life_.end();
  requests_.giveUp();
  if (!session_.empty() && bus_.isThere()) bus_.send(session_, sessionInterface, "Close");
  session_.clear();
}

}  // namespace vantorel
