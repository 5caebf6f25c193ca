// SPDX-License-Identifier: MIT
#include "base/RandomBytes.h"

#include <openssl/rand.h>

#include "base/CipherError.h"

namespace vantorel {
namespace {

using Generator = int (*)(unsigned char*, int);

void fill(std::span<std::byte> bytes, Generator generator) {
  if (generator(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<int>(bytes.size())) !=
      1) {
    throw CipherError("the system gives no random bytes");
  }
}

}  // namespace

void fillWithRandom(std::span<std::byte> bytes) { fill(bytes, RAND_bytes); }

SecretBytes randomSecret(std::size_t size) {
  SecretBytes secret(size);
  fill(secret.bytes(), RAND_priv_bytes);
  return secret;
}

}  // namespace vantorel
