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
  const auto end = std::chrono::nanoseconds(endOfPatience().time_since_epoch());
  const auto seconds = std::chrono::floor<std::chrono::seconds>(end);
  const itimerspec when{{}, {seconds.count(), (end - seconds).count()}};
  timer_ = Descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
  if (!timer_ || timerfd_settime(timer_.number(), TFD_TIMER_ABSTIME, &when, nullptr) != 0 ||
      !starter_.watch(timer_.number()))
    begun_ = {}; // it is ended with the next call
}

// The time at which the current order is ended.
Time Worker::endOfPatience() const noexcept {
  const bool urgent = hurried_ && waiting_.first() != nullptr;
  return isBusy() && (unwanted_ || urgent) ? begun_ + patience : Time::max();
}

void Worker::stop() noexcept {
  process_.reset();
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

void Worker::advance(Orders &answered) noexcept {
  if (!isBusy()) checkIdle();
  if (isBusy() && endOfPatience() <= now()) {
    stop();
    timer_ = {};
    if (unwanted_)
      current_.clear();
    else
      waiting_.insert(current_);
  }
  hurried_ = false;
  while (isBusy())
    try {
      const Received received = process_->channel().receive();
      if (received.what == Received::nothing) return;
      if (received.what == Received::message)
        take(received.content, answered);
      else if (received.what == Received::invalid)
        died("its process has answered wrongly", answered);
      else
        died("its process failed: " + process_->reasonOfEnd(), answered);
    } catch (const std::bad_alloc &) {
      stop();
      fail(tavrel::errNoMemory, "memory is exhausted", answered);
    }
  begin(answered);
}

void Worker::begin(Orders &answered) noexcept {
  while (!isBusy() && waiting_.first() != nullptr) {
    current_ = waiting_.remove(waiting_.first()->id);
    unwanted_ = false;
    timer_ = {};
    begun_ = now();
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
  }
}

void Worker::startProcess() {
  auto process = starter_.start();
  if (!starter_.watch(process->channel().socket()))
    throw HostError(tavrel::errGeneric, "there are no more file descriptors");
  process_ = std::move(process);
}

// The current order, or first the request that opens the document in a new process.
bool Worker::sendCurrent() {
  const Request &request = current_.front().request;
  const auto *open = std::get_if<OpenRequest>(&request);
  if (open != nullptr) {
    document_.password = open->password;
    document_.open.emplace(open->file);
  }
  if (const auto dead = document_.deaths.find(BusyPages::pageOf(request));
      dead != document_.deaths.end() && dead->second >= mostDeaths)
    throw HostError(tavrel::errDocument, "page " + std::to_string(int64_t{dead->first} + 1) +
                                             " is not read any more: its process failed each time");
  if (!process_) startProcess();
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
  timer_ = {};
  answered.splice(answered.end(), current_);
}

void Worker::fail(tavrel::ErrorCode code, const std::string &reason, Orders &answered) noexcept {
  finish(failureOf(code, document_.file, reason), answered);
}

void Worker::died(const std::string &reason, Orders &answered) noexcept {
  const int32_t page = BusyPages::pageOf(current_.front().request);
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
  const Time until = std::min(deadline, endOfPatience());
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - now());
  constexpr auto longest = std::chrono::milliseconds(std::chrono::hours(1));
  pollfd ready{process_->channel().socket(), POLLIN, 0};
  poll(&ready, 1, until == Time::max() ? -1 : static_cast<int>(std::clamp(left, {}, longest).count()));
}

} // namespace host
