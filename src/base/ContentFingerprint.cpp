// SPDX-License-Identifier: MIT
#include "base/ContentFingerprint.h"

#include <openssl/evp.h>

#include <array>
#include <new>

namespace vantorel::ContentFingerprint {

std::string data(ByteView bytes) {
  std::array<unsigned char, 32> digest{};
  // Without memory for its context the digest is the only thing here that can fail.
  if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, EVP_sha256(), nullptr) != 1) {
    throw std::bad_alloc();
  }
  constexpr auto digits = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : digest) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace vantorel::ContentFingerprint
