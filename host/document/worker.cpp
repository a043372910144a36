// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/worker.h"

#include <poll.h>
#include <sys/timerfd.h>

#include <algorithm>
#include <new>
#include <sstream>
#include <utility>

#include "host/document/documenterror.h"
#include "host/document/wire.h"

namespace host {
namespace {

constexpr char outOfMemory[] = "out of memory"; // short enough for a string without an allocation
constexpr char noDescriptors[] = "there are no more file descriptors";

Time now() { return std::chrono::steady_clock::now(); }

Failure failureOf(tavrel::ErrorCode code, const std::filesystem::path &file, const std::string &reason) noexcept {
  try {
    return {code, false, nameInMessage(file) + ": " + reason};
  } catch (const std::exception &) {
    return {tavrel::errNoMemory, false, outOfMemory};
  }
}

Failure failureOf(const DocumentError &error) noexcept {
  try {
    return {error.code, false, error.what()};
  } catch (const std::exception &) {
    return {tavrel::errNoMemory, false, outOfMemory};
  }
}

// For messages, which count from 1; of a request about no single page, the document.
std::string nameOf(int32_t page) { return page < 0 ? "it" : "page " + std::to_string(int64_t{page} + 1); }

} // namespace

void Worker::cancel(uint64_t id) noexcept {
  if (!underWay(id)) return;
  unwanted_ = true;
  arm();
}

void Worker::setUrgency(uint64_t id, Urgency urgency) noexcept {
  if (!underWay(id)) return;
  current_.front().urgency = urgency;
  arm();
}

// When the current order is interrupted, if nobody wants it or something more urgent waits for its process.
Time Worker::interruptedAt() const noexcept {
  const Urgency urgency = current_.front().urgency;
  const Order *next = waiting_.first();
  const bool isForOthers = takenFrom_ != &waiting_;
  const bool isInTheWay = unwanted_ || urgency == Urgency::kept ||
                          (next != nullptr && (isForOthers ? next->urgency >= urgency : next->urgency > urgency));
  return isInTheWay ? begun_ + interruptAfter : Time::max();
}

// The timer is at the next time at which something may have to be ended.
void Worker::arm() noexcept {
  if (!process_) return;
  const Time next = isBusy() ? std::min(interruptedAt(), checkedAt_) : Time();
  if (std::exchange(armed_, next) == next) return;
  const auto time = std::chrono::nanoseconds(next.time_since_epoch());
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  itimerspec when{};
  when.it_value = {seconds.count(), (time - seconds).count()};
  timerfd_settime(timer_.number(), TFD_TIMER_ABSTIME, &when, nullptr);
}

void Worker::stop() noexcept {
  process_.reset();
  timer_ = Descriptor();
  armed_ = {};
  opening_.reset();
  pixels_.reset();
  opened_ = false;
}

// A process that sends something without a request is not trusted any more, or has ended.
void Worker::checkIdle() noexcept {
  try {
    if (process_ && process_->channel().receive().what != Received::nothing) stop();
  } catch (const std::bad_alloc &) {
    stop();
  }
}

// Ends the current order if it takes too long. What has been begun is less important than what a caller is waiting for,
// and begins again afterwards.
bool Worker::isOverdue(Orders &answered) {
  if (interruptedAt() <= now()) {
    stop();
    if (unwanted_)
      current_.clear();
    else
      takenFrom_->insert(current_);
  } else if (checkedAt_ <= now()) {
    const auto limit = starter_.pageTime(), used = process_->used() - usedBefore_;
    if (used >= limit || now() - begun_ >= asleep * limit)
      failed("it takes longer than " + std::to_string(std::chrono::ceil<std::chrono::seconds>(limit).count()) +
                 " seconds",
             answered);
    else
      checkedAt_ = now() + std::max(limit - used, std::chrono::nanoseconds(std::chrono::milliseconds(10)));
  }
  return !isBusy();
}

// Calls body(), whose exceptions become the current order's answer.
template <typename Body> void Worker::answering(Orders &answered, const Body &body) noexcept {
  try {
    body();
  } catch (const DocumentError &error) { // its line names the file
    opening_.reset();
    finish(failureOf(error), answered);
  } catch (const HostError &error) {
    opening_.reset();
    fail(error.code, error.what(), answered);
  } catch (const std::exception &) {
    stop();
    fail(tavrel::errNoMemory, "memory is exhausted", answered);
  }
}

void Worker::advance(Orders &answered, OrderQueue *others) noexcept {
  if (!isBusy()) checkIdle();
  bool waits = false;
  while (isBusy() && !waits)
    answering(answered, [&] {
      const Received received = process_->channel().receive();
      if (received.what == Received::message)
        take(received.content, answered);
      else if (received.what == Received::invalid)
        failed("its process has answered wrongly", answered);
      else if (received.what == Received::ended)
        died(process_->reasonOfEnd(), answered);
      else if (!opening_ || !takeFile())
        waits = !isOverdue(answered);
    });
  begin(answered, others);
  arm();
}

OrderQueue *Worker::nextQueue(OrderQueue *others) const noexcept {
  if (waiting_.first() != nullptr) return &waiting_;
  return opened_ && others != nullptr && others->first() != nullptr ? others : nullptr;
}

void Worker::begin(Orders &answered, OrderQueue *others) noexcept {
  while (!isBusy() && (takenFrom_ = nextQueue(others)) != nullptr) {
    current_ = takenFrom_->remove(takenFrom_->first()->id);
    unwanted_ = false;
    begun_ = now();
    checkedAt_ = begun_ + starter_.pageTime();
    answering(answered, [&] {
      if (!sendCurrent()) died(process_->reasonOfEnd(), answered);
    });
  }
}

void Worker::prepare() noexcept {
  if (!process_) try {
      startProcess();
    } catch (const std::exception &) { // it is started when it is needed
    }
}

void Worker::startProcess() {
  auto process = starter_.start(kind_);
  Descriptor timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
  if (!timer || !starter_.watch(timer.number()) || !starter_.watch(process->channel().socket()))
    throw HostError(tavrel::errGeneric, noDescriptors);
  process_ = std::move(process);
  timer_ = std::move(timer);
}

// Sends the current order, or first what opens the document in a new process. False if the process has ended.
bool Worker::sendCurrent() {
  const Request &request = current_.front().request;
  if (const auto dead = document_.deaths.find(pageOf(request));
      dead != document_.deaths.end() && dead->second >= mostDeaths)
    throw HostError(tavrel::errDocument, nameOf(dead->first) + " is not read any more: its process failed each time");
  if (!process_) startProcess();
  usedBefore_ = process_->used();
  if (const auto *open = std::get_if<OpenRequest>(&request)) {
    document_.password = open->password;
    opening_.emplace(open->file); // while the process starts
    if (!starter_.watch(opening_->descriptor())) throw HostError(tavrel::errGeneric, noDescriptors);
    return true;
  }
  if (!opened_) return sendOpening();
  const std::string message = messageOf(request);
  const auto *image = std::get_if<ImageRequest>(&request);
  return process_->channel().send(message, image != nullptr ? memoryFor(*image) : -1);
}

// The memory for an image, which is passed to the process; -1 if that of its last image is as large.
int Worker::memoryFor(const ImageRequest &request) {
  const PixelSize size = sizeOf(request.drawn());
  if (!isImageSize(size)) {
    std::ostringstream reason;
    reason << nameOf(request.page) << " at " << request.dpi << " dots per inch makes no image of a usable size";
    throw HostError(tavrel::errBadArgument, reason.str());
  }
  const size_t count = static_cast<size_t>(size.width) * static_cast<size_t>(size.height);
  if (pixels_ && pixels_->pixels().size() == count) return -1;
  pixels_.reset();
  pixels_ = std::make_unique<SharedPixels>(count);
  return pixels_->descriptor();
}

bool Worker::sendOpening() {
  if (!document_.open) throw HostError(tavrel::errGeneric, "it is not open");
  return process_->channel().send(messageOf(Request(OpenRequest{document_.file, document_.password})),
                                  document_.open->descriptor());
}

// Whether the file is open: then the process gets it.
bool Worker::takeFile() {
  std::optional<OpenFile> file = opening_->take();
  if (!file) return false;
  opening_.reset();
  document_.open = std::move(file);
  sendOpening(); // that the process has ended is noticed when its answer is read
  return true;
}

void Worker::take(std::string_view content, Orders &answered) {
  std::optional<Answer> answer = answerIn(content);
  const Request &request = current_.front().request;
  const Request asked = opened_ ? request : Request(OpenRequest{});
  const auto *made = std::get_if<ImageRequest>(&asked);
  if (auto *image = answer ? std::get_if<PageImage>(&answer->value) : nullptr; image != nullptr && made != nullptr) {
    const auto pixels = pixels_->pixels();
    const auto [width, height] = sizeOf(made->drawn());
    image->image = {width, height, std::vector<uint32_t>(pixels.begin(), pixels.end())}; // read once: they may change
  }
  const auto *failure = answer ? std::get_if<Failure>(&answer->value) : nullptr;
  const bool isOwnersFailure = failure != nullptr && failure->code == tavrel::errNoMemory; // no process's
  if (!answer || isOwnersFailure || !fits(asked, *answer)) return failed("its process has answered wrongly", answered);
  document_.deaths.erase(pageOf(asked));
  if (failure != nullptr) pixels_.reset(); // it may not have been able to map it
  if (opened_) return finish(std::move(answer->value), answered);
  const auto *opened = std::get_if<Opened>(&answer->value);
  opened_ = opened != nullptr;
  if (!opened_)
    stop();
  else if (!opened->isConfined)
    starter_.noteUnconfined();
  if (std::holds_alternative<OpenRequest>(request)) {
    document_.pages = opened_ ? opened->pageCount : 0;
    return finish(std::move(answer->value), answered);
  }
  if (!opened_ || (document_.pages != 0 && opened->pageCount != document_.pages)) // it has been written to since
    return failed("the document cannot be opened any more", answered);
  if (!sendCurrent()) died(process_->reasonOfEnd(), answered);
}

void Worker::finish(decltype(Answer::value) value, Orders &answered) noexcept {
  current_.front().answer.value = std::move(value);
  if (document_.open && std::holds_alternative<ImageRequest>(current_.front().request))
    current_.front().answer.fileChanged = document_.open->hasChanged();
  if (pixels_ && !pixels_->isWorthKeeping()) pixels_.reset();
  answered.splice(answered.end(), current_);
  arm();
}

void Worker::fail(tavrel::ErrorCode code, const std::string &reason, Orders &answered) noexcept {
  finish(failureOf(code, document_.file, reason), answered);
}

// The process has ended by itself. Another one tries again, unless it has been tried often.
void Worker::died(const std::string &reason, Orders &answered) noexcept {
  if (++current_.front().deaths >= mostDeaths) return failed("its process failed: " + reason, answered, mostDeaths);
  stop();
  if (unwanted_)
    current_.clear();
  else
    takenFrom_->insert(current_);
}

// The process is not to be used any more, for a reason that another one would give, too.
void Worker::failed(const std::string &reason, Orders &answered, int deaths) noexcept {
  const int32_t page = pageOf(current_.front().request);
  stop();
  answering(answered, [&] {
    document_.deaths[page] += deaths;
    fail(tavrel::errDocument, page < 0 ? reason : nameOf(page) + ": " + reason, answered);
  });
}

Worker::Polled Worker::polled() const noexcept {
  const auto readable = [](int descriptor) { return pollfd{descriptor, POLLIN, 0}; }; // negative ones are ignored
  return {readable(process_ ? process_->channel().socket() : -1), readable(timer_.number()),
          readable(opening_ ? opening_->descriptor() : -1)};
}

} // namespace host
