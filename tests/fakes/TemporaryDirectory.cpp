#include "fakes/TemporaryDirectory.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace vantorel {

TemporaryDirectory::TemporaryDirectory() {
  std::string name = std::filesystem::temp_directory_path() / "vantorel-test-XXXXXX";
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
