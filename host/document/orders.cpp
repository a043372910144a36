// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/orders.h"

namespace host {
namespace {

bool isBefore(const Order &one, const Order &other) noexcept {
  return one.urgency > other.urgency || (one.urgency == other.urgency && one.id < other.id);
}

} // namespace

int32_t pageOf(const Request &request) noexcept {
  if (const auto *words = std::get_if<WordsRequest>(&request)) return words->page;
  if (const auto *image = std::get_if<ImageRequest>(&request)) return image->page;
  if (const auto *matches = std::get_if<MatchesRequest>(&request)) return matches->page;
  if (const auto *plain = std::get_if<PlainWordsRequest>(&request)) return plain->page;
  if (const auto *structure = std::get_if<PageStructureRequest>(&request)) return structure->page;
  return -1 - static_cast<int32_t>(request.index());
}

ProcessKind kindOf(const Request &request) noexcept {
  if (std::holds_alternative<ImageRequest>(request)) return ProcessKind::images;
  const bool isStructure = std::holds_alternative<StructureRequest>(request) ||
                           std::holds_alternative<PageStructureRequest>(request) ||
                           std::holds_alternative<AttachmentRequest>(request);
  return isStructure ? ProcessKind::structure : ProcessKind::words;
}

void OrderQueue::insert(Orders &order) noexcept {
  const auto position =
      std::find_if(orders_.begin(), orders_.end(), [&](const Order &other) { return isBefore(order.front(), other); });
  orders_.splice(position, order);
}

void OrderQueue::setUrgency(uint64_t id, Urgency urgency) noexcept {
  Orders one = remove(id);
  if (one.empty()) return;
  one.front().urgency = urgency;
  insert(one);
}

} // namespace host
