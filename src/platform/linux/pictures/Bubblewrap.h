// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/pictures/StopSignal.h"

namespace vantorel {

/// Shuts programs into a box, with the program bwrap: they find the system's own files, and the
/// files that their command names, and can only read them; one directory of ours; devices that hold
/// nothing; and no network, no bus, no other process. They end with the thread that started them.
/// Any thread.
class Bubblewrap {
 public:
  /// What is to be seen in the box, in its usual places.
  struct Seen {
    std::filesystem::path file;       // to be read
    std::filesystem::path directory;  // to be written into; programs start there
  };

  /// `program` may be absent or empty: then there is no box.
  explicit Bubblewrap(std::filesystem::path program) : program_(std::move(program)) {}

  /// The command that runs `command`, whose program is an absolute path, in a box. It is the same
  /// command where this system has no box, which is found out once, at the first question, by
  /// running bwrap: not for the main thread. `stop` ends that, as if there were none.
  [[nodiscard]] std::vector<std::string> boxed(const std::vector<std::string>& command,
                                               const Seen& seen, const StopSignal& stop);

  /// Whether programs are boxed here; found out in the same way, in that directory.
  [[nodiscard]] bool works(const std::filesystem::path& directory, const StopSignal& stop);

 private:
  [[nodiscard]] std::vector<std::string> inBox(const std::vector<std::string>& command,
                                               const Seen& seen) const;

  const std::filesystem::path program_;
  std::mutex mutex_;
  std::optional<bool> works_;  // guarded
};

}  // namespace vantorel
