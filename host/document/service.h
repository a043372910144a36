// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document that is asked and answers later, so that no caller waits for the PDF library longer than its limit.
//
// All of it is used on one thread, the owner's. Answers are handed over there alone: by collect(), or by await() to
// those who cannot go on without. A backend finds the answers, elsewhere.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <memory>

#include "host/document/messages.h"

namespace host {

/// Which request is answered first: the later one in this list; of equal ones, the one that was asked first.
enum class Urgency {
  kept,     ///< not needed: answered only if that has been begun, and takes no longer than a moment
  ahead,    ///< not needed yet, like the neighbours of the page shown
  searched, ///< a user waits for the end of a search
  shown,    ///< needed for the page shown
  awaited,  ///< a caller is waiting in await()
};

using Time = std::chrono::steady_clock::time_point;

/// A request on its way through a backend. It holds the memory of its answer.
struct Order {
  uint64_t id = 0; ///< unique and increasing, over all documents
  Urgency urgency = Urgency::ahead;
  Request request;
  Answer answer = {};
  uint64_t round = 0; ///< of collect(), for the service
  int deaths = 0;     ///< of processes that have tried to answer it
  size_t bytes = 0;   ///< of the message that has answered it
};
using Orders = std::list<Order>;

/// The order with that id, out of the list; none if it is not there.
Orders extract(Orders &from, uint64_t id) noexcept;

/// What answers the requests of one document. Destroying it drops them.
class Backend {
public:
  Backend() = default;
  Backend(const Backend &) = delete;
  Backend &operator=(const Backend &) = delete;
  virtual ~Backend() = default;

  /// Takes over one order. If there is no memory or thread for it, it is answered by a failure.
  virtual void start(Orders order) noexcept = 0;
  /// Changes how urgent an order is.
  virtual void setUrgency(uint64_t id, Urgency urgency) noexcept = 0;
  /// Drops an order that has not been begun. One that has been begun may be answered nevertheless.
  virtual void cancel(uint64_t id) noexcept = 0;
  virtual bool underWay(uint64_t id) const noexcept = 0;
  /// The orders that have been answered since the last call.
  virtual Orders take() noexcept = 0;
  /// The order, once it is answered; none if it is not by the deadline.
  virtual Orders await(uint64_t id, Time deadline) noexcept = 0;
};

class Service;

/// A request that has been made. Destroying it cancels the request: its answer is not handed over any more.
class Ticket {
public:
  Ticket() = default;
  Ticket(Ticket &&other) noexcept;
  Ticket &operator=(Ticket &&other) noexcept;
  Ticket(const Ticket &) = delete;
  Ticket &operator=(const Ticket &) = delete;
  ~Ticket() { reset(); }

  explicit operator bool() const { return service_ != nullptr; }
  void reset() noexcept;
  /// Changes how urgent the request is.
  void setUrgency(Urgency urgency) const noexcept;
  /// Whether the answer is being looked for at present. Then asking again would double the work.
  bool underWay() const noexcept;

private:
  friend class Service;
  Ticket(std::shared_ptr<Service> service, uint64_t id) : service_(std::move(service)), id_(id) {}
  std::shared_ptr<Service> service_; ///< null for no request
  uint64_t id_ = 0;
};

class Service : public std::enable_shared_from_this<Service> {
public:
  /// Takes the answer, completely, or throws and has taken nothing: then it is called again. It may destroy its ticket,
  /// but not before it throws.
  using Done = std::function<void(Answer &answer)>;

  /// The file is the one that messages name.
  Service(std::filesystem::path file, std::unique_ptr<Backend> backend);
  Service(const Service &) = delete;
  Service &operator=(const Service &) = delete;
  ~Service() = default;

  const std::filesystem::path &file() const { return file_; }

  /// `done` is called at most once, unless it throws, and never within this call. An answer that does not fit the
  /// request is handed over as a failure.
  [[nodiscard]] Ticket ask(Request request, Urgency urgency, Done done);
  /// Waits for one answer and hands it over, nothing else; false if it is not there by the deadline.
  bool await(const Ticket &ticket, Time deadline);
  /// Hands over what has been answered. If a `done` throws, the other answers are handed over nevertheless. That one
  /// stays for the next call, and the first exception is thrown at the end.
  void collect();

private:
  friend class Ticket;
  void handOver(Orders::iterator order);

  std::filesystem::path file_;
  std::unique_ptr<Backend> backend_;
  std::map<uint64_t, Done> asked_;
  Orders arrived_; ///< not handed over yet
  uint64_t rounds_ = 0;
};

} // namespace host
