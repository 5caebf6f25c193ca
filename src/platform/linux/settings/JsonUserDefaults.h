// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <vector>

#include "base/FileSystem.h"
#include "platform/UserDefaults.h"
#include "platform/linux/settings/JsonObjectText.h"

namespace vantorel {

/// The settings as one JSON object of dotted keys in a file that only its owner may read. Dates are
/// ISO 8601 strings, to the millisecond; what is stored under keys of others is kept as it is.
///
/// What was last read or written stands in a second file, "<name>.last-good", from which the
/// settings come when the first makes no sense (see `parseJsonObject`, or larger than
/// `maximumFileSize`) or cannot be read. When neither can be understood they are lost, also at the
/// next start, until something is set. Without the first they begin anew.
///
/// A file that makes no sense is set aside as "<name>.damaged-<n>" when the next one takes its
/// place. A file that cannot be read or set aside is never written over: the settings then live in
/// the second one alone, which keeps account of what was set meanwhile under `changedKey`, until
/// the first can be read again and takes that over; while that account cannot be read, it stays as
/// it is. A value that JSON cannot say leaves the stored
/// one as it is.
class JsonUserDefaults : public UserDefaults {
 public:
  static constexpr std::uint64_t maximumFileSize = 1U << 20;
  static constexpr std::string_view changedKey = "settings.changedSinceUnreadable";

  /// Reads `path`; its directory is created at the first write. `files` outlives this.
  JsonUserDefaults(FileSystem& files, std::filesystem::path path);

  [[nodiscard]] bool areLost() const override { return areLost_; }
  /// False for JSON's null.
  [[nodiscard]] bool contains(std::string_view key) const override;
  [[nodiscard]] std::optional<bool> boolean(std::string_view key) const override;
  [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key) const override;
  [[nodiscard]] std::optional<std::string> string(std::string_view key) const override;
  [[nodiscard]] std::optional<Date> date(std::string_view key) const override;
  [[nodiscard]] std::optional<std::vector<std::string>> stringArray(
      std::string_view key) const override;

  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

 private:
  using Path = std::filesystem::path;
  enum class Reading { absent, understood, damaged, refused };

  /// Takes over what the file says when it is understood.
  [[nodiscard]] Reading read(const Path& path);
  void recover(Reading instead);
  void takeOver();
  void keepCopy();
  [[nodiscard]] bool setAside();
  bool put(const Path& path);
  [[nodiscard]] bool makePlace(const Path& path);
  [[nodiscard]] const JsonMember* find(std::string_view key) const;
  bool removeMember(std::string_view key);
  void write();

  FileSystem& files_;
  const Path path_;
  const Path copy_;
  std::vector<JsonMember> members_;
  std::set<std::string, std::less<>> changed_;  // while the first file is out of reach
  bool areLost_ = false;
  bool isDamaged_ = false;  // what stands at `path_`
  bool isOutOfReach_ = false;
  bool isCopyOutOfReach_ = false;
};

}  // namespace vantorel
