// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "desktop/keyring/PrivateKeyring.h"
#include "desktop/keyring/PromptDisplay.h"
#include "desktop/session/PrivateSession.h"
#include "fakes/ManualDispatch.h"
#include "platform/linux/keyring/SecretServiceKeychain.h"

namespace vantorel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

const KeychainQuery query{.service = "the.service", .account = "the-account"};
const std::string lockedStatus = std::to_string(keychainStatus::userCanceled);

/// A session that begins with a locked keyring which holds the item, and with somebody to ask.
class UnlockPromptTest : public testing::Test {
 protected:
  UnlockPromptTest() {
    {
      PrivateKeyring earlier(PrivateKeyring::State::unlocked);
      PrivateKeyring::store(query.service, query.account, "the secret");
    }
    keyring_ = std::make_unique<PrivateKeyring>(PrivateKeyring::State::locked);
    keychain_ = std::make_unique<SecretServiceKeychain>(dispatch_);
    keychain_->onAvailable([this] { ++unlockedCalls_; });
  }

  void prepare() {
    keychain_->prepare({query}, [this] { ready_ = true; });
  }

  bool waitUntil(const std::function<bool()>& condition) {
    return waitFor([&] {
      dispatch_.runQueued();
      return condition();
    });
  }

  std::string found() {
    const auto result = keychain_->copyMatching(query);
    return result.data ? std::string(textOf(result.data->view())) : std::to_string(result.status);
  }

  PromptDisplay display_;
  PrivateSession session_{PrivateSession::Services::prompter};
  std::unique_ptr<PrivateKeyring> keyring_;
  ManualDispatch dispatch_;
  bool ready_ = false;
  int unlockedCalls_ = 0;
  std::unique_ptr<SecretServiceKeychain> keychain_;  // last: its thread uses the queue
};

TEST_F(UnlockPromptTest, AUserWhoUnlocksInTimeHasTheItemAtOnce) {
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::enterPassword(PrivateKeyring::password));
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  // A slow machine may show the dialog late; then the answer came after the limit.
  ASSERT_TRUE(waitUntil([this] { return unlockedCalls_ == 1 || found() == "the secret"; }));
  EXPECT_EQ(found(), "the secret");
}

TEST_F(UnlockPromptTest, AUserWhoDismissesTheQuestionIsNotAskedAgain) {
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::dismiss());
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  EXPECT_EQ(found(), lockedStatus);
  EXPECT_EQ(found(), lockedStatus);
  EXPECT_EQ(keychain_->add(query, {}, SecretBytes(32)), keychainStatus::userCanceled);
  EXPECT_FALSE(PromptDisplay::asks());
  EXPECT_EQ(PrivateKeyring::itemCount(query.service, query.account), 1);
  EXPECT_EQ(unlockedCalls_, 0);
}

TEST_F(UnlockPromptTest, AUserWhoWantsToBeAskedAgainIs) {
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::dismiss());
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  EXPECT_EQ(found(), lockedStatus);
  keychain_->letAsk();
  ready_ = false;
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::enterPassword(PrivateKeyring::password));
  ASSERT_TRUE(waitUntil([this] { return unlockedCalls_ == 1 || found() == "the secret"; }));
  EXPECT_EQ(found(), "the secret");
}

TEST_F(UnlockPromptTest, AUserWhoUnlocksLateIsAnnouncedOnce) {
  const auto begin = Clock::now();
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  EXPECT_GT(Clock::now() - begin, seconds(4));
  EXPECT_EQ(found(), lockedStatus);
  EXPECT_TRUE(PromptDisplay::asks()) << "the question stays open";
  EXPECT_EQ(unlockedCalls_, 0);

  ASSERT_TRUE(PromptDisplay::enterPassword(PrivateKeyring::password));
  ASSERT_TRUE(waitUntil([this] { return unlockedCalls_ > 0; }));
  ready_ = false;
  prepare();
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  EXPECT_EQ(found(), "the secret");

  keyring_->lock();
  EXPECT_EQ(found(), lockedStatus);
  EXPECT_FALSE(PromptDisplay::asks()) << "asked once in a start";
  dispatch_.runQueued();
  EXPECT_EQ(unlockedCalls_, 1);
}

TEST_F(UnlockPromptTest, AnotherQuestionIsNotPutWhileOneIsOpen) {
  EXPECT_EQ(found(), lockedStatus);
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  const auto begin = Clock::now();
  EXPECT_EQ(found(), lockedStatus);
  bool ended = false;
  const auto update = keychain_->beginUpdate(query, SecretBytes(32), [&ended] { ended = true; });
  ASSERT_TRUE(waitUntil([&] { return ended; }));
  EXPECT_EQ(update->settle(), keychainStatus::userCanceled);
  EXPECT_LT(Clock::now() - begin, milliseconds(4000));
  ASSERT_TRUE(PromptDisplay::dismiss());
  EXPECT_EQ(found(), lockedStatus);
  EXPECT_FALSE(PromptDisplay::asks());
}

TEST_F(UnlockPromptTest, UnlockingByAnotherProgramIsAnnouncedToo) {
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::dismiss());
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  ASSERT_EQ(found(), lockedStatus);

  ChildProcess other({"secret-tool", "lookup", "service", query.service, "account", query.account});
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::enterPassword(PrivateKeyring::password));
  EXPECT_EQ(other.readAll(), "the secret");
  EXPECT_EQ(other.wait(), 0);
  ASSERT_TRUE(waitUntil([this] { return unlockedCalls_ == 1; }));
  EXPECT_EQ(found(), "the secret");
}

TEST_F(UnlockPromptTest, AServiceThatEndedWhileItAskedIsAskedWhenItIsBack) {
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  keyring_->end();
  ASSERT_TRUE(waitUntil([] { return !PromptDisplay::asks(); }));
  keyring_.reset();
  keyring_ = std::make_unique<PrivateKeyring>(PrivateKeyring::State::locked);
  keychain_->letAsk();
  ready_ = false;
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::enterPassword(PrivateKeyring::password));
  ASSERT_TRUE(waitUntil([this] { return unlockedCalls_ > 0 || found() == "the secret"; }));
}

TEST_F(UnlockPromptTest, AServiceThatComesBackLockedDoesNotAskByItself) {
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::dismiss());
  ASSERT_TRUE(waitUntil([this] { return ready_; }));
  keyring_->end();
  ASSERT_TRUE(
      waitUntil([this] { return found() == std::to_string(keychainStatus::notAvailable); }));
  keyring_.reset();
  keyring_ = std::make_unique<PrivateKeyring>(PrivateKeyring::State::locked);
  // The new service answers after its coming was announced; the second answer, after the look
  // that this caused.
  ASSERT_TRUE(waitUntil([this] { return found() == lockedStatus; }));
  EXPECT_EQ(found(), lockedStatus);
  EXPECT_FALSE(PromptDisplay::asks());
}

TEST_F(UnlockPromptTest, EndingWhileTheQuestionIsOpenLeavesNothingBehind) {
  prepare();
  ASSERT_TRUE(waitUntil([] { return PromptDisplay::asks(); }));
  keychain_.reset();
  EXPECT_TRUE(PromptDisplay::dismiss());
  dispatch_.runQueued();
  EXPECT_FALSE(ready_);
  EXPECT_EQ(unlockedCalls_, 0);
}

/// A session whose keyring has no collection, as after a log-in that unlocks none.
class NewKeyringPromptTest : public testing::Test {
 protected:
  bool prepareAndWait() {
    bool ready = false;
    keychain_.prepare({query}, [&] { ready = true; });
    return waitFor([&] {
      dispatch_.runQueued();
      return ready;
    });
  }

  PromptDisplay display_;
  PrivateSession session_{PrivateSession::Services::prompter};
  PrivateKeyring keyring_{PrivateKeyring::State::empty};
  ManualDispatch dispatch_;
  SecretServiceKeychain keychain_{dispatch_};  // last: its thread uses the queue
};

TEST_F(NewKeyringPromptTest, IsAskedForWhenTheUserWantsToBeAskedAndOnlyOnce) {
  ASSERT_TRUE(prepareAndWait());
  EXPECT_EQ(keychain_.copyMatching(query).status, keychainStatus::notAvailable);
  EXPECT_FALSE(PromptDisplay::asks()) << "nobody wanted it";

  keychain_.letAsk();
  keychain_.prepare({query}, {});
  ASSERT_TRUE(waitFor([] { return PromptDisplay::asks(); }));
  ASSERT_TRUE(PromptDisplay::dismiss());
  ASSERT_NE(keychain_.copyMatching(query).status, keychainStatus::success);
  ASSERT_TRUE(prepareAndWait());
  EXPECT_EQ(keychain_.copyMatching(query).status, keychainStatus::notAvailable);
  EXPECT_FALSE(PromptDisplay::asks());
}

}  // namespace
}  // namespace vantorel
