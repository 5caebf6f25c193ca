// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <optional>

#include "platform/linux/keyring/KeyringBus.h"

namespace vantorel {

enum class PromptOutcome { agreed, refused, asking };

/// Shows the service's questions to the user. A question may stay open after the deadline; the
/// answer is then told later. On the keyring's thread.
class KeyringPrompts {
 public:
  /// `agreedLater` is called when the user agrees to a question after `perform` answered `asking`.
  KeyringPrompts(KeyringBus& bus, std::function<void()> agreedLater);
  ~KeyringPrompts();
  KeyringPrompts(const KeyringPrompts&) = delete;
  KeyringPrompts& operator=(const KeyringPrompts&) = delete;

  struct Answer {
    PromptOutcome outcome = PromptOutcome::refused;
    VariantPointer result;  // what was agreed to, by the kind of the question
  };
  /// Whether a question is open.
  [[nodiscard]] bool isAsking() const { return !prompts_.empty(); }
  [[nodiscard]] KeyringAnswer<Answer> perform(const ObjectPath& prompt);
  /// The service that asked is gone: nobody answers its questions any more. One that `perform`
  /// waits for is refused.
  void giveUp();

 private:
  struct Prompt {
    KeyringPrompts* owner = nullptr;
    ObjectPointer<GDBusConnection> connection;
    guint subscription = 0;
    bool awaited = true;
    bool completed = false;
    Answer answer;
  };

  static void completed(GDBusConnection* connection, const gchar* sender, const gchar* path,
                        const gchar* interface, const gchar* signal, GVariant* arguments,
                        gpointer prompt);
  void forget(const ObjectPath& prompt);

  KeyringBus& bus_;
  std::function<void()> agreedLater_;
  std::map<ObjectPath, Prompt> prompts_;
};

}  // namespace vantorel
