// SPDX-License-Identifier: MIT
#include "platform/linux/confined/SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace vantorel {
namespace {

FileDescriptor made(std::size_t size) {
  FileDescriptor memory(::memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (memory.isOpen() && ::ftruncate(memory.get(), static_cast<off_t>(size)) != 0)
    (void)memory.close();
  return memory;
}

bool seal(const FileDescriptor& memory, int seals) {
  return ::fcntl(memory.get(), F_ADD_SEALS, seals) == 0;
}

constexpr int fixedSize = F_SEAL_SHRINK | F_SEAL_GROW;

}  // namespace

FileDescriptor sharedCopy(ByteView bytes) {
  FileDescriptor memory = made(bytes.size());
  for (std::size_t done = 0; memory.isOpen() && done < bytes.size();) {
    const ssize_t count = retryingInterrupted([&] {
      return ::pwrite(memory.get(), bytes.data() + done, bytes.size() - done,
                      static_cast<off_t>(done));
    });
    if (count <= 0) {
      (void)memory.close();
      return memory;
    }
    done += static_cast<std::size_t>(count);
  }
  if (memory.isOpen() && !seal(memory, fixedSize | F_SEAL_WRITE | F_SEAL_SEAL))
    (void)memory.close();
  return memory;
}

FileDescriptor sharedRoom(std::size_t size) {
  FileDescriptor memory = made(size);
  if (memory.isOpen() && !seal(memory, fixedSize | F_SEAL_SEAL)) (void)memory.close();
  return memory;
}

bool readShared(const FileDescriptor& memory, std::span<std::byte> into) {
  for (std::size_t done = 0; done < into.size();) {
    const ssize_t count = retryingInterrupted([&] {
      return ::pread(memory.get(), into.data() + done, into.size() - done,
                     static_cast<off_t>(done));
    });
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

MappedMemory::MappedMemory(const FileDescriptor& memory, Access access) {
  const off_t size = memory.isOpen() ? ::lseek(memory.get(), 0, SEEK_END) : 0;
  if (size <= 0) return;
  const int protection = access == Access::writing ? PROT_READ | PROT_WRITE : PROT_READ;
  const int sharing = access == Access::writing ? MAP_SHARED : MAP_PRIVATE;
  void* const start =
      ::mmap(nullptr, static_cast<std::size_t>(size), protection, sharing, memory.get(), 0);
  if (start != MAP_FAILED)
    bytes_ = {static_cast<std::byte*>(start), static_cast<std::size_t>(size)};
}

MappedMemory::~MappedMemory() {
  if (!bytes_.empty()) ::munmap(bytes_.data(), bytes_.size());
}

}  // namespace vantorel
