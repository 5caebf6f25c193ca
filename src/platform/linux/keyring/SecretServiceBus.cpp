// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/SecretServiceBus.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/linux/keyring/KeyringSession.h"

namespace vantorel {
namespace {

constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
constexpr const char* itemInterface = "org.freedesktop.Secret.Item";
constexpr const char* noObject = "/";

/// Marks the item as an ordinary password for the programs that list them.
constexpr const char* schemaName = "org.freedesktop.Secret.Generic";

bool hasType(const VariantPointer& variant, const char* type) {
  return g_variant_is_of_type(variant.get(), G_VARIANT_TYPE(type)) != FALSE;
}

ObjectPath pathAt(const VariantPointer& tuple, gsize index) {
  const VariantPointer child(g_variant_get_child_value(tuple.get(), index));
  return g_variant_get_string(child.get(), nullptr);
}

std::vector<ObjectPath> pathsAt(const VariantPointer& tuple, gsize index) {
  const VariantPointer array(g_variant_get_child_value(tuple.get(), index));
  std::vector<ObjectPath> paths;
  const gsize count = g_variant_n_children(array.get());
  for (gsize i = 0; i < count; ++i) paths.push_back(pathAt(array, i));
  return paths;
}

GVariant* attributesOf(const KeychainQuery& query, const char* schema) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
  g_variant_builder_add(&builder, "{ss}", "service", query.service.c_str());
  g_variant_builder_add(&builder, "{ss}", "account", query.account.c_str());
  if (schema) g_variant_builder_add(&builder, "{ss}", "xdg:schema", schema);
  return g_variant_builder_end(&builder);
}

GVariant* itemProperties(const KeychainQuery& query, const std::string& label) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&builder, "{sv}", "org.freedesktop.Secret.Item.Label",
                        g_variant_new_string(label.c_str()));
  g_variant_builder_add(&builder, "{sv}", "org.freedesktop.Secret.Item.Attributes",
                        attributesOf(query, schemaName));
  return g_variant_builder_end(&builder);
}

/// Under the name that other programs give it.
GVariant* collectionProperties() {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&builder, "{sv}", "org.freedesktop.Secret.Collection.Label",
                        g_variant_new_string("Default keyring"));
  return g_variant_builder_end(&builder);
}

GVariant* tupleOf(GVariant* value) { return g_variant_new_tuple(&value, 1); }

}  // namespace

SecretServiceBus::SecretServiceBus(GlibThread& thread, std::function<void(KeyringNews)> heard,
                                   std::function<void()> secretAhead)
    : bus_(thread),
      secretAhead_(std::move(secretAhead)),
      // What was asked stays asked: a service that comes back is nobody's wish to be asked again.
      watch_(bus_, heard, [this] { prompts_.giveUp(); }),
      prompts_(bus_, [heard = std::move(heard)] { heard(KeyringNews::arrived); }) {}

SecretServiceBus::~SecretServiceBus() = default;

void SecretServiceBus::begin(Deadline deadline) {
  session_.reset();
  mayMakeCollection_ = std::exchange(isLet_, false);
  bus_.setDeadline(deadline);
}

KeyringSession* SecretServiceBus::session() {
  if (session_) return session_.get();
  auto opened = KeyringSession::open(bus_);
  if (!opened) return nullptr;
  session_ = std::make_unique<KeyringSession>(std::move(*opened));
  return session_.get();
}

KeyringAnswer<ObjectPath> SecretServiceBus::collectionNamed(const std::string& alias) {
  const auto reply = bus_.call(KeyringBus::servicePath, serviceInterface, "ReadAlias",
                               g_variant_new("(s)", alias.c_str()));
  if (!reply) return reply.failure();
  if (!hasType(*reply, "(o)")) return KeyringFailure::noAnswer;
  ObjectPath path = pathAt(*reply, 0);
  if (path == noObject) path.clear();
  return path;
}

KeyringAnswer<bool> SecretServiceBus::isLocked(const ObjectPath& collection) {
  const auto locked = bus_.property(collection, collectionInterface, "Locked", "b");
  if (!locked) return locked.failure();
  return g_variant_get_boolean(locked->get()) != FALSE;
}

KeyringAnswer<UnlockOutcome> SecretServiceBus::unlock(const ObjectPath& object) {
  watch_.listen();
  // Not even requested a second time: gnome-keyring 42 ends with a failed assertion when another
  // unlocking is requested and dropped while a question is open.
  if (asked_.contains(object)) return UnlockOutcome::refused;
  const char* path = object.c_str();
  const auto reply = bus_.call(KeyringBus::servicePath, serviceInterface, "Unlock",
                               tupleOf(g_variant_new_objv(&path, 1)));
  if (!reply) return reply.failure();
  if (!hasType(*reply, "(aoo)")) return KeyringFailure::noAnswer;
  const auto unlocked = pathsAt(*reply, 0);
  if (std::find(unlocked.begin(), unlocked.end(), object) != unlocked.end()) {
    return UnlockOutcome::unlocked;
  }
  const ObjectPath prompt = pathAt(*reply, 1);
  if (prompt == noObject) return UnlockOutcome::refused;
  asked_.insert(object);
  return ask(prompt);
}

void SecretServiceBus::letAsk() {
  if (prompts_.isAsking()) return;  // see `unlock`
  asked_.clear();
  isLet_ = true;
}

KeyringAnswer<UnlockOutcome> SecretServiceBus::makeDefaultCollection() {
  if (!std::exchange(mayMakeCollection_, false)) return UnlockOutcome::refused;
  watch_.listen();
  const auto reply = bus_.call(KeyringBus::servicePath, serviceInterface, "CreateCollection",
                               g_variant_new("(@a{sv}s)", collectionProperties(), "default"));
  if (!reply) return reply.failure();
  if (!hasType(*reply, "(oo)")) return KeyringFailure::noAnswer;
  if (pathAt(*reply, 0) != noObject) return UnlockOutcome::unlocked;
  const ObjectPath prompt = pathAt(*reply, 1);
  return prompt == noObject ? UnlockOutcome::refused : ask(prompt);
}

KeyringAnswer<UnlockOutcome> SecretServiceBus::ask(const ObjectPath& prompt) {
  const auto answer = prompts_.perform(prompt);
  if (!answer) return answer.failure();
  switch (answer->outcome) {
    case PromptOutcome::agreed:
      return UnlockOutcome::unlocked;
    case PromptOutcome::asking:
      return UnlockOutcome::asking;
    case PromptOutcome::refused:
      break;
  }
  return UnlockOutcome::refused;
}

KeyringAnswer<std::vector<ObjectPath>> SecretServiceBus::search(const ObjectPath& collection,
                                                                const KeychainQuery& query) {
  const auto reply = bus_.call(collection, collectionInterface, "SearchItems",
                               tupleOf(attributesOf(query, nullptr)));
  if (!reply) return reply.failure();
  if (!hasType(*reply, "(ao)")) return KeyringFailure::noAnswer;
  auto items = pathsAt(*reply, 0);
  if (items.size() < 2) return items;
  std::vector<std::pair<std::uint64_t, ObjectPath>> dated;
  dated.reserve(items.size());
  for (auto& item : items) dated.emplace_back(creationTime(item), item);
  std::sort(dated.begin(), dated.end());
  std::transform(dated.begin(), dated.end(), items.begin(),
                 [](const auto& entry) { return entry.second; });
  return items;
}

std::uint64_t SecretServiceBus::creationTime(const ObjectPath& item) {
  const auto created = bus_.property(item, itemInterface, "Created", "t");
  return created ? g_variant_get_uint64(created->get()) : 0;
}

KeyringAnswer<SecretBytes> SecretServiceBus::secret(const ObjectPath& item) {
  const KeyringSession* current = session();
  if (!current) return KeyringFailure::noAnswer;
  if (secretAhead_) secretAhead_();
  const auto reply =
      bus_.call(item, itemInterface, "GetSecret", g_variant_new("(o)", current->path()));
  if (!reply) return reply.failure();
  if (!hasType(*reply, "((oayays))")) return KeyringFailure::noAnswer;
  const VariantPointer structure(g_variant_get_child_value(reply->get(), 0));
  return current->decode(structure.get());
}

KeyringAnswer<ObjectPath> SecretServiceBus::create(const ObjectPath& collection,
                                                   const KeychainQuery& query,
                                                   const std::string& label,
                                                   const SecretBytes& secret) {
  const KeyringSession* current = session();
  if (!current) return KeyringFailure::noAnswer;
  const auto reply = bus_.call(collection, collectionInterface, "CreateItem",
                               g_variant_new("(@a{sv}@(oayays)b)", itemProperties(query, label),
                                             current->encode(secret), FALSE));
  if (!reply) return reply.failure();
  if (!hasType(*reply, "(oo)")) return KeyringFailure::noAnswer;
  ObjectPath item = pathAt(*reply, 0);
  if (item != noObject) return item;
  return createdByPrompt(pathAt(*reply, 1));
}

KeyringAnswer<ObjectPath> SecretServiceBus::createdByPrompt(const ObjectPath& prompt) {
  if (prompt == noObject) return KeyringFailure::noAnswer;
  const auto answer = prompts_.perform(prompt);
  if (!answer) return answer.failure();
  if (answer->outcome != PromptOutcome::agreed) return KeyringFailure::locked;
  if (!hasType(answer->result, "o")) return KeyringFailure::noAnswer;
  return ObjectPath(g_variant_get_string(answer->result.get(), nullptr));
}

KeyringAnswer<Done> SecretServiceBus::replaceSecret(const ObjectPath& item,
                                                    const SecretBytes& secret) {
  const KeyringSession* current = session();
  if (!current) return KeyringFailure::noAnswer;
  const auto reply = bus_.call(item, itemInterface, "SetSecret", tupleOf(current->encode(secret)));
  if (!reply) return reply.failure();
  return Done{};
}

void SecretServiceBus::sendSecret(const ObjectPath& item, const SecretBytes& secret) {
  // Without a session nothing was sent that would have to be taken back.
  if (session_) bus_.send(item, itemInterface, "SetSecret", tupleOf(session_->encode(secret)));
}

KeyringAnswer<Done> SecretServiceBus::remove(const ObjectPath& item) {
  const auto reply = bus_.call(item, itemInterface, "Delete", g_variant_new("()"));
  if (!reply) return reply.failure();
  return Done{};
}

}  // namespace vantorel
