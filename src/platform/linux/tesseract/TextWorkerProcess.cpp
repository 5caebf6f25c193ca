#include "platform/linux/tesseract/TextWorkerProcess.h"

#include <fcntl.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

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

}  // namespace

std::unique_ptr<TextWorkerProcess> TextWorkerProcess::start(
    const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return nullptr;
  const FileDescriptor theirs(ends[1]);

  std::vector<std::string> words{program.string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  // One thread reads a line faster than several: they would mostly wait for each other.
  std::vector<std::string> variables{"OMP_THREAD_LIMIT=1", "OMP_NUM_THREADS=1", "LC_ALL=C",
                                     "TMPDIR=/nonexistent"};
  const auto pointers = [](std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (auto& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
  };
  const SpawnSetup setup(theirs.get());
  pid_t pid = 0;
  if (::posix_spawn(&pid, program.c_str(), setup.files(), setup.attributes(),
                    pointers(words).data(), pointers(variables).data()) != 0) {
    ::close(ends[0]);
    return nullptr;
  }
  return std::unique_ptr<TextWorkerProcess>(new TextWorkerProcess(pid, ends[0]));
}

TextWorkerProcess::TextWorkerProcess(pid_t pid, int socket)
    : pid_(pid), socket_(socket), reaper_([this] { reap(); }) {
  pthread_setname_np(reaper_.native_handle(), "text-reaper");
}

TextWorkerProcess::~TextWorkerProcess() {
  terminate();
  reaper_.join();
}

std::optional<TextReply> TextWorkerProcess::read(ByteView picture, Deadline deadline) {
  if (!sendPicture(socket_.get(), picture, deadline)) return std::nullopt;
  return receiveReply(socket_.get(), deadline);
}

void TextWorkerProcess::terminate() {
  const std::lock_guard lock(mutex_);
  if (!isGone_) ::kill(pid_, SIGKILL);
}

bool TextWorkerProcess::isRunning() {
  const std::lock_guard lock(mutex_);
  return !isGone_;
}

/// Waits for the end of the process first and takes its number back afterwards, under the lock:
/// nobody ever kills another process that got the same number.
void TextWorkerProcess::reap() {
  siginfo_t information{};
  (void)retryingInterrupted(
      [&] { return ::waitid(P_PID, static_cast<id_t>(pid_), &information, WEXITED | WNOWAIT); });
  const std::lock_guard lock(mutex_);
  (void)retryingInterrupted([&] { return ::waitpid(pid_, nullptr, 0); });
  isGone_ = true;
}

}  // namespace vantorel
