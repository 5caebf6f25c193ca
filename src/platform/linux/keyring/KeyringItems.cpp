// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/KeyringItems.h"

#include <algorithm>
#include <utility>

namespace vantorel {
namespace {

constexpr const char* defaultAlias = "default";
constexpr const char* sessionAlias = "session";

OSStatus statusOf(KeyringFailure failure) {
  return failure == KeyringFailure::locked ? keychainStatus::userCanceled
                                           : keychainStatus::notAvailable;
}

/// An object of the service, or why there is none.
struct Located {
  OSStatus status = keychainStatus::success;
  ObjectPath path;
};

OSStatus lockStatus(KeyringService& service, const ObjectPath& collection) {
  const auto locked = service.isLocked(collection);
  if (!locked) return statusOf(locked.failure());
  return *locked ? keychainStatus::userCanceled : keychainStatus::success;
}

/// Where there is no default collection: a new one, if the user agrees in time.
Located makeCollection(KeyringService& service) {
  const auto outcome = service.makeDefaultCollection();
  if (!outcome) return {statusOf(outcome.failure()), {}};
  if (*outcome == UnlockOutcome::asking) return {keychainStatus::userCanceled, {}};
  if (*outcome == UnlockOutcome::refused) return {keychainStatus::notAvailable, {}};
  const auto made = service.collectionNamed(defaultAlias);
  if (!made) return {statusOf(made.failure()), {}};
  if (made->empty()) return {keychainStatus::notAvailable, {}};
  return {lockStatus(service, *made), *made};
}

/// The default collection, unlocked.
Located openCollection(KeyringService& service) {
  auto collection = service.collectionNamed(defaultAlias);
  if (!collection) return {statusOf(collection.failure()), {}};
  if (collection->empty()) return makeCollection(service);
  const OSStatus before = lockStatus(service, *collection);
  if (before == keychainStatus::success) return {before, *collection};
  if (before != keychainStatus::userCanceled) return {before, {}};
  const auto outcome = service.unlock(*collection);
  if (!outcome) return {statusOf(outcome.failure()), {}};
  if (*outcome != UnlockOutcome::unlocked) return {keychainStatus::userCanceled, {}};
  return {lockStatus(service, *collection), *collection};
}

/// What an empty answer of `collection` means.
OSStatus meaningOfNothing(KeyringService& service, const ObjectPath& collection) {
  const auto current = service.collectionNamed(defaultAlias);
  if (!current || *current != collection) return keychainStatus::notAvailable;
  const OSStatus status = lockStatus(service, collection);
  return status == keychainStatus::success ? keychainStatus::itemNotFound : status;
}

Located findItem(KeyringService& service, const ObjectPath& collection,
                 const KeychainQuery& query) {
  const auto items = service.search(collection, query);
  if (!items) return {statusOf(items.failure()), {}};
  if (items->empty()) return {meaningOfNothing(service, collection), {}};
  return {keychainStatus::success, items->front()};
}

Located locate(KeyringService& service, const KeychainQuery& query) {
  Located collection = openCollection(service);
  if (collection.status != keychainStatus::success) return collection;
  return findItem(service, collection.path, query);
}

/// Some services lock single items within an unlocked collection.
KeyringAnswer<SecretBytes> readSecret(KeyringService& service, const ObjectPath& item) {
  auto secret = service.secret(item);
  if (secret || secret.failure() != KeyringFailure::locked) return secret;
  const auto outcome = service.unlock(item);
  if (!outcome) return outcome.failure();
  if (*outcome != UnlockOutcome::unlocked) return KeyringFailure::locked;
  return service.secret(item);
}

}  // namespace

KeychainResult findKeyringItem(KeyringService& service, const KeychainQuery& query) {
  const Located item = locate(service, query);
  if (item.status != keychainStatus::success) return {item.status, std::nullopt};
  auto secret = readSecret(service, item.path);
  if (!secret) return {statusOf(secret.failure()), std::nullopt};
  return {keychainStatus::success, std::move(*secret)};
}

OSStatus addKeyringItem(KeyringService& service, const KeychainQuery& query,
                        const std::string& label, const SecretBytes& secret) {
  const Located collection = openCollection(service);
  if (collection.status != keychainStatus::success) return collection.status;
  const auto passing = service.collectionNamed(sessionAlias);
  if (!passing || *passing == collection.path) return keychainStatus::notAvailable;

  const Located present = findItem(service, collection.path, query);
  if (present.status == keychainStatus::success) return keychainStatus::duplicateItem;
  if (present.status != keychainStatus::itemNotFound) return present.status;

  const auto created = service.create(collection.path, query, label, secret);
  if (!created) return statusOf(created.failure());

  // The service cannot refuse a second item by itself. Whoever looks after adding and sees another
  // item withdraws; so an item that was alone when its maker looked is never withdrawn, and none
  // that comes later stays.
  const auto items = service.search(collection.path, query);
  if (!items) return statusOf(items.failure());
  if (std::find(items->begin(), items->end(), *created) == items->end()) {
    return keychainStatus::notAvailable;
  }
  if (items->size() == 1) return keychainStatus::success;
  static_cast<void>(service.remove(*created));
  return keychainStatus::duplicateItem;
}

OSStatus updateKeyringItem(KeyringService& service, const KeychainQuery& query,
                           const SecretBytes& secret, const std::function<bool()>& accepted) {
  const Located item = locate(service, query);
  if (item.status != keychainStatus::success) return item.status;
  const auto previous = readSecret(service, item.path);
  if (!previous) return statusOf(previous.failure());

  const auto replaced = service.replaceSecret(item.path, secret);
  if (replaced && accepted()) return keychainStatus::success;
  if (!replaced && replaced.failure() == KeyringFailure::locked) {
    return keychainStatus::userCanceled;
  }
  service.sendSecret(item.path, *previous);
  return keychainStatus::notAvailable;
}

}  // namespace vantorel
