// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/finding.h"

#include <algorithm>

#include "host/view/painting.h"

namespace viewer {
namespace {

constexpr host::Rgb everyMatch{0xD8, 0xE6, 0xFF}, currentMatch{0x8F, 0xB8, 0xFF};

// After what has not been found: pages that could not be read may have it.
std::string readingOf(const std::vector<int32_t> &unread) {
  if (unread.empty()) return {};
  return "; " +
         (unread.size() == 1 ? "page " + std::to_string(int64_t{unread.front()} + 1)
                             : std::to_string(unread.size()) + " pages") +
         " could not be read";
}

// Where to scroll for a stretch to be in the middle of the window, wherever a damaged page has it.
int middle(double from, double to, int window) {
  constexpr double farthest = 1e9;
  return static_cast<int>(std::clamp((from + to - window) / 2, -farthest, farthest));
}

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
  const int32_t pages = documents_.pageCount();
  int32_t first = documents_.page();
  wrapsAtOnce_ = false;
  if (here) {
    first += backwards ? -1 : 1;
    wrapsAtOnce_ = first < 0 || first >= pages;
    if (wrapsAtOnce_) first = backwards ? pages - 1 : 0;
  }
  stop();
  search_.emplace(document->service, request_, first, pages, backwards);
  searchedDocument_ = document->number;
  message_ = "Searching";
  changes_.note(allParts);
}

void Finding::collect() {
  if (!search_) return;
  if (Search::Result *result = search_->proceed()) return take(*result);
  if (search_->searched() > 0)
    message_ =
        "Searching, " + std::to_string(search_->searched()) + " of " + std::to_string(search_->pages()) + " pages";
  changes_.note(allParts);
}

// Ends the search, completely or, if memory is exhausted, not at all: allocations come first.
void Finding::take(Search::Result &result) {
  const OpenDocument *document = documents_.find(searchedDocument_);
  const bool wanted = document != nullptr && document->document == documents_.front();
  const bool backwards = search_->backwards();
  std::string message = result.error;
  if (result.error.empty() && result.found.empty())
    message = "\u201C" + search_->request().text + "\u201D is not in the document" + readingOf(result.unread);
  else if (result.error.empty() && (result.wrapped || wrapsAtOnce_))
    message = backwards ? "Reached the start, continued from the end" : "Reached the end, continued from the start";
  if (!wanted) message.clear();
  std::string line = message;
  Search::Result last = std::move(result);
  search_.reset();
  message_ = std::move(message);
  changes_.note(allParts);
  if (!wanted) return;
  if (!last.error.empty()) return status_.report(std::move(line));
  if (last.found.empty()) {
    found_.reset();
    documents_.view()->invalidate();
    return status_.set(std::move(line));
  }
  const size_t current = backwards ? last.found.size() - 1 : 0;
  found_ = {documents_.front(), last.page, std::move(last.found), current};
  show(std::move(line));
}

void Finding::stop() {
  search_.reset();
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
  if (found_ && found_->document == document.document) found_.reset();
  if (search_ && searchedDocument_ == document.number) stop();
}

std::optional<CurrentMatch> Finding::current() const {
  if (!found_ || found_->document != documents_.front()) return std::nullopt;
  const double scale = documents_.window()->dpi() / 72;
  const double height = documents_.front()->model->pageSize(found_->page).height;
  host::Box all{1e9, -1e9, -1e9, 1e9};
  for (const host::Box &box : found_->found[found_->current].boxes)
    all = {std::min(all.left, box.left), std::max(all.top, box.top), std::max(all.right, box.right),
           std::min(all.bottom, box.bottom)};
  return CurrentMatch{found_->page,      found_->current,
                      all.left * scale,  (height - all.top) * scale,
                      all.right * scale, (height - all.bottom) * scale};
}

// Shows the page of the current match and, if the match is not visible, scrolls it to the middle. `line` is shown on
// the status line.
void Finding::show(std::string line) {
  moving_.goToPage(found_->page);
  status_.set(std::move(line));
  PageWindow &shown = *documents_.window();
  const CurrentMatch match = *current();
  const bool visible = match.left >= shown.scrollX() && match.right <= shown.scrollX() + moving_.windowWidth() &&
                       match.top >= shown.scrollY() && match.bottom <= shown.scrollY() + moving_.windowHeight();
  if (!visible)
    shown.scrollTo(middle(match.left, match.right, moving_.windowWidth()),
                   middle(match.top, match.bottom, moving_.windowHeight()));
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
