// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/SecretServiceKeychain.h"

#include <algorithm>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/glib/GlibThread.h"
#include "platform/linux/keyring/KeyringCall.h"
#include "platform/linux/keyring/KeyringItems.h"
#include "platform/linux/keyring/SecretServiceBus.h"

namespace vantorel {
namespace {

using Clock = std::chrono::steady_clock;
using SharedSecret = std::shared_ptr<const SecretBytes>;

/// The keyring's thread gives up this much before the main thread, so that what it has to say about
/// a silent service still arrives.
constexpr std::chrono::milliseconds margin(100);

SharedSecret shared(const SecretBytes& secret) {
  return std::make_shared<const SecretBytes>(secret.duplicate());
}

bool same(const KeychainQuery& a, const KeychainQuery& b) {
  return a.service == b.service && a.account == b.account &&
         a.useDataProtectionKeychain == b.useDataProtectionKeychain;
}

}  // namespace

/// Everything that lives on the keyring's thread, and that thread.
class SecretServiceKeychain::Worker {
 public:
  /// Both are called on the thread; `later` asks for a `look` after that time.
  Worker(std::function<void()> available, std::function<void(Seconds)> later)
      : available_(std::move(available)),
        later_(std::move(later)),
        thread_("keyring", [this] { service_.reset(); }) {}

  /// Before the first work.
  void onSecretAhead(std::function<void()> prepare) { secretAhead_ = std::move(prepare); }

  /// Runs `work` on the thread; each of its steps ends before `deadline`.
  void post(Deadline deadline, std::function<void(KeyringService&)> work) {
    thread_.post([this, deadline, work = std::move(work)] {
      if (!service_) {
        service_ = std::make_unique<SecretServiceBus>(
            thread_, [this](KeyringNews news) { heard(news); }, secretAhead_);
      }
      service_->begin(deadline - margin);
      work(*service_);
    });
  }

  void letAsk() {
    post(Clock::now() + timeLimit, [this](KeyringService& /*service*/) { service_->letAsk(); });
  }

  /// Asks once more for what could not be had.
  void look() {
    const Deadline deadline = Clock::now() + timeLimit;
    post(deadline, [this, deadline](KeyringService& service) { lookAgain(service, deadline); });
  }

  /// Answers the call. When that comes too late for whoever asked, what it says is news instead.
  void answer(KeyringService& service, const KeychainQuery& query,
              KeyringCall<KeychainResult>& call) {
    auto result = find(service, query);
    const bool isAnswer = saysWhatIsThere(result.status);
    if (!call.deliver(std::move(result)) && isAnswer) available_();
  }

  [[nodiscard]] KeychainResult find(KeyringService& service, const KeychainQuery& query) {
    auto result = findKeyringItem(service, query);
    if (!saysWhatIsThere(result.status)) {
      waitFor({.query = query});
      return result;
    }
    if (secretAhead_) secretAhead_();
    stopWaiting();
    if (result.status == keychainStatus::itemNotFound) {
      missed_ = {.query = query, .awaited = Awaited::item};
      service_->listen();
    }
    return result;
  }

  [[nodiscard]] OSStatus add(KeyringService& service, const KeychainQuery& query,
                             const std::string& label, const SecretBytes& secret) {
    const OSStatus status = addKeyringItem(service, query, label, secret);
    if (status == keychainStatus::success || status == keychainStatus::duplicateItem) {
      stopWaiting();
    } else {
      waitFor({.query = query, .awaited = Awaited::change});
    }
    return status;
  }

 private:
  /// What would be news. change: the service that is there has taken no new item, and would take
  /// none now. item: it has none, and nobody has asked it to take one.
  enum class Awaited { anything, change, item };

  /// What could not be had.
  struct Missed {
    KeychainQuery query;
    Awaited awaited = Awaited::anything;
  };

  static bool saysWhatIsThere(OSStatus status) {
    return status == keychainStatus::success || status == keychainStatus::itemNotFound;
  }

  void waitFor(Missed missed) {
    missed_ = std::move(missed);
    watch();
  }

  /// A bus that could not be joined tells nothing: it is tried again.
  void watch() {
    service_->watch();
    if (!service_->isListening()) later_(untilJoining);
  }

  void stopWaiting() {
    if (missed_) service_->endWatch();
    missed_.reset();
  }

  void heard(KeyringNews news) {
    if (!missed_) return;
    if (news == KeyringNews::arrived) {
      failuresSinceArrival_ = 0;
      if (missed_->awaited == Awaited::change) missed_->awaited = Awaited::anything;
    }
    if (std::exchange(looking_, true)) return;
    const Deadline deadline = Clock::now() + timeLimit;
    post(deadline, [this, deadline](KeyringService& service) {
      looking_ = false;
      lookAgain(service, deadline);
    });
  }

  /// Only what a lookup now answers is announced, so that the program does not start over in vain.
  void lookAgain(KeyringService& service, Deadline deadline) {
    if (!missed_) return;
    const OSStatus status = findKeyringItem(service, missed_->query).status;
    if (!missed_) return;
    const bool canBeAdded =
        status == keychainStatus::itemNotFound && missed_->awaited == Awaited::anything;
    if (status == keychainStatus::success || canBeAdded) {
      stopWaiting();
      available_();
    } else if (Clock::now() >= deadline - margin) {
      watch();  // it is silent: the answer to one more question will say when it is not
    } else if (!service_->isListening()) {
      watch();
    } else if (status == keychainStatus::notAvailable && failuresSinceArrival_ < mostFailures) {
      // It is there and may still be getting ready, of which nothing will tell.
      later_(firstPause * (1U << failuresSinceArrival_++));
    }
  }

  /// A service that fails is looked at again after 1, 2, 4, 8 and 16 seconds.
  static constexpr unsigned mostFailures = 5;
  static constexpr Seconds firstPause{1};
  static constexpr Seconds untilJoining{10};

  std::function<void()> available_;
  std::function<void(Seconds)> later_;
  std::function<void()> secretAhead_;
  std::unique_ptr<SecretServiceBus> service_;
  std::optional<Missed> missed_;  // by the last lookup or addition
  bool looking_ = false;
  unsigned failuresSinceArrival_ = mostFailures;
  GlibThread thread_;  // last: it ends before what it uses
};

/// The main thread's end of a change that the keyring's thread makes.
class SecretServiceKeychain::Update : public KeychainUpdate {
 public:
  explicit Update(std::shared_ptr<KeyringCall<OSStatus>> call) : call_(std::move(call)) {}
  ~Update() override { call_->giveUp(); }
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;

  [[nodiscard]] bool hasEnded() const override { return call_->isAnswered(); }
  [[nodiscard]] OSStatus settle() override {
    return call_->giveUp().value_or(keychainStatus::notAvailable);
  }

 private:
  std::shared_ptr<KeyringCall<OSStatus>> call_;
};

struct SecretServiceKeychain::Prepared {
  KeychainQuery query;
  Deadline deadline;
  std::shared_ptr<KeyringCall<KeychainResult>> call;
};

SecretServiceKeychain::SecretServiceKeychain(Dispatch& dispatch) : dispatch_(dispatch) {
  const auto available = life_.guard([this] {
    retry_.reset();
    const auto handler = onAvailable_;
    if (handler) handler();
  });
  const auto later = life_.guard(
      [this](Seconds pause) { retry_ = dispatch_.after(pause, [this] { worker_->look(); }); });
  worker_ =
      std::make_unique<Worker>(onMainQueue(dispatch, available), onMainQueue(dispatch, later));
}

SecretServiceKeychain::~SecretServiceKeychain() = default;

void SecretServiceKeychain::onAvailable(std::function<void()> handler) {
  onAvailable_ = std::move(handler);
}

void SecretServiceKeychain::onSecretAhead(std::function<void()> prepare) {
  worker_->onSecretAhead(std::move(prepare));
}

void SecretServiceKeychain::letAsk() { worker_->letAsk(); }

void SecretServiceKeychain::prepare(std::vector<KeychainQuery> queries,
                                    std::function<void()> ready) {
  const Deadline deadline = Clock::now() + timeLimit;
  for (KeychainQuery& query : queries) {
    if (query.useDataProtectionKeychain) continue;
    std::erase_if(prepared_, [&](const Prepared& entry) { return same(entry.query, query); });
    auto call = std::make_shared<KeyringCall<KeychainResult>>();
    worker_->post(deadline, [worker = worker_.get(), query, call](KeyringService& service) {
      worker->answer(service, query, *call);
    });
    prepared_.push_back({std::move(query), deadline, std::move(call)});
  }
  // The thread works in order, and no step goes past the deadline: by then all are answered.
  if (!ready) return;
  worker_->post(deadline, [tell = onMainQueue(dispatch_, life_.guard(std::move(ready)))](
                              KeyringService& /*service*/) { tell(); });
}

std::optional<KeychainResult> SecretServiceKeychain::takePrepared(const KeychainQuery& query) {
  const auto found = std::find_if(prepared_.begin(), prepared_.end(),
                                  [&](const Prepared& entry) { return same(entry.query, query); });
  if (found == prepared_.end()) return std::nullopt;
  const Prepared entry = std::move(*found);
  prepared_.erase(found);
  auto result = entry.call->wait(entry.deadline);
  if (!result) result.emplace(KeychainResult{keychainStatus::notAvailable, std::nullopt});
  return result;
}

KeychainResult SecretServiceKeychain::copyMatching(const KeychainQuery& query) {
  if (query.useDataProtectionKeychain) return {keychainStatus::missingEntitlement, std::nullopt};
  if (auto result = takePrepared(query)) return std::move(*result);
  const Deadline deadline = Clock::now() + timeLimit;
  const auto call = std::make_shared<KeyringCall<KeychainResult>>();
  worker_->post(deadline, [worker = worker_.get(), query, call](KeyringService& service) {
    worker->answer(service, query, *call);
  });
  auto result = call->wait(deadline);
  if (!result) return {keychainStatus::notAvailable, std::nullopt};
  return std::move(*result);
}

OSStatus SecretServiceKeychain::add(const KeychainQuery& query,
                                    const KeychainAttributes& attributes, const SecretBytes& data) {
  if (query.useDataProtectionKeychain) return keychainStatus::missingEntitlement;
  const Deadline deadline = Clock::now() + timeLimit;
  const auto call = std::make_shared<KeyringCall<OSStatus>>();
  worker_->post(deadline, [worker = worker_.get(), query, label = attributes.label,
                           secret = shared(data), call](KeyringService& service) {
    call->deliver(worker->add(service, query, label, *secret));
  });
  return call->wait(deadline).value_or(keychainStatus::notAvailable);
}

std::unique_ptr<KeychainUpdate> SecretServiceKeychain::beginUpdate(const KeychainQuery& query,
                                                                   const SecretBytes& data,
                                                                   std::function<void()> ended) {
  auto call = std::make_shared<KeyringCall<OSStatus>>();
  auto update = std::make_unique<Update>(call);
  if (query.useDataProtectionKeychain) {
    call->deliver(keychainStatus::missingEntitlement);
    return update;
  }
  worker_->post(Clock::now() + timeLimit,
                [query, secret = shared(data), call = std::move(call),
                 tell = onMainQueue(dispatch_, std::move(ended))](KeyringService& service) {
                  const OSStatus status = updateKeyringItem(service, query, *secret, [&] {
                    return call->deliver(keychainStatus::success);
                  });
                  if (status != keychainStatus::success) call->deliver(status);
                  tell();
                });
  return update;
}

}  // namespace vantorel
