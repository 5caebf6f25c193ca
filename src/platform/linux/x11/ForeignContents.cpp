#include "platform/linux/x11/ForeignContents.h"

#include <utility>

#include "platform/linux/windows/PasteboardTargets.h"
#include "platform/linux/windows/PasteboardText.h"
#include "platform/linux/windows/UriList.h"

namespace vantorel {

namespace {

// A thousand forms; real programs offer a few dozen at most.
constexpr std::size_t maximumTargetsBytes = 4096;

}  // namespace

ForeignContents::ForeignContents(SelectionReader& reader, X11Connection& connection,
                                 xcb_atom_t selection, xcb_timestamp_t time)
    : reader_(reader), connection_(connection), selection_(selection), time_(time) {}

void ForeignContents::readTargets(Completion<std::optional<Targets>> completion) {
  if (stage_ == Stage::known) {
    completion(targets_);
    return;
  }
  waiting_.push_back(std::move(completion));
  if (stage_ == Stage::unknown) askTargets();
}

void ForeignContents::askTargets() {
  stage_ = Stage::asked;
  reader_.read(
      {selection_, connection_.atom("TARGETS"), time_, maximumTargetsBytes},
      [self = shared_from_this()](const SelectionAnswer& answer) { self->takeTargets(answer); });
}

void ForeignContents::takeTargets(const SelectionAnswer& answer) {
  stage_ = Stage::known;
  // Some owners label the list with the name of the question.
  const bool isList = answer.outcome == SelectionOutcome::received &&
                      answer.property.format == 32 &&
                      (answer.property.type == XCB_ATOM_ATOM ||
                       answer.property.type == connection_.atom("TARGETS"));
  if (isList) targets_ = connection_.atomNames(answer.property.values32());
  const auto waiting = std::exchange(waiting_, {});
  for (const auto& completion : waiting) completion(targets_);
}

void ForeignContents::readForm(Candidates candidates, std::size_t index,
                               Completion<std::optional<Form>> completion) {
  readTargets([self = shared_from_this(), candidates, index,
               completion = std::move(completion)](const std::optional<Targets>& offered) {
    self->readCandidates(offered ? candidates(*offered) : Targets(), index, completion);
  });
}

void ForeignContents::readCandidates(Targets candidates, std::size_t index,
                                     Completion<std::optional<Form>> completion) {
  if (index >= candidates.size() || trust_ == Trust::lost) {
    completion(std::nullopt);
    return;
  }
  const SelectionQuery query{selection_, connection_.atom(candidates[index]), time_, maximumBytes};
  reader_.read(query, [self = shared_from_this(), candidates = std::move(candidates), index,
                       completion = std::move(completion)](SelectionAnswer answer) {
    if (answer.outcome == SelectionOutcome::received && answer.property.format == 8) {
      completion(Form{candidates[index], std::move(answer.property), index + 1});
      return;
    }
    // An owner that answers, only not with this form, may have another.
    const bool answered =
        answer.outcome == SelectionOutcome::received || answer.outcome == SelectionOutcome::refused;
    if (!answered) self->trust_ = Trust::lost;
    self->readCandidates(candidates, index + 1, completion);
  });
}

void ForeignContents::readString(Completion<std::optional<std::string>> completion) {
  if (auto text = std::exchange(textInAdvance_, std::nullopt)) {
    completion(std::move(text));
    return;
  }
  readStringFrom(0, std::move(completion));
}

void ForeignContents::readStringFrom(std::size_t index,
                                     Completion<std::optional<std::string>> completion) {
  readForm(targets::text, index,
           [self = shared_from_this(),
            completion = std::move(completion)](const std::optional<Form>& form) {
             auto text = form ? self->decoded(*form) : std::nullopt;
             if (form && !text) {
               self->readStringFrom(form->next, completion);
             } else {
               completion(std::move(text));
             }
           });
}

std::optional<std::string> ForeignContents::decoded(const Form& form) {
  std::string_view type;
  for (const char* known : {targets::utf8String, targets::latin1String, targets::compoundText}) {
    if (form.property.type == connection_.atom(known)) type = known;
  }
  return decodedAnswer(form.property.bytes, form.target, type);
}

void ForeignContents::readData(PasteboardDataType type,
                               Completion<std::optional<Bytes>> completion) {
  readForm(type == PasteboardDataType::rtf ? targets::rtf : targets::html, 0,
           [completion = std::move(completion)](std::optional<Form> form) {
             const bool holds = form && !form->property.bytes.empty();
             completion(holds ? std::optional(std::move(form->property.bytes)) : std::nullopt);
           });
}

void ForeignContents::readFiles(Completion<std::vector<std::filesystem::path>> completion) {
  readFilesFrom(0, std::move(completion));
}

void ForeignContents::readFilesFrom(std::size_t index,
                                    Completion<std::vector<std::filesystem::path>> completion) {
  readForm(targets::fileLists, index,
           [self = shared_from_this(),
            completion = std::move(completion)](const std::optional<Form>& form) {
             if (!form) {
               self->readFilesInText(completion);
               return;
             }
             const auto text = textOf(form->property.bytes);
             auto files = form->target == targets::uriList ? filesFromUriList(text)
                                                           : filesFromCopiedFiles(text);
             if (files.empty()) {
               self->readFilesFrom(form->next, completion);
             } else {
               completion(std::move(files));
             }
           });
}

void ForeignContents::readFilesInText(
    const Completion<std::vector<std::filesystem::path>>& completion) {
  readString([self = shared_from_this(), completion](std::optional<std::string> text) {
    auto files = text ? filesFromPlainText(*text) : std::vector<std::filesystem::path>();
    self->textInAdvance_ = std::move(text);
    completion(std::move(files));
  });
}

void ForeignContents::readImage(std::size_t skipped,
                                Completion<std::optional<EncodedImage>> completion) {
  readForm(targets::images, skipped,
           [completion = std::move(completion)](std::optional<Form> form) {
             if (!form) {
               completion(std::nullopt);
               return;
             }
             completion(EncodedImage{std::make_shared<const Bytes>(std::move(form->property.bytes)),
                                     form->next});
           });
}

}  // namespace vantorel
