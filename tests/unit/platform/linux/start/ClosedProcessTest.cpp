// SPDX-License-Identifier: MIT
#include "platform/linux/start/ClosedProcess.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <cstdlib>

namespace vantorel {
namespace {

// Each in a process of its own: neither can be taken back.

TEST(ClosedProcess, LeavesNoCoreWhateverTheLimitWas) {
  const auto limited = [] {
    leaveNoCore();
    rlimit core{};
    const bool none = ::getrlimit(RLIMIT_CORE, &core) == 0 && core.rlim_max == 0;
    std::_Exit(none ? 0 : 1);
  };
  EXPECT_EXIT(limited(), testing::ExitedWithCode(0), "");
}

TEST(ClosedProcess, IsClosedToOthers) {
  const auto closed = [] {
    closeProcess();
    std::_Exit(::prctl(PR_GET_DUMPABLE));
  };
  EXPECT_EXIT(closed(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vantorel
