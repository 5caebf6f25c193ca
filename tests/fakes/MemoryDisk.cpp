// SPDX-License-Identifier: MIT
#include "fakes/MemoryDisk.h"

#include <algorithm>
#include <utility>

namespace vantorel {
namespace {

using Error = FileSystem::Error;
using State = MemoryDisk::State;

Error missing() { return std::make_error_code(std::errc::no_such_file_or_directory); }

/// Without what stands in a directory that is not there.
State reachable(State state) {
  const auto isLost = [&](const FileSystem::Path& path) {
    const auto parent = path.parent_path();
    return parent != parent.root_path() && state.directories.count(parent) == 0;
  };
  // In the order of their paths: who contains comes before what is contained.
  for (auto at = state.directories.begin(); at != state.directories.end();) {
    at = isLost(*at) ? state.directories.erase(at) : std::next(at);
  }
  std::erase_if(state.files, [&](const auto& file) { return isLost(file.first); });
  return state;
}

}  // namespace

bool MemoryDisk::isDirectory(const Path& path) const {
  return path == path.root_path() || now_.directories.count(path) != 0;
}

bool MemoryDisk::exists(const Path& path) {
  return isDirectory(path) || now_.files.count(path) != 0;
}

std::optional<Bytes> MemoryDisk::readFile(const Path& path, std::uint64_t maximumBytes) {
  const auto found = now_.files.find(path);
  if (found == now_.files.end() || found->second->size() > maximumBytes) return std::nullopt;
  return *found->second;
}

std::optional<std::uint64_t> MemoryDisk::fileSize(const Path& path) {
  const auto found = now_.files.find(path);
  if (found == now_.files.end()) return std::nullopt;
  return found->second->size();
}

std::optional<std::vector<FileSystem::Path>> MemoryDisk::list(const Path& directory) {
  if (!isDirectory(directory)) return std::nullopt;
  std::vector<Path> names;
  for (const Path& path : now_.directories) {
    if (path.parent_path() == directory) names.push_back(path.filename());
  }
  for (const auto& [path, bytes] : now_.files) {
    if (path.parent_path() == directory) names.push_back(path.filename());
  }
  return names;
}

Error MemoryDisk::createDirectories(const Path& path, unsigned permissions) {
  if (isDirectory(path)) return {};
  if (const Error error = createDirectories(path.parent_path(), permissions)) return error;
  return add({.kind = Change::Kind::directory, .path = path});
}

Error MemoryDisk::setPermissions(const Path& path, unsigned /*permissions*/) {
  return exists(path) ? Error() : missing();
}

Error MemoryDisk::excludeFromBackup(const Path& path) { return exists(path) ? Error() : missing(); }

Error MemoryDisk::claim(const Path& directory) {
  return isDirectory(directory) ? Error() : missing();
}

Error MemoryDisk::writeNewFile(const Path& path, ByteView bytes, unsigned /*permissions*/) {
  if (exists(path)) return std::make_error_code(std::errc::file_exists);
  if (!isDirectory(path.parent_path())) return missing();
  return add({.kind = Change::Kind::file,
              .path = path,
              .bytes = std::make_shared<const Bytes>(bytes.begin(), bytes.end())});
}

Error MemoryDisk::rename(const Path& from, const Path& to) {
  const auto found = now_.files.find(from);
  if (found == now_.files.end() || !isDirectory(to.parent_path())) return missing();
  return add({.kind = Change::Kind::rename, .path = from, .to = to, .bytes = found->second});
}

Error MemoryDisk::syncDirectory(const Path& path) {
  return isDirectory(path) ? add({.kind = Change::Kind::sync, .path = path}) : missing();
}

Error MemoryDisk::remove(const Path& path) {
  return now_.files.count(path) != 0 ? add({.kind = Change::Kind::remove, .path = path})
                                     : missing();
}

Error MemoryDisk::add(Change change) {
  apply(change, now_);
  changes_.push_back(std::move(change));
  return {};
}

void MemoryDisk::apply(const Change& change, State& state) {
  switch (change.kind) {
    case Change::Kind::directory:
      state.directories.insert(change.path);
      break;
    case Change::Kind::file:
      state.files[change.path] = change.bytes;
      break;
    case Change::Kind::rename:
      state.files.erase(change.path);
      state.files[change.to] = change.bytes;
      break;
    case Change::Kind::remove:
      state.files.erase(change.path);
      break;
    case Change::Kind::sync:
      break;
  }
}

std::vector<State> MemoryDisk::afterPowerLoss(std::size_t count, std::mt19937& chance) const {
  State certain = first_;
  std::vector<Change> pending;
  for (std::size_t i = 0; i < count; ++i) {
    const Change& change = changes_[i];
    if (change.kind != Change::Kind::sync) {
      pending.push_back(change);
    } else if (!forgetsDirectories_) {
      const auto isElsewhere = [&](const Change& other) {
        return other.path.parent_path() != change.path;
      };
      const auto first = std::stable_partition(pending.begin(), pending.end(), isElsewhere);
      std::for_each(first, pending.end(), [&](const Change& one) { apply(one, certain); });
      pending.erase(first, pending.end());
    }
  }

  // Each number is a choice: the change with a bit that is set has come to the disk.
  std::set<std::uint64_t> choices;
  const std::uint64_t all = (std::uint64_t{1} << std::min<std::size_t>(pending.size(), 63)) - 1;
  if (pending.size() <= mostTogether) {
    for (std::uint64_t choice = 0; choice <= all; ++choice) choices.insert(choice);
  } else {
    for (std::size_t i = 0; i < std::min<std::size_t>(pending.size(), 63); ++i) {
      choices.insert(
          {std::uint64_t{1} << i, all & ~(std::uint64_t{1} << i), (std::uint64_t{1} << i) - 1});
    }
    choices.insert(all);
    for (int i = 0; i < 32; ++i) choices.insert(chance() & all);
  }

  std::vector<State> states;
  for (const std::uint64_t choice : choices) {
    State state = certain;
    for (std::size_t i = 0; i < pending.size(); ++i) {
      if (((choice >> i) & 1U) != 0) apply(pending[i], state);
    }
    states.push_back(reachable(std::move(state)));
  }
  if (count > 0 && changes_[count - 1].kind == Change::Kind::file) {
    State state = certain;
    for (const Change& change : pending) apply(change, state);
    const auto& whole = *changes_[count - 1].bytes;
    const auto half = static_cast<std::ptrdiff_t>(whole.size() / 2);
    state.files[changes_[count - 1].path] =
        std::make_shared<const Bytes>(whole.begin(), whole.begin() + half);
    states.push_back(reachable(std::move(state)));
  }
  return states;
}

}  // namespace vantorel
