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

std::optional<Bytes> openedIfSealed(const SecureStorage* storage, Bytes bytes) {
  if (!SecureStorage::isSealed(bytes)) return bytes;
  if (storage == nullptr) return std::nullopt;
  return opened(*storage, bytes);
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
