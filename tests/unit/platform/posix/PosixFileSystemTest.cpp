// SPDX-License-Identifier: MIT
#include "platform/posix/PosixFileSystem.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "fakes/TemporaryDirectory.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;

class Posix : public ::testing::Test {
 protected:
  [[nodiscard]] fs::path at(const char* name) const { return directory.path() / name; }
  static unsigned permissions(const fs::path& path) {
    return static_cast<unsigned>(fs::status(path).permissions());
  }
  TemporaryDirectory directory;
  PosixFileSystem files;
};

TEST_F(Posix, WritesAndReadsAFile) {
  Bytes bytes(3'000'000);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::byte>(i * 31);
  ASSERT_FALSE(files.writeNewFile(at("f"), bytes, 0640));
  EXPECT_EQ(files.readFile(at("f"), bytes.size()), bytes);
  EXPECT_EQ(files.fileSize(at("f")), bytes.size());
  EXPECT_EQ(permissions(at("f")), 0640U);
}

TEST_F(Posix, APathWithANulByteIsNotTheFileBeforeIt) {
  ASSERT_FALSE(files.writeNewFile(at("f"), bytesOf("x"), 0600));
  const auto behind = [](const fs::path& path) { return fs::path(path.string() + '\0' + "more"); };
  const auto file = behind(at("f"));
  EXPECT_FALSE(files.exists(file));
  EXPECT_EQ(files.readFile(file, 10), std::nullopt);
  EXPECT_EQ(files.fileSize(file), std::nullopt);
  EXPECT_EQ(files.list(behind(directory.path())), std::nullopt);
  EXPECT_TRUE(files.setPermissions(file, 0644));
  EXPECT_EQ(permissions(at("f")), 0600U);
  EXPECT_TRUE(files.rename(file, at("g")));
  EXPECT_TRUE(files.rename(at("f"), behind(at("g"))));
  EXPECT_TRUE(files.remove(file));
  EXPECT_TRUE(files.syncDirectory(behind(directory.path())));
  EXPECT_TRUE(files.writeNewFile(behind(at("new")), bytesOf("x"), 0600));
  EXPECT_TRUE(files.createDirectories(behind(at("folder")), 0700));
  EXPECT_EQ(files.list(directory.path()), std::vector<fs::path>{"f"}) << "all is as it was";
}

TEST_F(Posix, WritesAnEmptyFile) {
  ASSERT_FALSE(files.writeNewFile(at("f"), {}, 0600));
  EXPECT_EQ(files.readFile(at("f"), 0), Bytes());
}

TEST_F(Posix, NewFilesAndDirectoriesHaveTheirPermissionsUnderAnyUmask) {
  for (const mode_t mask : {0000, 0022, 0077, 0777}) {
    const TemporaryDirectory place;
    const mode_t before = ::umask(mask);
    const auto fileError = files.writeNewFile(place.path() / "f", bytesOf("x"), 0600);
    const auto directoryError = files.createDirectories(place.path() / "a" / "b", 0700);
    ::umask(before);
    EXPECT_FALSE(fileError);
    EXPECT_FALSE(directoryError);
    EXPECT_EQ(permissions(place.path() / "f"), 0600U) << mask;
    EXPECT_EQ(permissions(place.path() / "a"), 0700U) << mask;
    EXPECT_EQ(permissions(place.path() / "a" / "b"), 0700U) << mask;
  }
}

TEST_F(Posix, NeverWritesOverAFileOrThroughALink) {
  ASSERT_FALSE(files.writeNewFile(at("f"), bytesOf("old"), 0600));
  EXPECT_EQ(files.writeNewFile(at("f"), bytesOf("new"), 0600), std::errc::file_exists);
  fs::create_symlink(at("target"), at("link"));
  EXPECT_EQ(files.writeNewFile(at("link"), bytesOf("new"), 0600), std::errc::file_exists);
  EXPECT_FALSE(fs::exists(at("target")));
  EXPECT_EQ(files.readFile(at("f"), 100), toBytes("old"));
}

TEST_F(Posix, TellsWhyAFileCannotBeWritten) {
  EXPECT_EQ(files.writeNewFile(at("none/f"), {}, 0600), std::errc::no_such_file_or_directory);
  EXPECT_EQ(files.writeNewFile(at(std::string(300, 'x').c_str()), {}, 0600),
            std::errc::filename_too_long);
}

TEST_F(Posix, TellsWhenADiskIsFull) {
  // A limit on the size of files is met in the middle of a write, as a full disk is.
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  rlimit small = before;
  small.rlim_cur = 100'000;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const auto error = files.writeNewFile(at("f"), Bytes(200'000), 0600);
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, ignored);
  EXPECT_EQ(error, std::errc::file_too_large);
  EXPECT_EQ(files.fileSize(at("f")), 100'000U);
}

TEST_F(Posix, ReadsNothingThatIsNoFile) {
  EXPECT_EQ(files.readFile(at("none"), 100), std::nullopt);
  EXPECT_EQ(files.readFile(directory.path(), 100), std::nullopt);
  EXPECT_EQ(files.readFile("/dev/zero", 100), std::nullopt);
  ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
  EXPECT_EQ(files.readFile(at("pipe"), 100), std::nullopt);
}

TEST_F(Posix, RefusesFilesBeyondTheLimitBeforeReadingThem) {
  ASSERT_FALSE(files.writeNewFile(at("f"), Bytes(10), 0600));
  EXPECT_TRUE(files.readFile(at("f"), 10));
  EXPECT_EQ(files.readFile(at("f"), 9), std::nullopt);
  fs::resize_file(at("f"), std::uintmax_t{1} << 42U);
  EXPECT_EQ(files.readFile(at("f"), 1 << 20U), std::nullopt);
}

TEST_F(Posix, SeesWhatStandsThere) {
  EXPECT_FALSE(files.exists(at("none")));
  EXPECT_FALSE(files.exists(at("none/deeper")));
  ASSERT_FALSE(files.writeNewFile(at("f"), {}, 0600));
  EXPECT_TRUE(files.exists(at("f")));
  EXPECT_FALSE(files.exists(at("f/below a file")));
  EXPECT_TRUE(files.exists(directory.path()));
  fs::create_symlink(at("nowhere"), at("link"));
  EXPECT_TRUE(files.exists(at("link")));
  // A name that cannot be looked at is not taken for absent.
  EXPECT_TRUE(files.exists(at(std::string(300, 'x').c_str())));
}

TEST_F(Posix, WithinReachIsOnlyWhatCanBeFollowed) {
  EXPECT_FALSE(files.isWithinReach(at("none")));
  ASSERT_FALSE(files.writeNewFile(at("f"), {}, 0600));
  EXPECT_TRUE(files.isWithinReach(at("f")));
  EXPECT_TRUE(files.isWithinReach(directory.path()));
  fs::create_symlink(at("f"), at("link"));
  EXPECT_TRUE(files.isWithinReach(at("link")));
  fs::create_symlink(at("nowhere"), at("broken"));
  EXPECT_FALSE(files.isWithinReach(at("broken")));
  EXPECT_FALSE(files.isWithinReach(at(std::string(300, 'x').c_str())));
  EXPECT_FALSE(files.isWithinReach(fs::path(at("f").string() + '\0' + "more")));
}

TEST_F(Posix, MeasuresOnlyFiles) {
  EXPECT_EQ(files.fileSize(at("none")), std::nullopt);
  EXPECT_EQ(files.fileSize(directory.path()), std::nullopt);
}

TEST_F(Posix, ListsHiddenNamesToo) {
  ASSERT_FALSE(files.writeNewFile(at("a"), {}, 0600));
  ASSERT_FALSE(files.writeNewFile(at(".b"), {}, 0600));
  fs::create_directory(at("c"));
  auto names = files.list(directory.path());
  ASSERT_TRUE(names);
  std::sort(names->begin(), names->end());
  EXPECT_EQ(names, (std::vector<fs::path>{".b", "a", "c"}));
  EXPECT_EQ(files.list(at("none")), std::nullopt);
  EXPECT_EQ(files.list(at("a")), std::nullopt);
}

TEST_F(Posix, CreatesMissingParentsAndLeavesThoseThatStand) {
  fs::create_directory(at("a"));
  fs::permissions(at("a"), fs::perms(0755));
  EXPECT_FALSE(files.createDirectories(at("a") / "b" / "c", 0700));
  EXPECT_EQ(permissions(at("a")), 0755U);
  EXPECT_EQ(permissions(at("a") / "b"), 0700U);
  EXPECT_FALSE(files.createDirectories(at("a") / "b" / "c", 0700));
  EXPECT_FALSE(files.createDirectories(at("d") / "", 0700));
  EXPECT_TRUE(fs::is_directory(at("d")));
  fs::create_directory_symlink(at("a"), at("link"));
  EXPECT_FALSE(files.createDirectories(at("link") / "e", 0700));
  EXPECT_TRUE(fs::is_directory(at("a") / "e"));
}

TEST_F(Posix, CreatesNoDirectoryWhereAFileStands) {
  ASSERT_FALSE(files.writeNewFile(at("f"), {}, 0600));
  EXPECT_EQ(files.createDirectories(at("f"), 0700), std::errc::file_exists);
  EXPECT_EQ(files.createDirectories(at("f") / "g", 0700), std::errc::file_exists);
}

TEST_F(Posix, SetsPermissions) {
  ASSERT_FALSE(files.writeNewFile(at("f"), {}, 0600));
  EXPECT_FALSE(files.setPermissions(at("f"), 0644));
  EXPECT_EQ(permissions(at("f")), 0644U);
  EXPECT_EQ(files.setPermissions(at("none"), 0644), std::errc::no_such_file_or_directory);
}

TEST_F(Posix, RenamesOverWhatStandsThere) {
  ASSERT_FALSE(files.writeNewFile(at("a"), bytesOf("a"), 0600));
  ASSERT_FALSE(files.writeNewFile(at("b"), bytesOf("b"), 0600));
  EXPECT_FALSE(files.rename(at("a"), at("b")));
  EXPECT_FALSE(fs::exists(at("a")));
  EXPECT_EQ(files.readFile(at("b"), 10), toBytes("a"));
  EXPECT_EQ(files.rename(at("a"), at("b")), std::errc::no_such_file_or_directory);
}

TEST_F(Posix, RemovesFilesLinksAndEmptyDirectories) {
  ASSERT_FALSE(files.writeNewFile(at("f"), {}, 0600));
  fs::create_symlink(at("f"), at("link"));
  fs::create_directory(at("d"));
  fs::create_directories(at("full") / "d");
  EXPECT_FALSE(files.remove(at("link")));
  EXPECT_TRUE(fs::exists(at("f")));
  EXPECT_FALSE(files.remove(at("f")));
  EXPECT_FALSE(files.remove(at("d")));
  EXPECT_TRUE(files.remove(at("full")));
  EXPECT_EQ(files.remove(at("f")), std::errc::no_such_file_or_directory);
}

TEST_F(Posix, SyncsDirectoriesAndOnlyThose) {
  EXPECT_FALSE(files.syncDirectory(directory.path()));
  ASSERT_FALSE(files.writeNewFile(at("f"), {}, 0600));
  EXPECT_EQ(files.syncDirectory(at("f")), std::errc::not_a_directory);
  EXPECT_EQ(files.syncDirectory(at("none")), std::errc::no_such_file_or_directory);
}

TEST_F(Posix, AsksTheDesktopToKeepADirectoryOutOfBackups) {
  EXPECT_FALSE(files.excludeFromBackup(directory.path()));
  PosixFileSystem refusing(
      [](const fs::path&) { return std::make_error_code(std::errc::io_error); });
  EXPECT_EQ(refusing.excludeFromBackup(directory.path()), std::errc::io_error);
}

TEST_F(Posix, LeavesNoFileOpen) {
  const auto openFiles = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = openFiles();
  ASSERT_FALSE(files.writeNewFile(at("f"), bytesOf("x"), 0600));
  (void)files.writeNewFile(at("f"), bytesOf("x"), 0600);
  (void)files.readFile(at("f"), 100);
  (void)files.readFile(at("f"), 0);
  (void)files.list(directory.path());
  (void)files.syncDirectory(directory.path());
  EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace vantorel
