// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Keychain.h"

namespace vantorel {

/// The login keychain of a Linux desktop: the default collection of the user's Secret Service. The
/// data-protection keychain does not exist here and answers `missingEntitlement` at once.
///
/// The service is asked on a thread of this object's own. A call that it does not answer within
/// `timeLimit` is given up: its late answer is dropped, and an update that was given up is taken
/// back, also when this ends first. The user is asked to unlock once in this object's life, and
/// once more for each `letAsk`.
///
/// To start without waiting: construct this first thing in the program, call `prepare` with the
/// query of the history's key, make the toolkit ready, enter the event loop, and create what reads
/// the key from within `ready`. Then no window waits for the keyring or for the user's password.
/// `dispatch` outlives this.
class SecretServiceKeychain : public Keychain {
 public:
  static constexpr std::chrono::seconds timeLimit{5};

  explicit SecretServiceKeychain(Dispatch& dispatch);
  ~SecretServiceKeychain() override;

  /// Called on the main queue when a key could be had although the last `copyMatching`, prepared
  /// one or `add` could not have it: the keyring was unlocked, its service came or answers again, a
  /// default collection was made; or the item is there that was not and that nobody added here. A
  /// service that came and fails is looked at again, a few times. The program can then `prepare`
  /// again and start over with its history. Once for each time that it could not be had.
  void onAvailable(std::function<void()> handler);

  /// `prepare` is called on the keyring's thread before any secret is read, and before a lookup
  /// answers that there is none, on which the caller makes one. Set before the first operation.
  void onSecretAhead(std::function<void()> prepare);

  /// The user wants to be asked, and is, by whatever next needs the keyring: for its password once
  /// more, or for a new keyring where the service has no default collection. Never asked for
  /// without it, since a question for a new keyring that comes by itself, at log-in, is one that
  /// nobody expects. Nothing happens while a question is open.
  void letAsk();

  /// Begins to look up these queries and returns at once. When the answers are known, or after
  /// `timeLimit`, `ready` is called on the main queue; the first `copyMatching` for each query then
  /// answers with what was found, without asking again. While the user is still being asked for a
  /// password at that time, that is `userCanceled`. Main thread.
  void prepare(std::vector<KeychainQuery> queries, std::function<void()> ready);

  [[nodiscard]] KeychainResult copyMatching(const KeychainQuery& query) override;
  [[nodiscard]] OSStatus add(const KeychainQuery& query, const KeychainAttributes& attributes,
                             const SecretBytes& data) override;
  [[nodiscard]] std::unique_ptr<KeychainUpdate> beginUpdate(const KeychainQuery& query,
                                                            const SecretBytes& data,
                                                            std::function<void()> ended) override;

 private:
  class Update;
  class Worker;
  struct Prepared;

  [[nodiscard]] std::optional<KeychainResult> takePrepared(const KeychainQuery& query);

  Dispatch& dispatch_;
  std::function<void()> onAvailable_;
  std::vector<Prepared> prepared_;
  std::unique_ptr<Worker> worker_;
  std::unique_ptr<Timer> retry_;
  Lifetime life_;
};

}  // namespace vantorel
