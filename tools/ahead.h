// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// An answer for each page of a document, asked for before it is needed, so that all of the document's processes have
// something to do.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <utility>

#include "tools/asked.h"

namespace tools {

template <typename Got> class PagesAhead {
public:
  using RequestOf = std::function<host::Request(int32_t page)>;

  /// How far ahead pages are asked for. Each answer has a weight. The answers that are not taken yet weigh at most
  /// `weight` together, except that one of any weight is allowed.
  struct Reach {
    size_t pages;
    double weight = 0;
    std::function<double(int32_t page)> weightOf = [](int32_t /*page*/) { return 0; };
  };

  /// `requestOf` is a page's request, which is answered by a `Got`. The service outlives this object.
  PagesAhead(host::Service &service, int32_t pageCount, RequestOf requestOf, Reach reach)
      : service_(service), pageCount_(pageCount), requestOf_(std::move(requestOf)), reach_(std::move(reach)) {}

  /// The answer for a page; pages are taken in order. Throws what its failure was made of.
  Got take(int32_t page) {
    while (!ahead_.empty() && ahead_.front().page < page)
      drop();
    if (ahead_.empty()) next_ = page;
    askAhead();
    if (ahead_.empty() || ahead_.front().page != page)
      return Asked<Got>(service_, requestOf_(page), host::Urgency::awaited).get();
    struct Scope {
      PagesAhead &all;
      ~Scope() { all.drop(); }
    } const scope{*this};
    return ahead_.front().asked.get();
  }

private:
  struct Page {
    Page(int32_t number, double itsWeight, host::Service &service, host::Request request)
        : page(number), weight(itsWeight), asked(service, std::move(request), host::Urgency::shown) {}
    int32_t page;
    double weight;
    Asked<Got> asked;
  };

  void drop() {
    weight_ -= ahead_.front().weight;
    ahead_.pop_front();
  }

  void askAhead() {
    for (; next_ < pageCount_ && ahead_.size() < reach_.pages; ++next_) {
      const double weight = reach_.weightOf(next_);
      if (!ahead_.empty() && weight_ + weight > reach_.weight) return;
      ahead_.emplace_back(next_, weight, service_, requestOf_(next_));
      weight_ += weight;
    }
  }

  host::Service &service_;
  int32_t pageCount_;
  RequestOf requestOf_;
  Reach reach_;
  int32_t next_ = 0; ///< the first page not yet asked for
  double weight_ = 0;
  std::list<Page> ahead_;
};

} // namespace tools
