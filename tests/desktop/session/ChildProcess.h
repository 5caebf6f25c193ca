// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <csignal>
#include <string>
#include <vector>

namespace vantorel {

/// A program that a test started, with everything it started itself: ended with this object.
class ChildProcess {
 public:
  enum class Input { none, pipe };

  ChildProcess() = default;
  /// Starts `arguments[0]` from the search path with the environment of this process, but for the
  /// variables in `environment`, each "NAME=value".
  explicit ChildProcess(const std::vector<std::string>& arguments, Input input = Input::none,
                        const std::vector<std::string>& environment = {});
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ~ChildProcess();

  [[nodiscard]] bool running() const { return pid_ > 0; }
  [[nodiscard]] pid_t pid() const { return pid_; }
  /// Whether it has ended, by itself or by a signal from here. Does not wait.
  [[nodiscard]] bool ended();
  /// What it has written to its standard output by now. Does not wait.
  [[nodiscard]] const std::string& output();
  /// The next line of its standard output. Waits for it.
  [[nodiscard]] std::string readLine();
  /// Everything it writes to its standard output until it closes it.
  [[nodiscard]] std::string readAll();
  /// Writes and closes its standard input.
  void writeInput(const std::string& text);
  void signal(int number) const;
  /// Waits for its end; answers the exit status, or -1 after a signal.
  int wait();
  /// Ends it and its process group at once.
  void kill();

 private:
  void closeEnds();

  pid_t pid_ = -1;
  int output_ = -1;
  int input_ = -1;
  std::string text_;  // of `output`
};

/// Runs a program to its end and answers what it printed; `status` gets its exit status.
std::string runProgram(const std::vector<std::string>& arguments, int* status = nullptr,
                       const std::string& input = {});

}  // namespace vantorel
