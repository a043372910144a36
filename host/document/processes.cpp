// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/processes.h"

#include <sys/epoll.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <list>
#include <utility>
#include <vector>

#include "host/document/worker.h"

namespace host {

namespace {

// A document whose processes may be ended while they have nothing to do.
class Resting {
public:
  virtual bool hasProcess() const noexcept = 0;
  virtual void rest() noexcept = 0;

protected:
  ~Resting() = default;
};

} // namespace

class ProcessGroup {
public:
  explicit ProcessGroup(ProcessOptions given) : options(std::move(given)), watched_(epoll_create1(EPOLL_CLOEXEC)) {
    if (!watched_ || !watch(waker.descriptor()))
      throw HostError(tavrel::errGeneric, "there are no more file descriptors");
  }
  int descriptor() const { return watched_.number(); }
  bool watch(int descriptor) const noexcept {
    epoll_event event{};
    event.events = EPOLLIN;
    return epoll_ctl(watched_.number(), EPOLL_CTL_ADD, descriptor, &event) == 0;
  }

  std::unique_ptr<DocumentProcess> start() {
    std::unique_ptr<DocumentProcess> process = std::move(spare_);
    const bool isAlive = process && process->channel().receive().what == Received::nothing;
    if (!isAlive) process = std::make_unique<DocumentProcess>(options.program, options.memory);
    return process;
  }
  /// Starts the next process in advance, when there is nothing else to do.
  void prepare() noexcept {
    if (spare_ == nullptr) try {
        spare_ = std::make_unique<DocumentProcess>(options.program, options.memory);
      } catch (const std::exception &) { // it is started when it is needed
      }
  }

  void noteUnconfined() noexcept {
    if (!std::exchange(isKnownUnconfined_, true))
      std::fputs(
          "tavrel: nothing confines the processes that read documents: this system has neither Landlock nor seccomp\n",
          stderr);
  }

  void add(Resting &document) { recent_.push_front(&document); }
  void remove(Resting &document) noexcept { recent_.remove(&document); }
  /// Notes the document that is used last.
  void use(Resting &document) noexcept {
    recent_.splice(recent_.begin(), recent_, std::find(recent_.begin(), recent_.end(), &document));
    trim();
  }
  /// Ends the processes of documents that were used long ago, if they have nothing to do.
  void trim() noexcept {
    size_t there = 0;
    for (Resting *one : recent_)
      if (one->hasProcess() && ++there > options.documents) one->rest();
  }

  const ProcessOptions options;
  const Waker waker;

private:
  Descriptor watched_;
  std::unique_ptr<DocumentProcess> spare_;
  bool isKnownUnconfined_ = false;
  std::list<Resting *> recent_; ///< the one that was used last is the first
};

namespace {

class ProcessBackend final : public Backend, ProcessStarter, Resting {
public:
  ProcessBackend(std::shared_ptr<ProcessGroup> group, const std::filesystem::path &file)
      : group_(std::move(group)), document_{file} {
    ProcessStarter &starter = *this;
    for (size_t i = 0; i < group_->options.wordProcesses; ++i)
      workers_.emplace_back(starter, document_, words_);
    for (size_t i = 0; i < group_->options.imageProcesses; ++i)
      workers_.emplace_back(starter, document_, images_);
    polled_.resize(workers_.size());
    group_->add(*this);
  }
  ProcessBackend(const ProcessBackend &) = delete;
  ProcessBackend &operator=(const ProcessBackend &) = delete;
  ~ProcessBackend() override { group_->remove(*this); }

  void start(Orders order) noexcept override {
    queueFor(order.front().request).insert(order);
    advance(); // also starts what takes the file
    advance();
    group_->use(*this);
    announce();
  }
  void setUrgency(uint64_t id, Urgency urgency) noexcept override {
    words_.setUrgency(id, urgency);
    images_.setUrgency(id, urgency);
    for (Worker &worker : workers_)
      worker.setUrgency(id, urgency);
    advance();
    announce();
  }
  void cancel(uint64_t id) noexcept override {
    extract(answered_, id);
    words_.remove(id);
    images_.remove(id);
    for (Worker &worker : workers_)
      worker.cancel(id);
  }
  bool underWay(uint64_t id) const noexcept override {
    return std::any_of(workers_.begin(), workers_.end(), [=](const Worker &worker) { return worker.underWay(id); });
  }
  Orders take() noexcept override {
    advance();
    const auto isImage = [](const Order &order) { return std::holds_alternative<ImageRequest>(order.request); };
    isDrawn_ = isDrawn_ || std::any_of(answered_.begin(), answered_.end(), isImage);
    const bool isBusy = std::any_of(workers_.begin(), workers_.end(), [](const Worker &one) { return one.isBusy(); });
    if (!isBusy) group_->trim();
    if (isDrawn_ && hasProcess() && !isBusy) group_->prepare();
    return std::exchange(answered_, {});
  }
  // Goes before what is less urgent, but no longer than the caller waits.
  Orders await(uint64_t id, Time deadline) noexcept override {
    const Order *order = find(id);
    const Urgency before = order == nullptr ? Urgency::awaited : order->urgency;
    if (order != nullptr) setUrgency(id, Urgency::awaited);
    Orders found;
    for (;;) {
      advance();
      found = extract(answered_, id);
      if (!found.empty() || find(id) == nullptr) break;
      if (std::chrono::steady_clock::now() >= deadline) {
        setUrgency(id, before);
        break;
      }
      wait(deadline);
    }
    announce();
    return found;
  }

private:
  static constexpr uint64_t ownOrder = 0; ///< the id of one whose answer nobody gets

  // A document is opened by a process for images, if there is one: a page is wanted first.
  OrderQueue &queueFor(const Request &request) {
    const bool isForImages = std::holds_alternative<ImageRequest>(request) ||
                             (std::holds_alternative<OpenRequest>(request) && group_->options.imageProcesses > 0);
    return isForImages ? images_ : words_;
  }
  void advance() noexcept {
    for (Worker &worker : workers_)
      worker.advance(answered_);
    extract(answered_, ownOrder);
    const auto isOpened = [](const Order &order) { return std::holds_alternative<Opened>(order.answer.value); };
    if (!isOpen_ && std::any_of(answered_.begin(), answered_.end(), isOpened)) openInOthers();
  }
  // A document that is open is drawn, and mostly searched: its other processes start now, and one opens it for words.
  void openInOthers() noexcept {
    isOpen_ = true;
    for (Worker &worker : workers_)
      worker.prepare();
    if (group_->options.imageProcesses == 0) return;
    try {
      Orders own;
      own.push_back({ownOrder, Urgency::ahead, SizesRequest{0, 1}});
      words_.insert(own);
      for (Worker &worker : workers_)
        worker.advance(answered_);
    } catch (const std::bad_alloc &) { // it is opened when words are asked for
    }
  }
  // What has been answered is taken soon: no descriptor tells of it any more.
  void announce() const noexcept {
    if (!answered_.empty()) group_->waker.wake();
  }
  const Order *find(uint64_t id) const noexcept {
    for (const Worker &worker : workers_)
      if (worker.underWay(id)) return worker.current();
    const Order *order = words_.find(id);
    return order != nullptr ? order : images_.find(id);
  }
  // Until there is something to advance, but not beyond the deadline.
  void wait(Time deadline) noexcept {
    std::transform(workers_.begin(), workers_.end(), polled_.begin(), [](const Worker &one) { return one.polled(); });
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    constexpr std::chrono::milliseconds longest = std::chrono::hours(1);
    poll(polled_.data()->data(), polled_.size() * std::tuple_size_v<Worker::Polled>,
         static_cast<int>(std::clamp(left, {}, longest).count()));
  }
  std::unique_ptr<DocumentProcess> start() override { return group_->start(); }
  bool watch(int descriptor) noexcept override { return group_->watch(descriptor); }
  void noteUnconfined() noexcept override { group_->noteUnconfined(); }
  std::chrono::nanoseconds pageTime() const noexcept override { return group_->options.pageTime; }

  bool hasProcess() const noexcept override {
    return std::any_of(workers_.begin(), workers_.end(), [](const Worker &one) { return one.hasProcess(); });
  }
  void rest() noexcept override {
    for (Worker &worker : workers_)
      if (!worker.isBusy()) worker.stop();
  }

  std::shared_ptr<ProcessGroup> group_;
  ReadDocument document_;
  bool isOpen_ = false;
  bool isDrawn_ = false;      ///< a page has been drawn
  OrderQueue words_, images_; ///< those that wait
  std::deque<Worker> workers_;
  std::vector<Worker::Polled> polled_; ///< memory for wait()
  Orders answered_;
};

} // namespace

Processes::Processes(ProcessOptions options) : group_(std::make_shared<ProcessGroup>(std::move(options))) {}

Processes::~Processes() = default;

int Processes::descriptor() const { return group_->descriptor(); }

const Waker &Processes::waker() const { return group_->waker; }

std::unique_ptr<Backend> Processes::backend(const std::filesystem::path &file) {
  return std::make_unique<ProcessBackend>(group_, file);
}

} // namespace host
