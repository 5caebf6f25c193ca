// SPDX-License-Identifier: MIT
#include "fakes/FakeKeychain.h"

#include <algorithm>
#include <utility>

#include "security/HistoryKeychain.h"

namespace vantorel {
namespace {

FakeKeychain::Backend backendOf(const KeychainQuery& query) {
  return query.useDataProtectionKeychain ? FakeKeychain::Backend::dataProtection
                                         : FakeKeychain::Backend::login;
}

Bytes copied(ByteView bytes) { return {bytes.begin(), bytes.end()}; }

KeychainQuery keyQuery(FakeKeychain::Backend backend) {
  return {std::string(HistoryKeychain::service), std::string(HistoryKeychain::account),
          backend == FakeKeychain::Backend::dataProtection};
}

}  // namespace

FakeKeychain::Name FakeKeychain::nameOf(const KeychainQuery& query) {
  return {backendOf(query), query.service, query.account};
}

std::optional<OSStatus> FakeKeychain::scripted(Operation operation, const KeychainQuery& query,
                                               const KeychainAttributes& attributes) {
  const auto backend = backendOf(query);
  calls_.push_back({operation, backend, query, attributes});
  auto& once = once_[{operation, backend}];
  if (!once.empty()) {
    const auto status = once.front();
    once.pop_front();
    return status;
  }
  const auto failing = failing_.find(backend);
  return failing != failing_.end() ? std::optional(failing->second) : std::nullopt;
}

KeychainResult FakeKeychain::copyMatching(const KeychainQuery& query) {
  if (const auto status = scripted(Operation::copyMatching, query, {})) return {*status, {}};
  const auto item = items_.find(nameOf(query));
  if (item == items_.end()) return {keychainStatus::itemNotFound, {}};
  return {keychainStatus::success, SecretBytes(ByteView(item->second))};
}

OSStatus FakeKeychain::add(const KeychainQuery& query, const KeychainAttributes& attributes,
                           const SecretBytes& data) {
  if (beforeAdd) beforeAdd();
  if (const auto status = scripted(Operation::add, query, attributes)) return *status;
  const bool added = items_.emplace(nameOf(query), copied(data.view())).second;
  return added ? keychainStatus::success : keychainStatus::duplicateItem;
}

struct FakeKeychain::Change {
  KeychainQuery query;
  Bytes data;
  std::function<void()> ended;
  std::optional<OSStatus> status;
  bool settled = false;
};

class FakeKeychain::Update : public KeychainUpdate {
 public:
  explicit Update(std::shared_ptr<Change> change) : change_(std::move(change)) {}
  ~Update() override { change_->settled = true; }
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;

  [[nodiscard]] bool hasEnded() const override { return change_->status.has_value(); }
  [[nodiscard]] OSStatus settle() override {
    change_->settled = true;
    return change_->status.value_or(keychainStatus::notAvailable);
  }

 private:
  std::shared_ptr<Change> change_;
};

std::unique_ptr<KeychainUpdate> FakeKeychain::endedUpdate(OSStatus status) {
  auto change = std::make_shared<Change>();
  change->status = status;
  return std::make_unique<Update>(std::move(change));
}

std::unique_ptr<KeychainUpdate> FakeKeychain::beginUpdate(const KeychainQuery& query,
                                                          const SecretBytes& data,
                                                          std::function<void()> ended) {
  if (!answersUpdatesLate) return endedUpdate(changed(query, data.view()));
  changes_.push_back(std::make_shared<Change>(Change{
      .query = query, .data = copied(data.view()), .ended = std::move(ended), .status = {}}));
  return std::make_unique<Update>(changes_.back());
}

OSStatus FakeKeychain::changed(const KeychainQuery& query, ByteView data) {
  if (const auto status = scripted(Operation::update, query, {})) return *status;
  const auto item = items_.find(nameOf(query));
  if (item == items_.end()) return keychainStatus::itemNotFound;
  item->second = copied(data);
  return keychainStatus::success;
}

int FakeKeychain::waitingUpdates() const {
  return static_cast<int>(std::count_if(changes_.begin(), changes_.end(), [](const auto& change) {
    return !change->settled && !change->status;
  }));
}

void FakeKeychain::makeUpdates() {
  for (const auto& change : changes_) {
    if (!change->settled && !change->status) change->status = changed(change->query, change->data);
  }
}

void FakeKeychain::tellOfUpdates() {
  for (const auto& change : std::exchange(changes_, {})) change->ended();
}

void FakeKeychain::fail(Backend backend, OSStatus status) { failing_[backend] = status; }

void FakeKeychain::recover(Backend backend) { failing_.erase(backend); }

void FakeKeychain::failOnce(Operation operation, Backend backend, OSStatus status) {
  once_[{operation, backend}].push_back(status);
}

void FakeKeychain::setKey(Backend backend, ByteView bytes) {
  items_[nameOf(keyQuery(backend))] = copied(bytes);
}

std::optional<Bytes> FakeKeychain::key(Backend backend) const {
  const auto item = items_.find(nameOf(keyQuery(backend)));
  return item != items_.end() ? std::optional(item->second) : std::nullopt;
}

}  // namespace vantorel
