// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files from bytes to a list: our reader, through its public entry point and with registration, in comparison
// with three XML libraries that only read the three numbers of each hit, into an array or into the same kind of list.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "bench/inputs.h"
#include "bench/measure.h"
#include "bench/parsers.h"
#include "plugin/glt/glt.h"
#include "plugin/input/gltAux.h"
#include "plugin/input/gltLex.h"
#include "tests/support/SilentHost.h"

namespace bench {
namespace {

// Made on first use, so that a file that is not measured costs nothing.
class LateText {
public:
  explicit LateText(std::function<std::string()> make) : make_(std::move(make)) {}
  const std::string &operator*() {
    if (!text_) text_ = make_();
    return *text_;
  }

private:
  std::function<std::string()> make_;
  std::optional<std::string> text_;
};

using File = std::shared_ptr<LateText>;

constexpr char table[] = "reading";
constexpr char ours[] = "ours, registered";

struct Contender {
  const char *name;
  Parser parse;
};

constexpr Contender contenders[] = {
    {"expat", readWithExpat}, {"libxml2", readWithLibxml2}, {"pugixml", readWithPugixml}};

void intoArray(void *where, const Hit &hit) { static_cast<std::vector<Hit> *>(where)->push_back(hit); }

void intoList(void *where, const Hit &hit) { HLL_AddHL(static_cast<HLL *>(where), hit.page, hit.pos, hit.len); }

bool readIntoArray(Parser parse, const std::string &file) {
  std::vector<Hit> hits;
  const bool read = parse(file, {intoArray, &hits});
  benchmark::DoNotOptimize(hits.data());
  return read;
}

bool readIntoList(Parser parse, const std::string &file) {
  HLL *list = GLT_NewHLL(nullptr);
  const bool read = parse(file, {intoList, list});
  GLT_DeleteHLL(list);
  return read;
}

// The complete lifetime of a list: the file is read, its list is registered and unregistered.
bool readAndRegister(const std::string &file) {
  const tavrel::Doc document = silentDocument(1);
  const bool registered = registerGLT(document, file.data(), static_cast<uint32_t>(file.size())) != 0;
  if (registered) GLT_UnregisterHLL(document, GLT_GetHLL(document));
  return registered;
}

// The cost of splitting if the reader left all words to the lexer.
size_t countWords(const std::string &file) {
  HWLEX_STATE state;
  HWLEX_reset(&state);
  char *cursor = const_cast<char *>(file.c_str()), *token = nullptr; // the text is only read
  size_t words = 0;
  while (*cursor != 0)
    words += HWLEX_match(&state, &token, &cursor) == HWLEX_WORD ? 1 : 0;
  return words;
}

void finish(benchmark::State &state, const std::string &file) {
  state.SetBytesProcessed(static_cast<int64_t>(file.size()) * state.iterations());
}

enum class Expected { registered, nothing };

void measureOurs(const std::string &name, const File &file, Expected expected) {
  measure(table, name, ours, [file, expected](benchmark::State &state) {
    const std::string &text = **file;
    for (auto _ : state)
      if (readAndRegister(text) != (expected == Expected::registered)) state.SkipWithError("read wrongly");
    finish(state, text);
  });
  measure(table, name, "every token by the lexer", [file](benchmark::State &state) {
    const std::string &text = **file;
    for (auto _ : state)
      benchmark::DoNotOptimize(countWords(text));
    finish(state, text);
  });
}

void measureOthers(const std::string &name, const File &file) {
  for (const Contender &contender : contenders) {
    measure(table, name, std::string(contender.name) + ", array", [file, contender](benchmark::State &state) {
      const std::string &text = **file;
      for (auto _ : state)
        if (!readIntoArray(contender.parse, text)) return state.SkipWithError("refused");
      finish(state, text);
    });
    measure(table, name, std::string(contender.name) + ", list", [file, contender](benchmark::State &state) {
      const std::string &text = **file;
      for (auto _ : state)
        if (!readIntoList(contender.parse, text)) return state.SkipWithError("refused");
      finish(state, text);
    });
  }
}

void measureHits(const std::string &name, const std::function<std::vector<Hit>()> &hits,
                 Spelling spelling = Spelling::alike) {
  for (const auto &[layout, suffix] : {std::pair{Layout::lines, ", a tag a line"}, {Layout::oneLine, ", one line"}}) {
    const auto file = std::make_shared<LateText>(
        [hits, layout = layout, spelling] { return highlightFile(hits(), layout, spelling); });
    measureOurs(name + suffix, file, Expected::registered);
    measureOthers(name + suffix, file);
  }
}

std::vector<Hit> usualHits() { // 40 on 6 pages
  std::vector<Hit> hits = inPageOrder(6, 7);
  hits.resize(40);
  return hits;
}

// The nanoseconds that a new process needs for its first file; negative if it failed.
double firstCall(const std::string &who) {
  FILE *child = popen(("/proc/" + std::to_string(getpid()) + "/exe --once '" + who + "'").c_str(), "r");
  if (child == nullptr) return -1;
  double nanoseconds = -1;
  const bool printed = fscanf(child, "%lf", &nanoseconds) == 1;
  return pclose(child) == 0 && printed ? nanoseconds : -1;
}

void measureFirstCall(const std::string &who) {
  measureManually(table, "S, first call of a process", who, [who](benchmark::State &state) {
    for (auto _ : state) {
      const double nanoseconds = firstCall(who);
      if (nanoseconds < 0) return state.SkipWithError("failed");
      state.SetIterationTime(nanoseconds / 1e9);
    }
  });
}

} // namespace

bool readOnce(const std::string &who) {
  installSilentHost();
  const std::string file = highlightFile(usualHits(), Layout::lines);
  const auto clocked = [](auto &&call) {
    const auto from = std::chrono::steady_clock::now();
    const bool read = call();
    std::printf("%lld\n", static_cast<long long>((std::chrono::steady_clock::now() - from).count()));
    return read;
  };
  if (who == ours) return clocked([&] { return readAndRegister(file); });
  for (const Contender &contender : contenders)
    if (who == contender.name + std::string(", list"))
      return clocked([&] { return readIntoList(contender.parse, file); });
  return false;
}

void measureReading() {
  measureHits("S, 40 hits on 6 pages", usualHits);
  measureFirstCall(ours);
  for (const Contender &contender : contenders)
    measureFirstCall(std::string(contender.name) + ", list");
  measureHits("M, 60 pages of 400", [] { return inPageOrder(60, 400); });
  measureHits("L, 1,000 pages of 400", [] { return inPageOrder(1000, 400); });
  measureHits(
      "L, spelled in two ways alternating", [] { return inPageOrder(1000, 400); }, Spelling::alternating);
  measureHits("W, 65,000 on one page", [] { return onOnePage(65000, false); });
  measureHits("W, shuffled", [] { return onOnePage(65000, true); });
  measureHits("P, 10,000 pages of 100", [] { return inPageOrder(10000, 100); });
  measureHits("P, interleaved", [] { return interleaved(10000, 100); });
  constexpr size_t size = 17'000'000;
  for (const auto &[layout, suffix] : {std::pair{Layout::lines, ", lines"}, {Layout::oneLine, ", one line"}}) {
    const auto none = std::make_shared<LateText>([layout = layout] { return article(size, layout); });
    measureOurs(std::string("N, another kind of XML") + suffix, none, Expected::nothing);
    measureOthers(std::string("N, another kind of XML") + suffix, none);
    measureOurs(std::string("Q, hostile") + suffix,
                std::make_shared<LateText>([layout = layout] { return hostile(size, layout); }), Expected::nothing);
  }
}

} // namespace bench
