// Reads the text in pictures that come over its standard input, a socket, and answers there.
// Started by the program itself:
//   vantorel-text MODEL-DIRECTORY MODEL,MODEL... IDLE-SECONDS
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "platform/linux/tesseract/TextWorkerProtocol.h"
#include "platform/linux/tesseract/worker/TesseractReader.h"
#include "platform/linux/tesseract/worker/WorkerLimits.h"

namespace vantorel {
namespace {

using Status = TextReply::Status;
using std::chrono::steady_clock;

constexpr double mostProcessorSeconds = 15;  // for one picture
constexpr std::chrono::seconds replyLimit{10};

std::vector<std::string> namesIn(const std::string& list) {
  std::vector<std::string> names;
  std::istringstream in(list);
  for (std::string name; std::getline(in, name, ',');) names.push_back(name);
  return names;
}

class Worker {
 public:
  Worker(const std::string& directory, const std::vector<std::string>& models)
      : page_(readers(directory, models), [this] { return processorSeconds() > timeUp_; }) {}

  [[nodiscard]] TextReply read(const Bytes& picture) {
    if (!hasEngine_) return {Status::noEngine, {}};
    timeUp_ = processorSeconds() + mostProcessorSeconds;
    try {
      const auto rows = openPicture(picture);
      if (!rows) return {Status::unreadable, {}};
      return {Status::read, page_.read(*rows)};
    } catch (const std::exception&) {  // no memory for it
      return {Status::unreadable, {}};
    }
  }

 private:
  /// Readers of digits come first, and only they are loaded before they are needed.
  std::vector<std::unique_ptr<LineReader>> readers(const std::string& directory,
                                                   const std::vector<std::string>& models) {
    std::vector<std::unique_ptr<LineReader>> all;
    for (const std::string& model : models) {
      auto reader = std::make_unique<TesseractReader>(directory, model);
      if (model == "heb" || all.empty()) {
        all.push_back(std::move(reader));
      } else {
        all.insert(all.begin(), std::move(reader));
      }
    }
    hasEngine_ = !all.empty() && static_cast<TesseractReader&>(*all.front()).load();
    return all;
  }

  bool hasEngine_ = false;
  double timeUp_ = 0;
  PageReader page_;
};

int run(std::span<const char* const> arguments) {
  constexpr std::size_t expected = 4;
  if (arguments.size() != expected) return EXIT_FAILURE;
  becomeUnnoticed();
  Worker worker(arguments[1], namesIn(arguments[2]));
  const std::chrono::seconds idleLimit{std::strtol(arguments[3], nullptr, 10)};
  for (;;) {
    const auto picture = receivePicture(STDIN_FILENO, steady_clock::now() + idleLimit);
    if (!picture) return EXIT_SUCCESS;
    if (!sendReply(STDIN_FILENO, worker.read(*picture), steady_clock::now() + replyLimit))
      return EXIT_SUCCESS;
  }
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
