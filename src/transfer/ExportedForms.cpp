// SPDX-License-Identifier: MIT
#include "transfer/ExportedForms.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/ContentFingerprint.h"
#include "platform/CaptureLimits.h"
#include "store/CapturedEntries.h"
#include "store/ClipOrder.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

using Form = ExportedFile::Form;

constexpr std::string_view pngMagic("\x89PNG\r\n\x1a\n", 8);
constexpr std::string_view jpegMagic("\xff\xd8\xff", 3);

/// Absent for what is neither of the two.
std::optional<std::string_view> pictureExtension(ByteView picture) {
  if (textOf(picture).starts_with(pngMagic)) return "png";
  if (textOf(picture).starts_with(jpegMagic)) return "jpg";
  return std::nullopt;
}

std::string fileName(std::size_t number, std::string_view extension) {
  constexpr std::size_t digits = 4;  // so that a listing has the order of the history
  std::string name = std::to_string(number);
  if (name.size() < digits) name.insert(0, digits - name.size(), '0');
  return name + "." + std::string(extension);
}

class Exporting {
 public:
  Exporting(const ClipItem& item, std::size_t number) : number_(number) {
    clip_.entry = {.kind = item.kind,
                   .preview = item.preview,
                   .isPinned = item.pinned(),
                   .customName = item.customName,
                   .sourceAppName = item.sourceAppName,
                   .sourceBundleIdentifier = item.sourceBundleIdentifier,
                   .createdAt = item.createdAt,
                   .lastCopiedAt = item.lastCopiedAt,
                   .recognizedText = item.recognizedText,
                   .files = {}};
  }

  void add(Form form, std::string_view extension, const SharedBytes& bytes) {
    clip_.entry.files.push_back(
        {fileName(number_, extension), form, ContentFingerprint::data(*bytes)});
    clip_.contents.push_back(bytes);
  }
  void add(Form form, std::string_view extension, std::string_view text) {
    const ByteView bytes = bytesOf(text);
    add(form, extension, SharedBytes(Bytes(bytes.begin(), bytes.end())));
  }

  ExportedClip take() { return std::move(clip_); }

 private:
  const std::size_t number_;
  ExportedClip clip_;
};

const SharedBytes* contentsOf(const ExportedClip& clip, Form form) {
  for (std::size_t i = 0; i < clip.entry.files.size(); ++i) {
    if (clip.entry.files[i].form == form) return &clip.contents.at(i);
  }
  return nullptr;
}

std::optional<std::string> start(const std::optional<std::string>& text, std::size_t characters) {
  if (!text) return std::nullopt;
  return std::string(prefixOfCharacters(*text, characters));
}

std::optional<ImportedClip> textClip(const ExportedClip& clip, const SourceApp& source, Date now) {
  const SharedBytes* const bytes = contentsOf(clip, Form::text);
  if (bytes == nullptr) return std::nullopt;
  const std::string_view text = textOf(bytes->get());
  if (!isValidUtf8(text) || trimmed(text).empty()) return std::nullopt;
  ImportedClip result{.item = textEntry(std::string(text), source, now), .picture = {}};
  if (const auto* const rtf = contentsOf(clip, Form::rtf)) result.item.rtfData = *rtf;
  if (const auto* const html = contentsOf(clip, Form::html)) result.item.htmlData = *html;
  return result;
}

std::optional<ImportedClip> filesClip(const ExportedClip& clip, const SourceApp& source, Date now) {
  const SharedBytes* const bytes = contentsOf(clip, Form::paths);
  auto paths = bytes != nullptr ? pathsOfLines(textOf(bytes->get())) : std::nullopt;
  if (!paths) return std::nullopt;
  return ImportedClip{.item = filesEntry(std::move(*paths), source, now), .picture = {}};
}

std::optional<ImportedClip> imageClip(const ExportedClip& clip, const SourceApp& source, Date now) {
  constexpr std::size_t longestPreview = 100;
  const SharedBytes* const bytes = contentsOf(clip, Form::picture);
  const auto extension = bytes != nullptr ? pictureExtension(bytes->get()) : std::nullopt;
  if (!extension || bytes->get().size() > largestEncodedImage) return std::nullopt;
  const auto held = std::make_shared<const SharedBytes>(*bytes);
  ImportedClip result{
      .item = imageEntry({}, {}, ContentFingerprint::data(bytes->get()), source, now),
      .picture = EncodedImage{{held, &held->get()}, std::string(*extension)}};
  result.item.assetFilename.reset();
  // Its size in points, which only whoever decodes it could tell anew.
  result.item.preview = prefixOfCharacters(clip.entry.preview, longestPreview);
  result.item.recognizedText = start(clip.entry.recognizedText, longestRecognizedText);
  return result;
}

std::optional<ImportedClip> clipOf(const ExportedClip& clip, const SourceApp& source, Date now) {
  switch (clip.entry.kind) {
    case ClipKind::text:
      return textClip(clip, source, now);
    case ClipKind::image:
      return imageClip(clip, source, now);
    case ClipKind::files:
      return filesClip(clip, source, now);
  }
  return std::nullopt;
}

}  // namespace

std::optional<ExportedClip> exported(const ClipItem& item, std::size_t number,
                                     std::optional<Bytes> picture) {
  Exporting exporting(item, number);
  switch (item.kind) {
    case ClipKind::text:
      exporting.add(Form::text, "txt", item.text ? std::string_view(**item.text) : "");
      if (item.htmlData) exporting.add(Form::html, "html", *item.htmlData);
      if (item.rtfData) exporting.add(Form::rtf, "rtf", *item.rtfData);
      break;
    case ClipKind::image: {
      const auto extension = picture ? pictureExtension(*picture) : std::nullopt;
      if (!extension) return std::nullopt;
      exporting.add(Form::picture, *extension, SharedBytes(std::move(*picture)));
      break;
    }
    case ClipKind::files:
      exporting.add(Form::paths, "txt", linesOfPaths(item.filePaths));
      break;
  }
  auto clip = exporting.take();
  if (!imported(clip, item.createdAt)) return std::nullopt;
  return clip;
}

std::optional<ImportedClip> imported(const ExportedClip& clip, Date now) {
  const ExportedEntry& entry = clip.entry;
  constexpr std::size_t longestOfSource = 255;  // as a file that an application is known by
  const SourceApp source{start(entry.sourceAppName, longestOfSource),
                         start(entry.sourceBundleIdentifier, longestOfSource)};
  auto result = clipOf(clip, source, std::min(entry.createdAt, now));
  if (!result) return std::nullopt;
  if (entry.lastCopiedAt) result->item.lastCopiedAt = std::min(*entry.lastCopiedAt, now);
  result->item.isPinned = entry.isPinned;
  if (entry.isPinned) result->item.customName = pinName(entry.customName.value_or(""));
  return result;
}

std::string linesOfPaths(const FilePaths& paths) {
  std::string lines;
  for (const std::string& path : paths) {
    for (const char c : path) {
      if (c == '\\') lines += '\\';
      lines += c == '\n' ? "\\n" : std::string(1, c);
    }
    lines += '\n';
  }
  return lines;
}

std::optional<std::vector<std::string>> pathsOfLines(std::string_view lines) {
  std::vector<std::string> paths;
  std::string path;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i] == '\n') {
      if (!path.starts_with('/')) return std::nullopt;
      paths.push_back(std::exchange(path, {}));
    } else if (lines[i] != '\\') {
      path += lines[i];
    } else if (++i < lines.size() && (lines[i] == 'n' || lines[i] == '\\')) {
      path += lines[i] == 'n' ? '\n' : '\\';
    } else {
      return std::nullopt;
    }
  }
  const bool isWhole = !paths.empty() && path.empty() && isValidUtf8(lines) &&
                       lines.find('\0') == std::string_view::npos;
  return isWhole ? std::optional(std::move(paths)) : std::nullopt;
}

}  // namespace vantorel
