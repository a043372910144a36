// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/lists.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

// What a plug-in has written, as one line: without control characters, and without a character that was truncated.
std::string lineOf(const char *begin, const char *end) {
  const char *last = end; // where the last character begins
  while (last > begin && (static_cast<unsigned char>(*--last) & 0xC0U) == 0x80U)
    continue;
  const auto lead = static_cast<unsigned char>(last == end ? 0 : *last);
  const ptrdiff_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  std::string line(begin, end - last < length ? last : end);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }, ' ');
  return line;
}

// The position in a line of UTF-8, or the start of the character that it is within.
size_t startOfCharacter(const std::string &line, size_t position) {
  position = std::min(position, line.size());
  while (position > 0 && position < line.size() && (static_cast<unsigned char>(line[position]) & 0xC0U) == 0x80U)
    --position;
  return position;
}

} // namespace

void Lists::set(tavrel::ExtensionID extension, PluginList list) {
  static uint64_t lists = 0;
  list.number = ++lists;
  if (list.rows == 0)
    lists_.erase(extension);
  else
    lists_[extension] = std::move(list);
}

void Lists::setRow(tavrel::ExtensionID extension, std::optional<uint32_t> row) {
  const auto list = lists_.find(extension);
  if (row && (list == lists_.end() || *row >= list->second.rows))
    throw HostError(tavrel::errBadArgument, "the list has no row " + std::to_string(*row));
  if (list != lists_.end()) list->second.current = row;
}

ListText Lists::text(const PluginList &list, tavrel::Doc document, uint32_t row) {
  tavrel::ListRow written{-1, {}, 0, 0};
  callPlugin({list.row.owner, "a row of its list"}, tavrel::functionOf<tavrel::ListRowProc>(list.row.callback),
             document, row, &written);
  const char *begin = written.text;
  ListText text{written.page, lineOf(begin, std::find(begin, begin + sizeof written.text, '\0'))};
  text.markStart = startOfCharacter(text.text, written.markStart);
  text.markLength = startOfCharacter(text.text, size_t{written.markStart} + written.markLength) - text.markStart;
  return text;
}

void Lists::choose(const PluginList &list, tavrel::Doc document, uint32_t row) {
  callPlugin({list.chosen.owner, "the choice of a row"},
             tavrel::functionOf<tavrel::ListChosenProc>(list.chosen.callback), document, row);
}

} // namespace host
