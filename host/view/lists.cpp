// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/lists.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "host/document/utf8.h"

namespace host {
namespace {

// What a plug-in has written, as one line: without control characters, and without a character that was truncated.
std::string withoutControls(std::string_view written) {
  std::string line(withoutPartOfCharacter(written));
  std::replace_if(
      line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }, ' ');
  return line;
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
  const std::string_view bytes(written.text, strnlen(written.text, sizeof written.text));
  ListText text{written.page, withoutControls(bytes)};
  text.markStart = firstBytes(text.text, written.markStart).size();
  text.markLength = firstBytes(text.text, size_t{written.markStart} + written.markLength).size() - text.markStart;
  return text;
}

void Lists::choose(const PluginList &list, tavrel::Doc document, uint32_t row) {
  callPlugin({list.chosen.owner, "the choice of a row"},
             tavrel::functionOf<tavrel::ListChosenProc>(list.chosen.callback), document, row);
}

} // namespace host
