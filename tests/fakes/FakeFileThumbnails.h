// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <utility>
#include <vector>

#include "platform/FileThumbnails.h"

namespace vantorel {

/// Makes no thumbnail before the test says so.
class FakeFileThumbnails : public FileThumbnails {
 public:
  struct Request {
    std::filesystem::path file;
    Size size;
    double scale = 0;
    Completion completion;
  };

  void generateBestRepresentation(const std::filesystem::path& file, Size size, double scale,
                                  Completion completion) override {
    requests_.push_back({file, size, scale, std::move(completion)});
  }

  // The test's side.

  [[nodiscard]] const std::vector<Request>& requests() const { return requests_; }
  /// Answers the request with this number, from 0.
  void answer(std::size_t number, SharedBitmap picture) const {
    requests_.at(number).completion(std::move(picture));
  }

 private:
  std::vector<Request> requests_;
};

}  // namespace vantorel
