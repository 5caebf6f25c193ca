// SPDX-License-Identifier: MIT
#include "transfer/ExportedForms.h"

#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Form = ExportedFile::Form;

const std::string png = std::string("\x89PNG\r\n\x1a\n", 8) + "pixels";

std::vector<std::string> namesOf(const ExportedClip& clip) {
  std::vector<std::string> names;
  for (const auto& file : clip.entry.files) names.push_back(file.name);
  return names;
}

ImportedClip thereAndBack(const ClipItem& item, std::optional<Bytes> picture = {}) {
  return imported(exported(item, 1, std::move(picture)).value(), testDate(1000)).value();
}

TEST(ExportedForms, ATextHasAFileForEachForm) {
  ClipItem item = textItem("words");
  EXPECT_EQ(namesOf(*exported(item, 7, {})), (std::vector<std::string>{"0007.txt"}));
  item.htmlData = toBytes("<b>words</b>");
  item.rtfData = toBytes("{\\rtf1 words}");
  const auto clip = exported(item, 12345, {});
  EXPECT_EQ(namesOf(*clip), (std::vector<std::string>{"12345.txt", "12345.html", "12345.rtf"}));
  EXPECT_EQ(*clip->contents.at(1), toBytes("<b>words</b>"));
}

TEST(ExportedForms, ATextComesBackWithAllThatItHad) {
  ClipItem item = pinnedItem(textItem(" two\nlines\r\n"), 0);
  item.htmlData = toBytes("<p>");
  item.rtfData = toBytes("{\\rtf1}");
  item.customName = "Greeting";
  item.sourceAppName = "Editor";
  item.sourceBundleIdentifier = "org.example.editor";
  item.lastCopiedAt = testDate(9);
  const ClipItem back = thereAndBack(item).item;
  EXPECT_NE(back.id, item.id);
  EXPECT_EQ(back.text, item.text);
  EXPECT_EQ(back.htmlData, item.htmlData);
  EXPECT_EQ(back.rtfData, item.rtfData);
  EXPECT_EQ(back.customName, "Greeting");
  EXPECT_TRUE(back.pinned());
  EXPECT_EQ(back.sourceAppName, "Editor");
  EXPECT_EQ(back.sourceBundleIdentifier, "org.example.editor");
  EXPECT_EQ(back.createdAt, item.createdAt);
  EXPECT_EQ(back.lastCopiedAt, item.lastCopiedAt);
}

TEST(ExportedForms, APictureComesBackAsItsVeryBytes) {
  ClipItem item = imageItem("x.png", "");
  item.preview = "4 × 3 px";
  item.recognizedText = "words in it";
  const auto clip = exported(item, 2, toBytes(png));
  EXPECT_EQ(namesOf(*clip), (std::vector<std::string>{"0002.png"}));
  const auto back = imported(*clip, testDate());
  ASSERT_TRUE(back && back->picture);
  EXPECT_EQ(*back->picture->bytes, toBytes(png));
  EXPECT_EQ(back->picture->extension, "png");
  EXPECT_EQ(back->item.preview, "4 × 3 px");
  EXPECT_EQ(back->item.recognizedText, "words in it");
  EXPECT_FALSE(back->item.assetFilename);
  EXPECT_EQ(namesOf(*exported(item, 2, toBytes("\xff\xd8\xff..."))),
            (std::vector<std::string>{"0002.jpg"}));
}

TEST(ExportedForms, AnImageWithoutAPictureIsNotExported) {
  const ClipItem item = imageItem("x.png", "");
  EXPECT_FALSE(exported(item, 1, {}));
  EXPECT_FALSE(exported(item, 1, toBytes("no picture")));
}

TEST(ExportedForms, WhatCouldNotComeBackIsNotExported) {
  ClipItem none = filesItem({"/a"});
  none.filePaths = {};
  EXPECT_FALSE(exported(none, 1, {}));
  EXPECT_FALSE(exported(filesItem({"relative"}), 1, {}));
  EXPECT_FALSE(exported(textItem(" \n"), 1, {}));
  ClipItem item = textItem("x");
  item.text.reset();
  EXPECT_FALSE(exported(item, 1, {}));
}

TEST(ExportedForms, APictureIsNotCopied) {
  const auto clip = exported(imageItem("x.png", ""), 1, toBytes(png));
  EXPECT_EQ(imported(*clip, testDate())->picture->bytes.get(), &clip->contents.at(0).get());
}

TEST(ExportedForms, WhatIsSaidOfAnEntryIsAsLongAsItCouldBeHere) {
  auto clip = exported(pinnedItem(textItem("x"), 0), 1, {}).value();
  const std::string endless(100'000, 'x');
  clip.entry.customName = " \t" + endless;
  clip.entry.sourceAppName = endless;
  clip.entry.sourceBundleIdentifier = endless;
  const ClipItem back = imported(clip, testDate())->item;
  EXPECT_EQ(back.customName, std::string(80, 'x'));
  EXPECT_EQ(back.sourceAppName, std::string(255, 'x'));
  EXPECT_EQ(back.sourceBundleIdentifier, std::string(255, 'x'));
  clip.entry.customName = " \n";
  EXPECT_FALSE(imported(clip, testDate())->item.customName);
  auto picture = exported(imageItem("x.png", ""), 1, toBytes(png)).value();
  picture.entry.recognizedText = endless;
  EXPECT_EQ(imported(picture, testDate())->item.recognizedText, std::string(8000, 'x'));
}

TEST(ExportedForms, PathsComeBackWhateverIsInThem) {
  for (const auto& paths : std::vector<std::vector<std::string>>{
           {"/a"}, {"/a b", "/c/"}, {"/with\nline end", "/back\\slash\\n"}, {"/\t\r"}}) {
    EXPECT_EQ(thereAndBack(filesItem(paths)).item.filePaths, FilePaths(paths));
  }
  EXPECT_EQ(linesOfPaths({"/a\nb", "/c\\d"}), "/a\\nb\n/c\\\\d\n");
}

TEST(ExportedForms, LinesThatAreNoPathsAreRefused) {
  for (const std::string_view lines :
       {std::string_view(""), std::string_view("\n"), std::string_view("/a"),
        std::string_view("/a\n\n"), std::string_view("a\n"), std::string_view("/a\n../b\n"),
        std::string_view("/a\\\n"), std::string_view("/a\\t\n"), std::string_view("/\xff\n"),
        std::string_view("/a\0b\n", 5)}) {
    EXPECT_FALSE(pathsOfLines(lines)) << lines;
  }
}

TEST(ExportedForms, NothingWasCopiedLaterThanNow) {
  ClipItem item = textItem("a", testDate(2000));
  item.lastCopiedAt = testDate(3000);
  const ClipItem back = thereAndBack(item).item;
  EXPECT_EQ(back.createdAt, testDate(1000));
  EXPECT_EQ(back.lastCopiedAt, testDate(1000));
}

TEST(ExportedForms, AKindWithoutItsFileIsRefused) {
  for (const auto& [kind, form, contents] :
       std::vector<std::tuple<ClipKind, Form, std::string>>{{ClipKind::text, Form::html, "<p>"},
                                                            {ClipKind::text, Form::text, " \n"},
                                                            {ClipKind::text, Form::text, "\xff"},
                                                            {ClipKind::image, Form::text, png},
                                                            {ClipKind::image, Form::picture, "GIF"},
                                                            {ClipKind::files, Form::text, "/a\n"},
                                                            {ClipKind::files, Form::paths, "a"}}) {
    ExportedClip clip;
    clip.entry.kind = kind;
    clip.entry.files = {{"0001.txt", form, ""}};
    clip.contents = {SharedBytes(toBytes(contents))};
    EXPECT_FALSE(imported(clip, testDate())) << contents;
  }
  EXPECT_FALSE(imported({}, testDate()));
}

}  // namespace
}  // namespace vantorel
