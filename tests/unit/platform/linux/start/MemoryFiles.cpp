// SPDX-License-Identifier: MIT
#include "unit/platform/linux/start/MemoryFiles.h"

namespace vantorel {

FileSystem::Error MemoryFiles::outcome(Operation operation) const {
  return failing.contains(operation) ? make_error_code(std::errc::read_only_file_system) : Error{};
}

bool MemoryFiles::exists(const Path& path) { return files.contains(path); }

std::optional<Bytes> MemoryFiles::readFile(const Path& path, std::uint64_t maximumBytes) {
  const auto found = files.find(path);
  if (found == files.end() || unreadable.contains(path)) return std::nullopt;
  const ByteView bytes = bytesOf(found->second.text);
  if (bytes.size() > maximumBytes) return std::nullopt;
  return Bytes(bytes.begin(), bytes.end());
}

std::optional<std::uint64_t> MemoryFiles::fileSize(const Path& path) {
  const auto found = files.find(path);
  if (found == files.end()) return std::nullopt;
  return found->second.text.size();
}

std::optional<std::vector<FileSystem::Path>> MemoryFiles::list(const Path& directory) {
  std::vector<Path> names;
  for (const auto& [path, file] : files) {
    if (path.parent_path() == directory) names.push_back(path.filename());
  }
  return names;
}

FileSystem::Error MemoryFiles::createDirectories(const Path& path, unsigned permissions) {
  if (const Error error = outcome(Operation::createDirectories)) return error;
  directories.emplace(path, permissions);
  return {};
}

FileSystem::Error MemoryFiles::setPermissions(const Path& path, unsigned permissions) {
  directories[path] = permissions;
  return {};
}

FileSystem::Error MemoryFiles::excludeFromBackup(const Path& /*path*/) { return {}; }

FileSystem::Error MemoryFiles::claim(const Path& /*directory*/) { return {}; }

FileSystem::Error MemoryFiles::writeNewFile(const Path& path, ByteView bytes,
                                            unsigned permissions) {
  if (files.contains(path)) return make_error_code(std::errc::file_exists);
  if (const Error error = outcome(Operation::writeNewFile)) {
    files[path] = {"half", permissions};  // as a full disk leaves it
    return error;
  }
  files[path] = {std::string(textOf(bytes)), permissions};
  written.insert(path);
  return {};
}

FileSystem::Error MemoryFiles::rename(const Path& from, const Path& to) {
  if (const Error error = outcome(Operation::rename)) return error;
  const auto found = files.find(from);
  if (found == files.end()) return make_error_code(std::errc::no_such_file_or_directory);
  files[to] = found->second;
  files.erase(from);
  return {};
}

FileSystem::Error MemoryFiles::syncDirectory(const Path& /*path*/) { return {}; }

FileSystem::Error MemoryFiles::remove(const Path& path) {
  return files.erase(path) > 0 ? Error{} : make_error_code(std::errc::no_such_file_or_directory);
}

}  // namespace vantorel
