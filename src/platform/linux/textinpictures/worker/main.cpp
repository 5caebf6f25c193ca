// SPDX-License-Identifier: MIT
// Reads the text in pictures that come over its standard input, a socket, and answers there.
// Started by the program itself:
//   vantorel-text MODEL-DIRECTORY MODEL,MODEL... IDLE-SECONDS left-over|small PARENT
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/SplitText.h"
#include "platform/linux/confined/Messages.h"
#include "platform/linux/confined/worker/WorkerConfinement.h"
#include "platform/linux/confined/worker/WorkerLimits.h"
#include "platform/linux/textinpictures/TextWorkerProtocol.h"
#include "platform/linux/textinpictures/worker/TesseractReader.h"

namespace vantorel {
namespace {

using Status = TextReply::Status;
using std::chrono::steady_clock;

constexpr double maxReadingSeconds = 15;  // of the processor, for one picture
// Decoding cannot be interrupted, but it can be killed.
constexpr double maxProcessorSeconds = 20;
constexpr std::uint64_t maxMemory = std::uint64_t{1} << 30U;
constexpr std::chrono::seconds transferLimit{600};  // a busy machine leaves little time

using Readers = std::vector<std::unique_ptr<TesseractReader>>;

Readers openModels(const std::string& directory, const std::vector<std::string>& models) {
  Readers readers;
  readers.reserve(models.size());
  for (const std::string& model : models)
    readers.push_back(std::make_unique<TesseractReader>(directory, model));
  return readers;
}

class Worker {
 public:
  explicit Worker(Readers opened)
      : page_(readers(std::move(opened)), [this] { return processorSeconds() > timeUp_; }) {}

  [[nodiscard]] TextReply read(const Bytes& picture) {
    if (!hasEngine_) return {Status::noEngine, {}};
    allowProcessorSeconds(maxProcessorSeconds);
    timeUp_ = processorSeconds() + maxReadingSeconds;
    try {
      const auto rows = openPicture(picture);
      auto lines = rows ? page_.read(*rows) : std::nullopt;
      if (lines) return {Status::read, std::move(*lines)};
    } catch (const std::exception&) {  // no memory for it, and who knows where it was missing
      isSpoilt_ = true;
    }
    return {Status::unreadable, {}};
  }

  /// Whether the next picture deserves an engine that is in a known state.
  [[nodiscard]] bool isSpoilt() const { return isSpoilt_; }

 private:
  /// Readers of digits come first, and only the first that works is loaded before it is needed.
  std::vector<std::unique_ptr<LineReader>> readers(Readers opened) {
    std::vector<std::unique_ptr<LineReader>> all;
    for (auto& reader : opened) {
      if (reader->model() == "heb" || all.empty()) {
        all.push_back(std::move(reader));
      } else {
        all.insert(all.begin(), std::move(reader));
      }
    }
    while (!all.empty() && !static_cast<TesseractReader&>(*all.front()).load())
      all.erase(all.begin());
    hasEngine_ = !all.empty();
    return all;
  }

  bool hasEngine_ = false;
  bool isSpoilt_ = false;
  double timeUp_ = 0;
  PageReader page_;
};

int run(std::span<const char* const> arguments) {
  constexpr std::size_t expected = 6;
  if (arguments.size() != expected) return EXIT_FAILURE;
  const Share share = std::string_view(arguments[4]) == "small" ? Share::small : Share::leftOver;
  const auto parent = static_cast<pid_t>(std::strtol(arguments[5], nullptr, 10));
  if (!limitThisProcess(parent, {.share = share, .memory = maxMemory})) return EXIT_FAILURE;
  Readers opened = openModels(arguments[1], splitList(arguments[2], ','));
  if (!confine()) return EXIT_FAILURE;
  Worker worker(std::move(opened));
  const std::chrono::seconds idleLimit{std::strtol(arguments[3], nullptr, 10)};
  while (hasInput(STDIN_FILENO, steady_clock::now() + idleLimit)) {
    const auto picture = receivePicture(STDIN_FILENO, steady_clock::now() + transferLimit);
    if (!picture) break;
    const TextReply reply = worker.read(*picture);
    if (!sendReply(STDIN_FILENO, reply, steady_clock::now() + transferLimit)) break;
    if (worker.isSpoilt()) break;
  }
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace vantorel

int main(int argc, char** argv) {
  int status = EXIT_FAILURE;
  try {
    status = vantorel::run({argv, static_cast<std::size_t>(argc)});
  } catch (const std::exception&) {  // no memory to start in
  }
  // Nothing is worth tidying up, and the engine takes its time over it.
  _exit(status);
}
