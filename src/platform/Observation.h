// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// Ends an observation or a monitor when destroyed. Main thread.
class Observation {
 public:
  virtual ~Observation() = default;
};

}  // namespace vantorel
