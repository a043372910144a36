// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Asks for a few pages at a time, so that those who answer need not wait for the window. The answers are used in the
// order of the pages.
#include "viewer/model/search.h"

#include <utility>

namespace viewer {

Search::Search(std::shared_ptr<host::Service> service, FindRequest request, int32_t first, int32_t pages,
               bool backwards)
    : service_(std::move(service)), request_(std::move(request)), first_(first), pages_(pages), backwards_(backwards) {
  ask();
}

void Search::ask() {
  constexpr size_t atOnce = 4;
  for (; underWay_.size() < atOnce && asked_ < pages_; ++asked_) {
    const int64_t distance = backwards_ ? int64_t{pages_} - asked_ : asked_;
    std::list<Page> next(1);
    Page &page = next.front();
    page.number = static_cast<int32_t>((first_ + distance) % pages_);
    page.ticket =
        service_->ask(host::MatchesRequest{page.number, request_.text, request_.options}, host::Urgency::searched,
                      [&page](host::Answer &answer) { page.answer = std::move(answer); });
    underWay_.splice(underWay_.end(), next);
  }
}

// True if the page ends the search.
bool Search::take(Page &page) {
  Result result{page.number, {}, backwards_ ? page.number > first_ : page.number < first_, {}, {}};
  if (auto *failure = std::get_if<host::Failure>(&page.answer->value)) {
    const bool isOfPage = failure->code == tavrel::errDocument || failure->code == tavrel::errBadPage;
    if (isOfPage) // others may have the text
      unread_.push_back(page.number);
    else
      result.error = std::move(failure->line);
  } else {
    result.found = std::move(std::get<host::PageMatches>(page.answer->value).found);
  }
  if (result.found.empty() && result.error.empty() && searched_ + 1 < pages_) return false;
  result.unread = std::move(unread_); // nothing throws any more
  result_ = std::move(result);
  return true;
}

Search::Result *Search::proceed() {
  while (!result_ && !underWay_.empty() && underWay_.front().answer) {
    if (take(underWay_.front())) continue;
    underWay_.pop_front();
    ++searched_;
  }
  if (result_) return &*result_;
  ask();
  return nullptr;
}

} // namespace viewer
