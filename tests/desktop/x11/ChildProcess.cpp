#include "desktop/x11/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <stdexcept>

extern char** environ;

namespace vantorel {

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& additions) {
  std::vector<std::string> result = additions;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    const auto name = text.substr(0, text.find('=') + 1);
    const bool replaced = std::any_of(additions.begin(), additions.end(), [&](const auto& added) {
      return added.compare(0, name.size(), name) == 0;
    });
    if (!replaced) result.push_back(text);
  }
  return result;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments,
                           const std::vector<std::string>& environment) {
  std::array<int, 2> in{};
  std::array<int, 2> out{};
  if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe");
  }
  input_ = in[1];
  output_ = out[0];
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in[0], 0);
  posix_spawn_file_actions_adddup2(&actions, out[1], 1);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  auto own = arguments;
  auto variables = environmentWith(environment);
  const int error = posix_spawnp(&pid_, own.front().c_str(), &actions, nullptr,
                                 pointers(own).data(), pointers(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  close(in[0]);
  close(out[1]);
  if (error != 0) throw std::runtime_error("could not start " + own.front());
  fcntl(output_, F_SETFL, O_NONBLOCK);
}

ChildProcess::~ChildProcess() {
  kill();
  close(input_);
  close(output_);
}

const std::string& ChildProcess::output() {
  std::array<char, 4096> buffer{};
  for (;;) {
    const auto count = read(output_, buffer.data(), buffer.size());
    if (count <= 0) return text_;
    text_.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

bool ChildProcess::ended() {
  if (pid_ <= 0) return true;
  if (waitpid(pid_, nullptr, WNOHANG) != pid_) return false;
  pid_ = -1;
  return true;
}

void ChildProcess::kill() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

}  // namespace vantorel
