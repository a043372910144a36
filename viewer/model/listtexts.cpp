// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/listtexts.h"

#include <algorithm>

namespace viewer {

const host::PluginList *ListTexts::list() const {
  return documents_.front() == nullptr ? nullptr : documents_.front()->lists.shown();
}

const host::ListText *ListTexts::text(uint32_t row) const {
  const host::PluginList *shown = list();
  if (shown == nullptr || shown->number != number_) return nullptr;
  const auto found = texts_.find(row);
  return found == texts_.end() ? nullptr : &found->second;
}

bool ListTexts::fetch(uint32_t first, uint32_t count, std::chrono::steady_clock::duration atMost) {
  const auto end = std::chrono::steady_clock::now() + atMost;
  if (texts_.size() >= mostTexts) texts_.clear(); // not in the loop: the rows of one call are kept together
  for (uint32_t n = 0; n < count; ++n) {
    const host::PluginList *shown = list(); // a plug-in may change it in any call
    if (shown == nullptr || n >= shown->rows - std::min(first, shown->rows)) return true;
    if (shown->number != number_) texts_.clear();
    number_ = shown->number;
    const uint32_t row = first + n;
    if (texts_.contains(row)) continue;
    if (app_.calling() || std::chrono::steady_clock::now() >= end) return false;
    const host::PluginList asked = *shown;
    host::ListText text = host::Lists::text(asked, app_.documents().handle(documents_.front()), row);
    // The plug-in may have read that page's words.
    if (text.page >= 0 && text.page < documents_.pageCount()) tiles_.forgetWords(text.page);
    texts_[row] = std::move(text);
  }
  return true;
}

void ListTexts::choose(uint32_t row) {
  const host::PluginList *shown = list();
  if (shown == nullptr || row >= shown->rows || app_.calling()) return;
  const host::PluginList asked = *shown;
  host::Lists::choose(asked, app_.documents().handle(documents_.front()), row);
}

} // namespace viewer
