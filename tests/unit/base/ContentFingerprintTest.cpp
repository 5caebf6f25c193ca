// SPDX-License-Identifier: MIT
#include "base/ContentFingerprint.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(ContentFingerprint, IsTheDigestInLowerCaseHexadecimal) {
  EXPECT_EQ(ContentFingerprint::data(bytesOf("abc")),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(ContentFingerprint, OfNothingIsKnownToo) {
  EXPECT_EQ(ContentFingerprint::data({}),
            "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(ContentFingerprint, TellsContentsApartByOneByte) {
  EXPECT_NE(ContentFingerprint::data(bytesOf("a.txt")), ContentFingerprint::data(bytesOf("b.txt")));
}

}  // namespace
}  // namespace vantorel
