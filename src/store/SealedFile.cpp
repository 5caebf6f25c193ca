// SPDX-License-Identifier: MIT
#include "store/SealedFile.h"

#include <exception>

#include "base/AtomicFile.h"

namespace vantorel {

std::optional<Bytes> opened(const SecureStorage& storage, ByteView envelope) {
  try {
    return storage.open(envelope);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

bool writeSealed(FileSystem& files, const std::filesystem::path& path, const SecureStorage& storage,
                 ByteView plaintext) {
  try {
    return !writeAtomically(files, path, storage.seal(plaintext));
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace vantorel
