// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// bench DOCUMENTS [--benchmark_filter=PATTERN] [...]     measures our speed and that of others; prints tables
//
// Nothing here passes or fails. Everything is measured several times, in one random order, so that other load of the
// machine affects all measurements alike. PATTERN is a regular expression for "table|line|column".
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bench/measure.h"
#include "bench/table.h"
#include "tests/support/SilentHost.h"

int main(int count, char **words) {
  if (count == 3 && std::strcmp(words[1], "--once") == 0) return bench::readOnce(words[2]) ? 0 : 1;
  if (count < 2) {
    std::fprintf(stderr, "bench: a directory with documents is needed\n");
    return 2;
  }
  const std::string documents = words[1];
  std::vector<char *> arguments(words, words + count);
  std::string interleaved = "--benchmark_enable_random_interleaving=true";
  arguments[1] = interleaved.data();
  count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  installSilentHost();
  bench::measureReading();
  bench::measureList();
  bench::measureSession();
  bench::measureProcesses();
  bench::measurePrograms(documents);
  bench::TableReporter tables(bench::names());
  benchmark::RunSpecifiedBenchmarks(&tables);
}
