// SPDX-License-Identifier: MIT
#include "unit/platform/linux/keyring/ScriptedKeyring.h"

#include <algorithm>

namespace vantorel {

bool ScriptedKeyring::silent(Step step) {
  steps.push_back(step);
  const auto times = static_cast<int>(std::count(steps.begin(), steps.end(), step));
  if (before) before(step, times);
  const auto found = silentAt.find(step);
  return found != silentAt.end() && found->second == times;
}

KeyringAnswer<ObjectPath> ScriptedKeyring::collectionNamed(const std::string& alias) {
  if (silent(Step::collection)) return KeyringFailure::noAnswer;
  const auto found = aliases.find(alias);
  return found == aliases.end() ? ObjectPath() : found->second;
}

KeyringAnswer<bool> ScriptedKeyring::isLocked(const ObjectPath& collection) {
  if (silent(Step::isLocked)) return KeyringFailure::noAnswer;
  return locked.contains(collection);
}

KeyringAnswer<UnlockOutcome> ScriptedKeyring::unlock(const ObjectPath& object) {
  if (silent(Step::unlock)) return KeyringFailure::noAnswer;
  if (outcome == UnlockOutcome::unlocked) locked.erase(object);
  return outcome;
}

KeyringAnswer<UnlockOutcome> ScriptedKeyring::makeDefaultCollection() {
  if (making == UnlockOutcome::unlocked) aliases["default"] = "/made";
  return making;
}

KeyringAnswer<std::vector<ObjectPath>> ScriptedKeyring::search(const ObjectPath& collection,
                                                               const KeychainQuery& query) {
  if (silent(Step::search)) return KeyringFailure::noAnswer;
  std::vector<ObjectPath> found;
  if (locked.contains(collection)) return found;  // as real services do
  for (const auto& [path, item] : items) {
    if (item.service == query.service && item.account == query.account) found.push_back(path);
  }
  return found;
}

KeyringAnswer<SecretBytes> ScriptedKeyring::secret(const ObjectPath& item) {
  if (silent(Step::secret)) return KeyringFailure::noAnswer;
  if (locked.contains(item) || locked.contains("/login")) return KeyringFailure::locked;
  if (!items.contains(item)) return KeyringFailure::noAnswer;
  return SecretBytes(bytesOf(items[item].secret));
}

KeyringAnswer<ObjectPath> ScriptedKeyring::create(const ObjectPath& collection,
                                                  const KeychainQuery& query,
                                                  const std::string& label,
                                                  const SecretBytes& secret) {
  const bool noAnswer = silent(Step::create);
  if (locked.contains(collection)) return KeyringFailure::locked;
  const ObjectPath path = collection + "/own-" + std::to_string(++created);
  items[path] = {query.service, query.account, label, std::string(textOf(secret.view()))};
  if (noAnswer) return KeyringFailure::noAnswer;  // done all the same
  return path;
}

KeyringAnswer<Done> ScriptedKeyring::replaceSecret(const ObjectPath& item,
                                                   const SecretBytes& secret) {
  const bool noAnswer = silent(Step::replace);
  if (locked.contains("/login")) return KeyringFailure::locked;
  items[item].secret = std::string(textOf(secret.view()));
  if (noAnswer) return KeyringFailure::noAnswer;  // done all the same
  return Done{};
}

void ScriptedKeyring::sendSecret(const ObjectPath& item, const SecretBytes& secret) {
  items[item].secret = std::string(textOf(secret.view()));
}

KeyringAnswer<Done> ScriptedKeyring::remove(const ObjectPath& item) {
  if (silent(Step::remove)) return KeyringFailure::noAnswer;
  items.erase(item);
  return Done{};
}

}  // namespace vantorel
