// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/LimitedProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <thread>

#include "platform/linux/pictures/PrivateDirectory.h"
#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using ::testing::HasSubstr;
using ::testing::Not;

class LimitedProcessTest : public ::testing::Test {
 protected:
  ProcessEnd run(const std::string& script, milliseconds time = milliseconds(20'000)) {
    ProcessLimits limits;
    limits.time = time;
    limits.fileSize = 100'000;
    return runLimited({"/bin/sh", "-c", script}, files.root(), limits, stop);
  }
  [[nodiscard]] std::string contents(const std::string& path) const {
    std::ifstream file(files / path);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] std::string quoted(const std::string& path) const {
    return "'" + (files / path).string() + "'";
  }
  /// Whether the process whose number is in the file is gone, or nothing more than remembered.
  [[nodiscard]] bool hasEnded(const std::string& path) const {
    std::ifstream status("/proc/" + std::to_string(std::stoi(contents(path))) + "/status");
    const std::string text{std::istreambuf_iterator<char>(status), {}};
    return text.empty() || text.find("State:\tZ") != std::string::npos;
  }
  /// The kernel takes a moment to end what was killed.
  [[nodiscard]] bool endsSoon(const std::string& path) const {
    const auto deadline = steady_clock::now() + std::chrono::seconds(20);
    while (!hasEnded(path) && steady_clock::now() < deadline) std::this_thread::yield();
    return hasEnded(path);
  }

  WrittenFiles files;
  StopSignal stop;
};

TEST_F(LimitedProcessTest, StartsNothingWithAWordThatWouldArriveShorter) {
  using namespace std::string_literals;
  EXPECT_EQ(runLimited({"/bin/sh", "-c", "exit 0\0; more"s}, files.root(), {}, stop),
            ProcessEnd::notStarted);
  EXPECT_EQ(runLimited({"/bin/true\0.elsewhere"s}, files.root(), {}, stop), ProcessEnd::notStarted);
}

TEST_F(LimitedProcessTest, EndsWithSuccessOrFailure) {
  EXPECT_EQ(run("exit 0"), ProcessEnd::success);
  EXPECT_EQ(run("exit 3"), ProcessEnd::failure);
  EXPECT_EQ(run("kill -SEGV $$"), ProcessEnd::crashed);
  EXPECT_EQ(run("sh -c 'kill -SEGV $$'; exit $?"), ProcessEnd::crashed) << "told of by a shell";
  EXPECT_EQ(runLimited({"/nonexistent/program"}, files.root(), {}, stop), ProcessEnd::failure);
  EXPECT_EQ(runLimited({}, files.root(), {}, stop), ProcessEnd::notStarted);
}

TEST_F(LimitedProcessTest, IsKilledAtItsTimeLimitWithAllItStarted) {
  const auto begin = steady_clock::now();
  EXPECT_EQ(run("sleep 1000 & echo $! >" + quoted("child") + "; trap '' TERM; sleep 1000",
                milliseconds(500)),
            ProcessEnd::tookTooLong);
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(30));
  EXPECT_TRUE(endsSoon("child"));
}

TEST_F(LimitedProcessTest, NothingItStartedOutlivesIt) {
  EXPECT_EQ(run("sleep 1000 & echo $! >" + quoted("child")), ProcessEnd::success);
  EXPECT_TRUE(endsSoon("child"));
}

TEST_F(LimitedProcessTest, IsKilledWhenItIsTimeToStop) {
  std::thread stopper([this] {
    while (contents("started").empty()) std::this_thread::yield();
    stop.raise();
  });
  EXPECT_EQ(run("echo $$ >" + quoted("started") + "; exec sleep 1000"), ProcessEnd::stopped);
  stopper.join();
  EXPECT_TRUE(endsSoon("started"));
  EXPECT_EQ(run("exit 0"), ProcessEnd::notStarted) << "nothing is begun any more";
}

TEST_F(LimitedProcessTest, CannotFillTheDisk) {
  EXPECT_NE(run("head -c 1000000 /dev/zero >" + quoted("big")), ProcessEnd::success);
  EXPECT_LE(std::filesystem::file_size(files / "big"), 100'000U);
}

TEST_F(LimitedProcessTest, HasLimitedMemory) {
  const std::vector<std::string> command = {"/bin/dd", "if=/dev/zero", "of=/dev/null", "bs=200M",
                                            "count=1"};
  ProcessLimits limits;
  limits.time = std::chrono::minutes(1);  // this is not about time
  EXPECT_EQ(runLimited(command, files.root(), limits, stop), ProcessEnd::success);
  limits.memory = std::uint64_t{64} << 20U;
  EXPECT_EQ(runLimited(command, files.root(), limits, stop), ProcessEnd::failure);
}

TEST_F(LimitedProcessTest, HasNoInputAndNothingOfOurEnvironmentAndFiles) {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS",
                           "SSH_AUTH_SOCK", "XDG_RUNTIME_DIR", "XAUTHORITY", "A_TOKEN"})
    ::setenv(name, "ours", 1);
  std::ifstream open(files.write("secret", "x"));
  EXPECT_EQ(run("env >" + quoted("environment") + "; cat >" + quoted("input") +
                "; ls -l /proc/self/fd >" + quoted("open")),
            ProcessEnd::success);
  EXPECT_THAT(contents("environment"), Not(HasSubstr("=ours")));
  EXPECT_THAT(contents("environment"), HasSubstr("PATH=" + std::string(::getenv("PATH"))));
  for (const char* name : {"HOME", "TMPDIR"})
    EXPECT_THAT(contents("environment"), HasSubstr(name + ("=" + files.root().string()) + "\n"));
  EXPECT_EQ(contents("input"), "");
  EXPECT_THAT(contents("open"), HasSubstr("/dev/null"));
  EXPECT_THAT(contents("open"), Not(HasSubstr("secret")));
}

TEST(PrivateDirectory, IsNobodyElsesAndGoesWithAllInIt) {
  WrittenFiles files;
  std::filesystem::path path;
  {
    const PrivateDirectory directory(files.root());
    path = directory.path();
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    std::filesystem::create_directories(path / "a/b");
    std::ofstream(path / "a/b/c") << "x";
    std::filesystem::create_symlink(files.write("kept"), path / "link");
  }
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_TRUE(std::filesystem::exists(files / "kept"));
  EXPECT_TRUE(PrivateDirectory(files / "absent").path().empty());
}

}  // namespace
}  // namespace vantorel
