// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The open documents of the threads, and the requests that wait for one. Nothing here allocates once an order is made.
#pragma once

#include <algorithm>
#include <array>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>

#include "host/document/pdf.h"
#include "host/document/service.h"

namespace host {

/// A page that never ends keeps its thread. So no document gets the last thread that is free, and nothing that is only
/// asked ahead does: as many such pages of one document stop that document alone.
inline constexpr size_t mostThreads = 4;

/// The pages that threads are working on. A page that takes long occupies one thread: what else is asked about it
/// waits.
class BusyPages {
public:
  BusyPages() { pages_.fill(none); }
  static int32_t pageOf(const Request &request) noexcept; ///< `none` where it is about no single page
  bool has(int32_t page) const noexcept { return page != none && std::count(pages_.begin(), pages_.end(), page) > 0; }
  void add(int32_t page) noexcept { *std::find(pages_.begin(), pages_.end(), none) = page; }
  void remove(int32_t page) noexcept { *std::find(pages_.begin(), pages_.end(), page) = none; }

private:
  static constexpr int32_t none = -1;
  std::array<int32_t, mostThreads + 1> pages_; ///< the last one is always `none`
};

/// Orders of one document, the next one first.
class OrderQueue {
public:
  /// The first one whose page is not busy; null for none.
  const Order *next(const BusyPages &busy) const noexcept;
  /// The next one; null for none.
  const Order *first() const noexcept { return orders_.empty() ? nullptr : &orders_.front(); }
  bool has(uint64_t id) const noexcept {
    return std::any_of(orders_.begin(), orders_.end(), [=](const Order &order) { return order.id == id; });
  }
  /// Takes over one order, after all that are as urgent and were asked for earlier.
  void insert(Orders &order) noexcept;
  void raise(uint64_t id, Urgency urgency) noexcept;
  /// The order, if it is here.
  Orders remove(uint64_t id) noexcept;
  Orders removeAll() noexcept { return std::move(orders_); }

private:
  Orders orders_;
};

/// A document.
struct Source {
  std::filesystem::path file = {};
  std::unique_ptr<PdfFile> pdf = {}; ///< set by the thread that opens it, before anything else is asked
  OrderQueue waiting = {};
  BusyPages busy = {};
  Orders answered = {};
  size_t threads = 0;  ///< that are working on it
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

/// The order of a document that a thread may begin; null for none.
const Order *nextOf(const Source &source) noexcept;

/// The document of the most urgent such order that is at least so urgent; null for none.
std::shared_ptr<Source> mostUrgent(const Sources &sources, Urgency least) noexcept;

/// What the owner and the threads share.
struct Desk {
  std::mutex mutex; ///< protects everything below
  std::condition_variable answered;
  Sources sources, closing;
  uint64_t awaited = 0; ///< the order that the owner is waiting for, or 0
  bool ends = false;    ///< nothing is begun any more
};

} // namespace host
