// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The sizes of a document's pages, as far as they are known.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

#include "host/document/documenterror.h"
#include "host/document/messages.h"
#include "host/document/service.h"

namespace host {

/// How long callers wait for an answer.
struct Limit {
  std::optional<std::chrono::milliseconds> time = {}; ///< none: as long as it takes
  /// If it is not null, nobody waits: gets the pages of which something is not there. Render ignores it.
  std::vector<int32_t> *missing = nullptr;
  Time deadline() const { return time ? std::chrono::steady_clock::now() + *time : Time::max(); }
};

/// The error of a page that is not there in time.
DocumentError notThere(const Service &service, int32_t page);

class SizeCache {
public:
  /// `late` is called with a page whose size was not known within the limit, once it is known. All arguments outlive
  /// this object, which cancels its requests at its end.
  SizeCache(Service &service, int32_t pageCount, const Limit &limit, const std::function<void(int32_t)> &late)
      : service_(service), pageCount_(pageCount), limit_(limit), late_(late) {}

  /// The size of an existing page; where it is not known in time, that of a letter page. While nobody waits, throws
  /// DocumentError instead, until the answer comes.
  PageSize get(int32_t page);
  /// Keeps the sizes of consecutive pages.
  void keep(int32_t first, const std::vector<PageSize> &sizes);
  bool isAwaited(int32_t page) const { return !sizes_.contains(page) && runs_.contains(firstOfRun(page)); }

private:
  struct Run {
    Ticket ticket;
    int32_t late = -1; ///< the page whose size was not known within the limit; -1: none
  };
  /// A caller who waits as long as it takes waits for no other page.
  int32_t runLength() const { return limit_.time ? sizesTogether : 1; }
  int32_t firstOfRun(int32_t page) const { return page - page % runLength(); }
  Run &ask(int32_t first, Urgency urgency);
  void take(int32_t first, Answer &answer);

  Service &service_;
  int32_t pageCount_;
  const Limit &limit_;
  const std::function<void(int32_t)> &late_;
  std::unordered_map<int32_t, PageSize> sizes_;
  std::map<int32_t, Run> runs_; ///< those asked for, by their first pages
  std::set<int32_t> failed_;    ///< those whose request has failed; without a meaning once they are known
};

} // namespace host
