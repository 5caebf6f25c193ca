// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/TextWorkerProtocol.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <array>
#include <thread>

#include "base/FileDescriptor.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Status = TextReply::Status;
using std::chrono::milliseconds;

Deadline in(milliseconds time) { return std::chrono::steady_clock::now() + time; }

class TextWorkerProtocol : public testing::Test {
 protected:
  TextWorkerProtocol() {
    std::array<int, 2> ends{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    ours = ends[0];
    theirs = ends[1];
  }
  ~TextWorkerProtocol() override {
    closeTheirs();
    ::close(ours);
  }
  void closeTheirs() {
    if (theirs >= 0) ::close(std::exchange(theirs, -1));
  }
  void sendRaw(std::string_view bytes) const {
    EXPECT_EQ(::send(theirs, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
  }

  int ours = -1;
  int theirs = -1;
};

TEST_F(TextWorkerProtocol, APictureArrivesAsItWasSent) {
  const Bytes picture(5'000'000, std::byte{0x5A});  // more than a socket holds
  std::thread sender([&] { EXPECT_TRUE(sendPicture(ours, picture, in(milliseconds(30'000)))); });
  EXPECT_EQ(receivePicture(theirs, in(milliseconds(30'000))), picture);
  sender.join();
  EXPECT_TRUE(sendPicture(ours, {}, in(milliseconds(1000))));
  EXPECT_EQ(receivePicture(theirs, in(milliseconds(1000))), Bytes());
}

TEST_F(TextWorkerProtocol, AReplyArrivesAsItWasSent) {
  const std::vector<std::vector<std::string>> texts = {
      {}, {"one"}, {"Invoice 2024", "סך הכול", "", "end"}};
  for (const auto& lines : texts) {
    ASSERT_TRUE(sendReply(theirs, {Status::read, lines}, in(milliseconds(1000))));
    const auto reply = receiveReply(ours, in(milliseconds(1000)));
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status, Status::read);
    EXPECT_EQ(reply->lines, lines);
  }
  ASSERT_TRUE(sendReply(theirs, {Status::noEngine, {}}, in(milliseconds(1000))));
  EXPECT_EQ(receiveReply(ours, in(milliseconds(1000)))->status, Status::noEngine);
}

TEST_F(TextWorkerProtocol, ATextWithoutEndIsCut) {
  const std::vector<std::string> lines(40, std::string(60'000, 'x'));
  std::thread sender([&] {
    EXPECT_TRUE(sendReply(theirs, {Status::read, lines}, in(milliseconds(30'000))));
  });
  const auto reply = receiveReply(ours, in(milliseconds(30'000)));
  sender.join();
  ASSERT_TRUE(reply);
  EXPECT_GT(reply->lines.size(), 10U);
  EXPECT_LT(reply->lines.size(), 20U);
}

TEST_F(TextWorkerProtocol, WhoIsGoneAnswersNothing) {
  closeTheirs();
  EXPECT_FALSE(sendPicture(ours, toBytes("picture"), in(milliseconds(1000))));
  EXPECT_FALSE(receiveReply(ours, in(milliseconds(1000))));
}

TEST_F(TextWorkerProtocol, HalfAMessageIsNone) {
  sendRaw(std::string_view("\1\0\0\0\x10\0\0\0abc", 11));
  closeTheirs();
  EXPECT_FALSE(receiveReply(ours, in(milliseconds(1000))));
}

TEST_F(TextWorkerProtocol, NonsenseIsNoReply) {
  sendRaw(std::string_view("\x77\0\0\0\0\0\0\0", 8));  // an unknown status
  EXPECT_FALSE(receiveReply(ours, in(milliseconds(1000))));
  sendRaw(std::string_view("\1\0\0\0\xFF\xFF\xFF\xFF", 8));  // four gigabytes to come
  EXPECT_FALSE(receiveReply(ours, in(milliseconds(1000))));
}

TEST_F(TextWorkerProtocol, WhoIsSilentIsGivenUp) {
  EXPECT_FALSE(receiveReply(ours, in(milliseconds(20))));
  const Bytes large(5'000'000);
  EXPECT_FALSE(sendPicture(ours, large, in(milliseconds(20)))) << "nobody reads";
  EXPECT_FALSE(receiveReply(ours, in(milliseconds(-5))));
}

}  // namespace
}  // namespace vantorel
