// SPDX-License-Identifier: MIT
// Decodes the pictures that come over its standard input, a socket, and answers there. Started by
// the program itself:
//   vantorel-pictures IDLE-SECONDS PARENT
#include <unistd.h>

#include <QBuffer>
#include <QImageReader>
#include <QThreadPool>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <span>

#include "platform/linux/confined/Messages.h"
#include "platform/linux/confined/SharedMemory.h"
#include "platform/linux/confined/worker/WorkerConfinement.h"
#include "platform/linux/confined/worker/WorkerLimits.h"
#include "platform/linux/decoding/PictureProtocol.h"
#include "platform/qt/QtImageDecoder.h"

namespace vantorel {
namespace {

using Status = PictureReply::Status;
using std::chrono::steady_clock;

constexpr double maxProcessorSeconds = 20;                    // for one picture
constexpr std::uint64_t maxMemory = std::uint64_t{2} << 30U;  // a hundred megapixels, three times
constexpr int maxThreads = 4;
constexpr std::chrono::seconds transferLimit{10};

/// Loads what would be loaded with the first picture: afterwards no file can be opened.
void loadDecoders() {
  for (const char* format : {"gif", "ico", "jpeg", "tiff", "webp"}) {
    QBuffer nothing;
    nothing.open(QIODevice::ReadOnly);
    QImageReader reader(&nothing, format);
    reader.setAutoDetectImageFormat(false);
    reader.setDecideFormatFromContent(false);
    (void)reader.canRead();
  }
  // Large pictures are scaled by several threads, each of which takes its share of the memory that
  // there is to map, and needs no loop of events but the plainest.
  QThreadPool* const threads = QThreadPool::globalInstance();
  threads->setMaxThreadCount(std::min(threads->maxThreadCount(), maxThreads));
  qputenv("QT_NO_GLIB", "1");
}

/// Puts a result into the room that there is for it.
PictureReply put(ByteView result, std::span<std::byte> room) {
  if (result.empty() || result.size() > room.size()) return {};
  std::copy(result.begin(), result.end(), room.begin());
  return {.status = Status::made, .bytes = result.size()};
}

PictureReply answered(const QtImageDecoder& decoder, const PictureTask& task) {
  const MappedMemory encoded(task.encoded, MappedMemory::Access::reading);
  const MappedMemory room(task.room, MappedMemory::Access::writing);
  const PictureRequest& request = task.request;
  if (request.form == PictureForm::pixels) {
    const auto picture = decoder.bitmap(encoded.bytes(), request.fitting);
    if (!picture) return {};
    auto reply = put(std::as_bytes(std::span(picture->pixels)), room.bytes());
    reply.pixelSize = picture->pixelSize;
    reply.size = picture->size;
    return reply;
  }
  const auto image =
      decoder.decode(std::make_shared<const Bytes>(encoded.bytes().begin(), encoded.bytes().end()));
  if (!image) return {};
  const auto made =
      request.form == PictureForm::png ? image->pngData() : image->jpegData(request.compression);
  return made ? put(*made, room.bytes()) : PictureReply{};
}

int run(std::span<const char* const> arguments) {
  constexpr std::size_t expected = 3;
  if (arguments.size() != expected) return EXIT_FAILURE;
  const auto parent = static_cast<pid_t>(std::strtol(arguments[2], nullptr, 10));
  if (!limitThisProcess(parent, {.share = Share::usual, .memory = maxMemory})) return EXIT_FAILURE;
  const QtImageDecoder decoder;
  loadDecoders();
  if (!confine(Threads::own)) return EXIT_FAILURE;
  const std::chrono::seconds idleLimit{std::strtol(arguments[1], nullptr, 10)};
  while (hasInput(STDIN_FILENO, steady_clock::now() + idleLimit)) {
    const auto task = receivePictureTask(STDIN_FILENO, steady_clock::now() + transferLimit);
    if (!task) break;
    allowProcessorSeconds(maxProcessorSeconds);
    PictureReply reply;
    bool isSpoilt = false;
    try {
      reply = answered(decoder, *task);
    } catch (const std::exception&) {  // no memory for it, and who knows where it was missing
      isSpoilt = true;
    }
    if (!sendPictureReply(STDIN_FILENO, reply, steady_clock::now() + transferLimit) || isSpoilt)
      break;
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
  _exit(status);  // nothing is worth tidying up
}
