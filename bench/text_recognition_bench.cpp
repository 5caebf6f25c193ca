// SPDX-License-Identifier: MIT
// How well and how fast the text in pictures is read: by the real worker, from encoded bytes, as
// the program asks it. Prints the tables of docs/performance.md. Times are processor time.
//   vantorel_bench_text [DIRECTORY]    leaves the pictures and what was read there too
#include <sched.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "pictures/LabelledPictures.h"
#include "platform/linux/confined/WorkerProgram.h"
#include "platform/linux/textinpictures/TextModels.h"
#include "platform/linux/textinpictures/WorkerTextRecognition.h"
#include "store/ImageTextRecognizer.h"

namespace vantorel {
namespace {

using Pictures = std::vector<LabelledPicture>;

/// Processor time of the worker; 0 while there is none.
double secondsUsed(WorkerTextRecognition& recognition) {
  clockid_t clock{};
  timespec time{};
  const int pid = recognition.workerProcessId();
  if (pid == 0 || ::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
    return 0;
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Starts the worker and gives it its share of the machine: at the priority at which it works for
/// the program, a figure would mostly say what else was running.
void wake(WorkerTextRecognition& recognition) {
  (void)ImageTextRecognizer::recognize(recognition, pngOf(pageOfText({200, 100}, 16, 2)), {});
  const sched_param none{};
  if (::sched_setscheduler(recognition.workerProcessId(), SCHED_OTHER, &none) != 0)
    std::puts("(at idle priority: others on this machine come first)");
}

QString read(WorkerTextRecognition& recognition, const Bytes& image) {
  const auto text = ImageTextRecognizer::recognize(recognition, image, {});
  return text ? QString::fromStdString(*text) : QString("(could not be read)");
}

/// Measures accuracy, and keeps the pictures when asked to.
class Accuracy {
 public:
  Accuracy(WorkerTextRecognition& recognition, std::string directory)
      : recognition_(recognition), directory_(std::move(directory)) {}

  void row(const char* what, const Pictures& pictures) {
    WordCount words;
    double seconds = 0;
    for (const LabelledPicture& picture : pictures) {
      const Bytes png = picture.png();
      const double start = secondsUsed(recognition_);
      const QString text = read(recognition_, png);
      seconds += secondsUsed(recognition_) - start;
      words += foundWords(picture.text, text);
      keep(picture, text);
    }
    std::printf("| %s | %zu | %d | %.1f %% | %.0f ms |\n", what, pictures.size(), words.all,
                words.percent(), 1000 * seconds / static_cast<double>(pictures.size()));
    std::fflush(stdout);
  }

 private:
  void keep(const LabelledPicture& picture, const QString& text) {
    if (directory_.empty()) return;
    const std::string name = directory_ + "/" + std::to_string(++count_) + "-" + picture.kind +
                             "-" + picture.theme + "-" + std::to_string(picture.size);
    picture.image.save(QString::fromStdString(name + ".png"));
    std::ofstream(name + ".expected.txt") << picture.text.toStdString();
    std::ofstream(name + ".read.txt") << text.toStdString();
  }

  WorkerTextRecognition& recognition_;
  std::string directory_;
  int count_ = 0;
};

void measureAccuracy(WorkerTextRecognition& recognition, const std::string& directory) {
  std::puts("| What is read | Pictures | Words | Words found | A picture takes |");
  std::puts("|---|---|---|---|---|");
  Accuracy accuracy(recognition, directory);
  accuracy.row("English receipts, photographed", receiptPictures(Language::english));
  accuracy.row("Hebrew receipts, photographed", receiptPictures(Language::hebrew));
  for (const int size : {10, 11, 12, 13, 14}) {
    const std::string type = ", " + std::to_string(size) + " px";
    accuracy.row(("English lines" + type).c_str(), linePictures(Language::english, size));
    accuracy.row(("Hebrew lines" + type).c_str(), linePictures(Language::hebrew, size));
    accuracy.row(("mixed lines, addresses, numbers" + type).c_str(),
                 linePictures(Language::mixed, size));
  }
  for (const int size : {11, 12, 13}) {
    const std::string type = ", " + std::to_string(size) + " px";
    accuracy.row(("English window" + type).c_str(), interfacePictures(Language::english, size));
    accuracy.row(("Hebrew window" + type).c_str(), interfacePictures(Language::hebrew, size));
  }
}

std::string statusOf(int pid, const std::string& field) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/status");
  for (std::string line; std::getline(file, line);)
    if (line.starts_with(field)) return line.substr(line.find_first_of("0123456789"));
  return "gone";
}

void measureSpeed(WorkerTextRecognition& recognition, const char* what, const QImage& image) {
  const Bytes png = pngOf(image);
  std::vector<double> times;
  qsizetype characters = 0;
  constexpr int rounds = 5;
  for (int i = 0; i < rounds; ++i) {
    const double start = secondsUsed(recognition);
    characters = read(recognition, png).size();
    times.push_back(secondsUsed(recognition) - start);
  }
  std::sort(times.begin(), times.end());
  const int pid = recognition.workerProcessId();
  std::printf("| %s | %lld | %.2f s | %.2f s | %s |\n", what, static_cast<long long>(characters),
              times[rounds / 2], times.back(), statusOf(pid, "VmHWM").c_str());
  std::fflush(stdout);
}

void measureSpeeds(const WorkerTextRecognition::Settings& settings) {
  std::puts("\n| Picture | Characters | Median | Longest | Most memory of the worker |");
  std::puts("|---|---|---|---|---|");
  const auto measured = [&](const char* what, const QImage& image) {
    WorkerTextRecognition fresh(settings);
    wake(fresh);
    measureSpeed(fresh, what, image);
  };
  const QImage six = pageOfText({800, 600}, 16, 6);
  std::vector<double> first;
  for (int i = 0; i < 5; ++i) {
    WorkerTextRecognition fresh(settings);
    const Bytes png = pngOf(six);
    (void)read(fresh, png);
    first.push_back(secondsUsed(fresh));
  }
  std::sort(first.begin(), first.end());
  std::printf("| 800 × 600, six lines, the worker's start included | | %.2f s | %.2f s | |\n",
              first[2], first[4]);
  measured("800 × 600, six lines", six);
  measured("3840 × 2160, 30 lines", pageOfText({3840, 2160}, 44, 30));
  measured("3840 × 2160, 60 lines", pageOfText({3840, 2160}, 24, 60));
  measured("16000 × 2500, 80 lines", pageOfText({16'000, 2500}, 20, 80));
  measured("2500 × 16000, 400 lines", pageOfText({2500, 16'000}, 20, 400));
}

}  // namespace
}  // namespace vantorel

int main(int argc, char** argv) {
  using namespace vantorel;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  const std::string directory = argc > 1 ? argv[1] : "";
  if (!directory.empty()) QDir().mkpath(QString::fromStdString(directory));
  WorkerTextRecognition::Settings settings;
  settings.program = workerProgram(textWorker);
  settings.modelDirectories = modelDirectories({});
  {
    WorkerTextRecognition recognition(settings);
    wake(recognition);
    measureAccuracy(recognition, directory);
  }
  measureSpeeds(settings);
  return 0;
}
