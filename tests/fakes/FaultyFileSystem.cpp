// SPDX-License-Identifier: MIT
#include "fakes/FaultyFileSystem.h"

#include <utility>

namespace vantorel {

using Error = FileSystem::Error;

bool FaultyFileSystem::exists(const Path& path) { return !dead_ && files_.exists(path); }

bool FaultyFileSystem::isLink(const Path& path) { return !dead_ && files_.isLink(path); }

bool FaultyFileSystem::isWithinReach(const Path& path) {
  return !dead_ && files_.isWithinReach(path);
}

std::optional<Bytes> FaultyFileSystem::readFile(const Path& path, std::uint64_t maximumBytes) {
  if (dead_ || unreadable_.count(path) != 0) return std::nullopt;
  return files_.readFile(path, maximumBytes);
}

std::optional<std::uint64_t> FaultyFileSystem::fileSize(const Path& path) {
  if (dead_ || sizeless_.count(path) != 0) return std::nullopt;
  return files_.fileSize(path);
}

std::optional<std::vector<FileSystem::Path>> FaultyFileSystem::list(const Path& directory) {
  if (dead_) return std::nullopt;
  return files_.list(directory);
}

Error FaultyFileSystem::createDirectories(const Path& path, unsigned permissions) {
  return change(Operation::createDirectories, path,
                [&] { return files_.createDirectories(path, permissions); });
}

Error FaultyFileSystem::setPermissions(const Path& path, unsigned permissions) {
  return change(Operation::setPermissions, path,
                [&] { return files_.setPermissions(path, permissions); });
}

Error FaultyFileSystem::excludeFromBackup(const Path& path) {
  return change(Operation::excludeFromBackup, path, [&] { return files_.excludeFromBackup(path); });
}

Error FaultyFileSystem::claim(const Path& directory) {
  return change(Operation::claim, directory, [&] { return files_.claim(directory); });
}

Error FaultyFileSystem::writeNewFile(const Path& path, ByteView bytes, unsigned permissions) {
  return change(
      Operation::writeNewFile, path, [&] { return files_.writeNewFile(path, bytes, permissions); },
      [&] { (void)files_.writeNewFile(path, bytes.first(bytes.size() / 2), permissions); });
}

Error FaultyFileSystem::rename(const Path& from, const Path& to) {
  return change(Operation::rename, to, [&] { return files_.rename(from, to); });
}

Error FaultyFileSystem::syncDirectory(const Path& path) {
  return change(Operation::syncDirectory, path, [&] { return files_.syncDirectory(path); });
}

Error FaultyFileSystem::remove(const Path& path) {
  return change(Operation::remove, path, [&] { return files_.remove(path); });
}

void FaultyFileSystem::failAt(int number, std::errc error) {
  countdownToFailure_ = number;
  nextError_ = error;
}

void FaultyFileSystem::dieAt(int number, Progress progress) {
  countdownToDeath_ = number;
  progressAtDeath_ = progress;
}

void FaultyFileSystem::recover() {
  failing_.clear();
  unreadable_.clear();
  sizeless_.clear();
  countdownToFailure_ = never;
  countdownToDeath_ = never;
  dead_ = false;
}

Error FaultyFileSystem::change(Operation operation, const Path& path,
                               const std::function<Error()>& whole,
                               const std::function<void()>& half) {
  const Error gone = std::make_error_code(std::errc::io_error);
  if (dead_) return gone;
  calls_.push_back({operation, path});
  if (countdownToDeath_ != never && countdownToDeath_-- == 0) {
    dead_ = true;
    if (progressAtDeath_ == Progress::half && half) half();
    if (progressAtDeath_ == Progress::whole) (void)whole();
    return gone;
  }
  const bool failsNow = countdownToFailure_ != never && countdownToFailure_-- == 0;
  const auto failing = failing_.find(operation);
  if (!failsNow && failing == failing_.end()) return whole();
  if (half) half();
  return std::make_error_code(failsNow ? nextError_ : failing->second);
}

}  // namespace vantorel
