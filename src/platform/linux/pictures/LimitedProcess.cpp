// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/LimitedProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <string_view>

#include "base/ArgumentPointers.h"
#include "base/FileDescriptor.h"
#include "base/PathName.h"

namespace vantorel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int couldNotStart = 127;

/// What says where programs are and how the user reads and writes.
bool isHandedOn(std::string_view name) {
  constexpr std::array<std::string_view, 5> names = {"PATH", "LANG", "LANGUAGE", "TZ",
                                                     "XDG_DATA_DIRS"};
  return name.starts_with("LC_") || std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<std::string> bareEnvironment(const std::filesystem::path& home) {
  std::vector<std::string> result{"HOME=" + home.string(), "TMPDIR=" + home.string()};
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text(*variable);
    if (isHandedOn(text.substr(0, text.find('=')))) result.emplace_back(text);
  }
  return result;
}

void limit(__rlimit_resource resource, rlim_t most) {
  const rlimit value{most, most};
  ::setrlimit(resource, &value);
}

/// Everything that the new process needs, made before it exists: there nothing may allocate.
struct Start {
  std::vector<std::string> words;
  std::vector<std::string> variables;
  std::vector<char*> arguments;
  std::vector<char*> environment;
  ProcessLimits limits;
  rlim_t processorSeconds;
  pid_t parent;
  int nothing;  // the device that is always empty
};

[[noreturn]] void become(const Start& start) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != start.parent) ::_exit(couldNotStart);  // it died in between
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  for (int target = 0; target < 3; ++target) {
    if (::dup2(start.nothing, target) < 0) ::_exit(couldNotStart);
  }
  ::close_range(3, UINT_MAX, 0);
  limit(RLIMIT_AS, start.limits.memory);
  limit(RLIMIT_FSIZE, start.limits.fileSize);
  limit(RLIMIT_CPU, start.processorSeconds);
  limit(RLIMIT_CORE, 0);
  constexpr int leastImportant = 19;
  ::setpriority(PRIO_PROCESS, 0, leastImportant);
  for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGCHLD}) ::signal(number, SIG_DFL);
  sigset_t none;
  ::sigemptyset(&none);
  ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
  ::execve(start.arguments.front(), start.arguments.data(), start.environment.data());
  ::_exit(couldNotStart);
}

enum class Waited { ended, tookTooLong, stopped };

Waited waitFor(pid_t process, const StopSignal& stop, Clock::time_point deadline) {
  // The C library of Debian 12 declares no wrapper that C++ can call.
  const FileDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  if (!handle.isOpen()) return Waited::tookTooLong;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return Waited::tookTooLong;
    std::array<pollfd, 2> questions = {{{handle.get(), POLLIN, 0}, {stop.descriptor(), POLLIN, 0}}};
    const auto timeout = static_cast<int>(std::min<std::int64_t>(left, INT_MAX));
    if (::poll(questions.data(), questions.size(), timeout) < 0 && errno != EINTR) {
      return Waited::tookTooLong;
    }
    if ((questions[1].revents & POLLIN) != 0) return Waited::stopped;
    if (questions[0].revents != 0) return Waited::ended;
  }
}

}  // namespace

ProcessEnd runLimited(const std::vector<std::string>& command, const std::filesystem::path& home,
                      const ProcessLimits& limits, const StopSignal& stop) {
  const bool canBeTold = std::all_of(command.begin(), command.end(), isNameable);
  if (command.empty() || !canBeTold || stop.isRaised()) return ProcessEnd::notStarted;
  const FileDescriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
  if (!nothing.isOpen()) return ProcessEnd::notStarted;
  Start start{.words = command,
              .variables = bareEnvironment(home),
              .arguments = {},
              .environment = {},
              .limits = limits,
              .processorSeconds = static_cast<rlim_t>(
                  std::chrono::ceil<std::chrono::seconds>(limits.time).count() + 1),
              .parent = ::getpid(),
              .nothing = nothing.get()};
  start.arguments = argumentPointers(start.words);
  start.environment = argumentPointers(start.variables);
  const auto deadline = Clock::now() + limits.time;
  const pid_t process = ::fork();
  if (process < 0) return ProcessEnd::notStarted;
  if (process == 0) become(start);
  ::setpgid(process, process);  // whoever of the two comes first
  const auto waited = waitFor(process, stop, deadline);
  // The group exists as long as its leader has not been waited for, so no other one can be hit.
  ::kill(-process, SIGKILL);
  int status = 0;
  const auto reaped = retryingInterrupted([&] { return ::waitpid(process, &status, 0); });
  if (waited == Waited::stopped) return ProcessEnd::stopped;
  if (waited == Waited::tookTooLong) return ProcessEnd::tookTooLong;
  if (reaped != process) return ProcessEnd::failure;
  constexpr int toldOfSignal = 128;
  if (WIFSIGNALED(status) || WEXITSTATUS(status) > toldOfSignal) return ProcessEnd::crashed;
  return WEXITSTATUS(status) == 0 ? ProcessEnd::success : ProcessEnd::failure;
}

}  // namespace vantorel
