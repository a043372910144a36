// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A process that reads a document: started when it is needed, given one order after the other, and started again when
// it has ended.
#pragma once

#include <poll.h>

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>

#include "host/document/opening.h"
#include "host/document/orders.h"
#include "host/document/process.h"
#include "host/document/service.h"
#include "host/document/sharedpixels.h"

namespace host {

/// Requests of which each may cost a process what another one did: of one page, for its image or for the rest.
struct Task {
  int32_t page = 0; ///< pageOf() the request
  ProcessKind kind = ProcessKind::images;
  int64_t part = 0; ///< of what is about no single page: which sizes, which attached file
  bool operator<(const Task &other) const {
    return std::tie(page, kind, part) < std::tie(other.page, other.kind, other.part);
  }
};

/// The processes that a task has cost.
struct Deaths {
  int count = 0;
  DocumentError::Reason reason = DocumentError::processFailed; ///< of the last one
  std::string line;                                            ///< the same, as a part of a message
};

/// What the processes of a document have in common.
struct ReadDocument {
  std::filesystem::path file; ///< as messages name it
  std::string password = {};
  std::optional<OpenFile> open = {}; ///< from the first request on
  int32_t pages = 0;                 ///< known once it has been read
  std::map<Task, Deaths> deaths = {};
};

/// What workers need of the one who runs them all.
class ProcessStarter {
public:
  virtual ~ProcessStarter() = default;
  /// Throws HostError.
  virtual std::unique_ptr<DocumentProcess> start(ProcessKind kind) = 0;
  /// Has advance() called while the descriptor is readable, until it is closed. False if that is not possible.
  virtual bool watch(int descriptor) noexcept = 0;
  /// Called when a process has opened a document without being confined.
  virtual void noteUnconfined() noexcept = 0;
  /// How much memory a process may take, and an image, in bytes.
  virtual size_t memory() const noexcept = 0;
  /// How much processor time a request may take.
  virtual std::chrono::nanoseconds pageTime() const noexcept = 0;
};

class Worker {
public:
  /// What a process has not survived is given to another one. A page that costs so many processes before there is an
  /// answer is not read any more.
  static constexpr int mostDeaths = 3;
  /// A process that uses less processor time than it may is replaced after so many times that.
  static constexpr int asleep = 5;
  /// What nobody wants any more, or what keeps something more urgent waiting, is ended after that time.
  static constexpr auto interruptAfter = std::chrono::milliseconds(100);
  /// A process without an order is looked at after that time, and then ever more rarely. It may compute for so long
  /// until the first look, and until each other one.
  static constexpr auto firstLook = std::chrono::seconds(2), longestRest = std::chrono::seconds(60);
  static constexpr auto mostAtFirst = std::chrono::milliseconds(600), mostLater = std::chrono::milliseconds(100);

  /// Takes its orders from those that wait, as others may do.
  Worker(ProcessStarter &starter, ReadDocument &document, ProcessKind kind, OrderQueue &waiting)
      : starter_(starter), document_(document), kind_(kind), waiting_(waiting) {}

  // These do nothing for an order that is not under way here.
  void cancel(uint64_t id) noexcept;
  void setUrgency(uint64_t id, Urgency urgency) noexcept;
  bool underWay(uint64_t id) const noexcept { return isBusy() && current_.front().id == id; }
  /// The order under way; null for none.
  const Order *current() const noexcept { return isBusy() ? &current_.front() : nullptr; }
  bool isBusy() const noexcept { return !current_.empty(); }
  bool hasProcess() const noexcept { return process_ != nullptr; }
  /// Whether its process has opened the document.
  bool isOpen() const noexcept { return opened_; }
  ProcessKind kind() const noexcept { return kind_; }

  /// Takes what the process has sent, ends what takes too long, and goes on; the answers are added. A process that has
  /// opened the document and has no orders of its own gets one of `others`, unless that is null.
  /// An order that no caller waits for is not begun unless `goesOn`.
  void advance(Orders &answered, OrderQueue *others, bool goesOn) noexcept;
  /// What becomes readable when there is something to advance.
  using Polled = std::array<pollfd, 3>;
  Polled polled() const noexcept;
  /// Starts the process before it is needed, if that is possible.
  void prepare() noexcept;
  /// Ends the process; it is started again when it is needed.
  void stop() noexcept;

private:
  bool isInTheWay() const noexcept;
  Time interruptedAt() const noexcept;
  void arm() noexcept;
  void beginRest() noexcept;
  bool restsCalmly() noexcept;
  void checkIdle() noexcept;
  bool isOverdue(Orders &answered);
  OrderQueue *nextQueue(OrderQueue *others) const noexcept;
  void begin(Orders &answered, OrderQueue *others, bool goesOn) noexcept;
  void startProcess();
  bool sendCurrent();
  bool sendOpening();
  void takeOpened(Answer &answer, Orders &answered);
  bool hasMemoryFor(size_t pixels) const;
  int memoryFor(const ImageRequest &request);
  bool takeFile();
  template <typename Body> void answering(Orders &answered, const Body &body) noexcept;
  void take(std::string_view content, Orders &answered);
  void finish(decltype(Answer::value) value, Orders &answered) noexcept;
  void fail(tavrel::ErrorCode code, const std::string &reason, Orders &answered,
            DocumentError::Reason why = DocumentError::unreadable) noexcept;
  void died(const std::string &reason, Orders &answered);
  void startAgain() noexcept;
  void putBack() noexcept;
  void failed(DocumentError::Reason reason, std::string line, Orders &answered);

  ProcessStarter &starter_;
  ReadDocument &document_;
  std::unique_ptr<DocumentProcess> process_;
  bool opened_ = false; ///< by this process
  bool isFresh_ = true; ///< it has answered nothing else
  ProcessKind kind_;
  OrderQueue &waiting_;
  OrderQueue *takenFrom_ = nullptr; ///< the current order, which goes back there if another process is to answer it
  Orders current_;                  ///< one order, or none
  std::optional<Opening> opening_;  ///< the file, for the current order
  Time begun_ = {};
  bool unwanted_ = false;                     ///< the current one
  Descriptor timer_;                          ///< of the process
  Time armed_ = {};                           ///< when it expires
  Time checkedAt_ = {};                       ///< when the current one may have used its time, or when to look again
  std::chrono::nanoseconds rest_ = firstLook; ///< without an order, until the next look
  std::chrono::nanoseconds usedBefore_ = {};  ///< processor time, by the process before the current order or rest
  size_t given_ = 0; ///< bytes of memory for pixels that the process has been given: it may keep all of it
  std::unique_ptr<SharedPixels> pixels_; ///< of the last image, in this process
};

} // namespace host
