// What a command makes of each page of a document, made on other threads before it is asked for.
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
  using Make = std::function<Made(host::PdfFile &file, int32_t page)>;

  /// How far ahead. What is made of a page weighs something, and all that is not taken yet weighs no more than
  /// `weight`, unless it is one page.
  struct Reach {
    size_t pages;
    double weight = 0;
    std::function<double(int32_t page)> weightOf = [](int32_t /*page*/) { return 0; };
  };

  /// `make` is called on the workers' threads with their files, and on the caller's with its own: for a page out of
  /// turn, and for every page where there are no workers. All of them outlive this.
  PagesAhead(host::PdfFile &own, Workers &workers, Make make, Reach reach)
      : own_(own), workers_(workers), make_(std::move(make)), reach_(std::move(reach)) {}

  /// What is made of a page; pages are taken in order. Throws what making it threw.
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
    std::future<std::optional<Made>> made; ///< none where the thread has no file
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
          {next_, weight, workers_.order([make = make_, page = next_](host::PdfFile *file) -> std::optional<Made> {
             if (file == nullptr) return std::nullopt;
             return make(*file, page);
           })});
      weight_ += weight;
    }
  }

  host::PdfFile &own_;
  Workers &workers_;
  Make make_;
  Reach reach_;
  int32_t next_ = 0; ///< the first page not yet ordered
  double weight_ = 0;
  std::deque<Ordered> ahead_;
};

} // namespace tools
