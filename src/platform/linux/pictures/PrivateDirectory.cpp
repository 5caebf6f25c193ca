// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/PrivateDirectory.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace vantorel {

PrivateDirectory::PrivateDirectory(const std::filesystem::path& place) {
  std::string name = place / "vantorel-thumbnail-XXXXXX";
  if (::mkdtemp(name.data()) != nullptr) path_ = name;
}

PrivateDirectory::~PrivateDirectory() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

}  // namespace vantorel
