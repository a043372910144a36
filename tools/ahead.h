// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A result for each page of a document, made on other threads before it is requested.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <optional>
#include <utility>

#include "tools/workers.h"

namespace tools {

template <typename Made> class PagesAhead {
public:
  using Make = std::function<Made(document::PdfFile &file, int32_t page)>;

  /// How far ahead pages are made. Each result has a weight. The results that are not taken yet weigh at most `weight`
  /// together, except that one of any weight is allowed.
  struct Reach {
    size_t pages;
    double weight = 0;
    std::function<double(int32_t page)> weightOf = [](int32_t /*page*/) { return 0; };
  };

  /// `make` is called on the workers' threads with their files. It is called on the caller's thread with `own` for a
  /// page out of order, and for every page if there are no workers. All arguments outlive this object.
  PagesAhead(document::PdfFile &own, Workers &workers, Make make, Reach reach)
      : own_(own), workers_(workers), make_(std::move(make)), reach_(std::move(reach)) {}

  /// The result for a page; pages are taken in order. Throws the exception that `make` threw.
  Made take(int32_t page) {
    while (!ahead_.empty() && ahead_.front().page < page)
      drop();
    if (ahead_.empty()) next_ = page;
    order();
    if (ahead_.empty() || ahead_.front().page != page) return make_(own_, page);
    std::future<std::optional<Made>> made = std::move(ahead_.front().made);
    drop();
    if (std::optional<Made> there = made.get()) return std::move(*there);
    return make_(own_, page);
  }

private:
  struct Ordered {
    int32_t page;
    double weight;
    std::future<std::optional<Made>> made; ///< empty if the thread has no file
  };

  void drop() {
    weight_ -= ahead_.front().weight;
    ahead_.pop_front();
  }

  void order() {
    for (; workers_.threads() > 0 && next_ < own_.pageCount() && ahead_.size() < reach_.pages; ++next_) {
      const double weight = reach_.weightOf(next_);
      if (!ahead_.empty() && weight_ + weight > reach_.weight) return;
      ahead_.push_back(
          {next_, weight, workers_.order([make = make_, page = next_](document::PdfFile *file) -> std::optional<Made> {
             if (file == nullptr) return std::nullopt;
             return make(*file, page);
           })});
      weight_ += weight;
    }
  }

  document::PdfFile &own_;
  Workers &workers_;
  Make make_;
  Reach reach_;
  int32_t next_ = 0; ///< the first page not yet ordered
  double weight_ = 0;
  std::deque<Ordered> ahead_;
};

} // namespace tools
