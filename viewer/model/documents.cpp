// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The open documents. The application owns them; here are their files, passwords and order.
#include "viewer/model/documents.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <utility>

namespace viewer {
namespace {

// How long a plug-in waits for a page, and the window with it.
constexpr auto waitingLimit = std::chrono::seconds(1);

} // namespace

Documents::Documents(host::Application &app, ServiceMaker makeService, StatusLine &status, Changes &changes)
    : app_(app), status_(status), changes_(changes), opening_(std::move(makeService)) {
  app_.prepare = [this](host::ViewerDocument &document) { prepare(document); };
}

Documents::~Documents() { app_.prepare = {}; }

const OpenDocument *Documents::find(const host::ViewerDocument *document) const {
  const auto found =
      std::find_if(open_.begin(), open_.end(), [=](const auto &one) { return one->document == document; });
  return found == open_.end() ? nullptr : found->get();
}

const OpenDocument *Documents::find(uint64_t number) const {
  const auto found = std::find_if(open_.begin(), open_.end(), [=](const auto &one) { return one->number == number; });
  return found == open_.end() ? nullptr : found->get();
}

void Documents::open(const Target &target, const std::string &password, const WhenOpened &opened) {
  const auto done = [&] {
    if (opened) opened({});
  };
  Target absolute = target;
  std::error_code unknown;
  if (const auto path = std::filesystem::absolute(target.file, unknown); !unknown) absolute.file = path;
  absolute.file = absolute.file.lexically_normal();
  const auto same = [&](const Target &other) {
    return other.file == absolute.file && (absolute.parameters.empty() || other == absolute);
  };
  for (const auto &one : open_)
    if (same(one->target)) {
      bringToFront(static_cast<size_t>(std::find(order_.begin(), order_.end(), one->document) - order_.begin()));
      return done();
    }
  if (opening_.any([&](const Opening::File &file) { return same(file.target); })) return done();
  std::string line = "Opening " + target.file.filename().string();
  opening_.request({++numbers_, absolute, password, {}, opened});
  openingLine_ = line;
  status_.set(std::move(line));
}

void Documents::reload() {
  const OpenDocument *document = frontDocument();
  if (document == nullptr) return;
  if (opening_.any([=](const Opening::File &file) { return file.replaces == document->number; })) return;
  opening_.request({++numbers_, document->target, document->password, document->number});
}

Services Documents::services() const {
  Services all;
  for (const auto &one : open_)
    all.push_back(one->service);
  opening_.addServices(all);
  return all;
}

void Documents::takeOpened() {
  if (const std::optional<Opening::File> file = opening_.take()) take(*file);
}

void Documents::take(const Opening::File &file) {
  status_.remove(openingLine_); // but not an error of another file
  changes_.note(allParts);
  const auto *failed = std::get_if<host::Failure>(&file.answer->value);
  asksPassword_ = failed != nullptr && failed->needsPassword && questions != nullptr;
  if (file.opened) file.opened(failed == nullptr || asksPassword_ ? "" : failed->line); // before any other dialog
  if (failed == nullptr) return takeDocument(file, std::get<host::Opened>(file.answer->value));
  if (asksPassword_)
    questions->askPassword(file.target, !file.password.empty());
  else
    status_.report(failed->line);
}

void Documents::takeDocument(const Opening::File &file, const host::Opened &opened) {
  std::exception_ptr failure;
  try {
    order_.reserve(order_.size() + 1);
    std::unique_ptr<host::Document> model = host::Document::of({file.service, waitingLimit}, opened);
    auto window = std::make_unique<PageWindow>(*model, screenDpi);
    open_.push_back(std::make_unique<OpenDocument>(
        OpenDocument{file.number, nullptr, window.get(), file.target, file.password, file.service}));
    app_.open(std::move(model), std::move(window), file.target.file, file.target.parameters);
  } catch (const std::exception &error) {
    const OpenDocument *last = find(file.number);
    if (last == nullptr || last->document == nullptr) {
      if (last != nullptr) open_.pop_back();
      const bool memory = dynamic_cast<const std::bad_alloc *>(&error) != nullptr;
      return status_.report(host::nameInMessage(file.target.file) + ": " +
                            (memory ? "memory is exhausted" : error.what()));
    }
    failure = std::current_exception(); // it is open, but a plug-in may not have been notified
  }
  reportUnread(*find(file.number));
  if (const OpenDocument *before = file.replaces ? find(*file.replaces) : nullptr) replace(*before);
  app_.toolBar()->updateStates();
  if (failure) std::rethrow_exception(failure);
}

void Documents::reportUnread(const OpenDocument &document) {
  const std::string &parameters = document.target.parameters;
  if (!parameters.empty() && !document.document->parametersRead)
    status_.report(host::nameInMessage(document.target.file) + ": no plug-in is loaded that handles #" +
                   host::nameInMessage(parameters));
}

// Called when a document is open, before the plug-ins are notified. If it throws, nothing refers to the document.
void Documents::prepare(host::ViewerDocument &document) {
  OpenDocument opened = *open_.back();
  opened.document = &document;
  for (DocumentKeeper *keeper : keepers)
    keeper->opens(opened);
  order_.push_back(&document);
  open_.back()->document = &document;
}

// The document opened last replaces another one: it gets its menu entry, and from the keepers its page and its size.
void Documents::replace(const OpenDocument &before) {
  host::ViewerDocument *const now = order_.back();
  *std::find(order_.begin(), order_.end(), before.document) = now;
  order_.pop_back();
  for (DocumentKeeper *keeper : keepers)
    keeper->replaces(before, *find(now));
  close(before);
}

void Documents::close(const OpenDocument &document) {
  opening_.dropReload(document.number);
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
  status_.set("");
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
  app_.bringToFront(*order_[index]);
  showFront();
  status_.set("");
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
