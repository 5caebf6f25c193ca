// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/PipeReader.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace vantorel {

namespace {

// As much as a pipe holds.
constexpr std::size_t pieceBytes = std::size_t{64} * 1024;

}  // namespace

FileDescriptor PipeReader::read(Completion completion) {
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    completion({OwnerForms::Outcome::lost});
    return FileDescriptor(-1);
  }
  // This end alone: who writes into the other may expect to be made to wait.
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  auto& transfer =
      transfers_.emplace(ends[0], Transfer{FileDescriptor(ends[0]), std::move(completion), {}})
          .first->second;
  startSilenceTimer(transfer);
  thread_.watch(ends[0], POLLIN, [this, pipe = ends[0]] { take(pipe); });
  return FileDescriptor(ends[1]);
}

void PipeReader::take(int pipe) {
  const auto found = transfers_.find(pipe);
  auto& received = found->second.received;
  const std::size_t before = received.size();
  received.resize(before + pieceBytes);
  const auto count =
      retryingInterrupted([&] { return ::read(pipe, received.data() + before, pieceBytes); });
  received.resize(before + static_cast<std::size_t>(count > 0 ? count : 0));
  if (count == 0) {
    finish(found, OwnerForms::Outcome::received);
  } else if (received.size() > OwnerForms::maximumBytes || (count < 0 && errno != EAGAIN) ||
             WorkLine::Clock::now() > found->second.deadline) {
    finish(found, OwnerForms::Outcome::lost);
  } else if (count > 0) {
    startSilenceTimer(found->second);
  }
}

void PipeReader::startSilenceTimer(Transfer& transfer) {
  thread_.cancel(transfer.silenceTimer);
  transfer.silenceTimer = thread_.after(patience_, [this, pipe = transfer.pipe.get()] {
    finish(transfers_.find(pipe), OwnerForms::Outcome::lost);
  });
}

void PipeReader::finish(Transfers::iterator transfer, OwnerForms::Outcome outcome) {
  auto ended = transfers_.extract(transfer);
  auto& done = ended.mapped();
  thread_.unwatch(done.pipe.get());
  thread_.cancel(done.silenceTimer);
  const bool isWhole = outcome == OwnerForms::Outcome::received;
  done.completion({outcome, isWhole ? std::move(done.received) : Bytes()});
}

void PipeReader::abortAll() {
  while (!transfers_.empty()) finish(transfers_.begin(), OwnerForms::Outcome::lost);
}

}  // namespace vantorel
