// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The session: opening and closing of documents, and drawing. Scrolling and zooming are in moving.cpp, the find
// dialog's work in finding.cpp.
#include "viewer/model/session.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace viewer {

Session::Session(host::Application &app, const std::function<void()> &wake)
    : app_(app), wake_(wake), renderer_(wake), searcher_(wake) {
  app_.prepare = [this](host::ViewerDocument &document) { prepare(document); };
  app_.listener = [this](host::ViewerDocument & /*document*/) {
    touch();
    if (pageListener) pageListener();
  };
  app_.statusListener = [this] { touch(); };
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = [this] { touch(); };
}

Session::~Session() {
  closeAll();
  app_.prepare = {};
  app_.listener = {};
  app_.statusListener = {};
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = {};
}

Session::OpenDocument *Session::find(const host::ViewerDocument *document) const {
  const auto found =
      std::find_if(open_.begin(), open_.end(), [=](const auto &one) { return one->document == document; });
  return found == open_.end() ? nullptr : found->get();
}

Session::OpenDocument *Session::find(uint64_t number) const {
  const auto found = std::find_if(open_.begin(), open_.end(), [=](const auto &one) { return one->number == number; });
  return found == open_.end() ? nullptr : found->get();
}

void Session::open(const Target &target, const std::string &password) {
  Target absolute = target;
  std::error_code unknown;
  if (const auto path = std::filesystem::absolute(target.file, unknown); !unknown) absolute.file = path;
  absolute.file = absolute.file.lexically_normal();
  const auto same = [&](const Target &other) {
    return other.file == absolute.file && (absolute.parameters.empty() || other == absolute);
  };
  for (const auto &one : open_)
    if (same(one->target))
      return bringToFront(static_cast<size_t>(std::find(order_.begin(), order_.end(), one->document) - order_.begin()));
  if (std::any_of(pending_.begin(), pending_.end(), [&](const Pending &one) { return same(one.target); })) return;
  std::string line = "Opening " + target.file.filename().string();
  request({++numbers_, absolute, password, std::nullopt});
  openingLine_ = line;
  setMessage(std::move(line));
}

// Added to both `pending_` and the renderer, or to neither.
void Session::request(Pending pending) {
  pending_.reserve(pending_.size() + 1);
  renderer_.open(pending.number, pending.target.file, pending.password);
  pending_.push_back(std::move(pending));
}

void Session::reload() {
  const OpenDocument *document = find(front());
  if (document == nullptr) return;
  const auto already = [=](const Pending &one) { return one.replaces == document->number; };
  if (std::any_of(pending_.begin(), pending_.end(), already)) return;
  request({++numbers_, document->target, document->password, document->number});
}

// Clears the message "Opening", but not an error of another file.
void Session::clearOpeningMessage() {
  if (message_ == openingLine_) setMessage("");
}

void Session::takeOpened(OpenedFile &opened) {
  const auto waiting =
      std::find_if(pending_.begin(), pending_.end(), [&](const Pending &one) { return one.number == opened.document; });
  if (waiting == pending_.end()) return renderer_.close(opened.document); // closed meanwhile
  const Pending pending = std::move(*waiting);
  pending_.erase(waiting);
  clearOpeningMessage();
  touch();
  if (opened.pdf != nullptr) return takeDocument(pending, std::move(opened.pdf));
  asksPassword_ = opened.needsPassword && questions != nullptr;
  if (asksPassword_)
    questions->askPassword(pending.target, !pending.password.empty());
  else
    reportError(std::move(opened.error));
}

void Session::takeDocument(const Pending &pending, std::unique_ptr<host::PdfFile> pdf) {
  try {
    order_.reserve(order_.size() + 1);
    open_.push_back(std::make_unique<OpenDocument>(
        OpenDocument{pending.number, nullptr, pending.target, pending.password, {}, {}}));
    found_.reset();
    waitingSince_.reset();
    app_.open(host::Document::of(std::move(pdf)), pending.target.file, screenDpi_, pending.target.parameters);
  } catch (const std::exception &error) {
    const OpenDocument *last = find(pending.number);
    if (last == nullptr || last->document == nullptr) {
      if (last != nullptr) open_.pop_back();
      renderer_.close(pending.number);
      const bool memory = dynamic_cast<const std::bad_alloc *>(&error) != nullptr;
      return reportError(host::nameInMessage(pending.target.file) + ": " +
                         (memory ? "memory is exhausted" : error.what()));
    }
    if (!failure_) failure_ = std::current_exception(); // it is open, but a plug-in may not have been notified
  }
  if (OpenDocument *before = pending.replaces ? find(*pending.replaces) : nullptr) replace(*before);
  app_.toolBar()->updateStates();
}

// The document opened last replaces another one: it gets its page, its size and its menu entry.
void Session::replace(OpenDocument &before) {
  const host::PageView &old = *before.document->view;
  host::ViewerDocument *const now = order_.back();
  *std::find(order_.begin(), order_.end(), before.document) = now;
  order_.pop_back();
  host::PageView &view = *now->view;
  if (old.fit() == host::Fit::none)
    view.setDpi(old.dpi());
  else
    view.setFit(old.fit());
  goToPage(old.page());
  view.scrollTo(old.scrollX(), old.scrollY());
  close(before);
}

// Called when a document is open, before the plug-ins are notified. If it throws, nothing refers to the document.
void Session::prepare(host::ViewerDocument &document) {
  host::PageView &view = *document.view;
  view.setMargin(margin_);
  if (windowWidth_ > 0) view.setWindow(windowWidth_, windowHeight_);
  view.setFit(fit_);
  view.setSource([this, &document](int32_t page, double dpi) { return pageImage(document, page, dpi); });
  order_.push_back(&document);
  open_.back()->document = &document;
}

void Session::close(OpenDocument &document) {
  for (const Pending &one : pending_)
    if (one.replaces == document.number) renderer_.close(one.number);
  std::erase_if(pending_, [&](const Pending &one) { return one.replaces == document.number; });
  renderer_.close(document.number);
  searcher_.closeFile();
  cache_.drop(document.number);
  if (found_ && found_->document == document.document) found_.reset();
  if (searching_) {
    searcher_.stop();
    searched_.reset();
    searching_ = false;
    findMessage_.clear();
  }
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
  setMessage("");
}

// Fits the document in front to the current window and has it drawn.
void Session::showFront() {
  waitingSince_.reset(); // it belonged to another page
  if (host::PageView *shown = view()) {
    shown->setMargin(margin_);
    if (windowWidth_ > 0) shown->setWindow(windowWidth_, windowHeight_);
    shown->invalidate();
  }
  if (app_.toolBar() != nullptr) app_.toolBar()->updateStates();
  touch();
}

void Session::closeFront() {
  if (OpenDocument *document = find(front())) close(*document);
}

bool Session::finish(std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  const bool rendered = renderer_.finish(timeout);
  const auto left = deadline - std::chrono::steady_clock::now();
  const bool searched = searcher_.finish(
      std::max(std::chrono::milliseconds(0), std::chrono::duration_cast<std::chrono::milliseconds>(left)));
  return rendered && searched;
}

void Session::closeAll() {
  while (!open_.empty())
    try {
      close(*open_.back());
    } catch (const std::exception &error) {
      std::fprintf(stderr, "tavrel: %s\n", error.what());
    }
}

void Session::bringToFront(size_t index) {
  if (index >= order_.size() || order_[index] == front()) return;
  app_.bringToFront(*order_[index]);
  showFront();
  setMessage("");
}

size_t Session::frontIndex() const {
  return static_cast<size_t>(std::find(order_.begin(), order_.end(), front()) - order_.begin());
}

void Session::setWindow(int width, int height, int margin) {
  windowWidth_ = width;
  windowHeight_ = height;
  margin_ = margin;
  if (host::PageView *shown = view()) {
    shown->setMargin(margin);
    shown->setWindow(width, height);
  }
  touch();
}

// Notes a failure, so that the other steps are done nevertheless.
template <typename Step> bool Session::attempt(const Step &step) {
  try {
    step();
    return true;
  } catch (const std::exception &) {
    if (!failure_) failure_ = std::current_exception();
    return false;
  }
}

void Session::collect() {
  failure_ = nullptr;
  Renderer::Results results = renderer_.collect();
  arrived_.opened.splice(arrived_.opened.end(), results.opened);
  arrived_.rendered.splice(arrived_.rendered.end(), results.rendered);
  arrived_.changed.splice(arrived_.changed.end(), results.changed);
  if (!searched_) searched_ = searcher_.collect();
  if (!arrived_.opened.empty()) { // one per call: plug-ins may take long for each
    std::list<OpenedFile> opened;
    opened.splice(opened.begin(), arrived_.opened, arrived_.opened.begin());
    attempt([&] { takeOpened(opened.front()); });
    if (!arrived_.opened.empty()) wake_();
  }
  std::erase_if(arrived_.changed, [this](uint64_t number) {
    return attempt([&] {
      if (const OpenDocument *document = find(number))
        reportError(host::nameInMessage(document->target.file) + ": has changed; Reload shows it as it is now");
    });
  });
  std::erase_if(arrived_.rendered, [this](RenderedPage &page) { return attempt([&] { takeRendered(page); }); });
  if (searched_ && attempt([this] { takeFound(*searched_); })) searched_.reset();
  attempt([this] { showProgress(); });
  constexpr int atOnce = 3; // further attempts wait for the next wake-up: memory may stay exhausted
  failures_ = failure_ ? failures_ + 1 : 0;
  if (!failure_) return;
  if (failures_ < atOnce) wake_();
  std::rethrow_exception(std::exchange(failure_, nullptr));
}

void Session::showProgress() {
  if (!searching_) return;
  if (const auto looked = searcher_.progress())
    findMessage_ = "Searching, " + std::to_string(*looked) + " of " + std::to_string(pageCount()) + " pages";
  touch();
}

// Done completely or, if memory is exhausted, not at all.
void Session::takeRendered(RenderedPage &page) {
  OpenDocument *document = find(page.key.document);
  if (document == nullptr) return;
  host::PageView &of = *document->document->view;
  const bool shown = page.key.page == of.page();
  std::string error = page.error;
  if (error.empty()) {
    document->errors.erase(page.key.page);
  } else {
    // A white page instead; the window shows the reason on it.
    const host::PageSize size = document->document->model->pageSize(page.key.page);
    page.image.width = std::max(1, static_cast<int>(size.width * page.key.dpi / 72));
    page.image.height = std::max(1, static_cast<int>(size.height * page.key.dpi / 72));
    page.image.pixels.assign(static_cast<size_t>(page.image.width) * static_cast<size_t>(page.image.height),
                             0xFFFFFFFF);
    document->errors[page.key.page] = page.error;
  }
  cache_.insert(page.key, std::move(page.image));
  if (!error.empty() && shown) reportError(std::move(error));
  if (shown && page.key.dpi == of.dpi()) of.invalidate();
}

std::string Session::pageError() const {
  for (const auto &one : open_)
    if (one->document == front())
      if (const auto error = one->errors.find(page()); error != one->errors.end()) return error->second;
  return {};
}

const host::Image *Session::pageImage(host::ViewerDocument &document, int32_t page, double dpi) {
  const OpenDocument *open = find(&document);
  return open == nullptr ? nullptr : cache_.find({open->number, page, dpi});
}

// Requests the page in front; once it is drawn, also the next and the previous one, as far as all of them fit.
void Session::requestPages() {
  const OpenDocument *document = find(front());
  if (document == nullptr) return renderer_.want({});
  std::vector<PageKey> wanted;
  size_t bytes = 0;
  for (const int32_t page : {this->page(), this->page() + 1, this->page() - 1}) {
    if (page < 0 || page >= pageCount() || (page != this->page() && waitingSince_)) continue;
    try {
      const PageKey key{document->number, page, view()->dpiOf(page)};
      const host::PageSize size = document->document->model->pageSize(page);
      bytes += static_cast<size_t>(size.width * size.height * key.dpi * key.dpi / (72 * 72)) * sizeof(uint32_t);
      if (bytes > cache_.bound() && page != this->page()) break;
      if (!cache_.has(key)) wanted.push_back(key);
    } catch (const host::HostError &) {
      continue; // a damaged neighbour: the error is reported when it is in front
    }
  }
  renderer_.want(wanted);
}

// The resolution is compared, too: the same width in pixels does not imply the same image.
bool Session::outlineIsShown() const {
  host::PageView &awaited = *view();
  if (!waitingSince_ || shown_.page != awaited.page() || shown_.dpi != awaited.dpi() ||
      shown_.scrollX != awaited.scrollX() || shown_.scrollY != awaited.scrollY())
    return false;
  const OpenDocument *document = find(front());
  return document == nullptr || !cache_.has({document->number, awaited.page(), awaited.dpi()});
}

bool Session::needsDrawing() const {
  if (app_.calling()) return false;
  if (view() == nullptr) return shown_.document;
  return view()->invalid() && view()->mayDraw() && !outlineIsShown();
}

bool Session::draw() {
  if (!needsDrawing()) return false;
  if (host::PageView *drawn = view()) {
    try {
      drawPage(*drawn);
    } catch (const std::exception &) {
      drawn->invalidate(); // so that it is drawn again
      throw;
    }
  } else {
    waitingSince_.reset();
    shown_ = {};
  }
  return true;
}

void Session::drawPage(host::PageView &drawn) {
  // A plug-in may turn the page and scroll during the drawing; the image shows the state from before.
  Shown shows{
      {}, true, drawn.page(), drawn.dpi(), drawn.pageWidth(), drawn.pageHeight(), drawn.scrollX(), drawn.scrollY()};
  shows.drawing = app_.draw(*front());
  const bool waits = !shows.drawing;
  if (!waits)
    waitingSince_.reset();
  else if (!waitingSince_ || shown_.page != shows.page)
    waitingSince_ = std::chrono::steady_clock::now();
  requestPages();
  if (!waits) {
    paintFound(*shows.drawing);
    reportOffPage(*shows.drawing);
  }
  shown_ = std::move(shows);
  shownDocument_ = find(front())->number;
  withoutHighlights_.reset();
  highlights_.clear();
  showHighlights(); // on the new drawing
  forgetWords(shown_.page);
  if (!waits) app_.toolBar()->updateStates(); // their states depend on the page shown
  touch();
}

// The message is removed when a page without such hits is drawn. Another message is not removed.
void Session::reportOffPage(const host::Drawing &drawing) {
  std::string line;
  if (drawing.offPage > 0)
    line = "Page " + std::to_string(drawing.page + 1) + ": " + std::to_string(drawing.offPage) +
           (drawing.offPage == 1 ? " hit is" : " hits are") + " outside of the page and not marked";
  if (message_ == offPageLine_ && message_ != line) setMessage(line);
  offPageLine_ = line;
}

bool Session::showHighlights() {
  const OpenDocument *document = find(front());
  if (document == nullptr || document->number != shownDocument_ || !shown_.drawing) return false;
  host::PageView &shown = *view();
  if (!shown.mayDraw() || shown.highlights() == highlights_) return false;
  host::Drawing drawing = *shown_.drawing;
  if (withoutHighlights_) drawing.image = *withoutHighlights_;
  shown.paintHighlights(drawing);
  std::vector<host::MarkedArea> highlights = shown.highlights();
  if (!withoutHighlights_) withoutHighlights_ = std::move(shown_.drawing->image);
  if (highlights.empty()) withoutHighlights_.reset();
  shown_.drawing = std::move(drawing);
  highlights_ = std::move(highlights);
  return true;
}

// The words of a page take a hundred times the memory of its text; those of the most recently shown pages are kept.
void Session::forgetWords(int32_t shown) {
  constexpr size_t kept = 8;
  std::vector<int32_t> &withWords = find(front())->withWords;
  std::erase(withWords, shown);
  withWords.push_back(shown);
  if (withWords.size() <= kept) return;
  front()->model->forgetText(withWords.front());
  withWords.erase(withWords.begin());
}

bool Session::press(host::ToolButton &button, uint32_t modifiers) {
  host::ToolBar &bar = *app_.toolBar();
  const bool enabled = bar.test(button);
  if (enabled) {
    struct Held {
      uint32_t &keys;
      ~Held() { keys = 0; }
    } const held{app_.modifierKeys = modifiers};
    bar.press(button);
  }
  bar.updateStates();
  touch();
  return enabled;
}

void Session::setMessage(std::string line) {
  message_ = std::move(line);
  touch();
}

void Session::reportError(std::string line) {
  std::fprintf(stderr, "tavrel: %s\n", line.c_str());
  setMessage(std::move(line));
}

std::string Session::title() const {
  return front() == nullptr ? "Tavrel" : front()->file.filename().string() + " - Tavrel";
}

std::vector<int32_t> Session::markedPages() const {
  std::vector<int32_t> all;
  if (front() == nullptr) return all;
  for (const auto &[extension, pages] : front()->markedPages)
    all.insert(all.end(), pages.begin(), pages.end());
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

} // namespace viewer
