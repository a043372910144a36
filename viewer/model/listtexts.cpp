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

// Another list has other rows.
void ListTexts::follow(const host::PluginList &shown) {
  if (shown.number == number_) return;
  stopWaiting([](uint32_t) { return true; });
  texts_.clear();
  number_ = shown.number;
  document_ = documents_.frontDocument()->number;
}

template <typename Condition> void ListTexts::stopWaiting(const Condition &condition) {
  const OpenDocument *document = documents_.find(document_);
  std::erase_if(waiting_, [&](const auto &row) {
    if (!condition(row.first)) return false;
    if (document != nullptr)
      for (const int32_t page : row.second)
        tiles_.words(*document).drop(*document->document->model, page);
    return true;
  });
}

bool ListTexts::isAwaited(const Pages &pages) const {
  const OpenDocument *document = documents_.find(document_);
  return document != nullptr && std::any_of(pages.begin(), pages.end(),
                                            [&](int32_t page) { return document->document->model->isAwaited(page); });
}

bool ListTexts::fetch(uint32_t first, uint32_t count, std::chrono::steady_clock::duration atMost) {
  const auto end = std::chrono::steady_clock::now() + atMost;
  if (texts_.size() >= mostTexts) texts_.clear(); // not in the loop: the rows of one call are kept together
  stopWaiting([=](uint32_t row) { return row < first || row - first >= count; });
  for (uint32_t n = 0; n < count; ++n) {
    const host::PluginList *shown = list(); // a plug-in may change it in any call
    if (shown == nullptr || n >= shown->rows - std::min(first, shown->rows)) return true;
    follow(*shown);
    const uint32_t row = first + n;
    const auto waiting = waiting_.find(row);
    if (texts_.contains(row)) continue;
    if (waiting == waiting_.end() ? waiting_.size() >= mostWaiting : isAwaited(waiting->second)) continue;
    if (app_.calling() || std::chrono::steady_clock::now() >= end) return false;
    read(*shown, row);
  }
  return true;
}

void ListTexts::read(const host::PluginList &shown, uint32_t row) {
  const host::PluginList asked = shown;
  const OpenDocument &document = *documents_.frontDocument();
  host::Document &model = *document.document->model;
  host::ListText text;
  const std::vector<int32_t> missing =
      model.withoutWaiting([&] { text = host::Lists::text(asked, app_.documents().handle(document.document), row); });
  if (!missing.empty()) {
    waiting_[row].insert(missing.begin(), missing.end());
    return;
  }
  // The plug-in has read the words of the pages that were waited for, and may have read those of the row's page.
  Words &words = tiles_.words(document);
  if (const auto waited = waiting_.extract(row); !waited.empty())
    for (const int32_t page : waited.mapped())
      words.read(model, page);
  if (text.page >= 0 && text.page < model.pageCount()) words.read(model, text.page);
  texts_[row] = std::move(text);
}

void ListTexts::collect() {
  if (list() == nullptr || documents_.find(document_) == nullptr) stopWaiting([](uint32_t) { return true; });
  if (std::any_of(waiting_.begin(), waiting_.end(), [this](const auto &row) { return !isAwaited(row.second); }))
    changes_.note(partPage);
}

void ListTexts::choose(uint32_t row) {
  const host::PluginList *shown = list();
  if (shown == nullptr || row >= shown->rows || app_.calling()) return;
  const host::PluginList asked = *shown;
  host::Lists::choose(asked, app_.documents().handle(documents_.front()), row);
}

} // namespace viewer
