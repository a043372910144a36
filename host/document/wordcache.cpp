// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A page's words and their order are asked for together, once a document's order has been used.
#include "host/document/wordcache.h"

#include <utility>

namespace host {

const PageText &WordCache::text(int32_t page) {
  used_ = true;
  Page &found = pages_[page];
  const Time deadline = limit_.deadline();
  while (!found.text)
    fetch(page, found, deadline);
  return *found.text;
}

const std::vector<uint32_t> &WordCache::order(int32_t page) {
  used_ = orderUsed_ = true;
  Page &found = pages_[page];
  const Time deadline = limit_.deadline();
  while (!found.order)
    fetch(page, found, deadline);
  return *found.order;
}

void WordCache::expect(int32_t page, Urgency urgency) {
  if (!used_) return;
  Page &found = pages_[page];
  if (urgency == Urgency::shown)
    for (auto &[number, other] : pages_)
      if (number != page && other.urgency == Urgency::shown) setUrgency(other, Urgency::ahead);
  if (found.ticket)
    setUrgency(found, std::max(found.urgency, urgency));
  else if (!found.text || (orderUsed_ && !found.order))
    ask(page, found, urgency);
}

void WordCache::ask(int32_t number, Page &page, Urgency urgency) {
  page.failure.reset();
  page.urgency = urgency;
  page.ticket = service_.ask(WordsRequest{number, orderUsed_}, urgency,
                             [this, number, order = orderUsed_](Answer &answer) { take(number, order, answer); });
}

void WordCache::setUrgency(Page &page, Urgency urgency) {
  if (page.urgency == urgency) return;
  page.urgency = urgency;
  page.ticket.setUrgency(urgency);
}

// Waits for the page's request, which is made if there is none.
void WordCache::fetch(int32_t number, Page &page, Time deadline) {
  if (limit_.missing != nullptr) {
    if (page.failure && !page.ticket) raise(*page.failure);
    if (!page.ticket) ask(number, page, Urgency::searched);
    limit_.missing->push_back(number);
    throw notThere(service_, number);
  }
  if (page.late && page.ticket) throw notThere(service_, number);
  if (!page.ticket) ask(number, page, Urgency::shown);
  page.late = !service_.await(page.ticket, deadline);
  if (page.late) {
    setUrgency(page, Urgency::ahead); // a page that takes so long goes after all others
    throw notThere(service_, number);
  }
  if (page.failure) raise(*page.failure);
}

void WordCache::take(int32_t number, bool order, Answer &answer) {
  Page &page = pages_.at(number);
  auto *got = std::get_if<PageWords>(&answer.value);
  if (got == nullptr)
    page.failure = std::move(std::get<Failure>(answer.value));
  else if (page.text && page.text->words.size() != got->text.words.size()) // of another file
    page.failure = Failure{tavrel::errDocument, notThere(service_, number).what()};
  else {
    if (!page.text) page.text = std::move(got->text); // else there may be references to it
    if (order) page.order = std::move(got->order);
  }
  page.ticket.reset();
  if (std::exchange(page.late, false) && !page.failure && late_) late_(number);
}

} // namespace host
