// SPDX-License-Identifier: MIT
#include "tool/ToolLine.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "base/Uuid.h"
#include "chrome/TextPresentation.h"

namespace vantorel {
namespace {

using Verb = ToolLine::Verb;
using Form = ToolLine::Form;

/// What stands behind a verb that is no option.
enum class Operands { none, one, many };

struct VerbEntry {
  Verb verb;
  std::string_view name;
  Operands operands;
  std::string_view operandName = {};
  std::array<std::string_view, 2> options = {};
};

constexpr std::array verbs = {
    VerbEntry{Verb::list, "list", Operands::none, "", {"--json", "--null"}},
    VerbEntry{Verb::search, "search", Operands::many, "words", {"--json", "--null"}},
    VerbEntry{Verb::get, "get", Operands::one, "an entry's number", {"--null"}},
    VerbEntry{Verb::copy, "copy", Operands::one, "an entry's number"},
    VerbEntry{Verb::exportTo, "export", Operands::one, "a directory", {"--in-the-clear"}},
    VerbEntry{Verb::importFrom, "import", Operands::one, "a directory"},
};

const VerbEntry* verbNamed(std::string_view name) {
  const auto* found = std::find_if(verbs.begin(), verbs.end(),
                                   [&](const VerbEntry& entry) { return entry.name == name; });
  return found == verbs.end() ? nullptr : found;
}

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos &&
         text.find_first_not_of('0') != std::string_view::npos;
}

std::string sentence(const VerbEntry& verb, std::string_view what) {
  return "vantorel " + std::string(verb.name) + ": " + std::string(what) +
         ". Try 'vantorel --help'.";
}

/// An argument as it may be shown: control characters could rewrite what the terminal shows.
std::string quoted(std::string_view argument) {
  constexpr std::size_t longest = 200;
  return "'" + TextPresentation::singleLine(argument, longest) + "'";
}

class Reading {
 public:
  explicit Reading(const VerbEntry& verb) : verb_(verb) { line_.verb = verb.verb; }

  void take(std::string_view argument) {
    if (!isBehindDashes_ && argument == "--") {
      isBehindDashes_ = true;
    } else if (!isBehindDashes_ && argument.size() > 1 && argument.front() == '-') {
      takeOption(argument);
    } else {
      takeOperand(argument);
    }
  }

  ToolLine result() {
    if (verb_.operands != Operands::none && count_ == 0) {
      refuse("give " + std::string(verb_.operandName));
    }
    return std::move(line_);
  }

 private:
  void takeOption(std::string_view option) {
    if (option == "--help") {
      line_.isForHelp = true;
      return;
    }
    if (std::find(verb_.options.begin(), verb_.options.end(), option) == verb_.options.end()) {
      return refuse("unknown option " + quoted(option));
    }
    if (option == "--in-the-clear") {
      line_.inTheClear = true;
      return;
    }
    const Form form = option == "--json" ? Form::json : Form::null;
    if (line_.form != Form::lines && line_.form != form) refuse("give one form at a time");
    line_.form = form;
  }

  void takeOperand(std::string_view operand) {
    ++count_;
    if (verb_.operands == Operands::none || (verb_.operands == Operands::one && count_ > 1)) {
      return refuse("unexpected argument " + quoted(operand));
    }
    switch (verb_.verb) {
      case Verb::search:
        if (count_ > 1) line_.words += ' ';
        line_.words += operand;
        return;
      case Verb::get:
      case Verb::copy:
        if (!isNumber(operand) && !Uuid::parse(operand)) {
          refuse(quoted(operand) + " is not the number of an entry");
        }
        line_.entry = operand;
        return;
      case Verb::exportTo:
      case Verb::importFrom:
        if (operand.empty()) refuse("give a directory");
        line_.directory = operand;
        return;
      case Verb::list:
        return;
    }
  }

  /// The first mistake is the one that is told.
  void refuse(std::string_view what) {
    if (line_.error.empty()) line_.error = sentence(verb_, what);
  }

  const VerbEntry& verb_;
  ToolLine line_;
  std::size_t count_ = 0;
  bool isBehindDashes_ = false;
};

}  // namespace

std::optional<ToolLine> ToolLine::parse(std::span<const char* const> arguments) {
  const auto* const verb = arguments.empty() ? nullptr : verbNamed(arguments.front());
  if (verb == nullptr) return std::nullopt;
  Reading reading(*verb);
  for (const char* const argument : arguments.subspan(1)) reading.take(argument);
  return reading.result();
}

}  // namespace vantorel
