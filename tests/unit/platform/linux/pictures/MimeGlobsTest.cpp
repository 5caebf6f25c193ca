#include "platform/linux/pictures/MimeGlobs.h"

#include <gtest/gtest.h>

#include <utility>

namespace vantorel {
namespace {

const std::string database =
    "# comment\n"
    "80:text/html:*.html\n"
    "50:application/gzip:*.gz\n"
    "50:application/x-compressed-tar:*.tar.gz\n"
    "50:text/x-csrc:*.c\n"
    "50:text/x-c++src:*.C:cs\n"
    "50:text/plain:*.txt\n"
    "50:text/x-makefile:makefile\n"
    "50:text/x-readme:readme*\n"
    "50:application/x-sharedlib:*.so.[0-9]*\n"
    "10:application/x-trash:*~\n"
    "50:video/mp4:*.mp4\n"
    "60:audio/special:*.mp4\n";

TEST(MimeGlobs, NameTheType) {
  const MimeGlobs globs({database});
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a.txt", "text/plain"},
      {"A.TXT", "text/plain"},
      {".txt", "text/plain"},
      {"a.b.txt", "text/plain"},
      {"archive.tar.gz", "application/x-compressed-tar"},
      {"ARCHIVE.TAR.GZ", "application/x-compressed-tar"},
      {"archive.gz", "application/gzip"},
      {"a.c", "text/x-csrc"},
      {"a.C", "text/x-c++src"},
      {"Makefile", "text/x-makefile"},
      {"makefile", "text/x-makefile"},
      {"makefile.unknown", ""},
      {"README.first", "text/x-readme"},
      {"libx.so.6", "application/x-sharedlib"},
      {"libx.so.six", ""},
      {"a.txt~", "application/x-trash"},
      {"film.mp4", "audio/special"},
      {"txt", ""},
      {"a.txt.", ""},
      {"", ""},
      {"a.\xFF\xFEtxt", ""},
      {"\xFF.txt", "text/plain"},
      {std::string(5000, 'a') + ".txt", "text/plain"},
  };
  for (const auto& [name, type] : cases) EXPECT_EQ(globs.typeOf(name), type) << name;
}

TEST(MimeGlobs, TheMoreImportantFileWinsATie) {
  const MimeGlobs globs({"50:text/own:*.txt\n", "50:text/theirs:*.txt\n60:text/heavy:*.log\n"});
  EXPECT_EQ(globs.typeOf("a.txt"), "text/own");
  EXPECT_EQ(globs.typeOf("a.log"), "text/heavy");
}

TEST(MimeGlobs, AFileMayCloseATypeToLesserOnes) {
  const MimeGlobs globs({"0:text/x-diff:__NOGLOBS__\n50:text/x-diff:*.own\n",
                         "50:text/x-diff:*.diff\n50:text/plain:*.diff2\n"});
  EXPECT_EQ(globs.typeOf("a.own"), "text/x-diff");
  EXPECT_EQ(globs.typeOf("a.diff"), "");
  EXPECT_EQ(globs.typeOf("a.diff2"), "text/plain");
}

TEST(MimeGlobs, PassOverLinesThatMakeNoSense) {
  const MimeGlobs globs(
      {"\n:::\n50\nx:text/a:*.a\n50:noslash:*.b\n50:text/c:\n50:text/\xFF:*.d\n"
       "99999999999999:text/e:*.e\n50:text/good:*.good"});
  for (const auto* name : {"a.a", "a.b", "a.d", "a.e"}) EXPECT_EQ(globs.typeOf(name), "") << name;
  EXPECT_EQ(globs.typeOf("a.good"), "text/good");
}

TEST(MimeGlobs, APatternThatWouldTakeForEverIsLeftOut) {
  std::string stars = "50:text/slow:";
  for (int i = 0; i < 20; ++i) stars += "*a";
  const MimeGlobs globs({stars + "b\n50:text/long:*." + std::string(500, 'x') + "\n"});
  EXPECT_EQ(globs.typeOf(std::string(5000, 'a')), "");
  EXPECT_EQ(globs.typeOf("a." + std::string(500, 'x')), "");
}

}  // namespace
}  // namespace vantorel
