// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/Bubblewrap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "base/FileDescriptor.h"
#include "platform/linux/pictures/LimitedProcess.h"
#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class BubblewrapTest : public ::testing::Test {
 protected:
  BubblewrapTest() {
    std::filesystem::create_directory(directory);
    files.write("given", "what it is about");
    files.write("secret", "of the user");
  }
  /// What a script says in a box.
  std::string saidBy(const std::string& script) {
    const auto out = (directory / "said").string();
    const auto command =
        bubblewrap.boxed({"/bin/sh", "-c", "{ " + script + "; } >" + out + " 2>&1"},
                         {files / "given", directory}, stop);
    (void)runLimited(command, directory, {}, stop);
    std::ifstream file(out);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] std::string path(const char* name) const { return (files / name).string(); }

  WrittenFiles files;
  std::filesystem::path directory = files / "directory";
  StopSignal stop;
  Bubblewrap bubblewrap{"/usr/bin/bwrap"};
};

class WorkingBubblewrapTest : public BubblewrapTest {
 protected:
  void SetUp() override {
    if (!bubblewrap.works(directory, stop)) GTEST_SKIP() << "no boxes are to be had here";
  }
};

TEST_F(WorkingBubblewrapTest, ShowsTheSystemAndWhatItIsGiven) {
  EXPECT_EQ(saidBy("cat " + path("given")), "what it is about");
  EXPECT_EQ(saidBy("pwd; test -x /usr/bin/env && echo system"), directory.string() + "\nsystem\n");
}

TEST_F(WorkingBubblewrapTest, ShowsNothingElseOfTheUsers) {
  EXPECT_THAT(saidBy("cat " + path("secret")), HasSubstr("No such file"));
  EXPECT_THAT(saidBy("cat /proc/" + std::to_string(::getpid()) + "/environ"),
              HasSubstr("No such file"));
}

TEST_F(WorkingBubblewrapTest, LetsNothingBeWrittenElsewhere) {
  EXPECT_NE(saidBy("echo other >" + path("given")), "");
  EXPECT_NE(saidBy("echo new >/usr/new"), "");
  std::ifstream given(files / "given");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(given), {}), "what it is about");
}

TEST_F(WorkingBubblewrapTest, ReachesNoNetworkNotEvenOfThisMachine) {
  const FileDescriptor listener(::socket(AF_INET, SOCK_STREAM, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const plain = reinterpret_cast<sockaddr*>(&address);
  ASSERT_EQ(::bind(listener.get(), plain, length), 0);
  ASSERT_EQ(::listen(listener.get(), 1), 0);
  ASSERT_EQ(::getsockname(listener.get(), plain, &length), 0);
  const auto script = "python3 -c 'import socket; socket.create_connection((\"127.0.0.1\", " +
                      std::to_string(ntohs(address.sin_port)) + "))' && echo connected";
  EXPECT_EQ(runLimited({"/bin/sh", "-c", script}, directory, {}, stop), ProcessEnd::success);
  EXPECT_THAT(saidBy(script), Not(HasSubstr("connected")));
}

TEST_F(WorkingBubblewrapTest, TellsOfACrash) {
  const auto command =
      bubblewrap.boxed({"/bin/sh", "-c", "kill -SEGV $$"}, {files / "given", directory}, stop);
  EXPECT_EQ(runLimited(command, directory, {}, stop), ProcessEnd::crashed);
}

TEST_F(WorkingBubblewrapTest, SeesAProgramOfTheUsersOwn) {
  const auto program = files.write("program", "#!/bin/sh\necho own >said\n").string();
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  for (const auto& words : {std::vector<std::string>{program}, {"/bin/sh", program}}) {
    const auto command = bubblewrap.boxed(words, {files / "given", directory}, stop);
    EXPECT_EQ(runLimited(command, directory, {}, stop), ProcessEnd::success);
    EXPECT_TRUE(std::filesystem::remove(directory / "said"));
  }
}

TEST_F(BubblewrapTest, WithoutItACommandIsItself) {
  for (const char* program : {"", "/nonexistent/bwrap", "/bin/false"}) {
    Bubblewrap none{program};
    EXPECT_FALSE(none.works(directory, stop)) << program;
    EXPECT_THAT(none.boxed({"/bin/sh", "-c"}, {files / "given", directory}, stop),
                ElementsAre("/bin/sh", "-c"))
        << program;
  }
}

TEST_F(BubblewrapTest, ItIsAskedOnce) {
  const auto program = files.write("bwrap", "#!/bin/sh\necho asked >>" + path("asked") + "\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  Bubblewrap one{program};
  EXPECT_TRUE(one.works(directory, stop));
  EXPECT_TRUE(one.works(directory, stop));
  std::ifstream asked(files / "asked");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(asked), {}), "asked\n");
}

}  // namespace
}  // namespace vantorel
