// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace vantorel {

/// Sealing or opening failed: no random bytes to be had, too short for nonce and tag, or not
/// authentic under this key.
class CipherError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace vantorel
