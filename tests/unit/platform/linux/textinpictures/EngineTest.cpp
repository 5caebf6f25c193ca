// SPDX-License-Identifier: MIT
// The real engine with the installed models, in its own process, as the program uses it.
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QPainter>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>

#include "fakes/TemporaryDirectory.h"
#include "fakes/TestStore.h"
#include "fakes/ThreadedDispatch.h"
#include "pictures/LabelledPictures.h"
#include "platform/linux/confined/WorkerProgram.h"
#include "platform/linux/textinpictures/TextModels.h"
#include "platform/linux/textinpictures/WorkerTextRecognition.h"
#include "store/ImageTextRecognizer.h"

namespace vantorel {
namespace {

using Outcome = Recognition::Outcome;
using Languages = std::vector<std::string>;
using std::chrono::steady_clock;

WorkerTextRecognition::Settings settings() {
  WorkerTextRecognition::Settings settings;
  settings.program = workerProgram(textWorker);
  settings.modelDirectories = modelDirectories({});
  return settings;
}

/// The worker yields to everything else, and a machine that runs tests has much else to do. Only a
/// privileged user can change that; for others it takes longer.
void hurry(WorkerTextRecognition& recognition) {
  const sched_param none{};
  (void)::sched_setscheduler(recognition.workerProcessId(), SCHED_OTHER, &none);
}

/// Waits until the process has ended. The limit only bounds a failure.
bool hasEnded(int process) {
  // The header of this system call cannot be used from C++.
  const auto descriptor = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
  if (descriptor < 0) return errno == ESRCH;
  pollfd end{descriptor, POLLIN, 0};
  const int answer = ::poll(&end, 1, 30'000);
  ::close(descriptor);
  return answer == 1;
}

/// The same, and until its parent has taken notice.
bool isGone(int process) {
  return hasEnded(process) &&
         ThreadedDispatch::waitUntil([process] { return ::kill(process, 0) != 0; });
}

/// What a process has used; 0 when there is none.
double processorSeconds(int process) {
  clockid_t clock{};
  timespec time{};
  if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) return 0;
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Waits until a process has used so much from now on, without taking any from it.
bool hasUsed(int process, double seconds) {
  clockid_t clock{};
  timespec time{};
  if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
    return false;
  constexpr long second = 1'000'000'000;
  time.tv_nsec += std::lround(seconds * second);
  time.tv_sec += time.tv_nsec / second;
  time.tv_nsec %= second;
  return ::clock_nanosleep(clock, TIMER_ABSTIME, &time, nullptr) == 0;
}

Bytes pictureOf(const QString& text, int size = 24) {
  QImage image(900, size * 3, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  QFont font("DejaVu Sans");
  font.setPixelSize(size);
  painter.setFont(font);
  painter.drawText(image.rect(), Qt::AlignCenter, text);
  painter.end();
  return pngOf(image);
}

class Engine : public testing::Test {
 protected:
  Engine() { (void)read(pictureOf("")); }

  std::string read(const Bytes& image) {
    const auto text = ImageTextRecognizer::recognize(recognition, image, {});
    hurry(recognition);
    return text.value_or("(could not be read)");
  }
  Outcome outcome(const Bytes& image) {
    return recognition.recognize(image, {"he-IL", "en-US"}, {}).outcome;
  }

  double wordsFound(const std::vector<LabelledPicture>& pictures, std::size_t step) {
    WordCount words;
    for (std::size_t i = 0; i < pictures.size(); i += step)
      words += foundWords(pictures[i].text, QString::fromStdString(read(pictures[i].png())));
    return words.percent();
  }

  WorkerTextRecognition recognition{settings()};
};

TEST_F(Engine, KnowsBothLanguages) {
  const auto languages = recognition.supportedLanguages();
  EXPECT_EQ(std::count(languages.begin(), languages.end(), "he-IL"), 1);
  EXPECT_EQ(std::count(languages.begin(), languages.end(), "en-US"), 1);
}

TEST_F(Engine, ReadsEnglishHebrewAndBoth) {
  EXPECT_EQ(read(pictureOf("Invoice 2024")), "Invoice 2024");
  EXPECT_EQ(read(pictureOf("מדיניות הפרטיות")), "מדיניות הפרטיות");
  EXPECT_EQ(read(pictureOf("הודעה מאת support@northwind.example התקבלה")),
            "הודעה מאת support@northwind.example התקבלה");
}

TEST_F(Engine, ReadsSmallInterfaceTextInEnglish) {
  EXPECT_GE(wordsFound(linePictures(Language::english, 12), 5), 98);
  EXPECT_GE(wordsFound(interfacePictures(Language::english, 12), 4), 97);
}

TEST_F(Engine, ReadsSmallInterfaceTextInHebrew) {
  EXPECT_GE(wordsFound(linePictures(Language::hebrew, 12), 5), 98);
  EXPECT_GE(wordsFound(interfacePictures(Language::hebrew, 12), 4), 97);
}

TEST_F(Engine, ReadsTheTypeOfSharpScreens) {
  // A page at twice and at four times the usual size.
  for (const int size : {24, 32, 44, 56}) {
    const std::string text = read(pngOf(pageOfText({1900, size * 8}, size, 3)));
    EXPECT_NE(text.find("Preferences have been saved to your home folder."), std::string::npos)
        << size << " px: " << text;
    EXPECT_NE(text.find("Invoice 2024-0317 was paid on 14 March 2025."), std::string::npos)
        << size << " px: " << text;
  }
}

TEST_F(Engine, ReadsLinesOfBothLanguagesWithNumbersAndAddresses) {
  EXPECT_GE(wordsFound(linePictures(Language::mixed, 12), 3), 97);
}

TEST_F(Engine, ReadsPhotographedReceipts) {
  EXPECT_GE(wordsFound(receiptPictures(Language::english), 3), 95);
  EXPECT_GE(wordsFound(receiptPictures(Language::hebrew), 3), 95);
}

TEST_F(Engine, APictureWithoutTextHasNone) {
  QImage image(300, 200, QImage::Format_RGB32);
  image.fill(Qt::darkGreen);
  EXPECT_EQ(read(pngOf(image)), "");
  QImage transparent(300, 200, QImage::Format_ARGB32);
  transparent.fill(Qt::transparent);
  EXPECT_EQ(read(pngOf(transparent)), "");
  QImage tiny(1, 1, QImage::Format_RGB32);
  tiny.fill(Qt::black);
  EXPECT_EQ(read(pngOf(tiny)), "");
}

TEST_F(Engine, ReadsTransparentSixteenBitAndJpegPictures) {
  const QImage opaque =
      QImage::fromData(reinterpret_cast<const uchar*>(pictureOf("Quarterly report").data()),
                       static_cast<int>(pictureOf("Quarterly report").size()));
  QImage transparent(opaque.size(), QImage::Format_ARGB32);
  for (int y = 0; y < opaque.height(); ++y)
    for (int x = 0; x < opaque.width(); ++x)
      transparent.setPixel(x, y, qRgba(0, 0, 0, 255 - qGray(opaque.pixel(x, y))));
  EXPECT_EQ(read(pngOf(transparent)), "Quarterly report");
  EXPECT_EQ(read(pngOf(opaque.convertToFormat(QImage::Format_RGBX64))), "Quarterly report");
  for (const int quality : {86, 40})
    EXPECT_EQ(read(jpegOf(opaque, quality)), "Quarterly report") << quality;
}

TEST_F(Engine, WhatIsNoPictureIsNotReadAndTheNextIs) {
  EXPECT_EQ(outcome(toBytes("no picture at all")), Outcome::unreadable);
  EXPECT_EQ(outcome({}), Outcome::unreadable);
  Bytes cut = pictureOf("half");
  cut.resize(60);
  EXPECT_EQ(outcome(cut), Outcome::unreadable);
  EXPECT_EQ(read(pictureOf("Invoice 2024")), "Invoice 2024");
}

TEST_F(Engine, AWorkerThatWasKilledIsFollowedByAnother) {
  EXPECT_EQ(read(pictureOf("one")), "one");
  const int first = recognition.workerProcessId();
  ASSERT_GT(first, 0);
  ::kill(first, SIGKILL);
  EXPECT_TRUE(hasEnded(first));
  EXPECT_TRUE(ThreadedDispatch::waitUntil([this] { return recognition.workerProcessId() == 0; }));
  EXPECT_EQ(read(pictureOf("two")), "two");
  EXPECT_NE(recognition.workerProcessId(), first);
}

/// Reads a page that takes a while, in a thread.
class LongReading {
 public:
  explicit LongReading(WorkerTextRecognition& recognition)
      : thread_([this, &recognition, page = pngOf(pageOfText({3000, 4000}, 24, 90))] {
          // The same languages as before, so that the same worker reads it.
          result_ = recognition.recognize(page, {"he-IL", "en-US"}, stop_.get_token());
        }) {}
  ~LongReading() {
    if (thread_.joinable()) (void)end();
  }
  LongReading(const LongReading&) = delete;
  LongReading& operator=(const LongReading&) = delete;

  void requestStop() { stop_.request_stop(); }
  [[nodiscard]] Recognition end() {
    thread_.join();
    return result_;
  }

 private:
  std::stop_source stop_;
  Recognition result_;
  std::thread thread_;
};

TEST_F(Engine, APictureThatKillsItsWorkerIsGivenUpAndTheNextIsRead) {
  EXPECT_EQ(read(pictureOf("one")), "one");
  const int worker = recognition.workerProcessId();
  LongReading reading(recognition);
  EXPECT_TRUE(hasUsed(worker, 0.05));
  ::kill(worker, SIGSEGV);
  EXPECT_EQ(reading.end().outcome, Outcome::unreadable) << "another worker was set on it";
  EXPECT_EQ(read(pictureOf("two")), "two");
}

TEST_F(Engine, APictureThatNeverEndsIsGivenUpOnce) {
  auto hasty = settings();
  hasty.pictureLimit = std::chrono::seconds(2);
  WorkerTextRecognition passing(hasty);
  while (passing.recognize(pictureOf("one"), {"en-US"}, {}).outcome != Outcome::recognized) {
  }  // on a busy machine the start alone may take longer
  ::kill(passing.workerProcessId(), SIGSTOP);
  const auto start = steady_clock::now();
  EXPECT_EQ(passing.recognize(pictureOf("two"), {"en-US"}, {}).outcome, Outcome::unreadable);
  EXPECT_LT(steady_clock::now() - start, 2 * hasty.pictureLimit) << "it was tried again";
}

/// One that waits for two seconds, and has read a picture with the worker that gets only idle time:
/// where other programs leave it too little, that one has been replaced already.
std::unique_ptr<WorkerTextRecognition> impatientWithFirstWorker() {
  auto impatient = settings();
  impatient.patience = std::chrono::seconds(2);
  for (;;) {
    auto recognition = std::make_unique<WorkerTextRecognition>(impatient);
    EXPECT_EQ(recognition->recognize(pictureOf("one"), {"en-US"}, {}).lines, Languages{"one"});
    if (::sched_getscheduler(recognition->workerProcessId()) == SCHED_IDLE) return recognition;
  }
}

TEST_F(Engine, AWorkerThatGetsNoTimeIsFollowedByOneThatGetsALittle) {
  const auto passing = impatientWithFirstWorker();
  const int first = passing->workerProcessId();
  ::kill(first, SIGSTOP);
  EXPECT_EQ(passing->recognize(pictureOf("two"), {"en-US"}, {}).lines, Languages{"two"});
  const int second = passing->workerProcessId();
  EXPECT_NE(second, first);
  EXPECT_EQ(::sched_getscheduler(second), SCHED_BATCH);
  EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(second)), 19);
  EXPECT_TRUE(isGone(first));
}

TEST_F(Engine, AWorkerThatGetsNoTimeToTakeALargePictureIsReplacedToo) {
  Bytes large = pictureOf("two");
  large.resize(large.size() + 3'000'000);  // what follows a picture is nothing to its decoder
  const auto passing = impatientWithFirstWorker();
  ::kill(passing->workerProcessId(), SIGSTOP);
  EXPECT_EQ(passing->recognize(large, {"en-US"}, {}).lines, Languages{"two"});
}

TEST_F(Engine, StoppingEndsTheReadingAtOnce) {
  EXPECT_EQ(read(pictureOf("one")), "one");
  const int worker = recognition.workerProcessId();
  LongReading reading(recognition);
  EXPECT_TRUE(hasUsed(worker, 0.05)) << "the page is not being read";
  const auto start = steady_clock::now();
  reading.requestStop();
  const Recognition result = reading.end();
  EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(2));
  EXPECT_EQ(result.outcome, Outcome::stopped);
  EXPECT_TRUE(result.lines.empty());
  EXPECT_TRUE(isGone(worker)) << "the worker still runs";
  std::stop_source stopped;
  stopped.request_stop();
  EXPECT_EQ(recognition.recognize(pictureOf("one"), {}, stopped.get_token()).outcome,
            Outcome::stopped);
}

TEST_F(Engine, TheWorkerIsGoneWhenNoPictureFollows) {
  auto brief = settings();
  brief.idleLimit = std::chrono::seconds(1);
  WorkerTextRecognition idle(brief);
  EXPECT_EQ(idle.recognize(pictureOf("one"), {"en-US"}, {}).lines, Languages{"one"});
  const int worker = idle.workerProcessId();
  ASSERT_GT(worker, 0);
  EXPECT_TRUE(hasEnded(worker));
  EXPECT_TRUE(ThreadedDispatch::waitUntil([&] { return idle.workerProcessId() == 0; }));
  EXPECT_EQ(::waitpid(worker, nullptr, WNOHANG), -1) << "it was left as a zombie";
  EXPECT_EQ(idle.recognize(pictureOf("two"), {"en-US"}, {}).lines, Languages{"two"});
}

TEST_F(Engine, TheWorkerIsGoneWithItsOwner) {
  int worker = 0;
  {
    WorkerTextRecognition passing(settings());
    (void)passing.recognize(pictureOf("one"), {"en-US"}, {});
    worker = passing.workerProcessId();
    ASSERT_GT(worker, 0);
  }
  EXPECT_TRUE(isGone(worker));
}

std::string fieldOf(int pid, const std::string& file, const std::string& field) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/" + file);
  for (std::string line; std::getline(in, line);)
    if (line.starts_with(field)) return line.substr(field.size());
  return {};
}

TEST_F(Engine, TheWorkerIsHarmlessAndUnnoticed) {
  (void)recognition.recognize(pictureOf("one"), {"en-US"}, {});
  const int worker = recognition.workerProcessId();
  ASSERT_GT(worker, 0);
  EXPECT_EQ(::sched_getscheduler(worker), SCHED_IDLE);
  EXPECT_EQ(fieldOf(worker, "status", "Threads:\t"), "1");
  EXPECT_EQ(fieldOf(worker, "status", "NoNewPrivs:\t"), "1");
  EXPECT_EQ(fieldOf(worker, "status", "Seccomp:\t"), "2") << "it is not confined";
  const std::string time = fieldOf(worker, "limits", "Max cpu time");
  EXPECT_LE(std::atoi(time.c_str()), 21 + processorSeconds(worker));
  EXPECT_GE(std::atoi(time.c_str()), 20);
  const std::string core = fieldOf(worker, "limits", "Max core file size");
  EXPECT_EQ(core.substr(core.find_first_not_of(' '), 2), "0 ");
  const std::string files = fieldOf(worker, "limits", "Max file size");
  EXPECT_EQ(files.substr(files.find_first_not_of(' '), 2), "0 ");
  // What may not be traced hides its memory from its own user; from root there is no hiding.
  const std::string environment = "/proc/" + std::to_string(worker) + "/environ";
  if (::getuid() != 0) {
    EXPECT_NE(::access(environment.c_str(), R_OK), 0);
  }
}

TEST_F(Engine, WithoutAModelItSaysSo) {
  const TemporaryDirectory empty;
  auto none = settings();
  none.modelDirectories = {empty.path()};
  WorkerTextRecognition without(none);
  EXPECT_TRUE(without.supportedLanguages().empty());
  EXPECT_EQ(without.recognize(pictureOf("one"), {}, {}).outcome, Outcome::unavailable);
  EXPECT_EQ(without.workerProcessId(), 0) << "a worker was started for nothing";
}

TEST_F(Engine, AModelThatCannotBeLoadedIsNone) {
  const TemporaryDirectory broken;
  std::ofstream(broken.path() / "eng.traineddata") << "this is no model";
  auto none = settings();
  none.modelDirectories = {broken.path()};
  WorkerTextRecognition without(none);
  EXPECT_EQ(without.recognize(pictureOf("one"), {"en-US"}, {}).outcome, Outcome::unavailable);
}

/// A directory with one model that is sound and one that is not.
class HalfBroken {
 public:
  HalfBroken(const std::string& sound, const std::string& broken) {
    const auto file = sound + ".traineddata";
    std::filesystem::create_symlink(installedModels(modelDirectories({})).directory / file,
                                    models_.path() / file);
    std::ofstream(models_.path() / (broken + ".traineddata")) << "this is no model";
    auto half = settings();
    half.modelDirectories = {models_.path()};
    recognition_ = std::make_unique<WorkerTextRecognition>(half);
  }
  Recognition read(const QString& text) {
    return recognition_->recognize(pictureOf(text), {"he-IL", "en-US"}, {});
  }

 private:
  TemporaryDirectory models_;
  std::unique_ptr<WorkerTextRecognition> recognition_;
};

TEST_F(Engine, ABrokenModelLeavesTheOtherLanguageReadable) {
  EXPECT_EQ(HalfBroken("heb", "eng").read("מדיניות הפרטיות").lines, Languages{"מדיניות הפרטיות"});
  EXPECT_EQ(HalfBroken("eng", "heb").read("Invoice 2024").lines, Languages{"Invoice 2024"});
}

TEST_F(Engine, WhatABrokenModelWouldHaveReadIsNotGuessed) {
  EXPECT_EQ(HalfBroken("eng", "heb").read("מדיניות הפרטיות").outcome, Outcome::unreadable);
}

TEST_F(Engine, ASystemWithNeitherLanguageReadsWithWhatItHas) {
  const TemporaryDirectory models;
  std::filesystem::create_symlink(
      installedModels(modelDirectories({})).directory / "eng.traineddata",
      models.path() / "deu.traineddata");
  auto foreign = settings();
  foreign.modelDirectories = {models.path()};
  WorkerTextRecognition other(foreign);
  EXPECT_EQ(other.supportedLanguages(), Languages{"deu"});
  EXPECT_EQ(ImageTextRecognizer::recognize(other, pictureOf("Invoice 2024"), {}), "Invoice 2024");
}

TEST_F(Engine, WithoutAProgramItSaysSo) {
  for (const char* program : {"", "/nonexistent/vantorel-text", "/etc/passwd"}) {
    auto none = settings();
    none.program = program;
    WorkerTextRecognition without(none);
    EXPECT_EQ(without.recognize(pictureOf("one"), {"en-US"}, {}).outcome, Outcome::unavailable);
  }
}

TEST_F(Engine, AProgramThatAnswersNothingOrNonsenseIsGivenUp) {
  const TemporaryDirectory directory;
  const auto babbler = directory.path() / "babbler";
  std::ofstream(babbler) << "#!/bin/sh\nprintf 'nonsense nonsense nonsense' >&0\n";
  std::filesystem::permissions(babbler, std::filesystem::perms::owner_all);
  const auto failer = directory.path() / "failer";
  std::ofstream(failer) << "#!/bin/sh\nexit 1\n";
  std::filesystem::permissions(failer, std::filesystem::perms::owner_all);
  for (const auto& program : {babbler, failer}) {
    auto other = settings();
    other.program = program;
    WorkerTextRecognition without(other);
    EXPECT_EQ(without.recognize(pictureOf("one"), {"en-US"}, {}).outcome, Outcome::unreadable);
  }
}

TEST_F(Engine, OneModelAloneIsEnough) {
  EXPECT_EQ(recognition.recognize(pictureOf("Invoice 2024"), {"en-US"}, {}).lines,
            Languages{"Invoice 2024"});
  EXPECT_EQ(recognition.recognize(pictureOf("מדיניות הפרטיות"), {"he-IL"}, {}).lines,
            Languages{"מדיניות הפרטיות"});
}

}  // namespace
}  // namespace vantorel

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
