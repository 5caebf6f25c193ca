// SPDX-License-Identifier: MIT
#include "program/Measurement.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vantorel::bench {

std::size_t count(Arguments arguments, std::size_t place) {
  if (place >= arguments.size()) throw std::runtime_error("an argument is missing");
  return static_cast<std::size_t>(std::stoul(arguments[place]));
}

std::string contentsOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  std::string contents((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (contents.empty()) throw std::runtime_error("there is nothing to copy");
  return contents;
}

pid_t startProgram(const char* path, const char* argument) {
  const auto program = fork();
  if (program < 0) throw std::runtime_error("cannot start the program");
  if (program > 0) return program;
  // It must not outlive a measurement that failed, nor keep its output open, nor share its view of
  // broken pipes.
  signal(SIGPIPE, SIG_DFL);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
  execl(path, path, argument, nullptr);
  _exit(127);
}

void waitForEnd(pid_t program) {
  int status = 0;
  waitpid(program, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw std::runtime_error("the program did not end in order");
  }
}

void endProgram(pid_t program) {
  kill(program, SIGTERM);
  waitForEnd(program);
}

void print(const Samples& samples) {
  std::printf("{");
  const char* comma = "";
  for (const auto& [name, values] : samples) {
    std::printf("%s\"%s\": [", comma, name.c_str());
    for (std::size_t i = 0; i < values.size(); ++i) {
      std::printf("%s%.3f", i == 0 ? "" : ", ", values[i]);
    }
    std::printf("]");
    comma = ", ";
  }
  std::printf("}\n");
}

}  // namespace vantorel::bench
