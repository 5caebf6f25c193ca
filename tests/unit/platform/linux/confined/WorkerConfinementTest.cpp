// SPDX-License-Identifier: MIT
#include "platform/linux/confined/worker/WorkerConfinement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <sched.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <system_error>
#include <thread>

#include "base/FileDescriptor.h"
#include "fakes/TemporaryDirectory.h"
#include "platform/linux/confined/worker/FileTree.h"

namespace vantorel {
namespace {

/// What becomes of something that a process tries behind walls: 0 when it works, else the error.
int tried(
    const std::function<bool()>& attempt,
    const std::function<bool()>& build = [] { return confine(); }) {
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr int noWalls = 255;
    if (!build()) ::_exit(noWalls);
    errno = 0;
    ::_exit(attempt() ? 0 : errno);
  }
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  return WEXITSTATUS(status);
}

struct Scene {
  TemporaryDirectory directory;
  std::string existing = (directory.path() / "existing").string();
  std::string fresh = (directory.path() / "fresh").string();
  Scene() { ::close(::open(existing.c_str(), O_CREAT | O_WRONLY, S_IRUSR | S_IWUSR)); }
};

TEST(WorkerConfinement, LeavesReadingAndAnswering) {
  const Scene scene;
  const FileDescriptor opened(::open(scene.existing.c_str(), O_RDONLY));
  char byte = 0;
  EXPECT_EQ(tried([&] { return ::pread(opened.get(), &byte, 1, 0) == 0; }), 0);
  int ends[2];
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  EXPECT_EQ(tried([&] { return ::send(ends[0], "a", 1, MSG_NOSIGNAL) == 1; }), 0);
  EXPECT_EQ(tried([&] { return ::recv(ends[1], &byte, 1, 0) == 1; }), 0);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(WorkerConfinement, LeavesMemoryAndItsOwnLimitOfTime) {
  constexpr std::size_t size = std::size_t{1} << 20U;
  EXPECT_EQ(tried([] {
              void* const memory =
                  ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
              return memory != MAP_FAILED && ::munmap(memory, size) == 0;
            }),
            0);
  EXPECT_EQ(tried([] {
              rlimit time{};
              return ::getrlimit(RLIMIT_CPU, &time) == 0 && ::setrlimit(RLIMIT_CPU, &time) == 0;
            }),
            0);
}

TEST(WorkerConfinement, LeavesItAnEnd) {
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit noCore{};
    (void)::setrlimit(RLIMIT_CORE, &noCore);
    if (!confine()) ::_exit(1);
    (void)::signal(SIGABRT, SIG_DFL);
    std::abort();
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGABRT);
}

TEST(WorkerConfinement, NoFileIsOpened) {
  const Scene scene;
  const char* file = scene.existing.c_str();
  EXPECT_EQ(tried([&] { return ::open(file, O_RDONLY) >= 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::open(scene.directory.path().c_str(), O_DIRECTORY) >= 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::access(file, R_OK) == 0; }), EPERM);
  struct stat facts {};
  EXPECT_EQ(tried([&] { return ::stat(file, &facts) == 0; }), EPERM);
  EXPECT_EQ(tried([] { return ::inotify_init1(0) >= 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::syscall(SYS_open_tree, AT_FDCWD, file, 0) >= 0; }), EPERM);
}

TEST(WorkerConfinement, NoMemoryOfAnotherProcessIsSeen) {
  const std::string parent = "/proc/" + std::to_string(::getpid());
  for (const auto* part : {"/mem", "/maps", "/environ"})
    EXPECT_EQ(tried([&] { return ::open((parent + part).c_str(), O_RDONLY) >= 0; }), EPERM) << part;
  char here = 0;
  const iovec place{&here, 1};
  EXPECT_EQ(tried([&] { return ::process_vm_readv(::getppid(), &place, 1, &place, 1, 0) >= 0; }),
            EPERM);
  EXPECT_EQ(tried([] { return ::ptrace(PTRACE_ATTACH, ::getppid(), nullptr, nullptr) == 0; }),
            EPERM);
}

// Behind the list of calls, for whoever gets around it.
TEST(WorkerConfinement, TheFileTreeIsAWallOfItsOwn) {
  if (::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) <= 0)
    GTEST_SKIP() << "this kernel cannot close it";
  const Scene scene;
  const auto triedBehindIt = [](const std::function<bool()>& attempt) {
    return tried(attempt, [] { return closeFileTree() == FileTree::closed; });
  };
  const FileDescriptor opened(::open(scene.existing.c_str(), O_RDONLY));
  char byte = 0;
  EXPECT_EQ(triedBehindIt([&] { return ::read(opened.get(), &byte, 1) == 0; }), 0);
  const std::string memory = "/proc/" + std::to_string(::getpid()) + "/mem";
  for (const std::string& file : {scene.existing, std::string("/usr/bin/env"), memory})
    EXPECT_EQ(triedBehindIt([&] { return ::open(file.c_str(), O_RDONLY) >= 0; }), EACCES) << file;
  EXPECT_EQ(triedBehindIt([&] { return ::unlink(scene.existing.c_str()) == 0; }), EACCES);
  EXPECT_EQ(
      triedBehindIt([] { return ::ptrace(PTRACE_ATTACH, ::getppid(), nullptr, nullptr) == 0; }),
      EPERM);
}

TEST(WorkerConfinement, NoCodeIsMade) {
  constexpr std::size_t size = 4096;
  constexpr int anywhere = MAP_PRIVATE | MAP_ANONYMOUS;
  constexpr int all = PROT_READ | PROT_WRITE | PROT_EXEC;
  EXPECT_EQ(tried([] { return ::mmap(nullptr, size, all, anywhere, -1, 0) != MAP_FAILED; }), EPERM);
  EXPECT_EQ(tried([] {
              void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, anywhere, -1, 0);
              return memory != MAP_FAILED && ::mprotect(memory, size, PROT_READ | PROT_EXEC) == 0;
            }),
            EPERM);
}

TEST(WorkerConfinement, WhatHidesItStays) {
  EXPECT_EQ(tried([] { return ::prctl(PR_SET_DUMPABLE, 1) == 0; }), EPERM);
  EXPECT_EQ(tried([] {
              const rlimit more{1, 1};
              return ::setrlimit(RLIMIT_FSIZE, &more) == 0;
            }),
            EPERM);
}

TEST(WorkerConfinement, NoFileIsWritten) {
  const Scene scene;
  for (const int flags : {O_WRONLY, O_RDWR, O_WRONLY | O_APPEND, O_RDONLY | O_TRUNC})
    EXPECT_EQ(tried([&] { return ::open(scene.existing.c_str(), flags) >= 0; }), EPERM) << flags;
  EXPECT_EQ(tried([&] { return ::open(scene.fresh.c_str(), O_CREAT | O_RDONLY, 0600) >= 0; }),
            EPERM);
  EXPECT_EQ(
      tried([&] { return ::open(scene.directory.path().c_str(), O_TMPFILE | O_RDWR, 0600) >= 0; }),
      EPERM);
  EXPECT_NE(::access(scene.fresh.c_str(), F_OK), 0);
}

TEST(WorkerConfinement, NoFileIsChangedOrTakenAway) {
  const Scene scene;
  const char* file = scene.existing.c_str();
  EXPECT_EQ(tried([&] { return ::unlink(file) == 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::rename(file, scene.fresh.c_str()) == 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::chmod(file, 0777) == 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::truncate(file, 0) == 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::mkdir(scene.fresh.c_str(), 0700) == 0; }), EPERM);
  EXPECT_EQ(tried([&] { return ::symlink(file, scene.fresh.c_str()) == 0; }), EPERM);
  EXPECT_EQ(::access(file, F_OK), 0);
}

TEST(WorkerConfinement, NobodyElseIsReached) {
  EXPECT_EQ(tried([] { return ::socket(AF_INET, SOCK_STREAM, 0) >= 0; }), EPERM);
  EXPECT_EQ(tried([] { return ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }), EPERM);
  EXPECT_EQ(tried([] { return ::kill(::getppid(), 0) == 0; }), EPERM);
  EXPECT_EQ(tried([] { return ::syscall(SYS_tgkill, ::getppid(), ::getppid(), 0) == 0; }), EPERM);
  EXPECT_EQ(tried([] { return ::prlimit(::getppid(), RLIMIT_CPU, nullptr, nullptr) == 0; }), EPERM);
  EXPECT_EQ(tried([] { return ::setpriority(PRIO_PROCESS, ::getppid(), 19) == 0; }), EPERM);
  EXPECT_EQ(tried([] {
              const sched_param none{};
              return ::sched_setscheduler(::getppid(), SCHED_BATCH, &none) == 0;
            }),
            EPERM);
  EXPECT_EQ(tried([] {
              cpu_set_t all;
              CPU_ZERO(&all);
              CPU_SET(0, &all);
              return ::sched_setaffinity(::getppid(), sizeof all, &all) == 0;
            }),
            EPERM);
  EXPECT_EQ(tried([] { return ::fcntl(STDIN_FILENO, F_SETOWN, ::getppid()) == 0; }), EPERM);
}

TEST(WorkerConfinement, NoProgramIsStarted) {
  EXPECT_EQ(tried([] {
              const pid_t child = ::fork();
              if (child == 0) ::_exit(0);
              return child > 0;
            }),
            EPERM);
  EXPECT_EQ(tried([] {
              char name[] = "true";
              char* const words[] = {name, nullptr};
              char* const variables[] = {nullptr};
              ::execve("/bin/true", words, variables);
              return false;
            }),
            EPERM);
}

bool startsAThread() {
  try {
    bool hasRun = false;
    std::thread([&] { hasRun = true; }).join();
    return hasRun;
  } catch (const std::system_error& error) {
    errno = error.code().value();
    return false;
  }
}

TEST(WorkerConfinement, ThreadsAreStartedWhereTheyWereAllowed) {
  EXPECT_EQ(tried(startsAThread), EPERM);
  EXPECT_EQ(tried(startsAThread, [] { return confine(Threads::own); }), 0);
}

TEST(WorkerConfinement, AThreadIsBehindTheSameWalls) {
  const auto triedInAThread = [](const std::function<bool()>& attempt) {
    return tried(
        [&] {
          int error = 0;
          std::thread([&] { error = attempt() ? 0 : errno; }).join();
          errno = error;
          return error == 0;
        },
        [] { return confine(Threads::own); });
  };
  EXPECT_EQ(triedInAThread([] { return ::open("/usr/bin/env", O_RDONLY) >= 0; }), EPERM);
  EXPECT_EQ(triedInAThread([] { return ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }), EPERM);
  EXPECT_EQ(triedInAThread([] { return ::fork() >= 0; }), EPERM);
}

}  // namespace
}  // namespace vantorel
