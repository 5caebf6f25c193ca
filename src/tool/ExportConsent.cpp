// SPDX-License-Identifier: MIT
#include "tool/ExportConsent.h"

#include "chrome/TextPresentation.h"

namespace vantorel {

ExportConsent consentToExport(bool inTheClear, const std::string& directoryName, const Ask& ask) {
  if (!ask) return inTheClear ? ExportConsent::given : ExportConsent::nobodyToAsk;
  const std::string warning =
      "The directory will hold the whole history in the clear: who can read it reads all that was "
      "copied.\nType 'yes' to go on: ";
  if (!inTheClear && ask(warning) != "yes") return ExportConsent::withheld;
  constexpr std::size_t longest = 255;  // bytes that a name may have
  const auto typed = ask("Type the directory's name, '" +
                         TextPresentation::singleLine(directoryName, longest) + "', to begin: ");
  return typed == directoryName ? ExportConsent::given : ExportConsent::withheld;
}

}  // namespace vantorel
