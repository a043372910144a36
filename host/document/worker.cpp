// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/worker.h"

#include <poll.h>
#include <sys/timerfd.h>

#include <algorithm>
#include <new>
#include <utility>

#include "host/document/pdf.h"
#include "host/document/wire.h"

namespace host {
namespace {

constexpr char outOfMemory[] = "out of memory"; // short enough for a string without an allocation

Time now() { return std::chrono::steady_clock::now(); }

Failure failureOf(tavrel::ErrorCode code, const std::filesystem::path &file, const std::string &reason) noexcept {
  try {
    return {code, false, nameInMessage(file) + ": " + reason};
  } catch (const std::exception &) {
    return {tavrel::errNoMemory, false, outOfMemory};
  }
}

} // namespace

void Worker::add(Orders order) noexcept { waiting_.insert(order); }

bool Worker::has(uint64_t id) const noexcept { return underWay(id) || waiting_.has(id); }

void Worker::cancel(uint64_t id) noexcept {
  waiting_.remove(id);
  if (!underWay(id)) return;
  unwanted_ = true;
  arm();
}

// The time at which somebody loses patience with the current order.
Time Worker::endOfPatience() const noexcept {
  const bool urgent = hurried_ && waiting_.first() != nullptr;
  return isBusy() && (unwanted_ || urgent) ? begun_ + patience : Time::max();
}

// The timer is at the next time at which something may have to be ended.
void Worker::arm() noexcept {
  if (!process_) return;
  itimerspec when{};
  if (isBusy()) {
    const auto time = std::chrono::nanoseconds(std::min(endOfPatience(), checkedAt_).time_since_epoch());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    when.it_value = {seconds.count(), (time - seconds).count()};
  }
  timerfd_settime(timer_.number(), TFD_TIMER_ABSTIME, &when, nullptr);
}

void Worker::stop() noexcept {
  process_.reset();
  timer_ = {};
  opened_ = false;
}

// Whatever a process sends that has been asked nothing, it is not to be trusted any more, or has ended.
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
  if (endOfPatience() <= now()) {
    stop();
    if (unwanted_)
      current_.clear();
    else
      waiting_.insert(current_);
  } else if (checkedAt_ <= now()) {
    const auto limit = starter_.pageTime(), used = process_->used() - usedBefore_;
    if (used >= limit || now() - begun_ >= asleep * limit)
      died("it takes longer than " + std::to_string(std::chrono::ceil<std::chrono::seconds>(limit).count()) +
               " seconds",
           answered);
    else
      checkedAt_ = now() + std::max(limit - used, std::chrono::nanoseconds(std::chrono::milliseconds(10)));
    arm();
  }
  return !isBusy();
}

void Worker::advance(Orders &answered) noexcept {
  if (!isBusy()) checkIdle();
  bool waits = false;
  while (isBusy() && !waits)
    try {
      const Received received = process_->channel().receive();
      if (received.what == Received::message)
        take(received.content, answered);
      else if (received.what == Received::invalid)
        died("its process has answered wrongly", answered);
      else if (received.what == Received::ended)
        died("its process failed: " + process_->reasonOfEnd(), answered);
      else
        waits = !isOverdue(answered);
    } catch (const std::bad_alloc &) {
      stop();
      fail(tavrel::errNoMemory, "memory is exhausted", answered);
    }
  hurried_ = false;
  begin(answered);
}

void Worker::begin(Orders &answered) noexcept {
  while (!isBusy() && waiting_.first() != nullptr) {
    current_ = waiting_.remove(waiting_.first()->id);
    unwanted_ = false;
    begun_ = now();
    checkedAt_ = begun_ + starter_.pageTime();
    try {
      if (!sendCurrent()) died("its process failed: " + process_->reasonOfEnd(), answered);
    } catch (const DocumentError &error) { // its line names the file
      finish(Failure{error.code, false, error.what()}, answered);
    } catch (const HostError &error) {
      fail(error.code, error.what(), answered);
    } catch (const std::exception &) {
      stop();
      fail(tavrel::errNoMemory, "memory is exhausted", answered);
    }
    arm();
  }
}

void Worker::startProcess() {
  auto process = starter_.start();
  Descriptor timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
  if (!timer || !starter_.watch(timer.number()) || !starter_.watch(process->channel().socket()))
    throw HostError(tavrel::errGeneric, "there are no more file descriptors");
  process_ = std::move(process);
  timer_ = std::move(timer);
}

// The current order, or first the request that opens the document in a new process.
bool Worker::sendCurrent() {
  const Request &request = current_.front().request;
  const auto *open = std::get_if<OpenRequest>(&request);
  if (open != nullptr) {
    document_.password = open->password;
    document_.open.emplace(open->file);
  }
  if (const auto dead = document_.deaths.find(pageOf(request));
      dead != document_.deaths.end() && dead->second >= mostDeaths)
    throw HostError(tavrel::errDocument, "page " + std::to_string(int64_t{dead->first} + 1) +
                                             " is not read any more: its process failed each time");
  if (!process_) startProcess();
  usedBefore_ = process_->used();
  if (!opened_)
    return process_->channel().send(messageOf(Request(OpenRequest{document_.file, document_.password})),
                                    document_.open->descriptor());
  pixels_.reset();
  if (const auto *image = std::get_if<ImageRequest>(&request)) {
    if (!isImageSize(image->size)) throw HostError(tavrel::errBadArgument, "the page makes no image of a usable size");
    pixels_ = std::make_unique<SharedPixels>(static_cast<size_t>(image->size.width) *
                                             static_cast<size_t>(image->size.height));
  }
  return process_->channel().send(messageOf(request), pixels_ ? pixels_->descriptor() : -1);
}

void Worker::take(std::string_view content, Orders &answered) {
  std::optional<Answer> answer = answerIn(content);
  const Request &request = current_.front().request;
  const Request asked = opened_ ? request : Request(OpenRequest{});
  if (auto *image = answer ? std::get_if<PageImage>(&answer->value) : nullptr; image != nullptr && pixels_) {
    const auto pixels = pixels_->pixels();
    image->image = {std::get<ImageRequest>(request).size.width, std::get<ImageRequest>(request).size.height,
                    std::vector<uint32_t>(pixels.begin(), pixels.end())};
  }
  if (!answer || !fits(asked, *answer)) return died("its process has answered wrongly", answered);
  if (opened_) return finish(std::move(answer->value), answered);
  const auto *opened = std::get_if<Opened>(&answer->value);
  if (opened == nullptr) {
    stop();
    return finish(std::move(answer->value), answered);
  }
  if (document_.pages != 0 && document_.pages != opened->pageCount)
    return died("its process has answered wrongly", answered);
  document_.pages = opened->pageCount;
  opened_ = true;
  if (std::holds_alternative<OpenRequest>(request)) return finish(std::move(answer->value), answered);
  if (!sendCurrent()) died("its process failed: " + process_->reasonOfEnd(), answered);
}

void Worker::finish(decltype(Answer::value) value, Orders &answered) noexcept {
  current_.front().answer.value = std::move(value);
  if (std::holds_alternative<ImageRequest>(current_.front().request))
    current_.front().answer.fileChanged = document_.open->hasChanged();
  pixels_.reset();
  answered.splice(answered.end(), current_);
  arm();
}

void Worker::fail(tavrel::ErrorCode code, const std::string &reason, Orders &answered) noexcept {
  finish(failureOf(code, document_.file, reason), answered);
}

void Worker::died(const std::string &reason, Orders &answered) noexcept {
  const int32_t page = pageOf(current_.front().request);
  stop();
  try {
    ++document_.deaths[page];
    fail(tavrel::errDocument, page < 0 ? reason : "page " + std::to_string(int64_t{page} + 1) + ": " + reason,
         answered);
  } catch (const std::bad_alloc &) {
    fail(tavrel::errNoMemory, outOfMemory, answered);
  }
}

void Worker::wait(Time deadline) const noexcept {
  if (!isBusy()) return;
  const Time until = std::min({deadline, endOfPatience(), checkedAt_});
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - now());
  constexpr auto longest = std::chrono::milliseconds(std::chrono::hours(1));
  pollfd ready{process_->channel().socket(), POLLIN, 0};
  poll(&ready, 1, until == Time::max() ? -1 : static_cast<int>(std::clamp(left, {}, longest).count()));
}

} // namespace host
