// SPDX-License-Identifier: MIT
#include "desktop/x11pasteboard/PrivateXServer.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

extern char** environ;

namespace vantorel {

namespace {

std::string lineFrom(int descriptor) {
  std::string line;
  char c = 0;
  while (read(descriptor, &c, 1) == 1 && c != '\n') line += c;
  return line;
}

}  // namespace

PrivateXServer::PrivateXServer() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  // The server writes its display number to descriptor 3 when it is ready.
  posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  const std::array<const char*, 10> arguments{"Xvfb",     "-displayfd", "3",         "-screen",
                                              "0",        "640x480x24", "-nolisten", "tcp",
                                              "-noreset", nullptr};
  const int error = posix_spawnp(&process_, "Xvfb", &actions, nullptr,
                                 const_cast<char* const*>(arguments.data()), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  const std::string number = error == 0 ? lineFrom(ends[0]) : std::string();
  close(ends[0]);
  if (number.empty()) throw std::runtime_error("Xvfb did not start");
  display_ = ":" + number;
}

PrivateXServer::~PrivateXServer() { kill(); }

void PrivateXServer::kill() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
  // A killed server leaves these behind, and the number would seem taken for ever.
  unlink(("/tmp/.X" + display_.substr(1) + "-lock").c_str());
  unlink(("/tmp/.X11-unix/X" + display_.substr(1)).c_str());
}

}  // namespace vantorel
