// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The open documents. The application owns them; here are their files, passwords and order.
#include "viewer/model/documents.h"

#include <cstdio>
#include <exception>
#include <utility>

namespace viewer {

Documents::Documents(host::Application &app, StatusLine &status, Changes &changes)
    : app_(app), status_(status), changes_(changes) {
  app_.prepare = [this](host::ViewerDocument &document) { prepare(document); };
}

Documents::~Documents() { app_.prepare = {}; }

const OpenDocument *Documents::find(const host::ViewerDocument *document) const {
  return findIf([=](const OpenDocument &one) { return one.document == document; });
}

const OpenDocument *Documents::find(uint64_t number) const {
  return findIf([=](const OpenDocument &one) { return one.number == number; });
}

std::vector<std::shared_ptr<host::Service>> Documents::services() const {
  std::vector<std::shared_ptr<host::Service>> all;
  for (const auto &one : open_)
    all.push_back(one->service);
  return all;
}

void Documents::add(std::unique_ptr<host::Document> model, OpenDocument document) {
  const uint64_t number = document.number;
  const Target target = document.target;
  std::exception_ptr failure;
  order_.reserve(order_.size() + 1);
  auto window = std::make_unique<PageWindow>(*model, screenDpi);
  document.document = nullptr;
  document.window = window.get();
  open_.push_back(std::make_unique<OpenDocument>(std::move(document)));
  try {
    app_.open(std::move(model), std::move(window), target.file, target.parameters);
  } catch (const std::exception &) {
    if (find(number)->document == nullptr) {
      open_.pop_back();
      throw;
    }
    failure = std::current_exception(); // it is open, but a plug-in may not have been notified
  }
  app_.toolBar()->updateStates();
  if (failure) std::rethrow_exception(failure);
}

// Called when a document is open, before the plug-ins are notified. If it throws, nothing refers to the document.
void Documents::prepare(host::ViewerDocument &document) {
  OpenDocument opened = *open_.back();
  opened.document = &document;
  for (DocumentKeeper *keeper : keepers)
    keeper->opens(opened);
  auto place = order_.end(); // files that are opened at once keep their order, whichever is there first
  while (place != order_.begin() && find(*std::prev(place))->number > opened.number)
    --place;
  order_.insert(place, &document);
  open_.back()->document = &document;
}

// The document opened last replaces another one: it gets its menu entry, and from the keepers its page and its size.
void Documents::replace(const OpenDocument &before) {
  host::ViewerDocument *const now = open_.back()->document;
  std::erase(order_, now);
  *std::find(order_.begin(), order_.end(), before.document) = now;
  std::exception_ptr failure;
  for (DocumentKeeper *keeper : keepers)
    try {
      keeper->replaces(before, *find(now));
    } catch (const std::exception &) { // it is replaced nevertheless
      failure = std::current_exception();
    }
  close(before);
  if (failure) std::rethrow_exception(failure);
}

void Documents::close(const OpenDocument &document) {
  const bool wasFront = document.document == front();
  for (DocumentKeeper *keeper : keepers)
    keeper->closes(document);
  std::erase(order_, document.document);
  host::ViewerDocument &closing = *document.document;
  std::erase_if(open_, [&](const auto &one) { return one.get() == &document; });
  try {
    app_.close(closing);
  } catch (const std::exception &) { // it is closed nevertheless
    showFront();
    throw;
  }
  showFront();
  if (wasFront) status_.set("");
}

void Documents::showFront() {
  for (DocumentKeeper *keeper : keepers)
    keeper->frontChanged();
  if (app_.toolBar() != nullptr) app_.toolBar()->updateStates();
  changes_.note(allParts);
}

void Documents::closeFront() {
  if (const OpenDocument *document = frontDocument()) close(*document);
}

void Documents::closeAll() {
  while (!open_.empty())
    try {
      close(*open_.back());
    } catch (const std::exception &error) {
      std::fprintf(stderr, "tavrel: %s\n", error.what());
    }
}

void Documents::bringToFront(size_t index) {
  if (index >= order_.size() || order_[index] == front()) return;
  bringToFront(*find(order_[index]));
  status_.set("");
}

void Documents::bringToFront(const OpenDocument &document) {
  if (document.document == front()) return;
  app_.bringToFront(*document.document);
  showFront();
}

size_t Documents::frontIndex() const {
  return static_cast<size_t>(std::find(order_.begin(), order_.end(), front()) - order_.begin());
}

void Documents::reportChanged(uint64_t number) {
  const auto found = std::find_if(open_.begin(), open_.end(), [=](const auto &one) { return one->number == number; });
  if (found == open_.end() || (*found)->changeIsReported) return;
  status_.report(host::nameInMessage((*found)->target.file) + ": has changed; Reload shows it as it is now");
  (*found)->changeIsReported = true;
}

PageWindow *Documents::window() const {
  const OpenDocument *document = frontDocument();
  return document == nullptr ? nullptr : document->window;
}

int32_t Documents::pageCount() const { return front() == nullptr ? 0 : front()->model->pageCount(); }

int32_t Documents::page() const { return view() == nullptr ? 0 : view()->page(); }

std::string Documents::title() const {
  return front() == nullptr ? "Tavrel" : front()->file.filename().string() + " - Tavrel";
}

std::vector<int32_t> Documents::markedPages() const {
  std::vector<int32_t> all;
  if (front() == nullptr) return all;
  for (const auto &[extension, pages] : front()->markedPages)
    all.insert(all.end(), pages.begin(), pages.end());
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

} // namespace viewer
