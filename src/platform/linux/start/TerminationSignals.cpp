// SPDX-License-Identifier: MIT
#include "platform/linux/start/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <utility>

namespace vantorel {
namespace {

constexpr char signalArrived = 's';
constexpr char ending = 'e';

/// Where the signal handler writes; -1 while nobody listens.
std::atomic<int> wakeDescriptor = -1;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void noteSignal(int /*signal*/) {
  const int saved = errno;
  const int descriptor = wakeDescriptor.load();
  if (descriptor >= 0) {
    // A full pipe means that a wake-up is already on its way.
    [[maybe_unused]] const auto written = write(descriptor, &signalArrived, 1);
  }
  errno = saved;
}

bool isIgnored(int signal) {
  struct sigaction current {};
  sigaction(signal, nullptr, &current);
  return (current.sa_flags & SA_SIGINFO) == 0 && current.sa_handler == SIG_IGN;
}

char readByte(const FileDescriptor& file) {
  char byte = ending;
  const auto count = retryingInterrupted([&] { return read(file.get(), &byte, 1); });
  return count == 1 ? byte : ending;
}

}  // namespace

TerminationSignals::TerminationSignals(Dispatch& dispatch, std::function<void()> handler)
    : dispatch_(dispatch), handler_(std::move(handler)) {
  notify_ = life_.guard([this] {
    if (handler_) handler_();
  });
  previous_.push_back({.signal = SIGPIPE});
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &previous_.back().action);

  std::array<int, 2> ends{};
  // Without descriptors left, the signals keep their default effect: the process ends.
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
  pipe_.emplace(Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])});
  fcntl(ends[1], F_SETFL, O_NONBLOCK);
  wakeDescriptor = ends[1];
  thread_ = std::thread([this] { waitForSignal(); });
  install(SIGTERM);
  install(SIGINT);
  // Started to outlive its terminal, the program does.
  if (!isIgnored(SIGHUP)) install(SIGHUP);
}

TerminationSignals::~TerminationSignals() {
  for (const Previous& previous : previous_) sigaction(previous.signal, &previous.action, nullptr);
  wakeDescriptor = -1;
  if (!pipe_) return;
  [[maybe_unused]] const auto written = write(pipe_->writeEnd.get(), &ending, 1);
  thread_.join();
}

void TerminationSignals::install(int signal) {
  Previous previous{.signal = signal};
  struct sigaction action {};
  action.sa_handler = noteSignal;
  action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, &previous.action);
  previous_.push_back(previous);
}

void TerminationSignals::waitForSignal() {
  if (readByte(pipe_->readEnd) != signalArrived) return;
  dispatch_.async(notify_);
  while (readByte(pipe_->readEnd) == signalArrived) {
  }
}

}  // namespace vantorel
