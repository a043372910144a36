// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A request of a document that a command has made, and its answer: commands have nothing else to do than to wait.
#pragma once

#include <string>
#include <utility>
#include <variant>

#include "host/document/documenterror.h"
#include "host/document/service.h"

namespace tools {

/// `Got` is the kind of the answer.
template <typename Got> class Asked {
public:
  /// Asks. The service outlives this object, which cancels the request at its end.
  Asked(host::Service &service, host::Request request, host::Urgency urgency)
      : service_(service), ticket_(service.ask(std::move(request), urgency,
                                               [this](host::Answer &answer) { answer_ = std::move(answer); })) {}
  Asked(const Asked &) = delete;
  Asked &operator=(const Asked &) = delete;
  ~Asked() = default;

  /// Waits for the answer; to be called once. There is no limit here: the service that answers has its own. Throws what
  /// the failure was made of.
  Got get() {
    if (!service_.await(ticket_, host::Time::max()))
      throw host::HostError(tavrel::errGeneric, host::nameInMessage(service_.file()) + ": there is no answer");
    if (const auto *failure = std::get_if<host::Failure>(&answer_.value)) host::raise(*failure);
    return std::move(std::get<Got>(answer_.value));
  }

private:
  host::Service &service_;
  host::Answer answer_;
  host::Ticket ticket_; ///< last: its answer goes to the above
};

} // namespace tools
