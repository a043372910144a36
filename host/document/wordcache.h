// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The words of a document's pages, as far as they have been asked for.
#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "host/document/documenterror.h"
#include "host/document/sizes.h"

namespace host {

class WordCache {
public:
  /// `late` is called with a page whose words were not there within the limit, once they are. All arguments
  /// outlive this object, which cancels its requests at its end.
  WordCache(Service &service, const Limit &limit, const std::function<void(int32_t)> &late)
      : service_(service), limit_(limit), late_(late) {}

  // Of existing pages. References are valid until the page is forgotten. What is not there in time throws
  // DocumentError; the next call asks again for what has failed, and waits no more for what has not been answered.
  // While nobody waits, what has failed is not asked for again: it would fail each time that an answer has come.
  const PageText &text(int32_t page);
  const std::vector<uint32_t> &order(int32_t page);
  void forget(int32_t page) { pages_.erase(page); }
  bool isAwaited(int32_t page) const {
    const auto found = pages_.find(page);
    return found != pages_.end() && found->second.ticket;
  }
  /// Asks for a page's words, if any page's have been used so far: many documents are read without. One page is shown;
  /// the words of the one before it are not as urgent any more.
  void expect(int32_t page, Urgency urgency);

private:
  struct Page {
    std::optional<PageText> text;
    std::optional<std::vector<uint32_t>> order;
    Ticket ticket;
    Urgency urgency = Urgency::ahead; ///< of the ticket
    std::optional<Failure> failure;   ///< of the last request
    bool late = false;                ///< the answer was not there within the limit
  };
  void ask(int32_t number, Page &page, Urgency urgency);
  static void setUrgency(Page &page, Urgency urgency);
  void fetch(int32_t number, Page &page, Time deadline);
  void take(int32_t number, bool order, Answer &answer);

  Service &service_;
  const Limit &limit_;
  const std::function<void(int32_t)> &late_;
  bool used_ = false, orderUsed_ = false;
  std::unordered_map<int32_t, Page> pages_;
};

} // namespace host
