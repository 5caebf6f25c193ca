// SPDX-License-Identifier: MIT
#include "platform/linux/confined/worker/WorkerConfinement.h"

#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <initializer_list>
#include <memory>
#include <type_traits>

#include "platform/linux/confined/worker/FileTree.h"

namespace vantorel {
namespace {

using Filter = std::unique_ptr<std::remove_pointer_t<scmp_filter_ctx>, decltype(&seccomp_release)>;

// By name: each kind of processor has numbers of its own.
constexpr std::array allowed = {
    // what is open or handed over: the socket, files, and where errors go
    SCMP_SYS(read), SCMP_SYS(pread64), SCMP_SYS(write), SCMP_SYS(sendto), SCMP_SYS(recvfrom),
    SCMP_SYS(recvmsg), SCMP_SYS(poll), SCMP_SYS(ppoll), SCMP_SYS(lseek), SCMP_SYS(fstat),
    SCMP_SYS(close),
    // memory, and how much of it there is
    SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise), SCMP_SYS(sysinfo),
    // time, locks, chance
    SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday), SCMP_SYS(futex), SCMP_SYS(sched_yield),
    SCMP_SYS(restart_syscall), SCMP_SYS(getrandom),
    // its end, also by abort()
    SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(getpid), SCMP_SYS(gettid),
    SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn),
    // asked by the checks of a build with sanitizers: a pipe to itself tells what memory is there
    SCMP_SYS(pipe2), SCMP_SYS(sigaltstack)};

bool allow(const Filter& filter, int call, std::initializer_list<scmp_arg_cmp> conditions = {}) {
  return seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call,
                                static_cast<unsigned>(conditions.size()), conditions.begin()) == 0;
}

scmp_arg_cmp isEqual(unsigned argument, scmp_datum_t value) {
  return {argument, SCMP_CMP_EQ, value, 0};
}

/// Of the protection that memory is to have.
scmp_arg_cmp isNotExecutable(unsigned argument) {
  return {argument, SCMP_CMP_MASKED_EQ, PROT_EXEC, 0};
}

/// A thread, as the C library makes it, and nothing that is more than one. The newer call tells
/// what it is to make where a filter cannot look, so it does not exist here.
bool allowThreads(const Filter& filter) {
  constexpr scmp_datum_t thread = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND | CLONE_THREAD |
                                  CLONE_SYSVSEM | CLONE_SETTLS | CLONE_PARENT_SETTID |
                                  CLONE_CHILD_CLEARTID;
  constexpr std::array ofThreads = {SCMP_SYS(set_robust_list), SCMP_SYS(rseq),
                                    SCMP_SYS(sched_getaffinity), SCMP_SYS(eventfd2)};
  return std::all_of(ofThreads.begin(), ofThreads.end(),
                     [&](int call) { return allow(filter, call); }) &&
         allow(filter, SCMP_SYS(clone), {isEqual(0, thread)}) &&
         seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0;
}

bool allowOnlyWhatReadingNeeds(Threads threads) {
  const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)), &seccomp_release);
  if (filter == nullptr) return false;
  const bool isListed =
      std::all_of(allowed.begin(), allowed.end(), [&](int call) { return allow(filter, call); });
  constexpr unsigned protection = 2;
  constexpr scmp_datum_t thisProcess = 0;
  return isListed && (threads == Threads::none || allowThreads(filter)) &&
         allow(filter, SCMP_SYS(mmap), {isNotExecutable(protection)}) &&
         allow(filter, SCMP_SYS(mprotect), {isNotExecutable(protection)}) &&
         allow(filter, SCMP_SYS(tgkill), {isEqual(0, static_cast<scmp_datum_t>(::getpid()))}) &&
         allow(filter, SCMP_SYS(prlimit64), {isEqual(0, thisProcess), isEqual(1, RLIMIT_CPU)}) &&
         seccomp_load(filter.get()) == 0;
}

}  // namespace

bool confine(Threads threads) {
  return closeFileTree() != FileTree::failed && allowOnlyWhatReadingNeeds(threads);
}

}  // namespace vantorel
