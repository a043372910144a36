// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tables, in Markdown: medians of the repetitions; the spread is half the distance between the quartiles.
#include "bench/table.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace bench {
namespace {

double quantile(std::vector<double> sorted, double part) {
  std::sort(sorted.begin(), sorted.end());
  const double position = part * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<size_t>(position);
  const size_t above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (sorted[above] - sorted[below]) * (position - static_cast<double>(below));
}

std::string formatted(const char *format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// Three significant digits.
std::string figure(double value) { return formatted(value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f", value); }

std::string duration(double nanoseconds) {
  if (nanoseconds < 1e3) return figure(nanoseconds) + " ns";
  if (nanoseconds < 1e6) return figure(nanoseconds / 1e3) + " µs";
  if (nanoseconds < 1e9) return figure(nanoseconds / 1e6) + " ms";
  return figure(nanoseconds / 1e9) + " s";
}

// The text of a cell: the median, the spread, the rate if there are bytes, and the ratio to the reference.
std::string shown(const std::vector<double> &nanoseconds, double bytes, double reference) {
  const double median = quantile(nanoseconds, 0.5);
  const double spread = (quantile(nanoseconds, 0.75) - quantile(nanoseconds, 0.25)) / 2;
  std::string text = duration(median) + " ±" + formatted("%.0f", spread / median * 100) + " %";
  if (bytes != 0) text += ", " + formatted("%.0f", bytes / median * 1e9 / 1e6) + " MB/s";
  if (reference != 0) text += " (" + figure(median / reference) + ")";
  return text;
}

} // namespace

TableReporter::TableReporter(const std::vector<std::string> &names) {
  for (const std::string &name : names) {
    const size_t first = name.find('|'), second = name.find('|', first + 1);
    indices_[name] = cells_.size();
    cells_.push_back(
        {name.substr(0, first), name.substr(first + 1, second - first - 1), name.substr(second + 1), {}, 0, {}});
  }
}

bool TableReporter::ReportContext(const Context &context) {
  std::cout << context.cpu_info.num_cpus << " cores";
  for (const auto &cache : context.cpu_info.caches)
    if (cache.type != "Instruction") std::cout << ", L" << cache.level << " " << cache.size / 1024 << " KB";
  std::cout << ". Medians, ± half the distance between the quartiles; in brackets how many times the first column."
            << std::endl;
  return true;
}

void TableReporter::ReportRuns(const std::vector<Run> &runs) {
  for (const Run &run : runs) {
    if (run.run_type != Run::RT_Iteration) continue;
    const std::string &name = run.run_name.function_name;
    Cell &cell = cells_[indices_.at(name)];
    if (run.error_occurred) {
      cell.note = run.error_message;
      continue;
    }
    const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
    cell.nanoseconds.push_back(seconds * 1e9);
    const auto rate = run.counters.find("bytes_per_second");
    if (rate != run.counters.end()) cell.bytes = rate->second * seconds;
    if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r\033[K%zu runs: %s", ++measured_, name.c_str());
  }
}

template <typename Holds>
std::vector<std::string> TableReporter::distinct(std::string Cell::*part, const Holds &holds) const {
  std::vector<std::string> values;
  for (const Cell &cell : cells_)
    if (!cell.empty() && holds(cell) && std::find(values.begin(), values.end(), cell.*part) == values.end())
      values.push_back(cell.*part);
  return values;
}

const TableReporter::Cell *TableReporter::find(const std::string &table, const std::string &line,
                                               const std::string &column) const {
  const auto position = indices_.find(table + "|" + line + "|" + column);
  return position != indices_.end() && !cells_[position->second].empty() ? &cells_[position->second] : nullptr;
}

void TableReporter::print(const std::string &table) const {
  const auto inTable = [&](const Cell &cell) { return cell.table == table; };
  const std::vector<std::string> columns = distinct(&Cell::column, inTable);
  std::cout << "\n| " << table;
  for (const std::string &column : columns)
    std::cout << " | " << column;
  std::cout << " |\n|---";
  for (size_t i = 0; i < columns.size(); ++i)
    std::cout << "|---:";
  std::cout << "|\n";
  for (const std::string &line : distinct(&Cell::line, inTable)) {
    double reference = 0;
    std::cout << "| " << line;
    for (const std::string &column : columns) {
      const Cell *cell = find(table, line, column);
      std::cout << " | ";
      if (cell == nullptr) continue;
      if (cell->nanoseconds.empty()) {
        std::cout << cell->note;
        continue;
      }
      std::cout << shown(cell->nanoseconds, cell->bytes, reference);
      if (reference == 0) reference = quantile(cell->nanoseconds, 0.5);
    }
    std::cout << " |\n";
  }
}

void TableReporter::Finalize() {
  if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r\033[K");
  for (const std::string &table : distinct(&Cell::table, [](const Cell & /*cell*/) { return true; }))
    print(table);
}

} // namespace bench
