// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/Thumbnailers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

class ThumbnailersTest : public ::testing::Test {
 protected:
  void install(const std::string& path, const std::string& exec, const std::string& more = {}) {
    files.write(path, "[Thumbnailer Entry]\nExec=" + exec + " %i %o\nMimeType=video/mp4;\n" + more);
  }
  void program(const std::string& path) { ::chmod(files.write(path).c_str(), 0700); }
  std::string serving(const std::string& type) {
    const auto entry = thumbnailers.forType(type);
    return entry ? std::filesystem::path(entry->command.front())
                       .lexically_relative(files.root())
                       .string()
                 : "(none)";
  }

  WrittenFiles files;
  Thumbnailers thumbnailers{files.system,
                            {{files / "home", files / "system"}, {files / "bin", files / "bin2"}}};
};

TEST_F(ThumbnailersTest, ServeATypeWithAProgramThatIsThere) {
  program("bin2/tool");
  install("system/a.thumbnailer", "tool");
  EXPECT_EQ(serving("video/mp4"), "bin2/tool");
  EXPECT_EQ(serving("video/ogg"), "(none)");
  EXPECT_EQ(serving(""), "(none)");
}

TEST_F(ThumbnailersTest, DoNotCountWithoutTheirProgram) {
  program("bin/tool");
  files.write("bin/data");
  install("system/a.thumbnailer", "absent");
  install("system/b.thumbnailer", "tool", "TryExec=absent\n");
  install("system/c.thumbnailer", "data");
  install("system/d.thumbnailer", "../bin/tool");
  install("system/e.notone", "tool");
  EXPECT_EQ(serving("video/mp4"), "(none)");
}

TEST_F(ThumbnailersTest, TheUsersReplacesTheSystems) {
  program("bin/own");
  program("bin/theirs");
  install("system/a.thumbnailer", "theirs");
  EXPECT_EQ(serving("video/mp4"), "bin/theirs");
  install("home/a.thumbnailer", "own");
  files.touch("home");
  EXPECT_EQ(serving("video/mp4"), "bin/own");
  files.write("home/a.thumbnailer", "[Thumbnailer Entry]\n");
  files.touch("home");
  EXPECT_EQ(serving("video/mp4"), "(none)") << "an empty one takes it away";
}

TEST_F(ThumbnailersTest, SurviveWhatIsNoEntry) {
  program("bin/tool");
  std::filesystem::create_directories(files / "system/dir.thumbnailer");
  ASSERT_EQ(::mkfifo((files / "system/pipe.thumbnailer").c_str(), 0600), 0);
  files.write("system/giant.thumbnailer", std::string(1U << 20U, 'x'));
  install("system/z.thumbnailer", "tool");
  EXPECT_EQ(serving("video/mp4"), "bin/tool");
}

TEST(ThumbnailersPlaces, ComeFromTheEnvironment) {
  const auto places =
      Thumbnailers::Places::fromEnvironment([](const char* name) -> std::optional<std::string> {
        const std::string text(name);
        if (text == "XDG_DATA_HOME") return "/own";
        if (text == "XDG_DATA_DIRS") return "/one:relative:/two";
        if (text == "PATH") return "relative:/bin";
        return std::nullopt;
      });
  using Paths = std::vector<std::filesystem::path>;
  EXPECT_EQ(places.entries, (Paths{"/own/thumbnailers", "/one/thumbnailers", "/two/thumbnailers"}));
  EXPECT_EQ(places.programs, Paths{"/bin"});
}

}  // namespace
}  // namespace vantorel
