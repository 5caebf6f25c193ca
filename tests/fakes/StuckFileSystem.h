// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "fakes/Gate.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {

/// Real files, but reading those of one name waits at a gate.
class StuckFileSystem : public PosixFileSystem {
 public:
  StuckFileSystem(std::shared_ptr<Gate> gate, Path name)
      : gate_(std::move(gate)), name_(std::move(name)) {}

  [[nodiscard]] std::optional<Bytes> readFile(const Path& path,
                                              std::uint64_t maximumBytes) override {
    if (path.filename() == name_) gate_->pass();
    return PosixFileSystem::readFile(path, maximumBytes);
  }

 private:
  std::shared_ptr<Gate> gate_;
  Path name_;
};

}  // namespace vantorel
