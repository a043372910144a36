// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The requests of a document that wait. Nothing here allocates.
#pragma once

#include <algorithm>

#include "host/document/service.h"

namespace host {

/// The page that a request is about; for no single page a negative number, another one for each kind of request: what
/// becomes of one kind says nothing about the others.
int32_t pageOf(const Request &request) noexcept;

/// What a process is for. Images come first: a document is opened by the first kind that there is.
enum class ProcessKind { images, words, structure };
inline constexpr size_t processKinds = 3;
/// The kind that answers such a request; opening a document is not one of them.
ProcessKind kindOf(const Request &request) noexcept;

/// Orders of one document, the next one first.
class OrderQueue {
public:
  /// The next one that is needed; null for none.
  const Order *first() const noexcept {
    return orders_.empty() || orders_.front().urgency == Urgency::kept ? nullptr : &orders_.front();
  }
  /// Null if it is not here.
  const Order *find(uint64_t id) const noexcept {
    const auto found = std::find_if(orders_.begin(), orders_.end(), [=](const Order &order) { return order.id == id; });
    return found == orders_.end() ? nullptr : &*found;
  }
  /// Takes over one order, after all that are as urgent and were asked for earlier.
  void insert(Orders &order) noexcept;
  /// Does nothing if the order is not here.
  void setUrgency(uint64_t id, Urgency urgency) noexcept;
  /// The order, if it is here.
  Orders remove(uint64_t id) noexcept { return extract(orders_, id); }

private:
  Orders orders_;
};

} // namespace host
