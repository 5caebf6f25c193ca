// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "desktop/x11pasteboard/PasteboardFixture.h"

extern char** environ;

namespace vantorel {
namespace {

/// A real command-line program for the clipboard, run on the test's display.
class Xclip {
 public:
  explicit Xclip(const std::string& display) : display_(display) {}

  /// Copies, and leaves a process behind that serves. True when it says so.
  [[nodiscard]] bool copy(const Bytes& input, const std::string& target) const {
    const auto result = run({"-i", "-selection", "clipboard", "-t", target}, input);
    return result.has_value();
  }
  [[nodiscard]] std::optional<Bytes> paste(const std::string& target) const {
    return run({"-o", "-selection", "clipboard", "-t", target}, {});
  }

 private:
  [[nodiscard]] std::optional<Bytes> run(std::vector<std::string> options,
                                         const Bytes& input) const {
    const TemporaryFile in(input);
    const TemporaryFile out({});
    std::vector<std::string> arguments{"xclip", "-display", display_};
    arguments.insert(arguments.end(), options.begin(), options.end());
    std::vector<char*> pointers;
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in.descriptor, 0);
    posix_spawn_file_actions_adddup2(&actions, out.descriptor, 1);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    const int error = posix_spawnp(&process, "xclip", &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    if (error != 0 || waitpid(process, &status, 0) != process || status != 0) return std::nullopt;
    return out.contents();
  }

  struct TemporaryFile {
    explicit TemporaryFile(const Bytes& bytes) {
      descriptor = open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
      std::size_t written = 0;
      while (written < bytes.size()) {
        const auto count = write(descriptor, bytes.data() + written, bytes.size() - written);
        if (count <= 0) throw std::runtime_error("no temporary file");
        written += static_cast<std::size_t>(count);
      }
      lseek(descriptor, 0, SEEK_SET);
    }
    ~TemporaryFile() { close(descriptor); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    [[nodiscard]] Bytes contents() const {
      lseek(descriptor, 0, SEEK_SET);
      Bytes bytes;
      std::array<std::byte, 65536> buffer{};
      for (;;) {
        const auto count = read(descriptor, buffer.data(), buffer.size());
        if (count <= 0) return bytes;
        bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + count);
      }
    }
    int descriptor;
  };

  std::string display_;
};

class X11PasteboardPrograms : public PasteboardFixture {
 protected:
  void copyWithXclip(const Bytes& input, const std::string& target) {
    const auto before = now();
    ASSERT_TRUE(xclip.copy(input, target));
    ASSERT_TRUE(loop.runUntil([&] {
      loop.runQueued();
      return now() > before;
    }));
  }

  Xclip xclip{server->display()};
};

TEST_F(X11PasteboardPrograms, ReadsWhatARealProgramCopied) {
  copyWithXclip(bytes("from xclip ü"), "UTF8_STRING");
  EXPECT_EQ(string(), "from xclip ü");
  copyWithXclip(bytes("<i>html</i>"), "text/html");
  EXPECT_EQ(data(PasteboardDataType::html), bytes("<i>html</i>"));
  EXPECT_FALSE(string());
  copyWithXclip(bytes("file:///etc/hosts\r\n"), "text/uri-list");
  EXPECT_THAT(files(), testing::ElementsAre("/etc/hosts"));
}

TEST_F(X11PasteboardPrograms, ReadsTwentyMegabytesFromARealProgram) {
  const auto large = pattern(20'000'000);
  copyWithXclip(large, "UTF8_STRING");
  const auto text = string();
  ASSERT_TRUE(text);
  EXPECT_TRUE(bytes(*text) == large);
}

TEST_F(X11PasteboardPrograms, ServesARealProgram) {
  ASSERT_TRUE(pasteboard->writeItem({"to xclip ü", bytes("{\\rtf1}"), bytes("<b>")}));
  EXPECT_EQ(xclip.paste("UTF8_STRING"), bytes("to xclip ü"));
  EXPECT_EQ(xclip.paste("text/html"), bytes("<b>"));
  EXPECT_EQ(xclip.paste("text/rtf"), bytes("{\\rtf1}"));
  const auto targets = xclip.paste("TARGETS");
  ASSERT_TRUE(targets);
  EXPECT_THAT(std::string(textOf(*targets)), testing::HasSubstr("text/plain;charset=utf-8"));
}

TEST_F(X11PasteboardPrograms, ServesTwentyMegabytesToARealProgram) {
  const auto large = pattern(20'000'000);
  ASSERT_TRUE(pasteboard->writeImage(std::make_shared<MadeImage>(large, Bytes())));
  const auto pasted = xclip.paste("image/png");
  ASSERT_TRUE(pasted);
  EXPECT_TRUE(*pasted == large);
}

}  // namespace
}  // namespace vantorel
