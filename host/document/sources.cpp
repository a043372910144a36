// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/sources.h"

#include "host/document/answering.h"

namespace host {
namespace {

bool isBefore(const Order &one, const Order &other) noexcept {
  return one.urgency > other.urgency || (one.urgency == other.urgency && one.id < other.id);
}

} // namespace

int32_t BusyPages::pageOf(const Request &request) noexcept {
  if (const auto *words = std::get_if<WordsRequest>(&request)) return words->page;
  if (const auto *image = std::get_if<ImageRequest>(&request)) return image->page;
  if (const auto *matches = std::get_if<MatchesRequest>(&request)) return matches->page;
  return none;
}

const Order *OrderQueue::next(const BusyPages &busy) const noexcept {
  const auto found = std::find_if(orders_.begin(), orders_.end(),
                                  [&](const Order &order) { return !busy.has(BusyPages::pageOf(order.request)); });
  return found == orders_.end() ? nullptr : &*found;
}

void OrderQueue::insert(Orders &order) noexcept {
  const auto position =
      std::find_if(orders_.begin(), orders_.end(), [&](const Order &other) { return isBefore(order.front(), other); });
  orders_.splice(position, order);
}

void OrderQueue::raise(uint64_t id, Urgency urgency) noexcept {
  Orders one = remove(id);
  if (one.empty()) return;
  one.front().urgency = std::max(one.front().urgency, urgency);
  insert(one);
}

Orders OrderQueue::remove(uint64_t id) noexcept { return extract(orders_, id); }

bool Job::answer(Instance &own) noexcept {
  Order &asked = order.front();
  if (const auto *open = std::get_if<OpenRequest>(&asked.request)) {
    asked.answer = answerOpen(*open, source->pdf);
    return true;
  }
  if (usesOwn && own.pdf == nullptr) own = {source, source->pdf->again()};
  PdfFile *pdf = usesOwn ? own.pdf.get() : source->pdf.get();
  if (pdf == nullptr) {
    own = {};
    return !usesOwn; // nothing is asked of a document that could not be opened
  }
  asked.answer = answerFrom(*pdf, asked.request, source->file);
  if (std::holds_alternative<ImageRequest>(asked.request)) asked.answer.fileChanged = pdf->fileChanged();
  return true;
}

const Order *nextOf(const Source &source) noexcept {
  if (source.threads >= mostThreads - 1) return nullptr;
  return source.used && source.alone ? nullptr : source.waiting.next(source.busy);
}

std::shared_ptr<Source> mostUrgent(const Sources &sources, Urgency least) noexcept {
  std::shared_ptr<Source> best;
  const Order *bestOrder = nullptr;
  for (const std::shared_ptr<Source> &source : sources) {
    const Order *order = nextOf(*source);
    if (order == nullptr || order->urgency < least || (bestOrder != nullptr && !isBefore(*order, *bestOrder))) continue;
    best = source;
    bestOrder = order;
  }
  return best;
}

} // namespace host
