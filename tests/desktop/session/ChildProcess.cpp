// SPDX-License-Identifier: MIT
#include "desktop/session/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace vantorel {
namespace {

/// Between fork and exec: only calls that are safe there.
[[noreturn]] void becomeProgram(char* const* arguments, char* const* environment, int input,
                                int output) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  execvpe(arguments[0], arguments, environment);
  _exit(127);
}

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
  result.push_back(nullptr);
  return result;
}

/// This process's variables, and `additions` in the place of those of the same names.
std::vector<char*> environmentWith(const std::vector<std::string>& additions) {
  std::vector<char*> result = pointers(additions);
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    const auto name = text.substr(0, text.find('=') + 1);
    const bool isReplaced = std::any_of(additions.begin(), additions.end(), [&](const auto& added) {
      return added.compare(0, name.size(), name) == 0;
    });
    if (!isReplaced) result.insert(result.end() - 1, *variable);
  }
  return result;
}

std::array<int, 2> newPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return ends;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, Input input,
                           const std::vector<std::string>& environment) {
  const auto words = pointers(arguments);
  const auto variables = environmentWith(environment);
  const auto output = newPipe();
  std::array<int, 2> feed{open("/dev/null", O_RDONLY | O_CLOEXEC), -1};
  if (input == Input::pipe) {
    close(feed[0]);
    feed = newPipe();
  }
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("no process");
  if (pid_ == 0) becomeProgram(words.data(), variables.data(), feed[0], output[1]);
  close(feed[0]);
  close(output[1]);
  output_ = output[0];
  input_ = feed[1];
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, -1)),
      output_(std::exchange(other.output_, -1)),
      input_(std::exchange(other.input_, -1)),
      text_(std::move(other.text_)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  if (this != &other) {
    kill();
    pid_ = std::exchange(other.pid_, -1);
    output_ = std::exchange(other.output_, -1);
    input_ = std::exchange(other.input_, -1);
    text_ = std::move(other.text_);
  }
  return *this;
}

ChildProcess::~ChildProcess() { kill(); }

bool ChildProcess::ended() {
  if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == pid_) pid_ = -1;
  return pid_ <= 0;
}

const std::string& ChildProcess::output() {
  std::array<char, 4096> buffer{};
  for (;;) {
    pollfd end{output_, POLLIN, 0};
    const auto count = poll(&end, 1, 0) > 0 ? read(output_, buffer.data(), buffer.size()) : 0;
    if (count <= 0) return text_;
    text_.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

std::string ChildProcess::readLine() {
  std::string line;
  char c = 0;
  while (read(output_, &c, 1) == 1 && c != '\n') line += c;
  return line;
}

std::string ChildProcess::readAll() {
  std::string text;
  std::array<char, 4096> buffer{};
  ssize_t count = 0;
  while ((count = read(output_, buffer.data(), buffer.size())) > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

void ChildProcess::writeInput(const std::string& text) {
  if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("the program does not read");
  }
  close(std::exchange(input_, -1));
}

void ChildProcess::signal(int number) const {
  if (pid_ > 0) ::kill(pid_, number);
}

int ChildProcess::wait() {
  int status = 0;
  while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
  }
  pid_ = -1;
  closeEnds();
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ChildProcess::kill() {
  if (pid_ > 0) {
    ::kill(-pid_, SIGKILL);
    ::kill(pid_, SIGKILL);
    wait();
  }
  closeEnds();
}

void ChildProcess::closeEnds() {
  if (output_ >= 0) close(std::exchange(output_, -1));
  if (input_ >= 0) close(std::exchange(input_, -1));
}

std::string runProgram(const std::vector<std::string>& arguments, int* status,
                       const std::string& input) {
  ChildProcess process(arguments,
                       input.empty() ? ChildProcess::Input::none : ChildProcess::Input::pipe);
  if (!input.empty()) process.writeInput(input);
  std::string text = process.readAll();
  const int ended = process.wait();
  if (status) *status = ended;
  return text;
}

}  // namespace vantorel
