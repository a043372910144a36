// Prints what was measured as tables: a line a subject, a column a contender, and how many times the first column each
// of the others is.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Names have three parts with a '|' between them: table, line, column. The first column that a line has is the one
/// that the others are compared with.
class TableReporter : public benchmark::BenchmarkReporter {
public:
  /// What may be measured, in the order in which it is to be shown.
  explicit TableReporter(const std::vector<std::string> &names);
  bool ReportContext(const Context &context) override;
  void ReportRuns(const std::vector<Run> &runs) override;
  void Finalize() override;

private:
  struct Cell {
    std::string table, line, column;
    std::vector<double> nanoseconds; ///< of every run
    double bytes = 0;                ///< a run works on
    std::string note;                ///< in place of a figure
    bool empty() const { return nanoseconds.empty() && note.empty(); }
  };
  /// What the cells that were measured have in that place, each value once, for those of which `holds` is true.
  template <typename Holds> std::vector<std::string> distinct(std::string Cell::*part, const Holds &holds) const;
  const Cell *find(const std::string &table, const std::string &line, const std::string &column) const;
  void print(const std::string &table) const;

  std::vector<Cell> cells_;
  std::map<std::string, size_t> places_; ///< by name
  size_t measured_ = 0;
};

} // namespace bench
