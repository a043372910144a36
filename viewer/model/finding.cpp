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
  Search search{document->number, backwards, false, documents_.page(), documents_.pageCount()};
  if (here) {
    search.first += backwards ? -1 : 1;
    search.wrapsAtOnce = search.first < 0 || search.first >= search.pages;
    if (search.wrapsAtOnce) search.first = backwards ? search.pages - 1 : 0;
  }
  search_ = std::move(search);
  message_ = "Searching";
  changes_.note(allParts);
  try {
    ask();
  } catch (const std::exception &) {
    stop();
    throw;
  }
}

// Asks for a few pages at a time, so that none of those who search waits for this thread. A search may end before they
// are answered.
void Finding::ask() {
  constexpr size_t atOnce = 4;
  const OpenDocument *document = documents_.find(search_->document);
  for (; document != nullptr && search_->looked.size() < atOnce && search_->asked < search_->pages; ++search_->asked) {
    const int64_t distance = search_->backwards ? int64_t{search_->pages} - search_->asked : search_->asked;
    std::list<Looked> next(1);
    Looked &looked = next.front();
    looked.page = static_cast<int32_t>((search_->first + distance) % search_->pages);
    looked.ticket = document->service->ask(host::MatchesRequest{looked.page, request_.text, request_.options},
                                           host::Urgency::searched,
                                           [&looked](host::Answer &answer) { looked.answer = std::move(answer); });
    search_->looked.splice(search_->looked.end(), next);
  }
}

void Finding::collect() {
  if (!search_) return;
  while (!search_->looked.empty() && search_->looked.front().answer) {
    Looked &looked = search_->looked.front();
    const auto *failure = std::get_if<host::Failure>(&looked.answer->value);
    // A page that is damaged has no text; other pages may.
    const bool isSkipped = failure != nullptr
                               ? failure->code == tavrel::errDocument || failure->code == tavrel::errBadPage
                               : std::get<host::PageMatches>(looked.answer->value).found.empty();
    const bool isLast = search_->searched + 1 == search_->pages;
    if (!isSkipped || isLast) return take(looked, isSkipped);
    search_->looked.pop_front();
    ++search_->searched;
  }
  ask();
  if (search_->searched > 0)
    message_ = "Searching, " + std::to_string(search_->searched) + " of " + std::to_string(search_->pages) + " pages";
  changes_.note(allParts);
}

// Ends the search, completely or, if memory is exhausted, not at all: allocations come first. `nowhere` is the end of a
// search without matches.
void Finding::take(Looked &last, bool nowhere) {
  const OpenDocument *document = documents_.find(search_->document);
  const bool wanted = document != nullptr && document->document == documents_.front();
  const bool backwards = search_->backwards;
  const bool wraps = search_->wrapsAtOnce || (backwards ? last.page > search_->first : last.page < search_->first);
  const auto *failure = nowhere ? nullptr : std::get_if<host::Failure>(&last.answer->value);
  std::string message;
  if (!wanted)
    message.clear();
  else if (failure != nullptr)
    message = failure->line;
  else if (nowhere)
    message = "\u201C" + request_.text + "\u201D is not in the document";
  else if (wraps)
    message = backwards ? "Reached the start, continued from the end" : "Reached the end, continued from the start";
  std::string line = message;
  const bool failed = failure != nullptr;
  FoundOnPage found{documents_.front(), last.page, {}, 0};
  if (!failed && !nowhere) found.found = std::move(std::get<host::PageMatches>(last.answer->value).found);
  search_.reset(); // with its last page
  message_ = std::move(message);
  changes_.note(allParts);
  if (!wanted) return;
  if (failed) return status_.report(std::move(line));
  if (nowhere) {
    found_.reset();
    documents_.view()->invalidate();
    return status_.set(std::move(line));
  }
  found.current = backwards ? found.found.size() - 1 : 0;
  found_ = std::move(found);
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
  if (search_) stop();
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
