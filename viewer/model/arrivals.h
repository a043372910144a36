// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the documents' services have answered since the last call, handed to those who asked for it.
#pragma once

#include <exception>

#include "host/document/waker.h"
#include "viewer/model/finding.h"
#include "viewer/model/listtexts.h"
#include "viewer/model/matchcount.h"
#include "viewer/model/opener.h"

namespace viewer {

class Arrivals {
public:
  Arrivals(const Documents &documents, Opener &opener, Finding &finding, MatchCount &matchCount, ListTexts &listTexts,
           const host::Waker &waker)
      : documents_(documents), opener_(opener), finding_(finding), matchCount_(matchCount), listTexts_(listTexts),
        waker_(waker) {}

  /// Hands over the answers. If memory is exhausted for one of them, the following ones are handed over nevertheless;
  /// the rest stays for the next call, which a wake-up requests, and the failure is thrown at the end.
  void collect();

private:
  template <typename Step> void attempt(const Step &step);

  const Documents &documents_;
  Opener &opener_;
  Finding &finding_;
  MatchCount &matchCount_;
  ListTexts &listTexts_;
  const host::Waker &waker_;
  std::exception_ptr failure_; ///< the first failure of a collect()
  int failures_ = 0;           ///< consecutive calls of collect() that failed
};

} // namespace viewer
