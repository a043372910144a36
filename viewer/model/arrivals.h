// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the threads have done since the last call, handed to those who asked for it.
#pragma once

#include <exception>
#include <functional>

#include "viewer/model/documents.h"
#include "viewer/model/finding.h"
#include "viewer/model/tiles.h"

namespace viewer {

class Arrivals {
public:
  Arrivals(Renderer &renderer, Documents &documents, Tiles &tiles, Finding &finding, std::function<void()> wake)
      : renderer_(renderer), documents_(documents), tiles_(tiles), finding_(finding), wake_(std::move(wake)) {}

  /// Hands over the threads' results. If memory is exhausted for one of them, the following ones are handed over
  /// nevertheless; the rest stays for the next call, which `wake` requests, and the failure is thrown at the end.
  void collect();

private:
  template <typename Step> bool attempt(const Step &step);

  Renderer &renderer_;
  Documents &documents_;
  Tiles &tiles_;
  Finding &finding_;
  std::function<void()> wake_;
  Renderer::Results results_;  ///< not taken over yet
  std::exception_ptr failure_; ///< the first failure of a collect()
  int failures_ = 0;           ///< consecutive calls of collect() that failed
};

} // namespace viewer
