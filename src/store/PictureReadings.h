// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/TextRecognition.h"
#include "security/SecureStorage.h"
#include "store/AssetFolder.h"
#include "store/ClipItem.h"

namespace vantorel {

/// Reads the text in the history's pictures, one after the other, away from the main thread. Main
/// thread.
class PictureReadings {
 public:
  struct Services {
    Dispatch& dispatch;
    TextRecognition& recognition;
    SerialQueue& queue;  // goes after this, which gives up its readings when it goes
    AssetFolder assets;
    std::shared_ptr<const SecureStorage> storage;  // may be null: nothing can be read then
  };
  /// The text of the picture that the entry had when its reading was begun.
  using Report = std::function<void(Uuid id, const std::optional<std::string>& contentHash,
                                    const std::string& text)>;

  /// `items` outlives this. A picture that cannot be read is not reported.
  PictureReadings(Services services, const std::vector<ClipItem>& items, Report report);
  ~PictureReadings();
  PictureReadings(const PictureReadings&) = delete;
  PictureReadings& operator=(const PictureReadings&) = delete;

  /// Does nothing for an entry without a picture, or whose text is known or on its way.
  void begin(const ClipItem& item);
  /// Gives up those of entries that are gone, so that the next one's turn comes at once.
  void stopNeedless();

 private:
  void finish(Uuid id, const std::optional<std::string>& contentHash,
              const std::optional<std::string>& text);

  Services services_;
  const std::vector<ClipItem>& items_;
  Report report_;
  std::map<Uuid, std::stop_source> underWay_;  // read now, or waiting for it
  Lifetime life_;
};

}  // namespace vantorel
