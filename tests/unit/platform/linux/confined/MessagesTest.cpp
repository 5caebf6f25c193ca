// SPDX-License-Identifier: MIT
#include "platform/linux/confined/Messages.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string_view>
#include <thread>
#include <utility>

#include "platform/linux/confined/SharedMemory.h"

namespace vantorel {
namespace {

using std::chrono::milliseconds;

Deadline in(milliseconds time) { return std::chrono::steady_clock::now() + time; }

constexpr milliseconds patience{30'000};  // only bounds a failure

Bytes toBytes(std::string_view text) {
  const auto view = bytesOf(text);
  return {view.begin(), view.end()};
}

class Messages : public testing::Test {
 protected:
  Messages() {
    int ends[2];
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    ours = ends[0];
    theirs = ends[1];
  }
  ~Messages() override {
    closeTheirs();
    ::close(ours);
  }
  void closeTheirs() {
    if (theirs >= 0) ::close(std::exchange(theirs, -1));
  }

  int ours = -1;
  int theirs = -1;
};

TEST_F(Messages, ArriveAsTheyWereSent) {
  const Bytes large(5'000'000, std::byte{0x5A});  // more than a socket holds
  std::thread sender([&] { EXPECT_TRUE(sendMessage(ours, 7, large, in(patience))); });
  const auto message = receiveMessage(theirs, large.size(), in(patience));
  sender.join();
  ASSERT_TRUE(message);
  EXPECT_EQ(message->kind, 7U);
  EXPECT_EQ(message->body, large);
}

TEST_F(Messages, OneThatIsTooLongIsNone) {
  ASSERT_TRUE(sendMessage(ours, 7, toBytes("12345"), in(patience)));
  EXPECT_FALSE(receiveMessage(theirs, 4, in(patience)));
}

TEST_F(Messages, FilesArriveOpen) {
  const auto one = sharedCopy(toBytes("one"));
  const auto two = sharedCopy(toBytes("two"));
  ASSERT_TRUE(sendFiles(ours, {one.get(), two.get()}, in(patience)));
  const auto files = receiveFiles(theirs, in(patience));
  ASSERT_TRUE(files);
  Bytes read(3);
  EXPECT_TRUE(readShared((*files)[0], read));
  EXPECT_EQ(textOf(read), "one");
  EXPECT_TRUE(readShared((*files)[1], read));
  EXPECT_EQ(textOf(read), "two");
  EXPECT_EQ(::fcntl((*files)[1].get(), F_GETFD), FD_CLOEXEC);
}

TEST_F(Messages, AByteWithoutFilesIsNone) {
  ASSERT_EQ(::send(ours, "x", 1, 0), 1);
  EXPECT_FALSE(receiveFiles(theirs, in(patience)));
  closeTheirs();
  EXPECT_FALSE(receiveFiles(ours, in(patience)));
}

// Who has broken into a worker sends what he likes.
TEST_F(Messages, WhoReceivesNoFilesGetsNone) {
  const auto file = sharedCopy(toBytes("one"));
  ASSERT_TRUE(sendMessage(theirs, 1, toBytes("abc"), in(patience)));
  const int next = ::dup(0);
  ASSERT_GE(next, 0);
  ::close(next);
  ASSERT_TRUE(sendFiles(theirs, {file.get(), file.get()}, in(patience)));
  EXPECT_TRUE(receiveMessage(ours, 3, in(patience)));
  EXPECT_FALSE(receiveMessage(ours, 3, in(milliseconds(20)))) << "one byte is no message";
  const int now = ::dup(0);
  EXPECT_EQ(now, next) << "a file was opened by what was received";
  ::close(now);
}

}  // namespace
}  // namespace vantorel
