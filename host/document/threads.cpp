// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A backend for each document, and one pool of threads for all.
#include "host/document/threads.h"

#include <utility>

#include "host/document/pool.h"

namespace host {
namespace {

// The owner's side of the desk. What it drops is destroyed after the desk is unlocked.
class Client final : public Backend {
public:
  Client(std::shared_ptr<Pool> pool, const std::filesystem::path &file) : pool_(std::move(pool)) {
    Sources made(1, std::make_shared<Source>());
    made.front()->file = file;
    const std::lock_guard lock(desk_.mutex);
    desk_.sources.splice(desk_.sources.end(), made);
    position_ = std::prev(desk_.sources.end());
  }
  Client(const Client &) = delete;
  Client &operator=(const Client &) = delete;
  ~Client() override {
    Orders waiting, answered;
    const std::lock_guard lock(desk_.mutex);
    source().closed = true;
    waiting = source().waiting.removeAll();
    answered.swap(source().answered);
    desk_.closing.splice(desk_.closing.end(), desk_.sources, position_);
    pool_->enlist();
  }

  void start(Orders order) noexcept override {
    const std::lock_guard lock(desk_.mutex);
    source().waiting.insert(order);
    pool_->enlist();
  }
  void raise(uint64_t id, Urgency urgency) noexcept override {
    const std::lock_guard lock(desk_.mutex);
    source().waiting.raise(id, urgency);
    pool_->enlist(); // there may be a free thread that does nothing less urgent
  }
  void cancel(uint64_t id) noexcept override {
    Orders waiting, answered;
    const std::lock_guard lock(desk_.mutex);
    waiting = source().waiting.remove(id);
    answered = extract(source().answered, id);
  }
  bool underWay(uint64_t id) const noexcept override {
    const std::lock_guard lock(desk_.mutex);
    return pool_->underWay(id);
  }
  Orders take() noexcept override {
    const std::lock_guard lock(desk_.mutex);
    return std::exchange(source().answered, {});
  }
  Orders await(uint64_t id, Time deadline) noexcept override {
    Orders one;
    std::unique_lock lock(desk_.mutex);
    source().waiting.raise(id, Urgency::awaited);
    pool_->enlist();
    desk_.awaited = id;
    desk_.answered.wait_until(lock, deadline, [&] {
      one = extract(source().answered, id);
      return !one.empty() || desk_.ends;
    });
    desk_.awaited = 0;
    return one;
  }

private:
  Source &source() const { return **position_; }

  std::shared_ptr<Pool> pool_;
  Desk &desk_ = pool_->desk;
  Sources::iterator position_;
};

} // namespace

Threads::Threads(std::function<void()> wake) : pool_(std::make_shared<Pool>(std::move(wake))) { pool_->begin(); }

Threads::~Threads() { pool_->end(std::chrono::seconds(5)); }

bool Threads::finish(std::chrono::milliseconds timeout) { return pool_->finish(timeout); }

std::unique_ptr<Backend> Threads::backend(const std::filesystem::path &file) {
  return std::make_unique<Client>(pool_, file);
}

} // namespace host
