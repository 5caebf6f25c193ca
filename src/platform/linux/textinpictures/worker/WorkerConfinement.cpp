#include "platform/linux/textinpictures/worker/WorkerConfinement.h"

#include <fcntl.h>
#include <seccomp.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <type_traits>

namespace vantorel {
namespace {

using Filter = std::unique_ptr<std::remove_pointer_t<scmp_filter_ctx>, decltype(&seccomp_release)>;

// Those that this system does not know are not there to be called either.
constexpr std::array refused = {
    // programs and processes
    SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(fork), SCMP_SYS(vfork), SCMP_SYS(clone),
    SCMP_SYS(clone3), SCMP_SYS(kill), SCMP_SYS(tkill), SCMP_SYS(ptrace), SCMP_SYS(pidfd_open),
    SCMP_SYS(pidfd_getfd), SCMP_SYS(pidfd_send_signal), SCMP_SYS(process_vm_readv),
    SCMP_SYS(process_vm_writev), SCMP_SYS(process_madvise), SCMP_SYS(rt_sigqueueinfo),
    SCMP_SYS(rt_tgsigqueueinfo),
    // other ends to talk to
    SCMP_SYS(socket), SCMP_SYS(socketpair), SCMP_SYS(connect), SCMP_SYS(bind), SCMP_SYS(listen),
    SCMP_SYS(accept), SCMP_SYS(accept4), SCMP_SYS(sendmsg), SCMP_SYS(sendmmsg), SCMP_SYS(shmget),
    SCMP_SYS(shmat), SCMP_SYS(msgget), SCMP_SYS(semget), SCMP_SYS(mq_open), SCMP_SYS(add_key),
    SCMP_SYS(request_key), SCMP_SYS(keyctl),
    // files
    SCMP_SYS(creat), SCMP_SYS(openat2), SCMP_SYS(open_by_handle_at), SCMP_SYS(truncate),
    SCMP_SYS(ftruncate), SCMP_SYS(fallocate), SCMP_SYS(unlink), SCMP_SYS(unlinkat),
    SCMP_SYS(rename), SCMP_SYS(renameat), SCMP_SYS(renameat2), SCMP_SYS(link), SCMP_SYS(linkat),
    SCMP_SYS(symlink), SCMP_SYS(symlinkat), SCMP_SYS(mkdir), SCMP_SYS(mkdirat), SCMP_SYS(rmdir),
    SCMP_SYS(mknod), SCMP_SYS(mknodat), SCMP_SYS(chmod), SCMP_SYS(fchmod), SCMP_SYS(fchmodat),
    SCMP_SYS(chown), SCMP_SYS(fchown), SCMP_SYS(lchown), SCMP_SYS(fchownat), SCMP_SYS(utime),
    SCMP_SYS(utimes), SCMP_SYS(utimensat), SCMP_SYS(futimesat), SCMP_SYS(setxattr),
    SCMP_SYS(lsetxattr), SCMP_SYS(fsetxattr), SCMP_SYS(removexattr), SCMP_SYS(lremovexattr),
    SCMP_SYS(fremovexattr), SCMP_SYS(mount), SCMP_SYS(umount2), SCMP_SYS(chroot),
    SCMP_SYS(pivot_root),
    // ways around all of this
    SCMP_SYS(io_uring_setup), SCMP_SYS(io_uring_enter), SCMP_SYS(bpf), SCMP_SYS(perf_event_open),
    SCMP_SYS(userfaultfd), SCMP_SYS(unshare), SCMP_SYS(setns), SCMP_SYS(memfd_create)};

bool refuse(const Filter& filter, int call) {
  return seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(EPERM), call, 0) == 0;
}

/// `flags` is the number of the argument that says what a file is opened for.
bool refuseToOpenForWriting(const Filter& filter, int call, unsigned flags) {
  constexpr std::array<scmp_datum_t, 4> wanted = {O_WRONLY, O_RDWR, O_CREAT, O_TRUNC};
  return std::all_of(wanted.begin(), wanted.end(), [&](scmp_datum_t flag) {
    const scmp_arg_cmp isWanted{flags, SCMP_CMP_MASKED_EQ, flag, flag};
    return seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(EPERM), call, 1, &isWanted) == 0;
  });
}

}  // namespace

bool confine() {
  const Filter filter(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release);
  constexpr unsigned flagsOfOpen = 1;
  constexpr unsigned flagsOfOpenat = 2;
  return filter != nullptr &&
         std::all_of(refused.begin(), refused.end(),
                     [&](int call) { return refuse(filter, call); }) &&
         refuseToOpenForWriting(filter, SCMP_SYS(open), flagsOfOpen) &&
         refuseToOpenForWriting(filter, SCMP_SYS(openat), flagsOfOpenat) &&
         seccomp_load(filter.get()) == 0;
}

}  // namespace vantorel
