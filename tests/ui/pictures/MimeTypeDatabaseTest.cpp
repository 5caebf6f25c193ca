// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/MimeTypeDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;

/// The types of this very system.
class MimeTypeDatabaseTest : public ::testing::Test {
 protected:
  MimeTypeDatabase types{MimeTypeDatabase::directories(processEnvironment)};
};

TEST_F(MimeTypeDatabaseTest, NamesTheTypeOfAFile) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"main.c", "text/x-csrc"},
      {"main.C", "text/x-c++src"},
      {"picture.png", "image/png"},
      {"PICTURE.PNG", "image/png"},
      {"archive.tar.gz", "application/x-compressed-tar"},
      {"ARCHIVE.TAR.GZ", "application/x-compressed-tar"},
      {"archive.gz", "application/gzip"},
      {"page.html", "text/html"},
      {"a.b.txt", "text/plain"},
      {"Makefile", "text/x-makefile"},
      {"README.first", "text/x-readme"},
      {"libx.so.6", "application/x-sharedlib"},
      {"a.txt~", "application/x-trash"},
      {"\xFF.txt", "text/plain"},
      {std::string(200, 'a') + ".txt", "text/plain"},
      {"a.\xFF\xFEtxt", ""},
      {"a.unheard", ""},
      {"a.txt.", ""},
      {".txt", ""},
      {"txt", ""},
      {"", ""},
  };
  for (const auto& [name, type] : cases) EXPECT_EQ(types.typeOf(name), type) << name;
}

TEST_F(MimeTypeDatabaseTest, NamesIconsFromATypesOwnToAPlainDocument) {
  EXPECT_THAT(types.iconsOf("application/pdf"),
              ElementsAre("application-pdf", "x-office-document", "application-x-generic",
                          "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf("application/zip"),
              ElementsAre("application-zip", "package-x-generic", "application-x-generic",
                          "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf("text/x-csrc"),
              ElementsAre("text-x-csrc", "text-x-generic", "unknown"));
  EXPECT_THAT(
      types.iconsOf(std::string(directoryType)),
      ElementsAre("inode-directory", "folder", "inode-x-generic", "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf("odd/../type"),
              ElementsAre("odd-..-type", "odd-x-generic", "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf(""), ElementsAre("text-x-generic", "unknown"));
}

TEST(MimeTypeDatabaseChanges, AreToldTwiceAsTheFirstAnswersMayStillBeOld) {
  WrittenFiles files;
  MimeTypeDatabase types({files / "mime"});
  EXPECT_FALSE(types.refresh());
  files.write("mime/mime.cache");
  EXPECT_TRUE(types.refresh());
  EXPECT_TRUE(types.refresh());
  EXPECT_FALSE(types.refresh());
  files.touch("mime/mime.cache");
  EXPECT_TRUE(types.refresh());
}

}  // namespace
}  // namespace vantorel
