// SPDX-License-Identifier: MIT
#include "platform/linux/confined/worker/FileTree.h"

#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "base/FileDescriptor.h"

namespace vantorel {
namespace {

// All that the first version knows. Later ones only add to what the filter of calls refuses anyway.
constexpr auto everyAccess = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1;

bool isKnownHere() {
  return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

}  // namespace

FileTree closeFileTree() {
  if (!isKnownHere()) return FileTree::open;
  landlock_ruleset_attr handled{};
  handled.handled_access_fs = everyAccess;
  // Without a rule that allows any of it.
  const FileDescriptor rules(
      static_cast<int>(::syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0)));
  const bool done = rules.isOpen() && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                    ::syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
  return done ? FileTree::closed : FileTree::failed;
}

}  // namespace vantorel
