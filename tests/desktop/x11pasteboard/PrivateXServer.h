// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <string>

namespace vantorel {

/// An X server of the test's own, on a display number that was free. Ends with this object.
class PrivateXServer {
 public:
  PrivateXServer();
  ~PrivateXServer();
  PrivateXServer(const PrivateXServer&) = delete;
  PrivateXServer& operator=(const PrivateXServer&) = delete;

  /// As in ":7".
  [[nodiscard]] const std::string& display() const { return display_; }
  /// Ends it at once, as a crash does.
  void kill();

 private:
  pid_t process_ = -1;
  std::string display_;
};

}  // namespace vantorel
