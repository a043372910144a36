// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The process of one kind for a document: started when it is needed, given one order after the other, and started again
// when it has ended.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "host/document/openfile.h"
#include "host/document/orders.h"
#include "host/document/process.h"
#include "host/document/service.h"
#include "host/document/sharedpixels.h"

namespace host {

/// What the processes of a document have in common.
struct ReadDocument {
  std::filesystem::path file; ///< as messages name it
  std::string password = {};
  std::optional<OpenFile> open = {};  ///< from the first request on
  int32_t pages = 0;                  ///< known once it has been read
  std::map<int32_t, int> deaths = {}; ///< of processes, by the page that they were reading; -1 for none
};

/// What workers need of the one who runs them all.
class ProcessStarter {
public:
  virtual ~ProcessStarter() = default;
  /// Throws HostError.
  virtual std::unique_ptr<DocumentProcess> start() = 0;
  /// Has advance() called while the descriptor is readable, until it is closed. False if that is not possible.
  virtual bool watch(int descriptor) noexcept = 0;
  /// How much processor time a request may take.
  virtual std::chrono::nanoseconds pageTime() const noexcept = 0;
};

class Worker {
public:
  /// After so many deaths of its process a page is not read any more.
  static constexpr int mostDeaths = 3;
  /// A request that uses less processor time than it may is ended after so many times that.
  static constexpr int asleep = 5;
  /// What nobody wants any more, or what keeps a caller waiting, is ended after that time.
  static constexpr auto patience = std::chrono::milliseconds(100);

  Worker(ProcessStarter &starter, ReadDocument &document) : starter_(starter), document_(document) {}

  void add(Orders order) noexcept;
  void raise(uint64_t id, Urgency urgency) noexcept { waiting_.raise(id, urgency); }
  void cancel(uint64_t id) noexcept;
  bool underWay(uint64_t id) const noexcept { return isBusy() && current_.front().id == id; }
  bool isBusy() const noexcept { return !current_.empty(); }
  bool hasProcess() const noexcept { return process_ != nullptr; }
  bool has(uint64_t id) const noexcept;

  /// Takes what the process has sent, ends what takes too long, and goes on; the answers are added.
  void advance(Orders &answered) noexcept;
  /// Waits until the process has sent something, but not beyond the deadline.
  void wait(Time deadline) const noexcept;
  /// Lets an order that a caller waits for go before one that has been begun and takes long.
  void hurry() noexcept { hurried_ = true; }
  /// Ends the process; it is started again when it is needed.
  void stop() noexcept;

private:
  Time endOfPatience() const noexcept;
  void arm() noexcept;
  void checkIdle() noexcept;
  bool isOverdue(Orders &answered);
  void begin(Orders &answered) noexcept;
  void startProcess();
  bool sendCurrent();
  void take(std::string_view content, Orders &answered);
  void finish(decltype(Answer::value) value, Orders &answered) noexcept;
  void fail(tavrel::ErrorCode code, const std::string &reason, Orders &answered) noexcept;
  void died(const std::string &reason, Orders &answered) noexcept;

  ProcessStarter &starter_;
  ReadDocument &document_;
  std::unique_ptr<DocumentProcess> process_;
  bool opened_ = false; ///< by this process
  OrderQueue waiting_;
  Orders current_; ///< one order, or none
  Time begun_ = {};
  bool unwanted_ = false; ///< the current one
  bool hurried_ = false;
  Descriptor timer_;                         ///< of the process
  Time checkedAt_ = {};                      ///< when the current one may have used its time
  std::chrono::nanoseconds usedBefore_ = {}; ///< processor time, by the process before it
  std::unique_ptr<SharedPixels> pixels_;     ///< of the current image
};

} // namespace host
