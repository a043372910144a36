// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The open documents of the threads, and the requests that wait for one. Nothing here allocates once an order is made.
#pragma once

#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>

#include "host/document/pdf.h"
#include "host/document/service.h"

namespace host {

/// Orders of one document, the next one first.
class OrderQueue {
public:
  bool empty() const { return orders_.empty(); }
  const Order &front() const { return orders_.front(); }
  Orders takeFront() noexcept;
  /// Takes over one order, after all that are as urgent and were asked for earlier.
  void insert(Orders &order) noexcept;
  void raise(uint64_t id, Urgency urgency) noexcept;
  /// The order, if it is here.
  Orders remove(uint64_t id) noexcept;
  Orders removeAll() noexcept { return std::move(orders_); }

private:
  Orders orders_;
};

/// The order with that id, out of the list; none if it is not there.
Orders extract(Orders &from, uint64_t id) noexcept;

/// A document.
struct Source {
  std::filesystem::path file = {};
  std::unique_ptr<PdfFile> pdf = {}; ///< set by the thread that opens it, before anything else is asked
  OrderQueue waiting = {};
  Orders answered = {};
  bool used = false;   ///< a thread is using `pdf`
  bool alone = false;  ///< while it does, there can be no second instance
  bool closed = false; ///< the answers under way are for nobody
};
using Sources = std::list<std::shared_ptr<Source>>;

/// A second instance of a document, which a thread keeps as long as it uses it without a break.
struct Instance {
  std::shared_ptr<Source> source;
  std::unique_ptr<PdfFile> pdf;
};

/// An order that a thread has taken.
struct Job {
  std::shared_ptr<Source> source;
  bool usesOwn; ///< the thread's instance, because another thread uses the document's
  Orders order = {};

  /// Finds the answer. False if the thread has no instance and cannot open one.
  bool answer(Instance &own) noexcept;
};

/// The document of the most urgent order that a thread may begin; null for none.
std::shared_ptr<Source> mostUrgent(const Sources &sources) noexcept;

/// What the owner and the threads share.
struct Desk {
  std::mutex mutex; ///< protects everything below
  std::condition_variable answered;
  Sources sources, closing;
  uint64_t awaited = 0; ///< the order that the owner is waiting for, or 0
  bool ends = false;    ///< nothing is begun any more
};

} // namespace host
