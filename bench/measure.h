// What every part of the benchmark program registers with, and the names of the parts.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

namespace bench {

inline constexpr int repetitions = 9;

/// Every cell's name, in the order of registration, which is the tables' order.
inline std::vector<std::string> &names() {
  static std::vector<std::string> all;
  return all;
}

/// Notes the name, for which "table|line|column" stands everywhere.
inline std::string nameOf(const std::string &table, const std::string &line, const std::string &column) {
  return names().emplace_back(table + "|" + line + "|" + column);
}

/// Registers a cell of a table (table.h): the line's subject and the column's contender.
template <typename Body>
void measure(const std::string &table, const std::string &line, const std::string &column, Body body) {
  benchmark::RegisterBenchmark(nameOf(table, line, column).c_str(), std::move(body))
      ->Repetitions(repetitions)
      ->MinTime(0.05)
      ->UseRealTime();
}

/// The same for what takes seconds.
template <typename Body>
void measureOnce(const std::string &table, const std::string &line, const std::string &column, Body body) {
  benchmark::RegisterBenchmark(nameOf(table, line, column).c_str(), std::move(body))
      ->Repetitions(5)
      ->Iterations(1)
      ->UseRealTime();
}

/// The same for a body that sets each iteration's time itself.
template <typename Body>
void measureByItself(const std::string &table, const std::string &line, const std::string &column, Body body) {
  benchmark::RegisterBenchmark(nameOf(table, line, column).c_str(), std::move(body))
      ->Repetitions(repetitions)
      ->Iterations(5)
      ->UseManualTime();
}

void measureReading(); ///< highlight files: ours and XML libraries (reading.cpp)
void measureList();    ///< adding to lists, and the way without a list's tricks (list.cpp)
void measureSession(); ///< set-up, drawing of pages (session.cpp)
/// The commands beside programs that do much the same; `documents` is a directory with two manuals, gnuplot.pdf of 311
/// pages and octave.pdf of 1,158 (programs.cpp).
void measurePrograms(const std::string &documents);

/// In a process of its own: the time of its first call, in nanoseconds, printed. False for a name that is none.
bool readOnce(const std::string &who);

} // namespace bench
