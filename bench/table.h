// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Prints the measurements as tables: a line for each thing measured, a column for each program or library, and the
// ratio of each column to the first.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Names have three parts with a '|' between them: table, line, column. The first column of a line is the reference for
/// the others.
class TableReporter : public benchmark::BenchmarkReporter {
public:
  /// The names of all cells, in the order of the tables.
  explicit TableReporter(const std::vector<std::string> &names);
  bool ReportContext(const Context &context) override;
  void ReportRuns(const std::vector<Run> &runs) override;
  void Finalize() override;

private:
  struct Cell {
    std::string table, line, column;
    std::vector<double> nanoseconds; ///< of every run
    double bytes = 0;                ///< processed by a run
    std::string note;                ///< shown instead of a time
    bool empty() const { return nanoseconds.empty() && note.empty(); }
  };
  /// The values of that part of the measured cells for which `holds` is true, each value once.
  template <typename Holds> std::vector<std::string> distinct(std::string Cell::*part, const Holds &holds) const;
  const Cell *find(const std::string &table, const std::string &line, const std::string &column) const;
  void print(const std::string &table) const;

  std::vector<Cell> cells_;
  std::map<std::string, size_t> indices_; ///< by name
  size_t measured_ = 0;
};

} // namespace bench
