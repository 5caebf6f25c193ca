// SPDX-License-Identifier: MIT
#include "tool/Uninterrupted.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

bool isIgnored(int signal) {
  struct sigaction action {};
  EXPECT_EQ(::sigaction(signal, nullptr, &action), 0);
  return action.sa_handler == SIG_IGN;
}

TEST(Uninterrupted, NoKeyAndNoLimitEndsItHalfWay) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXFSZ}) {
    const bool before = isIgnored(signal);
    {
      const Uninterrupted uninterrupted;
      EXPECT_TRUE(isIgnored(signal)) << signal;
    }
    EXPECT_EQ(isIgnored(signal), before) << signal;
  }
}

}  // namespace
}  // namespace vantorel
