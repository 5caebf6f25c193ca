// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/FileQuestions.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "fakes/StuckFileSystem.h"
#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

using Clock = std::chrono::steady_clock;
using Wanted = FileQuestions::Wanted;

constexpr std::uint64_t plenty = 1'000;

class FileQuestionsTest : public ::testing::Test {
 protected:
  FileQuestionsTest() {
    files.write("stuck", "contents");
    files.write("other", "contents");
  }
  ~FileQuestionsTest() override {
    gate->open();
    EXPECT_TRUE(gate->isPassedBy(reads));
  }
  /// How long the question took; `reads` counts those that reached the disk.
  Clock::duration askStuck(FileQuestions& questions) {
    const auto begin = Clock::now();
    EXPECT_EQ(questions.contents(files / "stuck", plenty, Wanted::anything), std::nullopt);
    return Clock::now() - begin;
  }

  WrittenFiles files;
  std::shared_ptr<Gate> gate = std::make_shared<Gate>();
  std::shared_ptr<FileSystem> system = std::make_shared<StuckFileSystem>(gate, "stuck");
  int reads = 0;
};

TEST_F(FileQuestionsTest, AnswersWhatTheDiskSays) {
  FileQuestions questions(system);
  const auto file = files.write("picture", "GIF89a, or so");
  files.touch("picture");
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(questions.changeTime(file), status.st_mtime);
  EXPECT_EQ(questions.changeTime(files.root()), std::nullopt);
  EXPECT_EQ(questions.changeTime(files / "gone"), std::nullopt);
  EXPECT_TRUE(questions.isDirectory(files.root()));
  EXPECT_FALSE(questions.isDirectory(file));
  EXPECT_TRUE(questions.contents(file, plenty, Wanted::pictures));
  EXPECT_TRUE(questions.contents(files / "other", plenty, Wanted::anything));
  EXPECT_FALSE(questions.contents(files / "other", plenty, Wanted::pictures));
  EXPECT_FALSE(questions.contents(files / "other", 3, Wanted::anything)) << "too large";
}

TEST_F(FileQuestionsTest, APathWithANulByteIsNotTheFileBeforeIt) {
  FileQuestions questions(system);
  const auto behind = [&](const std::string& name) {
    return std::filesystem::path((files / name).string() + '\0' + ".png");
  };
  EXPECT_EQ(questions.changeTime(behind("other")), std::nullopt);
  EXPECT_FALSE(questions.isDirectory(behind("")));
  EXPECT_EQ(questions.contents(behind("other"), plenty, Wanted::anything), std::nullopt);
}

TEST_F(FileQuestionsTest, GivesUpWaitingAndAnswersTheNextFile) {
  FileQuestions questions(
      system, {.look = std::chrono::milliseconds(20), .read = std::chrono::milliseconds(20)});
  reads = 1;
  EXPECT_GE(askStuck(questions), std::chrono::milliseconds(20));
  EXPECT_TRUE(FileQuestions(system).contents(files / "other", plenty, Wanted::anything));
}

TEST_F(FileQuestionsTest, DoesNotAskAgainForAFileThatHasNotAnswered) {
  FileQuestions questions(
      system, {.look = std::chrono::milliseconds(20), .read = std::chrono::milliseconds(20)});
  reads = 1;
  askStuck(questions);
  for (int i = 0; i < 10; ++i) askStuck(questions);
  EXPECT_TRUE(gate->isReachedBy(1));
  gate->open();
  ASSERT_TRUE(gate->isPassedBy(1));
  reads = 1;
  std::optional<Bytes> answer;
  // The thread has yet to say that it is done.
  while (!answer) {
    answer = questions.contents(files / "stuck", plenty, Wanted::anything);
    if (answer) ++reads;
  }
}

TEST_F(FileQuestionsTest, StoppingEndsTheWait) {
  FileQuestions questions(system, {.look = std::chrono::hours(1), .read = std::chrono::hours(1)});
  reads = 1;
  std::thread asker([&] { askStuck(questions); });
  ASSERT_TRUE(gate->isReachedBy(1));
  questions.stop();
  asker.join();
  EXPECT_FALSE(questions.contents(files / "other", plenty, Wanted::anything));
  EXPECT_FALSE(questions.changeTime(files / "other"));
}

TEST_F(FileQuestionsTest, AnAnswerAfterTheEndHarmsNobody) {
  auto questions = std::make_unique<FileQuestions>(
      system, FileQuestions::Limits{.look = std::chrono::milliseconds(1),
                                    .read = std::chrono::milliseconds(1)});
  reads = 1;
  askStuck(*questions);
  ASSERT_TRUE(gate->isReachedBy(1));
  questions.reset();
  gate->open();
  EXPECT_TRUE(gate->isPassedBy(1));
}

}  // namespace
}  // namespace vantorel
