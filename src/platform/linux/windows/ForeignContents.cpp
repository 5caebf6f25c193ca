// SPDX-License-Identifier: MIT
#include "platform/linux/windows/ForeignContents.h"

#include <utility>

#include "platform/linux/windows/PasteboardTargets.h"
#include "platform/linux/windows/PasteboardText.h"
#include "platform/linux/windows/UriList.h"

namespace vantorel {

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
  owner_->readTargets([self = shared_from_this()](std::optional<Targets> offered) {
    self->takeTargets(std::move(offered));
  });
}

void ForeignContents::takeTargets(std::optional<Targets> offered) {
  stage_ = Stage::known;
  targets_ = std::move(offered);
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
  const std::string target = candidates[index];
  owner_->read(target, [self = shared_from_this(), candidates = std::move(candidates), index,
                        completion = std::move(completion)](OwnerForms::Answer answer) {
    if (answer.outcome == OwnerForms::Outcome::received) {
      completion(
          Form{candidates[index], std::move(answer.bytes), std::move(answer.type), index + 1});
      return;
    }
    // An owner that answers, only not with this form, may have another.
    if (answer.outcome == OwnerForms::Outcome::lost) self->trust_ = Trust::lost;
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
             auto text = form ? decodedAnswer(form->bytes, form->target, form->type) : std::nullopt;
             if (form && !text) {
               self->readStringFrom(form->next, completion);
             } else {
               completion(std::move(text));
             }
           });
}

void ForeignContents::readData(PasteboardDataType type,
                               Completion<std::optional<Bytes>> completion) {
  readForm(type == PasteboardDataType::rtf ? targets::rtf : targets::html, 0,
           [completion = std::move(completion)](std::optional<Form> form) {
             const bool holds = form && !form->bytes.empty();
             completion(holds ? std::optional(std::move(form->bytes)) : std::nullopt);
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
             const auto text = textOf(form->bytes);
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
  readForm(
      targets::images, skipped, [completion = std::move(completion)](std::optional<Form> form) {
        if (!form) {
          completion(std::nullopt);
          return;
        }
        completion(EncodedImage{std::make_shared<const Bytes>(std::move(form->bytes)), form->next});
      });
}

}  // namespace vantorel
