// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/KeyringPrompts.h"

#include <utility>

namespace vantorel {
namespace {

constexpr const char* promptInterface = "org.freedesktop.Secret.Prompt";

}  // namespace

KeyringPrompts::KeyringPrompts(KeyringBus& bus, std::function<void()> agreedLater)
    : bus_(bus), agreedLater_(std::move(agreedLater)) {}

KeyringPrompts::~KeyringPrompts() {
  while (!prompts_.empty()) forget(prompts_.begin()->first);
}

void KeyringPrompts::forget(const ObjectPath& path) {
  auto node = prompts_.extract(path);
  if (node.empty()) return;
  g_dbus_connection_signal_unsubscribe(node.mapped().connection.get(), node.mapped().subscription);
}

KeyringAnswer<KeyringPrompts::Answer> KeyringPrompts::perform(const ObjectPath& path) {
  GDBusConnection* connection = bus_.connection();
  if (!connection) return KeyringFailure::noAnswer;
  forget(path);
  Prompt& prompt = prompts_[path];
  prompt.owner = this;
  prompt.connection.reset(G_DBUS_CONNECTION(g_object_ref(connection)));
  prompt.subscription = g_dbus_connection_signal_subscribe(
      connection, KeyringBus::serviceName, promptInterface, "Completed", path.c_str(), nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE, &KeyringPrompts::completed, &prompt, nullptr);

  // There is no window yet that the question could belong to.
  const auto asked = bus_.call(path, promptInterface, "Prompt", g_variant_new("(s)", ""));
  if (!asked) {
    forget(path);
    return asked.failure();
  }
  const bool answered =
      bus_.thread().runUntil(bus_.deadline(), [&prompt] { return prompt.completed; });
  if (!answered) {
    prompt.awaited = false;
    return Answer{.outcome = PromptOutcome::asking, .result = nullptr};
  }
  Answer answer = std::move(prompt.answer);
  forget(path);
  return answer;
}

void KeyringPrompts::giveUp() {
  for (auto& [path, prompt] : prompts_) prompt.completed = true;
  std::erase_if(prompts_, [](const auto& entry) {
    const Prompt& prompt = entry.second;
    if (!prompt.awaited) {
      g_dbus_connection_signal_unsubscribe(prompt.connection.get(), prompt.subscription);
    }
    return !prompt.awaited;
  });
}

void KeyringPrompts::completed(GDBusConnection* /*connection*/, const gchar* /*sender*/,
                               const gchar* path, const gchar* /*interface*/,
                               const gchar* /*signal*/, GVariant* arguments, gpointer slot) {
  if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(bv)")) == FALSE) return;
  auto& prompt = *static_cast<Prompt*>(slot);
  gboolean dismissed = TRUE;
  GVariant* result = nullptr;
  g_variant_get(arguments, "(bv)", &dismissed, &result);
  prompt.answer.result.reset(result);
  prompt.answer.outcome = dismissed != FALSE ? PromptOutcome::refused : PromptOutcome::agreed;
  prompt.completed = true;
  if (prompt.awaited) return;
  KeyringPrompts& owner = *prompt.owner;
  const bool agreed = prompt.answer.outcome == PromptOutcome::agreed;
  owner.forget(std::string(path));
  if (agreed) owner.agreedLater_();
}

}  // namespace vantorel
