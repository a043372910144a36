// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/finding.h"

#include <algorithm>

#include "host/view/painting.h"

namespace viewer {
namespace {

constexpr host::Rgb everyMatch{0xD8, 0xE6, 0xFF}, currentMatch{0x8F, 0xB8, 0xFF};

} // namespace

void Finding::find(const FindRequest &request, bool backwards) {
  const OpenDocument *document = documents_.frontDocument();
  if (document == nullptr || request.text.empty()) return;
  if (!(request == request_)) found_.reset();
  request_ = request;
  const bool here = found_ && found_->document == documents_.front() && found_->page == documents_.page();
  if (here && (backwards ? found_->current > 0 : found_->current + 1 < found_->found.size())) {
    found_->current += backwards ? -1 : 1;
    message_.clear();
    return show({});
  }
  Search search{document->number, document->target.file, document->password,     request.text,
                request.options,  documents_.page(),     documents_.pageCount(), backwards};
  wrapsAtOnce_ = false;
  if (here) {
    search.page += backwards ? -1 : 1;
    wrapsAtOnce_ = search.page < 0 || search.page >= search.pages;
    if (wrapsAtOnce_) search.page = backwards ? search.pages - 1 : 0;
  }
  searching_ = true;
  message_ = "Searching";
  result_.reset();
  searcher_.start(std::move(search));
  changes_.note(allParts);
}

// Done completely or, if memory is exhausted, not at all: allocations come first.
void Finding::take(SearchResult &result) {
  const OpenDocument *document = documents_.find(result.search.document);
  const bool wanted = document != nullptr && document->document == documents_.front();
  std::string message = result.error;
  if (result.error.empty() && result.found.empty())
    message = "\u201C" + result.search.text + "\u201D is not in the document";
  else if (result.error.empty() && (result.wrapped || wrapsAtOnce_))
    message = result.search.backwards ? "Reached the start, continued from the end"
                                      : "Reached the end, continued from the start";
  if (!wanted) message.clear();
  std::string line = message;
  searching_ = false;
  message_ = std::move(message);
  changes_.note(allParts);
  if (!wanted) return;
  if (!result.error.empty()) return status_.report(std::move(line));
  if (result.found.empty()) {
    found_.reset();
    documents_.view()->invalidate();
    return status_.set(std::move(line));
  }
  const size_t count = result.found.size();
  found_ = {documents_.front(), result.page, std::move(result.found), result.search.backwards ? count - 1 : 0};
  show(std::move(line));
}

void Finding::collect() {
  if (!result_) result_ = searcher_.collect();
  if (!result_) return;
  take(*result_);
  result_.reset();
}

void Finding::showProgress() {
  if (!searching_) return;
  if (const auto looked = searcher_.progress())
    message_ = "Searching, " + std::to_string(*looked) + " of " + std::to_string(documents_.pageCount()) + " pages";
  changes_.note(allParts);
}

void Finding::stop() {
  searcher_.stop();
  result_.reset();
  searching_ = false;
  message_.clear();
}

void Finding::end() {
  stop();
  if (found_) {
    found_.reset();
    if (documents_.view() != nullptr) documents_.view()->invalidate();
  }
  status_.set("");
}

void Finding::closes(const OpenDocument &document) {
  searcher_.closeFile();
  if (found_ && found_->document == document.document) found_.reset();
  if (searching_) stop();
}

// Shows the page of the current match and, if the match is not visible, scrolls it to the middle. `line` is shown on
// the status line.
void Finding::show(std::string line) {
  moving_.goToPage(found_->page);
  status_.set(std::move(line));
  PageWindow &shown = *documents_.window();
  const double scale = shown.dpi() / 72, height = documents_.front()->model->pageSize(found_->page).height;
  host::Box all{1e9, -1e9, -1e9, 1e9};
  for (const host::Box &box : found_->found[found_->current].boxes)
    all = {std::min(all.left, box.left), std::max(all.top, box.top), std::max(all.right, box.right),
           std::min(all.bottom, box.bottom)};
  const double left = all.left * scale, right = all.right * scale;
  const double top = (height - all.top) * scale, bottom = (height - all.bottom) * scale;
  const bool visible = left >= shown.scrollX() && right <= shown.scrollX() + moving_.windowWidth() &&
                       top >= shown.scrollY() && bottom <= shown.scrollY() + moving_.windowHeight();
  if (!visible)
    shown.scrollTo(static_cast<int>((left + right - moving_.windowWidth()) / 2),
                   static_cast<int>((top + bottom - moving_.windowHeight()) / 2));
  documents_.view()->invalidate();
}

void Finding::paint(host::Drawing &drawing) const {
  if (!found_ || found_->document != documents_.front() || found_->page != drawing.page) return;
  const host::Scale scale{drawing.dpi / 72, documents_.front()->model->pageSize(drawing.page).height, drawing.x,
                          drawing.y};
  for (size_t i = 0; i < found_->found.size(); ++i)
    host::paintMarks(drawing.image, found_->found[i].boxes, scale, i == found_->current ? currentMatch : everyMatch);
}

} // namespace viewer
