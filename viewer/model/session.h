// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The viewer's logic and state, without a window: makes their owners and connects them. A window calls the owners'
// operations, shows what the screen has drawn, and brings up to date what has changed.
//
// All of it runs on the thread that plug-ins run on. Opening, rendering and searching are done by other threads. They
// call `wake`, after which the window calls arrivals.collect() soon.
#pragma once

#include <chrono>
#include <functional>

#include "viewer/model/arrivals.h"
#include "viewer/model/model.h"

namespace viewer {

struct Session {
  Session(host::Application &app, const std::function<void()> &wake);
  ~Session(); ///< closes the documents
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  Model model() { return {changes, status, documents, moving, tiles, finding, screen, listTexts}; }
  /// Ends rendering and searching and waits for both up to the timeout; false if a page is still in progress.
  bool finish(std::chrono::milliseconds timeout);

private:
  host::Application &app_;
  Renderer renderer_;
  Searcher searcher_;

public:
  Changes changes;
  StatusLine status{changes};
  Documents documents;
  Moving moving{documents, status, changes};
  Tiles tiles{documents, renderer_, status};
  Finding finding{documents, moving, searcher_, status, changes};
  Screen screen{app_, documents, tiles, finding, status, changes};
  ListTexts listTexts{app_, documents, tiles};
  Arrivals arrivals;
};

} // namespace viewer
