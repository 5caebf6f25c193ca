// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "store/ClipSearchIndex.h"
#include "text/CaseFolding.h"
#include "text/SubstringScan.h"
#include "text/Unicode.h"

namespace {

using namespace vantorel;

constexpr std::size_t entryCount = 50;

enum Script { lowerAscii, mixedAscii, hebrew };

std::string textOf(Script script, std::size_t size) {
  constexpr std::string_view lower =
      "the quick brown fox jumps over the lazy dog, 1234 times a day.\n";
  constexpr std::string_view mixed =
      "The Quick brown fox Jumps over the lazy Dog, 1234 times a Day.\n";
  constexpr std::string_view sentence =
      "דג סקרן שט בים מאוכזב ולפתע מצא לו חברה, “איך הקליטה” – 1234.\n";
  const auto line = script == lowerAscii ? lower : script == mixedAscii ? mixed : sentence;
  std::string text;
  text.reserve(size + line.size());
  while (text.size() < size) text += line;
  return text;
}

std::vector<ClipItem> history(Script script, std::size_t size) {
  std::vector<ClipItem> items(entryCount);
  for (auto& item : items) {
    item.id = Uuid::random();
    item.title = "Text";
    item.text = SharedText(textOf(script, size));
    item.preview = std::string(prefixOfCharacters(**item.text, 500));
    item.sourceAppName = "Editor";
  }
  return items;
}

void countBytes(benchmark::State& state, std::size_t size) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(size));
}

void validatingUtf8(benchmark::State& state) {
  const auto text = textOf(static_cast<Script>(state.range(0)), 10'000'000);
  for (auto _ : state) benchmark::DoNotOptimize(isValidUtf8(text));
  countBytes(state, text.size());
}
BENCHMARK(validatingUtf8)->Arg(lowerAscii)->Arg(hebrew)->Unit(benchmark::kMillisecond);

void previewOfTenMegabytes(benchmark::State& state) {
  const auto text = textOf(static_cast<Script>(state.range(0)), 10'000'000);
  for (auto _ : state) benchmark::DoNotOptimize(prefixOfCharacters(trimmed(text), 500));
}
BENCHMARK(previewOfTenMegabytes)->Arg(lowerAscii)->Arg(hebrew)->Unit(benchmark::kMicrosecond);

void foldingOneMegabyte(benchmark::State& state) {
  const auto text = textOf(static_cast<Script>(state.range(0)), 1'000'000);
  for (auto _ : state) benchmark::DoNotOptimize(foldedForSearch(text, CaseRules::general));
  countBytes(state, text.size());
}
BENCHMARK(foldingOneMegabyte)
    ->Arg(lowerAscii)
    ->Arg(mixedAscii)
    ->Arg(hebrew)
    ->Unit(benchmark::kMillisecond);

/// A needle that is nowhere in 50 MB, against what the libraries offer.
template <class Find>
void scanning(benchmark::State& state, Script script, std::string_view needle, Find find) {
  const std::vector<std::string> texts(entryCount, textOf(script, 1'000'000));
  for (auto _ : state) {
    for (const auto& text : texts) benchmark::DoNotOptimize(find(std::string_view(text), needle));
  }
  countBytes(state, entryCount * texts.front().size());
}

std::size_t byScan(std::string_view text, std::string_view needle) {
  return findBytes(text, needle);
}
bool byContains(std::string_view text, std::string_view needle) {
  return containsFolded(text, needle);
}
std::size_t byStandardFind(std::string_view text, std::string_view needle) {
  return text.find(needle);
}
const void* byMemmem(std::string_view text, std::string_view needle) {
  return memmem(text.data(), text.size(), needle.data(), needle.size());
}

#define VANTOREL_SCAN(name, script, needle)                                                        \
  BENCHMARK_CAPTURE(scanning, name##_scan, script, needle, byScan)->Unit(benchmark::kMillisecond); \
  BENCHMARK_CAPTURE(scanning, name##_contains, script, needle, byContains)                         \
      ->Unit(benchmark::kMillisecond);                                                             \
  BENCHMARK_CAPTURE(scanning, name##_find, script, needle, byStandardFind)                         \
      ->Unit(benchmark::kMillisecond);                                                             \
  BENCHMARK_CAPTURE(scanning, name##_memmem, script, needle, byMemmem)                             \
      ->Unit(benchmark::kMillisecond)

VANTOREL_SCAN(one_letter, lowerAscii, "~");
VANTOREL_SCAN(common_pair, lowerAscii, "ee");
VANTOREL_SCAN(word, lowerAscii, "invoice");
VANTOREL_SCAN(common_word, lowerAscii, "theothe");
VANTOREL_SCAN(hebrew_pair, hebrew, "עצ");
VANTOREL_SCAN(hebrew_word, hebrew, "חשבונית");
VANTOREL_SCAN(long_query, lowerAscii,
              "the quick brown fox jumps over the lazy dog, 1234 times a day. not");

/// One key: entries of the given size, all folded already, none of which matches.
void oneKey(benchmark::State& state) {
  const auto script = static_cast<Script>(state.range(0));
  const auto items = history(script, static_cast<std::size_t>(state.range(1)));
  ClipSearchIndex index;
  for (const auto& item : items) index.prepare(item);
  ClipSearchFilter filter;
  bool odd = false;
  for (auto _ : state) {
    filter.query = odd ? "invoice" : "חשבונית";  // neither narrows the other
    odd = !odd;
    benchmark::DoNotOptimize(index.matching(items, filter));
  }
}
BENCHMARK(oneKey)
    ->ArgsProduct({{lowerAscii, mixedAscii, hebrew}, {20'000, 1'000'000}})
    ->Unit(benchmark::kMillisecond);

/// The next letter of a word that is nowhere.
void oneMoreKey(benchmark::State& state) {
  const auto items = history(mixedAscii, 1'000'000);
  ClipSearchIndex index;
  (void)index.matching(items, {.query = "in"});
  for (auto _ : state) benchmark::DoNotOptimize(index.matching(items, {.query = "inv"}));
}
BENCHMARK(oneMoreKey)->Unit(benchmark::kMillisecond);

/// The first key after the panel was opened: everything is folded.
void firstKey(benchmark::State& state) {
  const auto script = static_cast<Script>(state.range(0));
  const auto items = history(script, static_cast<std::size_t>(state.range(1)));
  for (auto _ : state) {
    ClipSearchIndex index;
    benchmark::DoNotOptimize(index.matching(items, {.query = "invoice"}));
  }
}
BENCHMARK(firstKey)
    ->ArgsProduct({{lowerAscii, mixedAscii, hebrew}, {20'000, 1'000'000}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
