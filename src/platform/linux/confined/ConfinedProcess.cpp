// SPDX-License-Identifier: MIT
#include "platform/linux/confined/ConfinedProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <csignal>
#include <ctime>
#include <future>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "base/ArgumentPointers.h"

namespace vantorel {
namespace {

/// What a new process starts with: no open file but the socket as its input, and signals as if
/// nobody had ever changed them.
class SpawnSetup {
 public:
  explicit SpawnSetup(int socket) {
    posix_spawn_file_actions_init(&files_);
    posix_spawn_file_actions_adddup2(&files_, socket, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSetup() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* files() const { return &files_; }
  [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

/// 0 when it cannot be started.
pid_t spawn(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            int socket) {
  std::vector<std::string> words{program.string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  words.push_back(std::to_string(::getpid()));
  // One thread reads a line faster than several: they would mostly wait for each other.
  std::vector<std::string> variables{"OMP_THREAD_LIMIT=1", "OMP_NUM_THREADS=1", "LC_ALL=C",
                                     "TMPDIR=/nonexistent"};
  const SpawnSetup setup(socket);
  pid_t pid = 0;
  const int error =
      ::posix_spawn(&pid, program.c_str(), setup.files(), setup.attributes(),
                    argumentPointers(words).data(), argumentPointers(variables).data());
  return error == 0 ? pid : 0;
}

/// None when it is gone.
std::chrono::nanoseconds processorTimeOf(pid_t process) {
  clockid_t clock{};
  timespec time{};
  if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) return {};
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

/// The process itself, until it has been waited for.
class ConfinedProcess::Life {
 public:
  explicit Life(pid_t pid) : pid_(pid) {}

  [[nodiscard]] pid_t processId() const { return pid_; }

  void kill() {
    const std::lock_guard lock(mutex_);
    if (!isGone_) ::kill(pid_, SIGKILL);
  }

  void allow(std::chrono::nanoseconds more) {
    const std::lock_guard lock(mutex_);
    allowed_ = processorTimeOf(pid_) + more;
  }

  [[nodiscard]] bool isGone() {
    const std::lock_guard lock(mutex_);
    return isGone_;
  }

  [[nodiscard]] bool wentIdle(const std::stop_token& stop, Deadline deadline) {
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, stop, deadline, [this] { return isGone_; }) && wentIdle_;
  }

  /// Waits for the end of the process first and takes its number back afterwards, under the lock:
  /// nobody ever kills another process that got the same number.
  void reap() {
    watch();
    siginfo_t end{};
    (void)retryingInterrupted(
        [&] { return ::waitid(P_PID, static_cast<id_t>(pid_), &end, WEXITED | WNOWAIT); });
    const std::lock_guard lock(mutex_);
    (void)retryingInterrupted([&] { return ::waitpid(pid_, nullptr, 0); });
    isGone_ = true;
    wentIdle_ = end.si_code == CLD_EXITED && end.si_status == 0;
    changed_.notify_all();
  }

 private:
  /// Until it ends; a system without such handles leaves it to its own limits.
  void watch() {
    constexpr int lookAgain = 1000;  // ms
    const FileDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
    pollfd ended{handle.get(), POLLIN, 0};
    while (handle.isOpen() &&
           retryingInterrupted([&] { return ::poll(&ended, 1, lookAgain); }) == 0) {
      const std::lock_guard lock(mutex_);
      if (allowed_ && processorTimeOf(pid_) > *allowed_) ::kill(pid_, SIGKILL);
    }
  }

  const pid_t pid_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  bool isGone_ = false;  // guarded, as is what follows; the number may be another process's then
  bool wentIdle_ = false;
  std::optional<std::chrono::nanoseconds> allowed_;  // of all that it ever uses
};

std::unique_ptr<ConfinedProcess> ConfinedProcess::start(const std::filesystem::path& program,
                                                        const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return nullptr;
  FileDescriptor ours(ends[0]);
  const FileDescriptor theirs(ends[1]);
  std::promise<std::shared_ptr<Life>> begun;
  auto beginning = begun.get_future();
  try {
    // It ends with the thread that starts it, so that is the one that waits for its end.
    std::thread reaper([&program, &arguments, &theirs, begun = std::move(begun)]() mutable {
      const pid_t pid = spawn(program, arguments, theirs.get());
      const auto life = pid != 0 ? std::make_shared<Life>(pid) : nullptr;
      begun.set_value(life);  // what was borrowed goes now
      if (life) life->reap();
    });
    pthread_setname_np(reaper.native_handle(), "worker-reaper");
    reaper.detach();
  } catch (const std::system_error&) {  // no more threads
    return nullptr;
  }
  auto life = beginning.get();
  if (!life) return nullptr;
  return std::unique_ptr<ConfinedProcess>(new ConfinedProcess(std::move(life), std::move(ours)));
}

ConfinedProcess::ConfinedProcess(std::shared_ptr<Life> life, FileDescriptor socket)
    : life_(std::move(life)), socket_(std::move(socket)) {}

ConfinedProcess::~ConfinedProcess() { life_->kill(); }

std::chrono::nanoseconds ConfinedProcess::processorTime() const {
  return processorTimeOf(life_->processId());
}

void ConfinedProcess::allowProcessorTime(std::chrono::nanoseconds more) { life_->allow(more); }

void ConfinedProcess::terminate() {
  life_->kill();
  ::shutdown(socket_.get(), SHUT_RDWR);
}

bool ConfinedProcess::isRunning() const { return !life_->isGone(); }

bool ConfinedProcess::wentIdle(const std::stop_token& stop, Deadline deadline) const {
  return life_->wentIdle(stop, deadline);
}

pid_t ConfinedProcess::processId() const { return life_->processId(); }

}  // namespace vantorel
