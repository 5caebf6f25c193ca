// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <csignal>
#include <cstddef>

namespace vantorel {

/// While this lives, the signals by which a user or a log-out ends a program are ignored, and so is
/// that of a file beyond its limit, which then fails to be written: what is under way is soon done,
/// and would leave a half of itself behind.
class Uninterrupted {
 public:
  Uninterrupted() {
    struct sigaction ignored {};
    ignored.sa_handler = SIG_IGN;
    for (std::size_t i = 0; i < signals.size(); ++i) {
      (void)::sigaction(signals.at(i), &ignored, &before_.at(i));
    }
  }
  ~Uninterrupted() {
    for (std::size_t i = 0; i < signals.size(); ++i) {
      (void)::sigaction(signals.at(i), &before_.at(i), nullptr);
    }
  }
  Uninterrupted(const Uninterrupted&) = delete;
  Uninterrupted& operator=(const Uninterrupted&) = delete;

 private:
  static constexpr std::array signals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXFSZ};
  std::array<struct sigaction, signals.size()> before_{};
};

}  // namespace vantorel
