// SPDX-License-Identifier: MIT
#include "base/WipedText.h"

#include <openssl/crypto.h>

namespace vantorel {

void wipe(std::string& text) noexcept {
  text.resize(text.capacity());  // what is beyond the end was text once, perhaps
  OPENSSL_cleanse(text.data(), text.size());
  text.clear();
  std::string().swap(text);
  text.resize(text.capacity());  // the swap leaves the old capacity where short texts stand
  text.clear();
}

void wipe(Bytes& bytes) noexcept {
  bytes.resize(bytes.capacity());
  OPENSSL_cleanse(bytes.data(), bytes.size());
  Bytes().swap(bytes);
}

}  // namespace vantorel
