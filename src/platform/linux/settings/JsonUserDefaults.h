#pragma once

#include <vector>

#include "base/FileSystem.h"
#include "platform/UserDefaults.h"
#include "platform/linux/settings/JsonObjectText.h"

namespace vantorel {

/// The settings as one JSON object of dotted keys in a file that only its owner may read. Dates are
/// ISO 8601 strings, to the millisecond; what is stored under keys of others is kept as it is.
///
/// A file that is there but makes no sense (see `parseJsonObject`, or larger than
/// `maximumFileSize`) is set aside as "<name>.damaged-<n>" and the settings begin anew. A file that
/// cannot be read or set aside is never written over: the settings then live in memory only. A
/// value that JSON cannot say leaves the stored one as it is.
class JsonUserDefaults : public UserDefaults {
 public:
  static constexpr std::uint64_t maximumFileSize = 1U << 20;

  /// Reads `path`; its directory is created at the first write. `files` outlives this.
  JsonUserDefaults(FileSystem& files, std::filesystem::path path);

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
  enum class Reading { understood, damaged, refused };

  [[nodiscard]] Reading read();
  [[nodiscard]] bool setAside();
  [[nodiscard]] const JsonMember* find(std::string_view key) const;
  void write();

  FileSystem& files_;
  std::filesystem::path path_;
  std::vector<JsonMember> members_;
  bool memoryOnly_ = false;
};

}  // namespace vantorel
