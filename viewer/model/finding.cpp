// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog's work: steps through the matches on a page, has the searcher look for the next page that has any,
// and marks them. Independent of what plug-ins mark.
#include <algorithm>

#include "host/view/painting.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

constexpr host::Rgb everyMatch{0xD8, 0xE6, 0xFF}, currentMatch{0x8F, 0xB8, 0xFF};

} // namespace

void Session::find(const FindRequest &request, bool backwards) {
  OpenDocument *document = find(front());
  if (document == nullptr || request.text.empty()) return;
  if (!(request == request_)) found_.reset();
  request_ = request;
  const bool here = found_ && found_->document == front() && found_->page == page();
  if (here && (backwards ? found_->current > 0 : found_->current + 1 < found_->found.size())) {
    found_->current += backwards ? -1 : 1;
    findMessage_.clear();
    return showFound({});
  }
  Search search{document->number, document->target.file, document->password, request.text, request.options,
                page(),           pageCount(),           backwards};
  wrapsAtOnce_ = false;
  if (here) {
    search.page += backwards ? -1 : 1;
    wrapsAtOnce_ = search.page < 0 || search.page >= search.pages;
    if (wrapsAtOnce_) search.page = backwards ? search.pages - 1 : 0;
  }
  searching_ = true;
  findMessage_ = "Searching";
  searched_.reset();
  searcher_.start(std::move(search));
  touch();
}

// Done completely or, if memory is exhausted, not at all: allocations come first.
void Session::takeFound(SearchResult &result) {
  const OpenDocument *document = find(result.search.document);
  const bool wanted = document != nullptr && document->document == front();
  std::string message = result.error;
  if (result.error.empty() && result.found.empty())
    message = "\u201C" + result.search.text + "\u201D is not in the document";
  else if (result.error.empty() && (result.wrapped || wrapsAtOnce_))
    message = result.search.backwards ? "Reached the start, continued from the end"
                                      : "Reached the end, continued from the start";
  if (!wanted) message.clear();
  std::string line = message;
  searching_ = false;
  findMessage_ = std::move(message);
  touch();
  if (!wanted) return;
  if (!result.error.empty()) return reportError(std::move(line));
  if (result.found.empty()) {
    found_.reset();
    view()->invalidate();
    return setMessage(std::move(line));
  }
  const size_t count = result.found.size();
  found_ = {front(), result.page, std::move(result.found), result.search.backwards ? count - 1 : 0};
  showFound(std::move(line));
}

void Session::endFinding() {
  searcher_.stop();
  searched_.reset();
  searching_ = false;
  findMessage_.clear();
  if (found_) {
    found_.reset();
    if (view() != nullptr) view()->invalidate();
  }
  setMessage("");
}

// Shows the page of the current match and, if the match is not visible, scrolls it to the middle. `line` is shown on
// the status line.
void Session::showFound(std::string line) {
  goToPage(found_->page);
  setMessage(std::move(line));
  host::PageView &shown = *view();
  const double scale = shown.dpi() / 72, height = front()->model->pageSize(found_->page).height;
  host::Box all{1e9, -1e9, -1e9, 1e9};
  for (const host::Box &box : found_->found[found_->current].boxes)
    all = {std::min(all.left, box.left), std::max(all.top, box.top), std::max(all.right, box.right),
           std::min(all.bottom, box.bottom)};
  const double left = all.left * scale, right = all.right * scale;
  const double top = (height - all.top) * scale, bottom = (height - all.bottom) * scale;
  const bool visible = left >= shown.scrollX() && right <= shown.scrollX() + windowWidth_ && top >= shown.scrollY() &&
                       bottom <= shown.scrollY() + windowHeight_;
  if (!visible)
    shown.scrollTo(static_cast<int>((left + right - windowWidth_) / 2),
                   static_cast<int>((top + bottom - windowHeight_) / 2));
  shown.invalidate();
}

void Session::paintFound(host::Drawing &drawing) const {
  if (!found_ || found_->document != front() || found_->page != drawing.page) return;
  const host::Scale scale{drawing.dpi / 72, front()->model->pageSize(drawing.page).height, drawing.x, drawing.y};
  for (size_t i = 0; i < found_->found.size(); ++i)
    host::paintMarks(drawing.image, found_->found[i].boxes, scale, i == found_->current ? currentMatch : everyMatch);
}

} // namespace viewer
