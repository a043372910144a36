// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The searching thread. It keeps the last searched file open.
#include "viewer/model/searcher.h"

#include <utility>

#include "viewer/model/errorline.h"

namespace viewer {

Searcher::Searcher(std::function<void()> wake) : wake_(std::move(wake)), thread_([this] { run(); }) {}

Searcher::~Searcher() {
  finish(std::chrono::milliseconds(0));
  thread_.join();
}

bool Searcher::finish(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  ends_ = true;
  work_.notify_one();
  return end_.wait_for(lock, timeout, [this] { return ended_; });
}

void Searcher::start(Search next) {
  const std::lock_guard lock(mutex_);
  next_ = std::move(next);
  result_.reset();
  stops_ = false;
  progress_ = 0;
  work_.notify_one();
}

void Searcher::stop() {
  const std::lock_guard lock(mutex_);
  next_.reset();
  result_.reset();
  progress_.reset();
  stops_ = true;
}

void Searcher::closeFile() {
  const std::lock_guard lock(mutex_);
  closes_ = true;
  work_.notify_one();
}

std::optional<SearchResult> Searcher::collect() {
  const std::lock_guard lock(mutex_);
  return std::exchange(result_, std::nullopt);
}

std::optional<int32_t> Searcher::progress() {
  const std::lock_guard lock(mutex_);
  return progress_;
}

void Searcher::run() {
  std::unique_lock lock(mutex_);
  while (!ends_) {
    if (std::exchange(closes_, false)) pdf_.reset();
    if (!next_) {
      work_.wait(lock);
      continue;
    }
    Search search = std::move(*next_);
    next_.reset();
    lock.unlock();
    SearchResult result = look(std::move(search));
    lock.lock();
    if (next_ || stops_ || ends_) continue; // the result is obsolete
    result_ = std::move(result);
    progress_.reset();
    lock.unlock();
    wake_();
    lock.lock();
  }
  ended_ = true;
  end_.notify_one();
}

bool Searcher::cancelled() {
  const std::lock_guard lock(mutex_);
  return next_.has_value() || stops_ || ends_;
}

SearchResult Searcher::look(Search asked) {
  SearchResult result{std::move(asked), 0, {}, false, {}}; // made first: on an error there may be no memory for it
  const Search &search = result.search;
  result.page = search.page;
  try {
    const host::Finder finder(search.text, search.options);
    if (pdf_ == nullptr || document_ != search.document) {
      pdf_ = host::PdfFile::open(search.file, search.password);
      document_ = search.document;
    }
    int32_t page = search.page;
    for (int32_t searched = 0; searched < search.pages && !cancelled(); ++searched) {
      try {
        result.found = finder.find(pdf_->text(page));
      } catch (const host::HostError &) {
        result.found.clear(); // a damaged page has no text; other pages may
      }
      result.page = page;
      if (!result.found.empty()) return result;
      page += search.backwards ? -1 : 1;
      if (page < 0 || page >= search.pages) {
        page = page < 0 ? search.pages - 1 : 0;
        result.wrapped = true;
      }
      {
        const std::lock_guard lock(mutex_);
        if (!next_ && !stops_) progress_ = searched + 1;
      }
      wake_();
    }
  } catch (const std::bad_alloc &) {
    result.found.clear();
    result.error = outOfMemory;
  } catch (const std::exception &error) {
    result.error = errorLine([&] { return std::string(error.what()); });
  }
  return result;
}

} // namespace viewer
