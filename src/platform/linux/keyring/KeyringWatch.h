// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "base/Lifetime.h"
#include "platform/linux/keyring/KeyringBus.h"

namespace vantorel {

/// changed: a lock, what the alias of the default collection names, or that the service answers
/// at all. arrived: the service, a collection, or what the user agreed to late; what was refused
/// before may be accepted now.
enum class KeyringNews { changed, arrived };

/// Hears of all that may let a lookup end otherwise than the last one did, whatever kept that one
/// from its answer: no service, no default collection, a lock, silence. It asks for no password and
/// starts no service. On the keyring's thread.
class KeyringWatch {
 public:
  /// `replaced` is called before that news of another service than the one that was there.
  KeyringWatch(KeyringBus& bus, std::function<void(KeyringNews)> heard,
               std::function<void()> replaced);
  ~KeyringWatch();
  KeyringWatch(const KeyringWatch&) = delete;
  KeyringWatch& operator=(const KeyringWatch&) = delete;

  /// Listens from now on, also on a connection that was made anew since. Without one it hears of
  /// nothing.
  void listen();
  [[nodiscard]] bool isListening() const { return connection_ != nullptr; }
  /// Asks the service once more which its default collection is, and waits for that without a
  /// limit: whenever it names one, that is news. A service that has none is asked again every 10
  /// seconds, since it has no signal for a collection that becomes the default one.
  void ask();
  void end();

 private:
  struct SourceEnd {
    void operator()(GSource* source) const {
      g_source_destroy(source);
      g_source_unref(source);
    }
  };

  void hear(const char* sender, const char* interface, const char* signal, const char* argument,
            GDBusSignalCallback callback);
  void answered(GVariant* reply);
  void askLater();

  KeyringBus& bus_;
  std::function<void(KeyringNews)> heard_;
  std::function<void()> replaced_;
  ObjectPointer<GDBusConnection> connection_;
  std::vector<guint> subscriptions_;
  ObjectPointer<GCancellable> question_;  // while it waits for its answer
  std::unique_ptr<GSource, SourceEnd> later_;
  Lifetime life_;
};

}  // namespace vantorel
