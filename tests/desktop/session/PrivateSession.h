// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "desktop/session/ChildProcess.h"

namespace vantorel {

/// Looks again and again until `condition` holds; the limit only bounds a failure. Answers whether
/// it held.
bool waitFor(const std::function<bool()>& condition,
             std::chrono::milliseconds limit = std::chrono::seconds(30));

/// A home, a runtime directory and a session bus of their own. This process's environment points
/// there while the object lives; the bus starts nothing but what `services` lists.
class PrivateSession {
 public:
  enum class Services { none, prompter };

  explicit PrivateSession(Services services = Services::none);
  ~PrivateSession();
  PrivateSession(const PrivateSession&) = delete;
  PrivateSession& operator=(const PrivateSession&) = delete;

  [[nodiscard]] const std::filesystem::path& home() const { return home_; }
  [[nodiscard]] ChildProcess& bus() { return bus_; }
  /// Whether somebody owns `name` on the bus.
  [[nodiscard]] static bool hasOwner(const std::string& name);
  /// A call with gdbus; its printed answer.
  static std::string call(const std::string& destination, const std::string& path,
                          const std::vector<std::string>& methodAndArguments);

 private:
  std::filesystem::path home_;
  ChildProcess bus_;
};

}  // namespace vantorel
