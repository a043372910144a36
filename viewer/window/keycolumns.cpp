// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/keycolumns.h"

#include <algorithm>
#include <utility>

namespace viewer {
namespace {

bool beginsGroup(const std::vector<KeyRow> &rows, size_t i) { return i == 0 || rows[i].group != rows[i - 1].group; }

// Several keys on as many lines as they need.
void add(KeyColumn &column, const KeyRow &row) {
  constexpr size_t longest = 34;
  std::string line, sentence = row.sentence;
  size_t start = 0;
  while (start < row.keys.size()) {
    const size_t end = std::min(row.keys.find(", ", start), row.keys.size());
    const std::string key = row.keys.substr(start, end - start);
    if (!line.empty() && line.size() + key.size() > longest) {
      column.add(line + ",", std::exchange(sentence, ""));
      line.clear();
    }
    line += (line.empty() ? "   " : ", ") + key;
    start = end + 2;
  }
  column.add(line, sentence);
}

// The rows of each group, under a heading.
std::vector<KeyColumn> groupsOf(const std::vector<KeyRow> &rows) {
  std::vector<KeyColumn> groups;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (beginsGroup(rows, i)) groups.emplace_back().add(rows[i].group, "");
    add(groups.back(), rows[i]);
  }
  return groups;
}

} // namespace

std::vector<KeyColumn> keyColumns(const std::vector<KeyRow> &rows, size_t count) {
  const std::vector<KeyColumn> groups = groupsOf(rows);
  size_t lines = 0, highest = 0;
  for (const KeyColumn &group : groups)
    lines += group.keys.size() + 1;
  std::vector<KeyColumn> columns(1);
  for (const KeyColumn &group : groups) {
    if (columns.size() < count && columns.back().keys.size() + group.keys.size() / 2 > lines / count)
      columns.emplace_back();
    if (!columns.back().keys.empty()) columns.back().add("", "");
    for (size_t i = 0; i < group.keys.size(); ++i)
      columns.back().add(group.keys[i], group.sentences[i]);
    highest = std::max(highest, columns.back().keys.size());
  }
  for (KeyColumn &column : columns)
    while (column.keys.size() < highest)
      column.add("", "");
  return columns;
}

} // namespace viewer
