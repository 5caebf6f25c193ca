// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/TextModels.h"

#include <gtest/gtest.h>

#include <fstream>

#include "fakes/TemporaryDirectory.h"

namespace vantorel {
namespace {

using Names = std::vector<std::string>;

struct Scene {
  TemporaryDirectory directory;
  void install(const std::string& file) { std::ofstream(directory.path() / file) << "model"; }
  [[nodiscard]] TextModels models() const { return installedModels({directory.path()}); }
};

TEST(TextModels, AreTheFilesOfLanguages) {
  Scene scene;
  for (const char* file : {"heb.traineddata", "eng.traineddata", "osd.traineddata",
                           "equ.traineddata", "pdf.ttf", "configs"})
    scene.install(file);
  EXPECT_EQ(scene.models().names, (Names{"eng", "heb"}));
  EXPECT_EQ(scene.models().directory, scene.directory.path());
}

TEST(TextModels, ComeFromTheFirstDirectoryThatHasSome) {
  Scene empty;
  Scene full;
  full.install("eng.traineddata");
  const auto models =
      installedModels({"/nonexistent", empty.directory.path(), full.directory.path()});
  EXPECT_EQ(models.directory, full.directory.path());
  EXPECT_TRUE(installedModels({"/nonexistent", empty.directory.path()}).names.empty());
  EXPECT_TRUE(installedModels({}).names.empty());
}

TEST(TextModels, ADirectoryWithAKnownLanguageGoesBeforeOneWithout) {
  Scene foreign;
  Scene known;
  foreign.install("deu.traineddata");
  known.install("heb.traineddata");
  EXPECT_EQ(installedModels({foreign.directory.path(), known.directory.path()}).names,
            Names{"heb"});
  EXPECT_EQ(installedModels({foreign.directory.path()}).names, Names{"deu"});
}

TEST(TextModels, TheEnginesOwnVariableComesFirst) {
  EXPECT_EQ(modelDirectories("/mine").front(), "/mine");
  EXPECT_EQ(modelDirectories("").front(), "/usr/share/tesseract-ocr/5/tessdata");
}

TEST(TextModels, AreChosenByLanguage) {
  const TextModels installed{"/models", {"deu", "eng", "heb"}};
  EXPECT_EQ(modelsFor(installed, {"he-IL", "en-US"}), (Names{"heb", "eng"}));
  EXPECT_EQ(modelsFor(installed, {"en-US"}), Names{"eng"});
  EXPECT_EQ(modelsFor(installed, {"deu"}), Names{"deu"});
  EXPECT_EQ(modelsFor(installed, {"fr-FR"}), Names{});
  EXPECT_EQ(modelsFor(installed, {}), Names{"deu"}) << "the default";
  EXPECT_EQ(modelsFor({}, {}), Names{});
}

}  // namespace
}  // namespace vantorel
