#include "desktop/session/ChildProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <utility>

namespace vantorel {
namespace {

/// Between fork and exec: only calls that are safe there.
[[noreturn]] void becomeProgram(char* const* arguments, int input, int output) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  execvp(arguments[0], arguments);
  _exit(127);
}

std::array<int, 2> newPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return ends;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, Input input) {
  std::vector<char*> pointers;
  for (const std::string& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  const auto output = newPipe();
  std::array<int, 2> feed{open("/dev/null", O_RDONLY | O_CLOEXEC), -1};
  if (input == Input::pipe) {
    close(feed[0]);
    feed = newPipe();
  }
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("no process");
  if (pid_ == 0) becomeProgram(pointers.data(), feed[0], output[1]);
  close(feed[0]);
  close(output[1]);
  output_ = output[0];
  input_ = feed[1];
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, -1)),
      output_(std::exchange(other.output_, -1)),
      input_(std::exchange(other.input_, -1)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  if (this != &other) {
    kill();
    pid_ = std::exchange(other.pid_, -1);
    output_ = std::exchange(other.output_, -1);
    input_ = std::exchange(other.input_, -1);
  }
  return *this;
}

ChildProcess::~ChildProcess() { kill(); }

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
