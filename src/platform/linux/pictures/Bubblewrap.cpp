// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/Bubblewrap.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <system_error>

#include "platform/linux/pictures/LimitedProcess.h"

namespace vantorel {
namespace {

/// Where systems keep programs and what these need, the same for all their users.
constexpr std::array systemTrees = {"/usr",    "/bin", "/sbin", "/lib", "/lib32", "/lib64",
                                    "/libx32", "/etc", "/opt",  "/nix", "/gnu"};

bool isOfTheSystem(const std::filesystem::path& file) {
  return std::any_of(systemTrees.begin(), systemTrees.end(), [&file](const char* tree) {
    const auto relative = file.lexically_relative(tree);
    return !relative.empty() && *relative.begin() != "..";
  });
}

/// Somebody's own thumbnailer, or the script that an interpreter is to run, may lie anywhere.
bool isOwnProgram(const std::filesystem::path& word) {
  std::error_code error;
  return word.is_absolute() && !isOfTheSystem(word) &&
         std::filesystem::is_regular_file(word, error);
}

}  // namespace

std::vector<std::string> Bubblewrap::boxed(const std::vector<std::string>& command,
                                           const Seen& seen, const StopSignal& stop) {
  return !command.empty() && works(seen.directory, stop) ? inBox(command, seen) : command;
}

bool Bubblewrap::works(const std::filesystem::path& directory, const StopSignal& stop) {
  const std::lock_guard lock(mutex_);
  if (works_) return *works_;
  std::error_code error;
  if (program_.empty() || !std::filesystem::exists(program_, error)) {
    works_ = false;
    return false;
  }
  const auto end = runLimited(inBox({program_.string(), "--version"}, {program_, directory}),
                              directory, {}, stop);
  // A machine that is busy, or has no process left, says nothing about the box.
  if (end == ProcessEnd::success || end == ProcessEnd::failure) works_ = end == ProcessEnd::success;
  return end == ProcessEnd::success;
}

std::vector<std::string> Bubblewrap::inBox(const std::vector<std::string>& command,
                                           const Seen& seen) const {
  std::vector<std::string> words{program_.string(), "--unshare-all", "--die-with-parent",
                                 "--new-session",   "--cap-drop",    "ALL"};
  const auto add = [&words](std::initializer_list<std::string> more) {
    words.insert(words.end(), more);
  };
  for (const char* tree : systemTrees) add({"--ro-bind-try", tree, tree});
  add({"--proc", "/proc", "--dev", "/dev", "--tmpfs", "/tmp"});
  for (const std::string& word : command)
    if (isOwnProgram(word)) add({"--ro-bind", word, word});
  add({"--bind", seen.directory.string(), seen.directory.string()});
  add({"--ro-bind", seen.file.string(), seen.file.string()});
  add({"--chdir", seen.directory.string(), "--"});
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

}  // namespace vantorel
