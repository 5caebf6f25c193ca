// SPDX-License-Identifier: MIT
#include "platform/linux/confined/WorkerProgram.h"

#include <unistd.h>

#include <system_error>

namespace vantorel {

namespace fs = std::filesystem;

fs::path workerProgram(std::string_view name) {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  if (error) return {};
  const fs::path directory = self.parent_path();
  for (const fs::path& program : {directory / name, directory / VANTOREL_LIBEXEC_FROM_BIN / name}) {
    if (::access(program.c_str(), X_OK) == 0) return program.lexically_normal();
  }
  return {};
}

}  // namespace vantorel
