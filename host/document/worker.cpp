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
constexpr char answersWrongly[] = "its process has answered wrongly";
// Of a request, in bytes: it fits into the socket, because the owner does not wait for a process to read.
constexpr size_t mostRequest = 64 << 10;

Time now() { return std::chrono::steady_clock::now(); }

Failure failureOf(const DocumentError &error) noexcept {
  try {
    return {error.code, error.what(), error.reason};
  } catch (const std::exception &) {
    return {tavrel::errNoMemory, outOfMemory};
  }
}

// For messages, which count from 1; of a request about no single page, the document.
std::string nameOf(int32_t page) { return page < 0 ? "it" : "page " + std::to_string(int64_t{page} + 1); }

// 0 for an image of no usable size.
size_t pixelsOf(const ImageRequest &request) {
  const PixelSize size = sizeOf(request.drawn());
  if (!isImageSize(size)) return 0;
  return static_cast<size_t>(size.width) * static_cast<size_t>(size.height);
}

// The options are those of all commands.
std::string takesMoreThan(size_t memory) {
  return "it takes more than " + std::to_string(memory >> 20) + " megabytes (--document-memory)";
}

Task taskOf(const Request &request) {
  const auto *sizes = std::get_if<SizesRequest>(&request);
  const auto *attachment = std::get_if<AttachmentRequest>(&request);
  const int64_t part = sizes != nullptr ? sizes->first : attachment != nullptr ? attachment->index : 0;
  return {pageOf(request), kindOf(request), part};
}

// Whether a process can fail in this way. It cannot know that its owner lacks memory, nor can a request about a page be
// wrong, because the owner has checked it.
bool isOfProcess(const Failure &failure, const Request &request) {
  const bool isOpening = std::holds_alternative<OpenRequest>(request);
  const bool isArgument = failure.code == tavrel::errBadPage || failure.code == tavrel::errBadArgument;
  const bool mayBeWrong = isArgument && !isOpening && !std::holds_alternative<ImageRequest>(request) &&
                          !std::holds_alternative<WordsRequest>(request) &&
                          !std::holds_alternative<PlainWordsRequest>(request);
  return (failure.code == tavrel::errDocument || mayBeWrong) && failure.reason <= DocumentError::tooMuchMemory &&
         (isOpening || failure.reason != DocumentError::wrongPassword);
}

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

// Whether nobody wants the current order, or something more urgent waits for its process.
bool Worker::isInTheWay() const noexcept {
  const Urgency urgency = current_.front().urgency;
  const Order *next = waiting_.first();
  const bool isForOthers = takenFrom_ != &waiting_;
  return unwanted_ || urgency == Urgency::kept ||
         (next != nullptr && (isForOthers ? next->urgency >= urgency : next->urgency > urgency));
}

// When the current order is interrupted. A process that is opening the document for it is needed by the others, too.
Time Worker::interruptedAt() const noexcept {
  const bool isForOthers = !opened_ && !std::holds_alternative<OpenRequest>(current_.front().request);
  return isInTheWay() && !isForOthers ? begun_ + interruptAfter : Time::max();
}

// The timer is at the next time at which something may have to be ended.
void Worker::arm() noexcept {
  if (!process_) return;
  const Time next = isBusy() ? std::min(interruptedAt(), checkedAt_) : checkedAt_;
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
  isFresh_ = true;
  given_ = 0;
}

void Worker::beginRest() noexcept {
  rest_ = firstLook;
  checkedAt_ = now() + rest_;
  usedBefore_ = process_->used();
}

// A process that has nothing to do uses next to no time, once it has started and has given its memory back.
bool Worker::restsCalmly() noexcept {
  if (now() < checkedAt_) return true;
  const auto used = process_->used(), usedMeanwhile = used - std::exchange(usedBefore_, used);
  const bool isCalm = usedMeanwhile < (rest_ == firstLook ? mostAtFirst : mostLater);
  pixels_.reset(); // nobody draws at present: the memory would be this process's, too
  rest_ = std::min<std::chrono::nanoseconds>(2 * rest_, longestRest);
  checkedAt_ = now() + rest_;
  return isCalm;
}

// A process that does something without a request is not trusted any more, or has ended.
void Worker::checkIdle() noexcept {
  try {
    if (process_ && (process_->channel().receive().what != Received::nothing || process_->channel().isReceiving() ||
                     !restsCalmly()))
      stop();
  } catch (const std::bad_alloc &) {
    stop();
  }
}

// Ends the current order if it takes too long. What has been begun is less important than what a caller is waiting for,
// and begins again afterwards.
bool Worker::isOverdue(Orders &answered) {
  if (interruptedAt() <= now()) {
    startAgain();
  } else if (checkedAt_ <= now()) {
    const auto limit = starter_.pageTime(), used = process_->used() - usedBefore_;
    if (used >= limit) {
      const auto seconds = std::chrono::ceil<std::chrono::seconds>(limit).count();
      failed(DocumentError::tooLong,
             "it takes longer than " + std::to_string(seconds) + (seconds == 1 ? " second" : " seconds") +
                 " (--page-time)",
             answered);
    } else if (now() - begun_ >= asleep * limit) {
      died("it does not go on", answered);
    } else {
      checkedAt_ = now() + std::max(limit - used, std::chrono::nanoseconds(std::chrono::milliseconds(10)));
    }
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

void Worker::advance(Orders &answered, OrderQueue *others, bool goesOn) noexcept {
  if (!isBusy()) checkIdle();
  bool waits = false;
  while (isBusy() && !waits)
    answering(answered, [&] {
      const Received received = process_->channel().receive();
      if (received.what == Received::message)
        take(received.content, answered);
      else if (received.what == Received::invalid)
        failed(DocumentError::processFailed, answersWrongly, answered);
      else if (received.what == Received::ended)
        died(process_->reasonOfEnd(), answered);
      else if (!opening_ || !takeFile())
        waits = !isOverdue(answered);
    });
  begin(answered, others, goesOn);
  arm();
}

OrderQueue *Worker::nextQueue(OrderQueue *others) const noexcept {
  if (waiting_.first() != nullptr) return &waiting_;
  return opened_ && others != nullptr && others->first() != nullptr ? others : nullptr;
}

void Worker::begin(Orders &answered, OrderQueue *others, bool goesOn) noexcept {
  while (!isBusy() && (takenFrom_ = nextQueue(others)) != nullptr) {
    if (!goesOn && takenFrom_->first()->urgency < Urgency::awaited) return;
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
      beginRest();
      arm();
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
  if (const auto dead = document_.deaths.find(taskOf(request));
      dead != document_.deaths.end() && dead->second.count >= mostDeaths)
    throw DocumentError(dead->second.reason,
                        nameInMessage(document_.file) + ": " + nameOf(dead->first.page) +
                            " is not read until the document is loaded again: " + dead->second.line);
  const auto *image = std::get_if<ImageRequest>(&request);
  if (image != nullptr && opened_ && !hasMemoryFor(pixelsOf(*image))) stop();
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
  if (message.size() > mostRequest) throw HostError(tavrel::errBadArgument, "the text to search for is too long");
  return process_->channel().send(message, image != nullptr ? memoryFor(*image) : -1);
}

// Whether the process has the memory for an image, or may be given it: all that it has been given counts.
bool Worker::hasMemoryFor(size_t pixels) const {
  return (pixels_ && pixels_->pixels().size() == pixels) || given_ == 0 ||
         given_ + pixels * sizeof(uint32_t) <= starter_.memory();
}

// The memory for an image, which is passed to the process; -1 if that of its last image is as large.
int Worker::memoryFor(const ImageRequest &request) {
  const size_t count = pixelsOf(request);
  if (count == 0) {
    std::ostringstream reason;
    reason << nameOf(request.page) << " at " << request.dpi << " dots per inch makes no image of a usable size";
    throw HostError(tavrel::errBadArgument, reason.str());
  }
  if (count > starter_.memory() / sizeof(uint32_t))
    throw DocumentError(DocumentError::tooMuchMemory, nameInMessage(document_.file) + ": " + nameOf(request.page) +
                                                          ": " + takesMoreThan(starter_.memory()));
  if (pixels_ && pixels_->pixels().size() == count) return -1;
  pixels_.reset();
  pixels_ = std::make_unique<SharedPixels>(count);
  given_ += count * sizeof(uint32_t);
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
  if (!answer || !fits(asked, *answer) || (failure != nullptr && !isOfProcess(*failure, asked)))
    return failed(DocumentError::processFailed, answersWrongly, answered);
  if (opened_ && failure != nullptr && failure->reason == DocumentError::tooMuchMemory) {
    if (!isFresh_) return startAgain(); // what it keeps of other pages may have taken the memory
    return failed(failure->reason, takesMoreThan(starter_.memory()), answered);
  }
  document_.deaths.erase(taskOf(asked));
  if (failure != nullptr) pixels_.reset(); // it may not have been able to map it
  if (opened_) {
    isFresh_ = false;
    current_.front().bytes = content.size();
    return finish(std::move(answer->value), answered);
  }
  takeOpened(*answer, answered);
}

// Takes the answer to an opening, which was the current order or was sent before it.
void Worker::takeOpened(Answer &answer, Orders &answered) {
  const auto *opened = std::get_if<Opened>(&answer.value);
  opened_ = opened != nullptr;
  if (!opened_)
    stop();
  else if (!opened->isConfined)
    starter_.noteUnconfined();
  const bool isAsked = std::holds_alternative<OpenRequest>(current_.front().request);
  if (isAsked) document_.pages = opened_ ? opened->pageCount : 0;
  if (isAsked) return finish(std::move(answer.value), answered);
  if (!opened_) {
    const auto &failure = std::get<Failure>(answer.value);
    const std::string name = nameInMessage(document_.file) + ": ";
    const std::string reason = failure.line.substr(failure.line.starts_with(name) ? name.size() : 0);
    return failed(failure.reason, "the document cannot be opened again: " + reason, answered);
  }
  if (document_.pages != 0 && opened->pageCount != document_.pages) // it has been written to since
    return failed(DocumentError::unreadable, "the document has changed, and cannot be read any more", answered);
  if (isInTheWay()) return putBack();
  begun_ = now();
  if (!sendCurrent()) died(process_->reasonOfEnd(), answered);
}

void Worker::finish(decltype(Answer::value) value, Orders &answered) noexcept {
  current_.front().answer.value = std::move(value);
  if (document_.open && std::holds_alternative<ImageRequest>(current_.front().request))
    current_.front().answer.fileChanged = document_.open->hasChanged();
  if (pixels_ && !pixels_->isWorthKeeping()) pixels_.reset();
  answered.splice(answered.end(), current_);
  if (process_) beginRest();
  arm();
}

void Worker::fail(tavrel::ErrorCode code, const std::string &reason, Orders &answered,
                  DocumentError::Reason why) noexcept {
  try {
    const std::string name = nameInMessage(document_.file) + ": ";
    finish(Failure{code, reason.starts_with(name) ? reason : name + reason, why}, answered);
  } catch (const std::exception &) {
    finish(Failure{tavrel::errNoMemory, outOfMemory}, answered);
  }
}

// The process has ended, or hangs. Another one tries again, unless it has been tried often.
void Worker::died(const std::string &reason, Orders &answered) {
  if (++current_.front().deaths < mostDeaths) return startAgain();
  failed(DocumentError::processFailed, "its process failed: " + reason, answered);
}

// The current order is given to a new process.
void Worker::startAgain() noexcept {
  stop();
  putBack();
}

// The current order waits again, unless nobody wants it.
void Worker::putBack() noexcept {
  if (unwanted_)
    current_.clear();
  else
    takenFrom_->insert(current_);
  if (process_) beginRest();
}

// The process is not to be used any more, for a reason that another one would give, too; but an image of another size
// may take less.
void Worker::failed(DocumentError::Reason reason, std::string line, Orders &answered) {
  const Task task = taskOf(current_.front().request);
  const bool tookTooMuch = reason == DocumentError::tooLong || reason == DocumentError::tooMuchMemory;
  const bool isFinal = current_.front().deaths >= mostDeaths || (tookTooMuch && task.kind != ProcessKind::images);
  stop();
  Deaths &deaths = document_.deaths[task];
  deaths = {isFinal ? mostDeaths : deaths.count + 1, reason, std::move(line)};
  fail(tavrel::errDocument, task.page < 0 ? deaths.line : nameOf(task.page) + ": " + deaths.line, answered, reason);
}

Worker::Polled Worker::polled() const noexcept {
  const auto readable = [](int descriptor) { return pollfd{descriptor, POLLIN, 0}; }; // negative ones are ignored
  return {readable(process_ ? process_->channel().socket() : -1), readable(timer_.number()),
          readable(opening_ ? opening_->descriptor() : -1)};
}

} // namespace host
