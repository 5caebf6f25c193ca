// SPDX-License-Identifier: MIT
#include "store/SetAside.h"

#include <algorithm>

#include "base/Iso8601.h"

namespace vantorel {
namespace {

using Paths = std::vector<std::filesystem::path>;

std::filesystem::path with(const std::filesystem::path& path, const std::string& ending) {
  return path.string() + ending;
}

std::string freeEnding(FileSystem& files, const Paths& paths, Date now) {
  std::string moment = iso8601(now);
  std::erase_if(moment, [](char c) { return c == '-' || c == ':' || c == 'Z'; });
  std::replace(moment.begin(), moment.end(), 'T', '-');
  moment.insert(0, ".");
  std::string ending = moment;
  const auto isTaken = [&](const auto& path) { return files.exists(with(path, ending)); };
  for (int number = 2; std::any_of(paths.begin(), paths.end(), isTaken); ++number) {
    ending = moment + "-" + std::to_string(number);
  }
  return ending;
}

}  // namespace

std::optional<std::string> moveAside(FileSystem& files, const Paths& paths, Date now) {
  const std::string ending = freeEnding(files, paths, now);
  Paths moved;
  for (const auto& path : paths) {
    if (!files.exists(path)) continue;
    if (files.rename(path, with(path, ending))) {
      std::for_each(moved.rbegin(), moved.rend(),
                    [&](const auto& back) { (void)files.rename(with(back, ending), back); });
      return std::nullopt;
    }
    moved.push_back(path);
  }
  if (moved.empty()) return std::nullopt;
  (void)files.syncDirectory(moved.front().parent_path());  // they are moved either way
  return ending;
}

}  // namespace vantorel
