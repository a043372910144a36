// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The owner's side of a document: who has asked for what, and who gets which answer.
#include "host/document/service.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "host/document/documenterror.h"

namespace host {

Orders extract(Orders &from, uint64_t id) noexcept {
  Orders one;
  const auto found = std::find_if(from.begin(), from.end(), [=](const Order &order) { return order.id == id; });
  if (found != from.end()) one.splice(one.begin(), from, found);
  return one;
}

Ticket::Ticket(Ticket &&other) noexcept : service_(std::move(other.service_)), id_(other.id_) {}

Ticket &Ticket::operator=(Ticket &&other) noexcept {
  if (this == &other) return *this;
  reset();
  service_ = std::move(other.service_);
  id_ = other.id_;
  return *this;
}

void Ticket::reset() noexcept {
  const std::shared_ptr<Service> service = std::move(service_);
  if (service != nullptr && service->asked_.erase(id_) > 0) service->backend_->cancel(id_);
}

void Ticket::setUrgency(Urgency urgency) const noexcept {
  if (service_ != nullptr) service_->backend_->setUrgency(id_, urgency);
}

bool Ticket::underWay() const noexcept { return service_ != nullptr && service_->backend_->underWay(id_); }

Service::Service(std::filesystem::path file, std::unique_ptr<Backend> backend)
    : file_(std::move(file)), backend_(std::move(backend)) {}

Ticket Service::ask(Request request, Urgency urgency, Done done) {
  static std::atomic<uint64_t> s_ids;
  const uint64_t id = ++s_ids;
  Orders order;
  order.push_back({id, urgency, std::move(request)});
  asked_.emplace(id, std::move(done));
  backend_->start(std::move(order));
  return {shared_from_this(), id};
}

void Service::handOver(Orders::iterator order) {
  auto asked = asked_.extract(order->id);
  if (asked.empty()) { // cancelled, or answered before
    arrived_.erase(order);
    return;
  }
  // In neither list during the call, which may ask and await something else.
  Orders one;
  one.splice(one.begin(), arrived_, order);
  try {
    if (!fits(order->request, order->answer))
      order->answer.value =
          Failure{tavrel::errDocument, nameInMessage(file_) + ": the PDF library has given a wrong answer"};
    asked.mapped()(order->answer);
  } catch (...) {
    arrived_.splice(arrived_.end(), one);
    asked_.insert(std::move(asked));
    throw;
  }
}

bool Service::await(const Ticket &ticket, Time deadline) {
  if (!asked_.contains(ticket.id_)) return true;
  const auto isIt = [&](const Order &order) { return order.id == ticket.id_; };
  auto order = std::find_if(arrived_.begin(), arrived_.end(), isIt);
  if (order == arrived_.end()) {
    arrived_.splice(arrived_.end(), backend_->await(ticket.id_, deadline));
    order = std::find_if(arrived_.begin(), arrived_.end(), isIt);
  }
  if (order == arrived_.end()) return false;
  handOver(order);
  return true;
}

void Service::collect() {
  arrived_.splice(arrived_.end(), backend_->take());
  const uint64_t round = ++rounds_;
  std::exception_ptr failure;
  for (;;) { // searched each time: a call may hand over others
    const auto next =
        std::find_if(arrived_.begin(), arrived_.end(), [=](const Order &order) { return order.round != round; });
    if (next == arrived_.end()) break;
    next->round = round;
    try {
      handOver(next);
    } catch (const std::exception &) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

} // namespace host
