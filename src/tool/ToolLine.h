// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace vantorel {

/// The arguments of a start that is to answer in the terminal and end, without a window.
struct ToolLine {
  enum class Verb { list, search, get, copy, exportTo, importFrom };
  /// How entries are written: a line each, one array of JSON, or as lines that end with NUL.
  enum class Form { lines, json, null };

  Verb verb = Verb::list;
  Form form = Form::lines;
  std::string entry = {};      // of get and copy: a number, or an identity
  std::string words = {};      // of search
  std::string directory = {};  // of export and import
  bool inTheClear = false;     // whoever exports knows what that is
  bool isForHelp = false;      // whoever asks wants the help, whatever else the line says
  std::string error = {};      // one line for stderr, without a line end; empty when understood

  /// `arguments` without the program's own name. Absent when they do not begin with a verb.
  [[nodiscard]] static std::optional<ToolLine> parse(std::span<const char* const> arguments);
};

/// How such a start ends; 0 and 2 are what they are for every other start.
struct ToolStatus {
  static constexpr int done = 0;
  static constexpr int failed = 1;
  static constexpr int usage = 2;
  static constexpr int noKey = 3;    // the keyring is locked, absent, or has no key
  static constexpr int noEntry = 4;  // nothing has that number
};

}  // namespace vantorel
