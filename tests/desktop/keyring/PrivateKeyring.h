// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "desktop/session/PrivateSession.h"

namespace vantorel {

/// The real keyring daemon in a private session, and what other programs see of it.
class PrivateKeyring {
 public:
  /// unlocked: with a new login collection, or the one that is there. locked: that collection, not
  /// unlocked. empty: without any collection that could be the default one.
  enum class State { unlocked, locked, empty };

  explicit PrivateKeyring(State state);
  ~PrivateKeyring();

  static constexpr const char* password = "the private keyring";

  void lock();
  void suspend();
  void resume();
  void end();

  [[nodiscard]] static bool isLocked();
  /// Items with these attributes, in locked collections too.
  [[nodiscard]] static int itemCount(const std::string& service, const std::string& account);
  /// What the command-line client finds; empty when it finds nothing.
  [[nodiscard]] static std::string lookUp(const std::string& service, const std::string& account);
  static void store(const std::string& service, const std::string& account,
                    const std::string& secret);

 private:
  ChildProcess daemon_;
};

}  // namespace vantorel
