// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rendering thread. It opens each document's file separately, because the PDF library needs one instance per
// thread.
#include "viewer/model/renderer.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "viewer/model/errorline.h"

namespace viewer {
namespace {

// Whether a file is still the one that was opened: equal identities.
struct Identity {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  time_t seconds = 0;
  long nanoseconds = 0;
  bool operator==(const Identity &) const = default;
};

std::optional<Identity> identityOf(const std::filesystem::path &file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

} // namespace

struct Renderer::Source {
  std::filesystem::path file;
  std::list<uint64_t> note; ///< the document's number; moved to the results when the file has changed
  std::unique_ptr<host::PdfFile> pdf = nullptr;
  std::optional<Identity> identity = std::nullopt;
};

Renderer::Renderer(std::function<void()> wake) : wake_(std::move(wake)), thread_([this] { run(); }) {}

Renderer::~Renderer() {
  finish(std::chrono::milliseconds(0));
  thread_.join();
}

bool Renderer::finish(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  ends_ = true;
  work_.notify_one();
  return end_.wait_for(lock, timeout, [this] { return ended_; });
}

void Renderer::open(uint64_t document, const std::filesystem::path &file, const std::string &password) {
  std::list<Order> order(1);
  order.front().password = password;
  order.front().source.emplace(document, std::make_unique<Source>(Source{file, {document}}));
  order.front().answer.emplace_back().document = document;
  const std::lock_guard lock(mutex_);
  closed_.reserve(sources_.size() + orders_.size() + 2); // including this one and the one being opened
  orders_.splice(orders_.end(), order);
  work_.notify_one();
}

void Renderer::close(uint64_t document) {
  const std::lock_guard lock(mutex_);
  const bool isOpen = sources_.contains(document) || opening_ == document;
  if (isOpen && std::find(closed_.begin(), closed_.end(), document) == closed_.end()) closed_.push_back(document);
  std::erase_if(orders_, [=](const Order &order) { return order.source.contains(document); });
  std::erase_if(wanted_, [=](const RenderedPage &page) { return page.key.document == document; });
  work_.notify_one();
}

void Renderer::want(const std::vector<PageKey> &pages) {
  std::list<RenderedPage> wanted;
  for (const PageKey &key : pages)
    wanted.push_back({key, {}, {}});
  const std::lock_guard lock(mutex_);
  std::erase_if(wanted, [this](const RenderedPage &page) {
    return page.key == underWay_ || std::any_of(results_.rendered.begin(), results_.rendered.end(),
                                                [&](const RenderedPage &done) { return done.key == page.key; });
  });
  wanted_.swap(wanted);
  work_.notify_one();
}

Renderer::Results Renderer::collect() {
  const std::lock_guard lock(mutex_);
  return std::exchange(results_, {});
}

void Renderer::run() {
  std::unique_lock lock(mutex_);
  while (!ends_)
    if (!step(lock)) work_.wait(lock);
  ended_ = true;
  end_.notify_one();
}

// Executes one order; false if there is none.
bool Renderer::step(std::unique_lock<std::mutex> &lock) {
  if (!closed_.empty()) {
    const uint64_t document = closed_.back();
    closed_.pop_back();
    const auto source = sources_.extract(document);
    lock.unlock(); // destroying a large document takes long
    if (!source.empty()) source.mapped()->pdf.reset();
    lock.lock();
    return true;
  }
  if (!orders_.empty()) {
    openNext(lock);
    return true;
  }
  if (!wanted_.empty()) {
    renderNext(lock);
    return true;
  }
  return false;
}

void Renderer::openNext(std::unique_lock<std::mutex> &lock) {
  std::list<Order> order;
  order.splice(order.begin(), orders_, orders_.begin());
  opening_ = order.front().source.begin()->first;
  lock.unlock();
  const std::string &password = order.front().password;
  Source &source = *order.front().source.begin()->second;
  OpenedFile &opened = order.front().answer.front();
  source.identity = identityOf(source.file);
  try {
    opened.pdf = host::PdfFile::open(source.file, password);
  } catch (const host::DocumentError &error) {
    opened.error = errorLine([&] { return std::string(error.what()); });
    opened.needsPassword = error.reason == host::DocumentError::wrongPassword;
  } catch (const std::bad_alloc &) {
    opened.error = errorLine([&] { return host::nameInMessage(source.file) + ": memory is exhausted"; });
  } catch (const std::exception &error) {
    opened.error = errorLine([&] { return host::nameInMessage(source.file) + ": " + error.what(); });
  }
  const bool there = opened.pdf != nullptr;
  lock.lock();
  results_.opened.splice(results_.opened.end(), order.front().answer);
  lock.unlock();
  wake_();
  // By now the owner uses its own instance.
  if (there) {
    try {
      source.pdf = host::PdfFile::open(source.file, password);
    } catch (const std::exception &) {
      source.pdf.reset(); // each page reports an error
    }
  }
  lock.lock();
  if (there) sources_.merge(order.front().source);
  opening_.reset();
}

void Renderer::renderNext(std::unique_lock<std::mutex> &lock) {
  std::list<RenderedPage> next;
  next.splice(next.begin(), wanted_, wanted_.begin());
  RenderedPage &page = next.front();
  const auto found = sources_.find(page.key.document);
  if (found == sources_.end()) return;
  Source &source = *found->second;
  underWay_ = page.key;
  lock.unlock();
  const bool changes = identityOf(source.file) != source.identity;
  try {
    if (source.pdf == nullptr)
      page.error = host::nameInMessage(source.file) + ": cannot be read any more";
    else
      page.image = source.pdf->render(page.key.page, page.key.dpi);
  } catch (const std::bad_alloc &) {
    page.error = errorLine([&] { return host::nameInMessage(source.file) + ": memory is exhausted"; });
  } catch (const std::exception &error) {
    page.error = errorLine([&] { return std::string(error.what()); });
  }
  lock.lock();
  if (changes) results_.changed.splice(results_.changed.end(), source.note);
  results_.rendered.splice(results_.rendered.end(), next);
  underWay_.reset();
  lock.unlock();
  wake_();
  lock.lock();
}

} // namespace viewer
