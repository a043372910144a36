// The rendering thread. It has a file of its own for each document, because the PDF library wants one a thread.
#include "viewer/model/renderer.h"

#include <sys/stat.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace viewer {
namespace {

// What tells that a file is still the one that was opened.
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
  std::unique_ptr<host::PdfFile> pdf;
  std::optional<Identity> identity;
  bool changed = false;
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
  const std::lock_guard lock(mutex_);
  orders_.push_back({document, file, password});
  work_.notify_one();
}

void Renderer::close(uint64_t document) {
  const std::lock_guard lock(mutex_);
  closed_.push_back(document);
  std::erase_if(orders_, [=](const Order &order) { return order.document == document; });
  std::erase_if(wanted_, [=](const PageKey &key) { return key.document == document; });
  work_.notify_one();
}

void Renderer::want(std::vector<PageKey> pages) {
  const std::lock_guard lock(mutex_);
  const auto done = [this](const PageKey &key) {
    return key == underWay_ || std::any_of(results_.rendered.begin(), results_.rendered.end(),
                                           [&](const RenderedPage &page) { return page.key == key; });
  };
  wanted_.clear();
  std::remove_copy_if(pages.begin(), pages.end(), std::back_inserter(wanted_), done);
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

// Does one thing; false when there is nothing to do.
bool Renderer::step(std::unique_lock<std::mutex> &lock) {
  if (!closed_.empty()) {
    const uint64_t document = closed_.back();
    closed_.pop_back();
    const auto source = sources_.extract(document);
    lock.unlock(); // a large document takes its time to go
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
  const Order order = std::move(orders_.front());
  orders_.pop_front();
  lock.unlock();
  OpenedFile opened{order.document, nullptr, {}, false};
  auto source = std::make_unique<Source>(Source{order.file, nullptr, identityOf(order.file)});
  try {
    opened.pdf = host::PdfFile::open(order.file, order.password);
  } catch (const host::DocumentError &error) {
    opened.error = error.what();
    opened.wantsPassword = error.reason == host::DocumentError::wrongPassword;
  } catch (const std::exception &error) {
    opened.error = host::nameInMessage(order.file) + ": " + error.what();
  }
  const bool there = opened.pdf != nullptr;
  lock.lock();
  results_.opened.push_back(std::move(opened));
  lock.unlock();
  wake_();
  // The owner is busy with its own by now.
  if (there) {
    try {
      source->pdf = host::PdfFile::open(order.file, order.password);
    } catch (const std::exception &) {
      source->pdf.reset(); // each page says so
    }
  }
  lock.lock();
  if (there) sources_[order.document] = std::move(source);
}

void Renderer::renderNext(std::unique_lock<std::mutex> &lock) {
  const PageKey key = wanted_.front();
  wanted_.pop_front();
  underWay_ = key;
  const auto found = sources_.find(key.document);
  if (found == sources_.end()) {
    underWay_.reset();
    return;
  }
  Source &source = *found->second;
  lock.unlock();
  const bool changes = !source.changed && identityOf(source.file) != source.identity;
  source.changed |= changes;
  RenderedPage page{key, {}, {}};
  try {
    if (source.pdf == nullptr)
      page.error = host::nameInMessage(source.file) + ": cannot be read any more";
    else
      page.image = source.pdf->render(key.page, key.dpi);
  } catch (const std::bad_alloc &) {
    page.error = host::nameInMessage(source.file) + ": memory is exhausted";
  } catch (const std::exception &error) {
    page.error = error.what();
  }
  lock.lock();
  if (changes) results_.changed.push_back(key.document);
  results_.rendered.push_back(std::move(page));
  underWay_.reset();
  lock.unlock();
  wake_();
  lock.lock();
}

} // namespace viewer
