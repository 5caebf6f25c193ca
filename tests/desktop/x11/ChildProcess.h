#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace vantorel {

/// A program that a test started. Ends with this object.
class ChildProcess {
 public:
  /// `arguments` begin with the program; `environment` holds "NAME=value" additions.
  ChildProcess(const std::vector<std::string>& arguments,
               const std::vector<std::string>& environment);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  /// What it has written to its standard output by now.
  [[nodiscard]] const std::string& output();
  /// Readable when there is more.
  [[nodiscard]] int outputDescriptor() const { return output_; }
  /// Whether it has ended by itself.
  [[nodiscard]] bool ended();
  void kill();

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string text_;
};

}  // namespace vantorel
