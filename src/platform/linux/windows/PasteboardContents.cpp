// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteboardContents.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/linux/windows/PasteboardTargets.h"
#include "platform/linux/windows/PasteboardText.h"
#include "platform/linux/windows/TextCharsets.h"
#include "platform/linux/windows/UriList.h"

namespace vantorel {

namespace {

using Contents = std::shared_ptr<const PasteboardContents>;

OfferedBytes sharing(std::string text) {
  auto owner = std::make_shared<const std::string>(std::move(text));
  const ByteView bytes = bytesOf(*owner);
  return {std::move(owner), bytes};
}

void addText(SelectionOffer& offer, const Contents& contents) {
  if (!contents->string) return;
  const auto utf8 = [contents] { return OfferedBytes{contents, bytesOf(*contents->string)}; };
  const auto add = [&offer](const char* target, const char* type,
                            std::function<OfferedBytes()> encode) {
    offer.forms.push_back({target, type, EncodingCost::instant, std::move(encode)});
  };
  add(targets::utf8String, targets::utf8String, utf8);
  add("text/plain;charset=utf-8", "text/plain;charset=utf-8", utf8);
  add("text/plain", "text/plain", utf8);
  add(targets::anyString, targets::utf8String, utf8);
  add(targets::latin1String, targets::latin1String,
      [contents] { return sharing(latin1(*contents->string)); });
  // Refused where it lacks a character: a program that gets something takes it for the whole.
  offer.forms.push_back(
      {targets::compoundText, targets::compoundText, EncodingCost::slow, [contents] {
         auto text = compoundText(*contents->string);
         return text ? sharing(std::move(*text)) : OfferedBytes();
       }});
}

void addData(SelectionOffer& offer, const Contents& contents,
             std::optional<Bytes> PasteboardContents::*data, const char* target) {
  if (!((*contents).*data)) return;
  offer.forms.push_back({target, target, EncodingCost::instant, [contents, data] {
                           return OfferedBytes{contents, *((*contents).*data)};
                         }});
}

void addFiles(SelectionOffer& offer, const Contents& contents) {
  if (contents->files.empty()) return;
  offer.forms.push_back({targets::uriList, targets::uriList, EncodingCost::instant,
                         [contents] { return sharing(uriListOf(contents->files)); }});
  offer.forms.push_back({targets::copiedFiles, targets::copiedFiles, EncodingCost::instant,
                         [contents] { return sharing(copiedFilesOf(contents->files)); }});
  offer.forms.push_back({targets::mateCopiedFiles, targets::mateCopiedFiles, EncodingCost::instant,
                         [contents] { return sharing(copiedFilesOf(contents->files)); }});
}

void addImage(SelectionOffer& offer, const Contents& contents) {
  if (!contents->image) return;
  offer.forms.push_back({targets::png, targets::png, EncodingCost::slow, [contents] {
                           auto png = contents->image->pngData();
                           const ByteView bytes = png ? ByteView(*png) : ByteView();
                           return OfferedBytes{std::move(png), bytes};
                         }});
}

bool isControl(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }

/// Those above ASCII, of two bytes, are obeyed by some terminals too.
bool holdsControl(std::string_view text) {
  unsigned char before = 0;
  return std::any_of(text.begin(), text.end(), [&before](char character) {
    const auto byte = static_cast<unsigned char>(character);
    const bool endsOne = before == 0xC2 && byte >= 0x80 && byte < 0xA0;
    before = byte;
    return endsOne || isControl(byte);
  });
}

/// As `$'…'`, plain ASCII. Quotes and backslashes are numbers as well: a shell that knows nothing
/// of this way of quoting takes all of it for one word.
std::string shellQuoted(std::string_view text) {
  std::string result = "$'";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (!isControl(byte) && byte < 0x80 && character != '\'' && character != '\\') {
      result += character;
      continue;
    }
    result += '\\';
    for (const unsigned place : {6U, 3U, 0U})
      result += static_cast<char>('0' + (byte >> place & 7U));
  }
  return result + '\'';
}

}  // namespace

PasteboardContents contentsOf(std::vector<std::filesystem::path> files) {
  PasteboardContents contents;
  std::string text;
  for (const auto& file : files) {
    if (!text.empty()) text += '\n';
    text += holdsControl(file.native()) ? shellQuoted(file.native()) : file.native();
  }
  contents.string = decodedText(bytesOf(text), TextEncoding::utf8);
  contents.files = std::move(files);
  return contents;
}

SelectionOffer offerOf(const Contents& contents) {
  SelectionOffer offer;
  addFiles(offer, contents);
  addImage(offer, contents);
  addText(offer, contents);
  addData(offer, contents, &PasteboardContents::rtf, "text/rtf");
  addData(offer, contents, &PasteboardContents::rtf, "application/rtf");
  addData(offer, contents, &PasteboardContents::rtf, "text/richtext");
  addData(offer, contents, &PasteboardContents::html, targets::htmlText);
  return offer;
}

}  // namespace vantorel
