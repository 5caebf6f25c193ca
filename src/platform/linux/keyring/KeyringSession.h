// SPDX-License-Identifier: MIT
#pragma once

#define SECRET_API_SUBJECT_TO_CHANGE
#include <libsecret/secret.h>

#include "platform/linux/keyring/KeyringBus.h"

namespace vantorel {

/// A session with the service under which secrets travel encrypted over the bus. It lasts as long
/// as the service's process; make one for each piece of work. On the keyring's thread.
class KeyringSession {
 public:
  [[nodiscard]] static KeyringAnswer<KeyringSession> open(KeyringBus& bus);

  /// The path by which the service knows this session.
  [[nodiscard]] const char* path() const;
  /// The structure that carries `secret` to the service; a floating reference.
  [[nodiscard]] GVariant* encode(const SecretBytes& secret) const;
  /// The secret in a structure from the service, whatever its length and declared type.
  [[nodiscard]] KeyringAnswer<SecretBytes> decode(GVariant* structure) const;

 private:
  explicit KeyringSession(ObjectPointer<SecretService> service) : service_(std::move(service)) {}

  ObjectPointer<SecretService> service_;
};

}  // namespace vantorel
