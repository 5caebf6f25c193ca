// SPDX-License-Identifier: MIT
#include "platform/linux/decoding/PictureProtocol.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/linux/confined/Messages.h"
#include "platform/linux/confined/SharedMemory.h"

namespace vantorel {
namespace {

using Status = PictureReply::Status;
using std::chrono::milliseconds;

Deadline in(milliseconds time) { return std::chrono::steady_clock::now() + time; }

constexpr milliseconds patience{30'000};  // only bounds a failure
constexpr PictureRequest pixels{.form = PictureForm::pixels, .fitting = {10, 20}};

PictureReply madeOf(int width, int height, std::uint64_t bytes) {
  return {Status::made, bytes, {width, height}, {300, 600}};
}

class PictureProtocol : public testing::Test {
 protected:
  PictureProtocol() {
    int ends[2];
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    ours = ends[0];
    theirs = ends[1];
  }
  ~PictureProtocol() override {
    closeTheirs();
    ::close(ours);
  }
  void closeTheirs() {
    if (theirs >= 0) ::close(std::exchange(theirs, -1));
  }
  std::optional<PictureReply> answered(const PictureReply& reply,
                                       const PictureRequest& request = pixels) {
    EXPECT_TRUE(sendPictureReply(theirs, reply, in(patience)));
    return receivePictureReply(ours, request, in(patience));
  }

  int ours = -1;
  int theirs = -1;
};

TEST_F(PictureProtocol, ARequestArrivesWithItsMemory) {
  const auto encoded = sharedCopy(bytesOf("picture"));
  const auto room = sharedRoom(100);
  const PictureRequest request{.form = PictureForm::jpeg, .fitting = {3, 4}, .compression = 0.5};
  ASSERT_TRUE(sendPictureRequest(ours, request, encoded, room, in(patience)));
  const auto task = receivePictureTask(theirs, in(patience));
  ASSERT_TRUE(task);
  EXPECT_EQ(task->request.form, PictureForm::jpeg);
  EXPECT_EQ(task->request.fitting, (PixelSize{3, 4}));
  EXPECT_EQ(task->request.compression, 0.5);
  const MappedMemory view(task->encoded, MappedMemory::Access::reading);
  EXPECT_EQ(textOf(view.bytes()), "picture");
  EXPECT_EQ(MappedMemory(task->room, MappedMemory::Access::writing).bytes().size(), 100U);
}

TEST_F(PictureProtocol, ARequestWithoutMemoryIsNone) {
  ASSERT_TRUE(sendMessage(ours, 0x56'44'50'31, std::as_bytes(std::span(&pixels, 1)), in(patience)));
  EXPECT_FALSE(receivePictureTask(theirs, in(milliseconds(20))));
}

TEST_F(PictureProtocol, AReplyArrivesAsItWasSent) {
  const auto reply = answered(madeOf(10, 20, 800));
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->status, Status::made);
  EXPECT_EQ(reply->pixelSize, (PixelSize{10, 20}));
  EXPECT_EQ(reply->size, (Size{300, 600}));
  EXPECT_EQ(reply->bytes, 800U);
  EXPECT_EQ(answered({})->status, Status::unreadable);
}

TEST_F(PictureProtocol, PixelsOfOtherThanTheAskedSizesAreNone) {
  EXPECT_TRUE(answered(madeOf(1, 1, 4)));
  EXPECT_FALSE(answered(madeOf(11, 1, 44)));
  EXPECT_FALSE(answered(madeOf(1, 21, 84)));
  EXPECT_FALSE(answered(madeOf(0, 20, 0)));
  EXPECT_FALSE(answered(madeOf(-1, -1, 4)));
  EXPECT_FALSE(answered(madeOf(10, 20, 799)));
  EXPECT_FALSE(answered(madeOf(10, 20, 804)));
  EXPECT_FALSE(answered(madeOf(10, 20, 0)));
}

TEST_F(PictureProtocol, APictureOfAbsurdSizeIsNone) {
  for (const double side :
       {0.0, -1.0, 40'000.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
    auto reply = madeOf(1, 1, 4);
    reply.size.width = side;
    EXPECT_FALSE(answered(reply)) << side;
    reply.size = {1, side};
    EXPECT_FALSE(answered(reply)) << side;
  }
}

TEST_F(PictureProtocol, WhatIsEncodedFitsItsRoom) {
  const PictureRequest png{.form = PictureForm::png};
  EXPECT_TRUE(answered(madeOf(0, 0, 1), png));
  EXPECT_TRUE(answered(madeOf(0, 0, roomFor(png)), png));
  EXPECT_FALSE(answered(madeOf(0, 0, roomFor(png) + 1), png));
  EXPECT_FALSE(answered(madeOf(0, 0, 0), png));
}

TEST_F(PictureProtocol, NonsenseIsNoReply) {
  auto unknown = madeOf(1, 1, 4);
  unknown.status = static_cast<Status>(77);
  EXPECT_FALSE(answered(unknown));
  ASSERT_TRUE(sendMessage(theirs, 1, bytesOf("short"), in(patience)));
  EXPECT_FALSE(receivePictureReply(ours, pixels, in(patience)));
  ASSERT_EQ(::send(theirs, "\1\0\0\0\xFF\xFF\xFF\xFF", 8, 0), 8);  // four gigabytes to come
  EXPECT_FALSE(receivePictureReply(ours, pixels, in(patience)));
}

TEST_F(PictureProtocol, WhoIsSilentOrGoneIsGivenUp) {
  EXPECT_FALSE(receivePictureReply(ours, pixels, in(milliseconds(20))));
  ASSERT_EQ(::send(theirs, "\1\0\0\0\x30\0", 6, 0), 6);
  closeTheirs();
  EXPECT_FALSE(receivePictureReply(ours, pixels, in(patience)));
  EXPECT_FALSE(sendPictureRequest(ours, pixels, sharedCopy({}), sharedRoom(1), in(patience)));
}

TEST(PictureRoom, IsWhatIsAskedForAndNoMoreThanAnyPicture) {
  EXPECT_EQ(roomFor(pixels), 800U);
  EXPECT_EQ(roomFor({.fitting = {-3, 0}}), 4U);
  constexpr int most = std::numeric_limits<int>::max();
  EXPECT_EQ(roomFor({.fitting = {most, most}}), 400'000'000U);
}

}  // namespace
}  // namespace vantorel
