// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/KeyringState.h"

#include <memory>

#include "platform/linux/keyring/KeyringCall.h"
#include "platform/linux/keyring/SecretServiceBus.h"

namespace vantorel {
namespace {

using Keyring = DesktopFacts::Keyring;

Keyring stateOf(KeyringService& service) {
  const auto collection = service.collectionNamed("default");
  if (!collection) return Keyring::absent;
  if (collection->empty()) return Keyring::noCollection;
  const auto locked = service.isLocked(*collection);
  if (!locked) return Keyring::absent;
  return *locked ? Keyring::locked : Keyring::unlocked;
}

}  // namespace

Keyring keyringState(std::chrono::seconds timeLimit) {
  const Deadline deadline = std::chrono::steady_clock::now() + timeLimit;
  KeyringCall<Keyring> call;
  GlibThread thread("keyring", [] {});
  thread.post([&] {
    SecretServiceBus service(thread, [](KeyringNews /*heard*/) {});
    service.begin(deadline);
    call.deliver(stateOf(service));
  });
  return call.wait(deadline).value_or(Keyring::absent);
}

}  // namespace vantorel
