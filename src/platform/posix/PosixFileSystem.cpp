// SPDX-License-Identifier: MIT
#include "platform/posix/PosixFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "base/FileDescriptor.h"
#include "base/PathName.h"

namespace vantorel {
namespace {

using Error = FileSystem::Error;

/// What one system call moves at most: some systems refuse more.
constexpr std::size_t maxPerCall = std::size_t{1} << 30U;

/// For a path that would reach another file than it names.
Error noSuchName() { return std::make_error_code(std::errc::invalid_argument); }

FileDescriptor open(const FileSystem::Path& path, int flags, mode_t permissions = 0) {
  return FileDescriptor(
      retryingInterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, permissions); }));
}

Error writeAll(int file, ByteView bytes) {
  while (!bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), maxPerCall);
    const ssize_t written = retryingInterrupted([&] { return ::write(file, bytes.data(), count); });
    if (written < 0) return lastSystemError();
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return {};
}

/// Fills `bytes` as far as the file goes, and answers how far; absent on an error.
std::optional<std::size_t> readUpTo(int file, std::span<std::byte> bytes) {
  std::size_t total = 0;
  while (total < bytes.size()) {
    const std::size_t count = std::min(bytes.size() - total, maxPerCall);
    const ssize_t got =
        retryingInterrupted([&] { return ::read(file, bytes.data() + total, count); });
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    total += static_cast<std::size_t>(got);
  }
  return total;
}

Error createDirectory(const FileSystem::Path& path, unsigned permissions) {
  if (::mkdir(path.c_str(), static_cast<mode_t>(permissions)) == 0) {
    // The umask had a say in it.
    return ::chmod(path.c_str(), static_cast<mode_t>(permissions)) == 0 ? Error()
                                                                        : lastSystemError();
  }
  const Error error = lastSystemError();
  struct stat status {};
  const bool standsThere = ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  return standsThere ? Error() : error;
}

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};

}  // namespace

PosixFileSystem::PosixFileSystem(OnDirectory excludeFromBackup, OnDirectory claim)
    : excludeFromBackup_(std::move(excludeFromBackup)), claim_(std::move(claim)) {}

bool PosixFileSystem::exists(const Path& path) {
  if (!isNameable(path)) return false;
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool PosixFileSystem::isLink(const Path& path) {
  struct stat status {};
  return isNameable(path) && ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool PosixFileSystem::isWithinReach(const Path& path) {
  struct stat status {};
  return isNameable(path) && ::stat(path.c_str(), &status) == 0;
}

std::optional<Bytes> PosixFileSystem::readFile(const Path& path, std::uint64_t maximumBytes) {
  if (!isNameable(path)) return std::nullopt;
  // Not blocking: opening a pipe would wait for its writer.
  const FileDescriptor file = open(path, O_RDONLY | O_NONBLOCK);
  struct stat status {};
  // What could not be opened has no status either.
  if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  const auto size = static_cast<std::uint64_t>(status.st_size);
  if (size > maximumBytes) return std::nullopt;
  try {
    Bytes bytes(size);
    const auto count = readUpTo(file.get(), bytes);
    if (!count) return std::nullopt;
    bytes.resize(*count);
    return bytes;
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

std::optional<std::uint64_t> PosixFileSystem::fileSize(const Path& path) {
  if (!isNameable(path)) return std::nullopt;
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::vector<FileSystem::Path>> PosixFileSystem::list(const Path& directory) {
  if (!isNameable(directory)) return std::nullopt;
  const std::unique_ptr<DIR, CloseDirectory> open(::opendir(directory.c_str()));
  if (!open) return std::nullopt;
  std::vector<Path> names;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(open.get());  // NOLINT(concurrency-mt-unsafe): own stream
    if (entry == nullptr) break;
    const std::string_view name(static_cast<const char*>(entry->d_name));
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return std::nullopt;
  return names;
}

Error PosixFileSystem::createDirectories(const Path& path, unsigned permissions) {
  if (!isNameable(path)) return noSuchName();
  Path partial;
  for (const Path& component : path) {
    partial /= component;
    if (component.empty() || partial == partial.root_path()) continue;
    if (const Error error = createDirectory(partial, permissions)) return error;
  }
  return {};
}

Error PosixFileSystem::setPermissions(const Path& path, unsigned permissions) {
  if (!isNameable(path)) return noSuchName();
  return ::chmod(path.c_str(), static_cast<mode_t>(permissions)) == 0 ? Error() : lastSystemError();
}

Error PosixFileSystem::excludeFromBackup(const Path& path) {
  if (!isNameable(path)) return noSuchName();
  return excludeFromBackup_ ? excludeFromBackup_(path) : Error();
}

Error PosixFileSystem::claim(const Path& directory) {
  if (!isNameable(directory)) return noSuchName();
  return claim_ ? claim_(directory) : Error();
}

Error PosixFileSystem::writeNewFile(const Path& path, ByteView bytes, unsigned permissions) {
  if (!isNameable(path)) return noSuchName();
  const auto mode = static_cast<mode_t>(permissions);
  FileDescriptor file = open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
  if (!file.isOpen()) return lastSystemError();
  // The umask can only have taken permissions away.
  if (::fchmod(file.get(), mode) != 0) return lastSystemError();
  if (const Error error = writeAll(file.get(), bytes)) return error;
  if (retryingInterrupted([&] { return ::fsync(file.get()); }) != 0) return lastSystemError();
  return file.close();
}

Error PosixFileSystem::rename(const Path& from, const Path& to) {
  if (!isNameable(from) || !isNameable(to)) return noSuchName();
  return std::rename(from.c_str(), to.c_str()) == 0 ? Error() : lastSystemError();
}

Error PosixFileSystem::syncDirectory(const Path& path) {
  if (!isNameable(path)) return noSuchName();
  const FileDescriptor directory = open(path.empty() ? Path(".") : path, O_RDONLY | O_DIRECTORY);
  if (!directory.isOpen()) return lastSystemError();
  if (retryingInterrupted([&] { return ::fsync(directory.get()); }) == 0) return {};
  // Some file systems cannot do this for directories, and need not.
  const Error error = lastSystemError();
  const bool cannot = error == std::errc::invalid_argument || error == std::errc::not_supported ||
                      error == std::errc::operation_not_supported;
  return cannot ? Error() : error;
}

Error PosixFileSystem::remove(const Path& path) {
  if (!isNameable(path)) return noSuchName();
  return std::remove(path.c_str()) == 0 ? Error() : lastSystemError();
}

}  // namespace vantorel
