// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/MimeTypeDatabase.h"

#include <QMimeDatabase>
#include <algorithm>
#include <utility>

namespace vantorel {

MimeTypeDatabase::MimeTypeDatabase(const std::vector<std::filesystem::path>& directories) {
  for (const auto& directory : directories) caches_.push_back(directory / "mime.cache");
}

std::vector<std::filesystem::path> MimeTypeDatabase::directories(const EnvironmentLookup& lookup) {
  auto result = dataDirectories(lookup);
  for (auto& directory : result) directory /= "mime";
  return result;
}

std::string MimeTypeDatabase::typeOf(const std::string& fileName) const {
  const auto type = QMimeDatabase().mimeTypeForFile(QString::fromStdString(fileName),
                                                    QMimeDatabase::MatchExtension);
  return type.isDefault() ? std::string() : type.name().toStdString();
}

std::vector<std::string> MimeTypeDatabase::iconsOf(const std::string& type) const {
  std::vector<std::string> names;
  const auto add = [&names](std::string name) {
    if (name.empty() || name.find('/') != std::string::npos) return;
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      names.push_back(std::move(name));
    }
  };
  const auto known = QMimeDatabase().mimeTypeForName(QString::fromStdString(type));
  if (known.isValid()) add(known.iconName().toStdString());
  std::string own = type;
  std::replace(own.begin(), own.end(), '/', '-');
  add(std::move(own));
  if (known.isValid()) add(known.genericIconName().toStdString());
  if (type == directoryType) add("folder");
  if (const auto slash = type.find('/'); slash != std::string::npos) {
    add(type.substr(0, slash) + "-x-generic");
  }
  add("text-x-generic");
  add("unknown");
  return names;
}

// The toolkit looks for changes only every five seconds, so answers given just after a change may
// be old: it is said once more.
bool MimeTypeDatabase::refresh() {
  const bool changed = times_ && times_->haveChanged();
  if (changed || !times_) times_ = ChangeTimes(caches_);
  return std::exchange(changedBefore_, changed) || changed;
}

}  // namespace vantorel
