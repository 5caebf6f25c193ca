// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/KeyboardConnection.h"

#include <poll.h>

#include <utility>

#include "platform/linux/wayland/ChordKeyboard.h"

namespace vantorel {

KeyboardConnection::KeyboardConnection(WaylandThread& thread,
                                       std::unique_ptr<WaylandConnection> connection)
    : thread_(thread), connection_(std::move(connection)) {}

KeyboardConnection::~KeyboardConnection() { leave(); }

bool KeyboardConnection::listen() {
  return thread_.runAndWait([this] {
    thread_.watch(connection_->fileDescriptor(), POLLIN, [this] {
      if (!connection_->handleArrived()) lose();
    });
  });
}

bool KeyboardConnection::settle() {
  if (connection_->catchUp(WorkLine::Clock::now() + ChordKeyboard::answerLimit)) return true;
  // Where somebody listens already, the watched descriptor tells the thread of it, too.
  if (connection_->isBroken()) isOpen_ = false;
  return false;
}

void KeyboardConnection::leave() {
  const bool unwatched = thread_.runAndWait([this] { lose(); });
  static_cast<void>(unwatched);  // a thread that has stopped watches nothing
}

void KeyboardConnection::lose() {
  isOpen_ = false;
  thread_.unwatch(connection_->fileDescriptor());
}

}  // namespace vantorel
