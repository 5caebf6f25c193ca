#include "platform/linux/textinpictures/worker/WorkerConfinement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "fakes/TemporaryDirectory.h"

namespace vantorel {
namespace {

/// What becomes of something that a confined process tries: 0 when it works, else the error.
int tried(const std::function<bool()>& attempt) {
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr int notConfined = 255;
    if (!confine()) ::_exit(notConfined);
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
  EXPECT_EQ(tried([&] { return ::open(scene.existing.c_str(), O_RDONLY) >= 0; }), 0);
  EXPECT_EQ(tried([&] { return ::access(scene.existing.c_str(), R_OK) == 0; }), 0);
  int ends[2];
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  EXPECT_EQ(tried([&] { return ::send(ends[0], "a", 1, MSG_NOSIGNAL) == 1; }), 0);
  EXPECT_EQ(tried([&] {
              char byte = 0;
              return ::recv(ends[1], &byte, 1, 0) == 1;
            }),
            0);
  ::close(ends[0]);
  ::close(ends[1]);
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

}  // namespace
}  // namespace vantorel
