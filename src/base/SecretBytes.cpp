// SPDX-License-Identifier: MIT
#include "base/SecretBytes.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <new>
#include <utility>

namespace vantorel {
namespace {

// A power of two each, as the library wants it. The least limit on locked memory that is met is
// 64 KiB, and others in this process lock memory too.
constexpr std::size_t heapSize = 16'384;
constexpr std::size_t smallestBlock = 32;

/// Made at the first use. It stays until the process ends, for the last secret may be a static one.
void prepareSecureHeap() {
  static const int made = CRYPTO_secure_malloc_init(heapSize, smallestBlock);
  static_cast<void>(made);  // without it, or when it is full, ordinary memory does
}

std::byte* allocate(std::size_t size) {
  if (size == 0) return nullptr;
  prepareSecureHeap();
  void* bytes = OPENSSL_secure_zalloc(size);
  if (bytes == nullptr) bytes = OPENSSL_zalloc(size);
  if (bytes == nullptr) throw std::bad_alloc();
  return static_cast<std::byte*>(bytes);
}

}  // namespace

void SecretBytes::Free::operator()(std::byte* bytes) const noexcept {
  OPENSSL_secure_clear_free(bytes, size);  // knows which of the two it is
}

SecretBytes::SecretBytes(std::size_t size) : data_(allocate(size), Free{size}), size_(size) {}

SecretBytes::SecretBytes(ByteView bytes) : SecretBytes(bytes.size()) {
  std::copy(bytes.begin(), bytes.end(), data_.get());
}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept
    : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept {
  data_ = std::move(other.data_);
  size_ = std::exchange(other.size_, 0);
  return *this;
}

SecretBytes SecretBytes::duplicate() const { return SecretBytes(view()); }

}  // namespace vantorel
