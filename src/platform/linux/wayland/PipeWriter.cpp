// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/PipeWriter.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <utility>

namespace vantorel {

void PipeWriter::write(FileDescriptor pipe, OfferedBytes contents) {
  const int number = pipe.get();
  const int flags = fcntl(number, F_GETFL);
  if (flags < 0 || fcntl(number, F_SETFL, flags | O_NONBLOCK) != 0) return;
  transfers_.emplace(number, Transfer{std::move(pipe), std::move(contents)});
  thread_.watch(number, POLLOUT, [this, number] { goOn(number); });
  goOn(number);
}

void PipeWriter::goOn(int pipe) {
  auto& transfer = transfers_.at(pipe);
  const auto rest = transfer.contents.bytes.subspan(transfer.written);
  const auto count = retryingInterrupted([&] { return ::write(pipe, rest.data(), rest.size()); });
  const bool waits = count < 0 && errno == EAGAIN;
  if (count > 0) transfer.written += static_cast<std::size_t>(count);
  const bool isWhole = transfer.written == transfer.contents.bytes.size();
  if (isWhole || (count <= 0 && !waits)) {
    end(pipe);
    return;
  }
  if (waits && transfer.stallTimer != 0) return;
  thread_.cancel(transfer.stallTimer);
  transfer.stallTimer = thread_.after(stallLimit, [this, pipe] { end(pipe); });
}

void PipeWriter::end(int pipe) {
  thread_.cancel(transfers_.at(pipe).stallTimer);
  thread_.unwatch(pipe);
  transfers_.erase(pipe);
}

void PipeWriter::drop() {
  while (!transfers_.empty()) end(transfers_.begin()->first);
}

}  // namespace vantorel
