// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/tiles.h"

#include <algorithm>
#include <utility>

namespace viewer {
void Tiles::opens(const OpenDocument &document) {
  words_[document.number];
  document.document->view->setSource([this, number = document.number](int32_t page, double dpi) {
    return cache_.find({number, page, dpi});
  });
  document.document->model->lateListener = [this, number = document.number](int32_t page) { takeLate(number, page); };
}

void Tiles::closes(const OpenDocument &document) {
  document.document->model->lateListener = {};
  dropImages(document.number);
  std::erase_if(errors_, [&](const auto &one) { return one.first.first == document.number; });
  words_.erase(document.number);
}

void Tiles::dropImages(uint64_t number) {
  cache_.drop(number);
  std::erase_if(asked_, [=](const auto &one) { return one.first.document == number; });
}

void Tiles::request(bool neighbours) {
  const OpenDocument *document = documents_.frontDocument();
  std::vector<PageKey> wanted;
  size_t bytes = 0;
  const int32_t front = documents_.page();
  for (const int32_t page : {front, front + 1, front - 1}) {
    if (document == nullptr || page < 0 || page >= documents_.pageCount() || (page != front && !neighbours)) continue;
    const PageKey key{document->number, page, documents_.window()->dpiOf(page)};
    const host::PageSize size = document->document->model->pageSize(page);
    bytes += static_cast<size_t>(size.width * size.height * key.dpi * key.dpi / (72 * 72)) * sizeof(uint32_t);
    if (bytes > cache_.bound() && page != front) break;
    wanted.push_back(key);
  }
  // What is being rendered is completed and kept, unless it takes long: a reader who turns fast may come back to it.
  std::erase_if(asked_, [&](const auto &one) {
    if (std::find(wanted.begin(), wanted.end(), one.first) != wanted.end()) return false;
    one.second.setUrgency(host::Urgency::kept);
    return !one.second.underWay();
  });
  for (const PageKey &key : wanted) {
    const bool shown = key.page == front;
    ask(*document, key, shown ? host::Urgency::shown : host::Urgency::ahead);
    words_[key.document].expect(*document->document->model, key.page, shown);
  }
}

void Tiles::ask(const OpenDocument &document, const PageKey &key, host::Urgency urgency) {
  if (cache_.has(key)) return;
  if (const auto asked = asked_.find(key); asked != asked_.end()) return asked->second.setUrgency(urgency);
  ask(*document.service, key, host::pixelSize(document.document->model->pageSize(key.page), key.dpi), urgency);
}

void Tiles::ask(host::Service &service, const PageKey &key, const host::PixelSize &size, host::Urgency urgency) {
  asked_.emplace(key, service.ask(host::ImageRequest{key.page, key.dpi, size}, urgency,
                                  [this, key](host::Answer &answer) { take(key, answer); }));
}

void Tiles::requestFirst(uint64_t document, host::Service &service, const host::PageSize &page, double dpi) {
  ask(service, {document, 0, dpi}, host::pixelSize(page, dpi), host::Urgency::shown);
}

// Why an answer is no image of the page; empty if it is one.
std::string Tiles::failureOf(const OpenDocument &document, const PageKey &key, const host::Answer &answer) const {
  if (const auto *failure = std::get_if<host::Failure>(&answer.value)) return failure->line;
  const host::Image &image = std::get<host::PageImage>(answer.value).image;
  const auto [width, height] = host::pixelSize(document.document->model->pageSize(key.page), key.dpi);
  if (image.width == width && image.height == height) return {};
  return host::nameInMessage(document.target.file) + ": page " + std::to_string(int64_t{key.page} + 1) +
         ": its image has a wrong size";
}

// Takes over an answer, completely or, if memory is exhausted, not at all.
void Tiles::take(const PageKey &key, host::Answer &answer) {
  const OpenDocument *const opened = documents_.find(key.document);
  if (opened == nullptr) { // not open yet; one of a changed file is asked for again, so that the change is reported
    auto *page = std::get_if<host::PageImage>(&answer.value);
    if (page != nullptr && !answer.fileChanged) cache_.insert(key, std::move(page->image));
    asked_.erase(key);
    return;
  }
  const OpenDocument &document = *opened;
  if (answer.fileChanged) documents_.reportChanged(key.document);
  host::PageView &view = *document.document->view;
  const bool shown = key.page == view.page();
  const std::pair<uint64_t, int32_t> place{key.document, key.page};
  std::string error = failureOf(document, key, answer);
  if (error.empty()) {
    cache_.insert(key, std::move(std::get<host::PageImage>(answer.value).image));
    errors_.erase(place);
  } else {
    // A white page instead; the window shows the reason on it. The page's size may have come after the request, and
    // may be a much larger one: then the page is shown at another resolution.
    const double dpi = std::min(key.dpi, document.window->largestDpi(key.page));
    const auto [width, height] = host::pixelSize(document.document->model->pageSize(key.page), dpi);
    host::Image white{width, height, {}};
    white.pixels.assign(static_cast<size_t>(white.width) * static_cast<size_t>(white.height), 0xFFFFFFFF);
    errors_[place] = error;
    cache_.insert(key, std::move(white));
    if (shown) status_.report(std::move(error));
  }
  if (shown && key.dpi == view.dpi()) view.invalidate();
  asked_.erase(key);
}

// The words of the page are known now, or the sizes of several pages, of which it is one.
void Tiles::takeLate(uint64_t number, int32_t page) {
  const OpenDocument *document = documents_.find(number);
  if (document == nullptr) return;
  const auto failed = std::erase_if(errors_, [=](const auto &one) { return one.first.first == number; });
  if (failed > 0) cache_.drop(number); // a size may have been the reason
  document->window->sizeIsKnown();
  if (failed > 0 || page == document->window->page()) document->document->view->invalidate();
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
  const OpenDocument &document = *documents_.frontDocument();
  words_[document.number].show(*document.document->model, shown);
}

} // namespace viewer
