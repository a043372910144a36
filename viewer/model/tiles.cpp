// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/tiles.h"

#include <algorithm>
#include <utility>

namespace viewer {

void Tiles::opens(const OpenDocument &document) {
  withWords_[document.number];
  document.document->view->setSource([this, number = document.number](int32_t page, double dpi) {
    return cache_.find({number, page, dpi});
  });
}

void Tiles::closes(const OpenDocument &document) {
  cache_.drop(document.number);
  std::erase_if(errors_, [&](const auto &one) { return one.first.first == document.number; });
  withWords_.erase(document.number);
}

void Tiles::request(bool neighbours) {
  const OpenDocument *document = documents_.frontDocument();
  if (document == nullptr) return renderer_.want({});
  std::vector<PageKey> wanted;
  size_t bytes = 0;
  const int32_t front = documents_.page();
  for (const int32_t page : {front, front + 1, front - 1}) {
    if (page < 0 || page >= documents_.pageCount() || (page != front && !neighbours)) continue;
    try {
      const PageKey key{document->number, page, documents_.window()->dpiOf(page)};
      const host::PageSize size = document->document->model->pageSize(page);
      bytes += static_cast<size_t>(size.width * size.height * key.dpi * key.dpi / (72 * 72)) * sizeof(uint32_t);
      if (bytes > cache_.bound() && page != front) break;
      if (!cache_.has(key)) wanted.push_back(key);
    } catch (const host::HostError &) {
      continue; // a damaged neighbour: the error is reported when it is in front
    }
  }
  renderer_.want(wanted);
}

void Tiles::take(RenderedPage &page) {
  const OpenDocument *document = documents_.find(page.key.document);
  if (document == nullptr) return;
  host::PageView &view = *document->document->view;
  const bool shown = page.key.page == view.page();
  const std::pair<uint64_t, int32_t> place{page.key.document, page.key.page};
  std::string error = page.error;
  if (error.empty()) {
    errors_.erase(place);
  } else {
    // A white page instead; the window shows the reason on it.
    const host::PageSize size = document->document->model->pageSize(page.key.page);
    page.image.width = std::max(1, static_cast<int>(size.width * page.key.dpi / 72));
    page.image.height = std::max(1, static_cast<int>(size.height * page.key.dpi / 72));
    page.image.pixels.assign(static_cast<size_t>(page.image.width) * static_cast<size_t>(page.image.height),
                             0xFFFFFFFF);
    errors_[place] = page.error;
  }
  cache_.insert(page.key, std::move(page.image));
  if (!error.empty() && shown) status_.report(std::move(error));
  if (shown && page.key.dpi == view.dpi()) view.invalidate();
}

bool Tiles::hasFront() const {
  const OpenDocument *document = documents_.frontDocument();
  return document != nullptr && cache_.has({document->number, documents_.page(), documents_.view()->dpi()});
}

std::string Tiles::error() const {
  const OpenDocument *document = documents_.frontDocument();
  if (document == nullptr) return {};
  const auto error = errors_.find({document->number, documents_.page()});
  return error == errors_.end() ? std::string() : error->second;
}

void Tiles::forgetWords(int32_t shown) {
  constexpr size_t kept = 8;
  const OpenDocument &document = *documents_.frontDocument();
  std::vector<int32_t> &withWords = withWords_[document.number];
  std::erase(withWords, shown);
  withWords.push_back(shown);
  if (withWords.size() <= kept) return;
  document.document->model->forgetText(withWords.front());
  withWords.erase(withWords.begin());
}

} // namespace viewer
