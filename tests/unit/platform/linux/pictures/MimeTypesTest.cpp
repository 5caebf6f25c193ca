#include "platform/linux/pictures/MimeTypes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;

TEST(MimeTypes, NameIconsFromTheirOwnToAPlainDocument) {
  WrittenFiles files;
  files.write("own/icons", "text/x-odd:very-odd\n");
  files.write("own/generic-icons", "application/zip:own-package\n");
  files.write("system/generic-icons",
              "application/zip:package-x-generic\napplication/pdf:x-office-document\n"
              "text/evil:../evil\nnonsense\n");
  const auto types = MimeTypes::read(files.system, {files / "own", files / "system"});
  EXPECT_THAT(types.iconsOf("application/pdf"),
              ElementsAre("application-pdf", "x-office-document", "application-x-generic",
                          "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf("application/zip"),
              ElementsAre("application-zip", "own-package", "application-x-generic",
                          "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf("text/x-odd"),
              ElementsAre("very-odd", "text-x-odd", "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf("text/evil"), ElementsAre("text-evil", "text-x-generic", "unknown"));
  EXPECT_THAT(
      types.iconsOf(directoryType),
      ElementsAre("inode-directory", "folder", "inode-x-generic", "text-x-generic", "unknown"));
  EXPECT_THAT(types.iconsOf(""), ElementsAre("text-x-generic", "unknown"));
}

TEST(MimeTypes, WithoutADatabaseNothingHasAType) {
  WrittenFiles files;
  const auto types = MimeTypes::read(files.system, {files / "absent"});
  EXPECT_EQ(types.typeOf("a.txt"), "");
  EXPECT_EQ(types.iconsOf("").front(), "text-x-generic");
}

}  // namespace
}  // namespace vantorel
