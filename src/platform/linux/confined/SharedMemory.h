// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "base/Bytes.h"
#include "base/FileDescriptor.h"

namespace vantorel {

// Memory that one process makes and hands to another as an open file. Its size never changes again,
// so that nobody reads beyond an end that the other has moved. It counts as used only where it was
// written to.

/// Holds a copy of the bytes, which nobody can change any more. Not open when there is no memory.
[[nodiscard]] FileDescriptor sharedCopy(ByteView bytes);

/// So many zeroes to be written over. Not open when there is no memory.
[[nodiscard]] FileDescriptor sharedRoom(std::size_t size);

/// Copies as many bytes as `into` takes from the start: whoever else has the memory may go on
/// writing to it. False when it is smaller.
[[nodiscard]] bool readShared(const FileDescriptor& memory, std::span<std::byte> into);

/// A view of shared memory in this process, for as long as this lives.
class MappedMemory {
 public:
  enum class Access { reading, writing };

  /// Empty when it is none.
  MappedMemory(const FileDescriptor& memory, Access access);
  ~MappedMemory();
  MappedMemory(const MappedMemory&) = delete;
  MappedMemory& operator=(const MappedMemory&) = delete;

  [[nodiscard]] std::span<std::byte> bytes() const { return bytes_; }

 private:
  std::span<std::byte> bytes_;
};

}  // namespace vantorel
