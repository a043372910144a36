// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The first thread does everything, as long as no request takes longer than `busyLimit`; so mostly one instance of a
// document is open, and its memory is that of one thread.
#include "host/document/pool.h"

#include <algorithm>
#include <utility>

namespace host {

void Pool::begin() {
  const std::lock_guard lock(desk.mutex);
  addThread();
}

void Pool::addThread() {
  threads_[started_] = std::thread([pool = shared_from_this(), &worker = workers_[started_]] { pool->run(worker); });
  ++started_;
}

// Wakes a thread for an order: the first one, or while that is busy another one, which waits until it may step in.
void Pool::enlist() noexcept {
  if (workers_[0].idle) return first_.notify_one();
  if (std::any_of(workers_.begin(), workers_.end(), [](const Worker &worker) { return worker.idle; }))
    return others_.notify_one();
  if (started_ == mostThreads || desk.ends) return;
  try {
    addThread();
  } catch (const std::exception &) { // those that there are take it
  }
}

void Pool::run(Worker &worker) {
  Instance own;
  std::unique_lock lock(desk.mutex);
  while (!desk.ends) {
    if (!desk.closing.empty()) {
      Sources one;
      one.splice(one.begin(), desk.closing, desk.closing.begin());
      lock.unlock();
      one.clear(); // takes long for a large document
      lock.lock();
      continue;
    }
    std::shared_ptr<Source> source = mostUrgent(desk.sources, least());
    const Time from = freeFrom();
    const bool waits = source == nullptr || from > std::chrono::steady_clock::now();
    if (own.pdf != nullptr && (waits || source != own.source || !source->used)) {
      lock.unlock();
      own = {};
      source.reset();
      lock.lock();
    } else if (waits) {
      const bool forOrders = source == nullptr;
      source.reset();
      wait(lock, worker, forOrders, from);
    } else {
      Job job{std::move(source), false};
      job.usesOwn = job.source->used;
      take(worker, job);
      lock.unlock();
      const bool answered = job.answer(own);
      lock.lock();
      put(lock, worker, std::move(job), answered);
      worker.since.reset();
    }
  }
  ++ended_;
  end_.notify_one();
}

void Pool::wait(std::unique_lock<std::mutex> &lock, Worker &worker, bool forOrders, Time until) {
  std::condition_variable &work = &worker == workers_.data() ? first_ : others_;
  worker.idle = true;
  if (forOrders)
    work.wait(lock);
  else
    work.wait_until(lock, until);
  worker.idle = false;
}

// From when on a thread may begin something: only while the others have been busy for longer than `busyLimit`.
Time Pool::freeFrom() const noexcept {
  Time from = {};
  for (const Worker &worker : workers_)
    if (worker.since) from = std::max(from, *worker.since + busyLimit);
  return from;
}

// How urgent an order has to be for a thread that is free: what is asked ahead leaves one thread to the others.
Urgency Pool::least() const noexcept {
  const auto busy = std::count_if(workers_.begin(), workers_.end(), [](const Worker &one) { return one.since; });
  return static_cast<size_t>(busy) + 1 < mostThreads ? Urgency::ahead : Urgency::searched;
}

void Pool::take(Worker &worker, Job &job) noexcept {
  Source &source = *job.source;
  job.order = source.waiting.remove(nextOf(source)->id);
  ++source.threads;
  source.busy.add(BusyPages::pageOf(job.order.front().request));
  if (!job.usesOwn) {
    source.used = true;
    source.alone = std::holds_alternative<OpenRequest>(job.order.front().request); // there is no instance yet
  }
  worker.order = job.order.front().id;
  worker.since = std::chrono::steady_clock::now();
  if (mostUrgent(desk.sources, least()) != nullptr) enlist(); // for the case that this one takes long
}

void Pool::put(std::unique_lock<std::mutex> &lock, Worker &worker, Job job, bool answered) {
  Source &source = *job.source;
  worker.order.reset();
  --source.threads;
  source.busy.remove(BusyPages::pageOf(job.order.front().request));
  if (!job.usesOwn) source.used = source.alone = false;
  if (!answered && !source.closed) { // by the one who uses the instance that there is
    source.alone = source.used;
    return source.waiting.insert(job.order);
  }
  const bool awaited = desk.awaited == job.order.front().id, wakes = !source.closed && !awaited;
  if (awaited) desk.answered.notify_one();
  if (!source.closed) source.answered.splice(source.answered.end(), job.order);
  lock.unlock();
  if (wakes) wake_.call();
  job = {}; // may be the last one that uses a closed document
  lock.lock();
}

bool Pool::finish(std::chrono::milliseconds timeout) {
  std::unique_lock lock(desk.mutex);
  desk.ends = true;
  first_.notify_all();
  others_.notify_all();
  return end_.wait_for(lock, timeout, [this] { return ended_ == started_; });
}

void Pool::end(std::chrono::milliseconds timeout) {
  const bool finished = finish(timeout);
  wake_.end();
  for (size_t i = 0; i < started_; ++i)
    finished ? threads_[i].join() : threads_[i].detach();
}

bool Pool::underWay(uint64_t id) const noexcept {
  return std::any_of(workers_.begin(), workers_.end(), [=](const Worker &worker) { return worker.order == id; });
}

} // namespace host
