// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/processes.h"

#include <sys/epoll.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>
#include <list>
#include <numeric>
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
    if (!watched_ || !watch(waker.descriptor())) throw HostError(tavrel::errGeneric, noDescriptors);
  }
  int descriptor() const { return watched_.number(); }
  bool watch(int descriptor) const noexcept {
    epoll_event event{};
    event.events = EPOLLIN;
    return epoll_ctl(watched_.number(), EPOLL_CTL_ADD, descriptor, &event) == 0;
  }

  std::unique_ptr<DocumentProcess> start(ProcessKind kind) {
    if (kind == ProcessKind::structure)
      return std::make_unique<DocumentProcess>(options.structureProgram, options.memory);
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
    addWorkers(ProcessKind::images, group_->options.imageProcesses);
    addWorkers(ProcessKind::words, group_->options.wordProcesses);
    addWorkers(ProcessKind::structure, 1);
    polled_.resize(workers_.size());
    group_->add(*this);
  }
  ProcessBackend(const ProcessBackend &) = delete;
  ProcessBackend &operator=(const ProcessBackend &) = delete;
  ~ProcessBackend() override { group_->remove(*this); }

  void start(Orders order) noexcept override {
    const Request &request = order.front().request;
    waiting(std::holds_alternative<OpenRequest>(request) ? workers_.front().kind() : kindOf(request)).insert(order);
    advance(); // also starts what takes the file
    advance();
    group_->use(*this);
    announce();
  }
  void setUrgency(uint64_t id, Urgency urgency) noexcept override {
    for (OrderQueue &queue : waiting_)
      queue.setUrgency(id, urgency);
    for (Worker &worker : workers_)
      worker.setUrgency(id, urgency);
    advance();
    announce();
  }
  void cancel(uint64_t id) noexcept override {
    extract(answered_, id);
    for (OrderQueue &queue : waiting_)
      queue.remove(id);
    for (Worker &worker : workers_)
      worker.cancel(id);
  }
  bool underWay(uint64_t id) const noexcept override {
    return std::any_of(workers_.begin(), workers_.end(), [=](const Worker &worker) { return worker.underWay(id); });
  }
  Orders take() noexcept override {
    advance();
    const bool isBusy = std::any_of(workers_.begin(), workers_.end(), [](const Worker &one) { return one.isBusy(); });
    if (!isBusy) group_->trim();
    if (isDrawn_ && hasProcess() && !isBusy) group_->prepare();
    const auto isImage = [](const Order &order) { return std::holds_alternative<ImageRequest>(order.request); };
    isDrawn_ = isDrawn_ || std::any_of(answered_.begin(), answered_.end(), isImage);
    const bool wasFull = isFull();
    Orders taken = std::exchange(answered_, {});
    if (wasFull) {
      advance();
      announce();
    }
    return taken;
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
  void addWorkers(ProcessKind kind, size_t count) {
    ProcessStarter &starter = *this;
    for (size_t i = 0; i < count; ++i)
      workers_.emplace_back(starter, document_, kind, waiting(kind));
  }
  OrderQueue &waiting(ProcessKind kind) { return waiting_[static_cast<size_t>(kind)]; }

  void advance() noexcept {
    const bool hasWords = std::any_of(workers_.begin(), workers_.end(), [](const Worker &one) {
      return one.kind() == ProcessKind::words && (one.isOpen() || one.isBusy());
    });
    OrderQueue *const words = hasWords ? nullptr : &waiting(ProcessKind::words);
    for (Worker &worker : workers_)
      worker.advance(answered_, worker.kind() == ProcessKind::images ? words : nullptr, !isFull());
    const auto isOpened = [](const Order &order) { return std::holds_alternative<Opened>(order.answer.value); };
    if (std::any_of(answered_.begin(), answered_.end(), isOpened)) prepareOthers();
  }
  // Whether so much has been answered that the rest waits until it has been taken: not what is asked for ahead decides
  // how much memory the answers of a hostile process take.
  bool isFull() const noexcept {
    constexpr size_t mostAnswered = 64 << 20; // bytes of messages
    return std::accumulate(answered_.begin(), answered_.end(), size_t{0},
                           [](size_t all, const Order &one) { return all + one.bytes; }) > mostAnswered;
  }
  // A document that is open is read: the other processes of the kind that has opened it start now.
  void prepareOthers() noexcept {
    for (Worker &worker : workers_)
      if (worker.kind() == workers_.front().kind()) worker.prepare();
  }
  // What has been answered is taken soon: no descriptor tells of it any more.
  void announce() const noexcept {
    if (!answered_.empty()) group_->waker.wake();
  }
  const Order *find(uint64_t id) const noexcept {
    for (const Worker &worker : workers_)
      if (worker.underWay(id)) return worker.current();
    for (const OrderQueue &queue : waiting_)
      if (const Order *order = queue.find(id)) return order;
    return nullptr;
  }
  // Until there is something to advance, but not beyond the deadline.
  void wait(Time deadline) noexcept {
    std::transform(workers_.begin(), workers_.end(), polled_.begin(), [](const Worker &one) { return one.polled(); });
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    constexpr std::chrono::milliseconds longest = std::chrono::hours(1);
    poll(polled_.data()->data(), polled_.size() * std::tuple_size_v<Worker::Polled>,
         static_cast<int>(std::clamp(left, {}, longest).count()));
  }
  std::unique_ptr<DocumentProcess> start(ProcessKind kind) override { return group_->start(kind); }
  bool watch(int descriptor) noexcept override { return group_->watch(descriptor); }
  void noteUnconfined() noexcept override { group_->noteUnconfined(); }
  size_t memory() const noexcept override { return group_->options.memory; }
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
  bool isDrawn_ = false; ///< a page has been drawn
  std::array<OrderQueue, processKinds> waiting_;
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
