// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "app/Commands.h"

namespace vantorel {

/// The arguments of a start, understood or not.
struct CommandLine {
  Command command = Command::open;
  std::string argument = {};  // empty for a command that takes none
  std::string error = {};     // one line for stderr, without a line end; empty when understood

  /// What the running instance, this one or another, is asked for.
  [[nodiscard]] ActionRequest request() const;

  /// Exit status for arguments that were not understood.
  static constexpr int usageError = 2;

  /// `arguments` without the program's own name. At most one command; nothing means `open`.
  [[nodiscard]] static CommandLine parse(std::span<const char* const> arguments);
  /// What `--help` prints.
  [[nodiscard]] static std::string_view helpText();
};

}  // namespace vantorel
