// SPDX-License-Identifier: MIT
#include "fakes/TemporaryDirectory.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace vantorel {
namespace {

/// In memory where the system offers that: the store brings every change to the disk, and a test
/// makes hundreds.
std::filesystem::path place() {
  constexpr const char* inMemory = "/dev/shm";
  if (::access(inMemory, W_OK | X_OK) == 0) return inMemory;
  return std::filesystem::temp_directory_path();
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
  std::string name = place() / "vantorel-test-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "mkdtemp");
  }
  path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace vantorel
