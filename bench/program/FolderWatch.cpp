// SPDX-License-Identifier: MIT
#include "program/FolderWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace vantorel::bench {

FolderWatch::FolderWatch(const std::string& folder, std::string name)
    : name_(std::move(name)), descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (descriptor_ < 0 ||
      inotify_add_watch(descriptor_, folder.c_str(), IN_CREATE | IN_MOVED_TO) < 0) {
    if (descriptor_ >= 0) close(descriptor_);
    throw std::runtime_error("cannot watch " + folder);
  }
}

FolderWatch::~FolderWatch() { close(descriptor_); }

void FolderWatch::reset() {
  read();
  begun_.reset();
  finished_.reset();
}

void FolderWatch::read() {
  alignas(inotify_event) std::array<char, 16384> buffer{};
  for (;;) {
    const auto length = ::read(descriptor_, buffer.data(), buffer.size());
    if (length <= 0) return;
    const auto now = Clock::now();
    for (ssize_t place = 0; place < length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + place);
      if ((event->mask & IN_CREATE) != 0 && !begun_) begun_ = now;
      if ((event->mask & IN_MOVED_TO) != 0 && event->len > 0 && name_ == event->name) {
        finished_ = now;
      }
      place += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
  }
}

}  // namespace vantorel::bench
