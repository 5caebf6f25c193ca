// SPDX-License-Identifier: MIT
#include "platform/linux/x11/SelectionForms.h"

#include <utility>

#include "platform/linux/windows/PasteboardTargets.h"

namespace vantorel {

namespace {

// A thousand forms; real programs offer a few dozen at most.
constexpr std::size_t maximumTargetsBytes = 4096;

}  // namespace

void SelectionForms::readTargets(
    std::function<void(std::optional<std::vector<std::string>>)> completion) {
  const xcb_atom_t targets = connection_.atom("TARGETS");
  reader_.read({selection_, targets, time_, maximumTargetsBytes},
               [&connection = connection_, targets,
                completion = std::move(completion)](const SelectionAnswer& answer) {
                 const auto& property = answer.property;
                 // Some owners label the list with the name of the question.
                 const bool isList = answer.outcome == SelectionOutcome::received &&
                                     property.format == 32 &&
                                     (property.type == XCB_ATOM_ATOM || property.type == targets);
                 completion(isList ? std::optional(connection.atomNames(property.values32()))
                                   : std::nullopt);
               });
}

void SelectionForms::read(const std::string& target, std::function<void(Answer)> completion) {
  // Whoever asked keeps this alive until the answer.
  reader_.read(
      {selection_, connection_.atom(target), time_, maximumBytes},
      [this, completion = std::move(completion)](SelectionAnswer answer) {
        const bool received = answer.outcome == SelectionOutcome::received;
        if (received && answer.property.format == 8) {
          auto type = typeOf(answer.property);
          completion({Outcome::received, std::move(answer.property.bytes), std::move(type)});
        } else {
          const bool answered = received || answer.outcome == SelectionOutcome::refused;
          completion({answered ? Outcome::refused : Outcome::lost});
        }
      });
}

/// The names of those types that say how a text is encoded.
std::string SelectionForms::typeOf(const X11Property& property) const {
  for (const char* known : {targets::utf8String, targets::latin1String, targets::compoundText}) {
    if (property.type == connection_.atom(known)) return known;
  }
  return {};
}

}  // namespace vantorel
