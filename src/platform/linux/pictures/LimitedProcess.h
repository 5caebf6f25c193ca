// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/linux/pictures/StopSignal.h"

namespace vantorel {

/// What a program may use at most.
struct ProcessLimits {
  std::chrono::milliseconds time{10'000};
  std::uint64_t memory = std::uint64_t{2} << 30U;     // bytes of address space
  std::uint64_t fileSize = std::uint64_t{16} << 20U;  // bytes, of each file it writes
};

enum class ProcessEnd { success, failure, crashed, tookTooLong, stopped, notStarted };

/// Runs the program `command[0]`, an absolute path, to its end, in the process group of its own,
/// with no input, no output, and `home` for its home and its temporary files. Of our environment it
/// gets the places of programs and the user's language: no screen, no bus, no keys. Whatever of the
/// group still runs at the end, at the time limit or when `stop` is raised is killed; so it is when
/// the calling thread dies. Words with a NUL byte, which would arrive shorter, start nothing. A
/// signal that ends the program itself is a crash, also where it is over a limit, and also one that
/// a shell or a box tells of in its exit status. Waits; not for the main thread.
[[nodiscard]] ProcessEnd runLimited(const std::vector<std::string>& command,
                                    const std::filesystem::path& home, const ProcessLimits& limits,
                                    const StopSignal& stop);

}  // namespace vantorel
