// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include "base/Bytes.h"

namespace vantorel {

/// Bytes of a key. Move-only, without any way to print or compare them by accident. They lie in
/// memory that is kept out of the swap space and of core files, between pages that nobody may
/// touch; where the system refuses that, or they are more than some kilobytes, in ordinary memory.
/// The whole allocation is wiped when the value dies, is moved from or is assigned to.
class SecretBytes {
 public:
  SecretBytes() = default;
  /// `size` zero bytes.
  explicit SecretBytes(std::size_t size);
  /// A copy of `bytes`; the caller wipes its own.
  explicit SecretBytes(ByteView bytes);
  SecretBytes(SecretBytes&& other) noexcept;
  SecretBytes& operator=(SecretBytes&& other) noexcept;
  SecretBytes(const SecretBytes&) = delete;
  SecretBytes& operator=(const SecretBytes&) = delete;
  ~SecretBytes() = default;

  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] ByteView view() const { return {data_.get(), size_}; }
  [[nodiscard]] std::span<std::byte> bytes() { return {data_.get(), size_}; }
  /// A second, independent copy: spelled out so that no copy is made unnoticed.
  [[nodiscard]] SecretBytes duplicate() const;

 private:
  /// Wipes, then frees.
  struct Free {
    std::size_t size;
    void operator()(std::byte* bytes) const noexcept;
  };

  std::unique_ptr<std::byte[], Free> data_;
  std::size_t size_ = 0;
};

}  // namespace vantorel
