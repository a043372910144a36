// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The functions with which the parts of the benchmark program register, and the parts.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

namespace bench {

inline constexpr int repetitions = 9;

/// The names of all cells, in the order of registration, which is the order of the tables.
inline std::vector<std::string> &names() {
  static std::vector<std::string> all;
  return all;
}

/// Makes the name "table|line|column" and adds it to names().
inline std::string nameOf(const std::string &table, const std::string &line, const std::string &column) {
  return names().emplace_back(table + "|" + line + "|" + column);
}

/// Registers a cell of a table (table.h): the line is what is measured, the column is the program or library.
template <typename Body>
void measure(const std::string &table, const std::string &line, const std::string &column, Body body) {
  benchmark::RegisterBenchmark(nameOf(table, line, column).c_str(), std::move(body))
      ->Repetitions(repetitions)
      ->MinTime(0.05)
      ->UseRealTime();
}

/// The same for a body that takes seconds.
template <typename Body>
void measureOnce(const std::string &table, const std::string &line, const std::string &column, Body body) {
  benchmark::RegisterBenchmark(nameOf(table, line, column).c_str(), std::move(body))
      ->Repetitions(5)
      ->Iterations(1)
      ->UseRealTime();
}

/// The same for a body that sets the time of each iteration.
template <typename Body>
void measureManually(const std::string &table, const std::string &line, const std::string &column, Body body) {
  benchmark::RegisterBenchmark(nameOf(table, line, column).c_str(), std::move(body))
      ->Repetitions(repetitions)
      ->Iterations(5)
      ->UseManualTime();
}

void measureReading();   ///< highlight files: ours and XML libraries (reading.cpp)
void measureList();      ///< adding to lists, and a naive baseline (list.cpp)
void measureSession();   ///< set-up, drawing of pages (session.cpp)
void measureProcesses(); ///< requests while a page that takes minutes is drawn (processes.cpp)
/// The commands, and programs with similar functions (programs.cpp); `documents` is a directory with two manuals,
/// gnuplot.pdf of 311 pages and octave.pdf of 1,158.
void measurePrograms(const std::string &documents);

/// Called in a separate process: prints the time of its first call, in nanoseconds. False for an unknown name.
bool readOnce(const std::string &who);

} // namespace bench
