// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The sizes of a document's pages, as far as they are known.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <unordered_map>

#include "host/document/service.h"

namespace host {

/// How long callers wait for an answer.
struct Limit {
  std::optional<std::chrono::milliseconds> time = {}; ///< none: as long as it takes
  Time deadline() const { return time ? std::chrono::steady_clock::now() + *time : Time::max(); }
};

class SizeCache {
public:
  /// `late` is called with a page whose size was not known within the limit, once it is known. All arguments outlive
  /// this object, which cancels its requests at its end.
  SizeCache(Service &service, int32_t pageCount, Limit limit, const std::function<void(int32_t)> &late)
      : service_(service), pageCount_(pageCount), limit_(limit), late_(late) {}

  /// The size of an existing page; where it is not known in time, that of a letter page.
  PageSize get(int32_t page);
  /// Keeps the sizes of consecutive pages.
  void keep(int32_t first, const std::vector<PageSize> &sizes);

private:
  struct Run {
    Ticket ticket;
    int32_t late = -1; ///< the page whose size was not known within the limit; -1: none
  };
  void take(int32_t first, Answer &answer);

  Service &service_;
  int32_t pageCount_;
  Limit limit_;
  const std::function<void(int32_t)> &late_;
  std::unordered_map<int32_t, PageSize> sizes_;
  std::map<int32_t, Run> runs_; ///< those asked for, by their first pages
};

} // namespace host
