#include "base/SecretBytes.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <utility>

namespace vantorel {

SecretBytes::SecretBytes(std::size_t size)
    : data_(std::make_unique<std::byte[]>(size)), size_(size) {}

SecretBytes::SecretBytes(ByteView bytes) : SecretBytes(bytes.size()) {
  std::copy(bytes.begin(), bytes.end(), data_.get());
}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept
    : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept {
  if (this != &other) {
    wipe();
    data_ = std::move(other.data_);
    size_ = std::exchange(other.size_, 0);
  }
  return *this;
}

SecretBytes::~SecretBytes() { wipe(); }

SecretBytes SecretBytes::duplicate() const { return SecretBytes(view()); }

void SecretBytes::wipe() noexcept {
  if (data_) OPENSSL_cleanse(data_.get(), size_);
}

}  // namespace vantorel
