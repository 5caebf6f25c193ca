// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/FileSystem.h"
#include "panel/RowContent.h"
#include "platform/Dispatch.h"
#include "platform/ProbeLanes.h"
#include "store/ClipItem.h"

namespace vantorel {

/// Whether what the entry refers to is still there: always for text and images, for files when
/// every path is within reach. Waits for the disk. Any thread.
[[nodiscard]] Availability availability(const ClipItem& item, FileSystem& files);

/// Knows whether the files of entries are still there without ever making the main thread wait for
/// a disk, which may be one behind a dead network: then its entries stay unanswered, others do not,
/// and nobody asks for them again meanwhile. What was found last is the answer until a newer one
/// arrives. Main thread.
class FileAvailability {
 public:
  using Probe = std::function<Availability(const ClipItem&)>;

  /// `probe` looks at the disk; it is called on other threads, and may still be there when this has
  /// ended.
  FileAvailability(Dispatch& dispatch, Probe probe);
  ~FileAvailability();
  FileAvailability(const FileAvailability&) = delete;
  FileAvailability& operator=(const FileAvailability&) = delete;

  /// The disk has been looked at for this entry since the last `lookAfresh`.
  std::function<void(Uuid id, Availability)> onAnswer;

  /// What is known of the entry; unknown files count as there. The first question after
  /// `lookAfresh` has the disk looked at.
  [[nodiscard]] Availability of(const ClipItem& item);

  /// Whether the disk has answered for the entry since the last `lookAfresh`; always for entries
  /// that have no files.
  [[nodiscard]] bool isAnswered(const ClipItem& item) const;

  /// From now on each entry is looked at once more. Entries that are not among `items` are
  /// forgotten.
  void lookAfresh(const std::vector<ClipItem>& items);

 private:
  void look(const ClipItem& item);
  void store(Uuid id, Availability found);

  Probe probe_;
  std::unordered_map<Uuid, Availability> known_;
  std::unordered_set<Uuid> asked_;
  std::unordered_set<Uuid> answered_;
  // Being looked at, and the entry to look at again after that, asked for since.
  std::unordered_map<Uuid, std::optional<ClipItem>> underWay_;
  ProbeLanes lanes_;
};

}  // namespace vantorel
