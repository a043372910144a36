// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The requests of a document that wait. Nothing here allocates.
#pragma once

#include <algorithm>

#include "host/document/service.h"

namespace host {

/// The page that a request is about; -1 for no single page.
int32_t pageOf(const Request &request) noexcept;

/// Orders of one document, the next one first.
class OrderQueue {
public:
  /// The next one; null for none.
  const Order *first() const noexcept { return orders_.empty() ? nullptr : &orders_.front(); }
  bool has(uint64_t id) const noexcept {
    return std::any_of(orders_.begin(), orders_.end(), [=](const Order &order) { return order.id == id; });
  }
  /// Takes over one order, after all that are as urgent and were asked for earlier.
  void insert(Orders &order) noexcept;
  void raise(uint64_t id, Urgency urgency) noexcept;
  /// The order, if it is here.
  Orders remove(uint64_t id) noexcept { return extract(orders_, id); }

private:
  Orders orders_;
};

} // namespace host
