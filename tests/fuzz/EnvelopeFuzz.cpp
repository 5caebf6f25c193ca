// SPDX-License-Identifier: MIT
// Any bytes may stand in a sealed file. Opening them answers with an error or the plaintext, and
// what was sealed here opens to itself.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "security/SecureStorage.h"
#include "security/SecureStorageError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vantorel;
  static const SecureStorage storage{SecretBytes(SecureStorage::keySize)};
  const ByteView input = std::as_bytes(std::span(data, size));
  try {
    (void)storage.open(input);
  } catch (const SecureStorageError& error) {
    // Refused before the cipher saw it: then it must not look like an envelope.
    if (SecureStorage::isSealed(input)) std::abort();
    if (error.kind() != SecureStorageError::Kind::invalidCiphertext) std::abort();
  } catch (const CipherError&) {
    if (!SecureStorage::isSealed(input)) std::abort();
  }
  if (storage.open(storage.seal(input)) != Bytes(input.begin(), input.end())) std::abort();
  return 0;
}
