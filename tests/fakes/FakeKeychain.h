// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Keychain.h"

namespace vantorel {

/// A keychain in memory with both backends: unlocked, empty and obedient unless told otherwise.
class FakeKeychain : public Keychain {
 public:
  [[nodiscard]] KeychainResult copyMatching(const KeychainQuery& query) override;
  [[nodiscard]] OSStatus add(const KeychainQuery& query, const KeychainAttributes& attributes,
                             const SecretBytes& data) override;
  /// Answers at once, unless `answersUpdatesLate`.
  [[nodiscard]] std::unique_ptr<KeychainUpdate> beginUpdate(const KeychainQuery& query,
                                                            const SecretBytes& data,
                                                            std::function<void()> ended) override;

  // The test's side.

  enum class Backend { dataProtection, login };
  enum class Operation { copyMatching, add, update };

  struct Call {
    Operation operation;
    Backend backend;
    KeychainQuery query;
    KeychainAttributes attributes;  // of an added item
  };

  /// Every call on that backend answers `status` and does nothing, until `recover`.
  void fail(Backend backend, OSStatus status);
  void recover(Backend backend);
  /// The next such call that has no earlier script answers `status` and does nothing; a success
  /// scripted for reading comes without data.
  void failOnce(Operation operation, Backend backend, OSStatus status);
  /// Runs before each `add`, as another process that steps in between.
  std::function<void()> beforeAdd;

  /// An update with that answer.
  [[nodiscard]] static std::unique_ptr<KeychainUpdate> endedUpdate(OSStatus status);
  bool answersUpdatesLate = false;
  /// Updates that wait for their answer.
  [[nodiscard]] int waitingUpdates() const;
  /// Makes the changes that were not given up; those who wait are told of it by `tellOfUpdates`.
  void makeUpdates();
  void tellOfUpdates();

  /// Stores bytes under the name that the program uses for its key.
  void setKey(Backend backend, ByteView bytes);
  [[nodiscard]] std::optional<Bytes> key(Backend backend) const;
  [[nodiscard]] std::size_t itemCount() const { return items_.size(); }
  [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }

 private:
  using Name = std::tuple<Backend, std::string, std::string>;
  static Name nameOf(const KeychainQuery& query);
  std::optional<OSStatus> scripted(Operation operation, const KeychainQuery& query,
                                   const KeychainAttributes& attributes);

  struct Change;
  class Update;
  [[nodiscard]] OSStatus changed(const KeychainQuery& query, ByteView data);

  std::vector<std::shared_ptr<Change>> changes_;
  std::map<Name, Bytes> items_;
  std::map<Backend, OSStatus> failing_;
  std::map<std::pair<Operation, Backend>, std::deque<OSStatus>> once_;
  std::vector<Call> calls_;
};

}  // namespace vantorel
