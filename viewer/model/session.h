// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The viewer's logic and state, without a window: makes their owners and connects them. A window calls the owners'
// operations, shows what the screen has drawn, and brings up to date what has changed.
//
// All of it runs on the thread that plug-ins run on. The documents are read by other processes: when the session's
// descriptor is readable, the window calls arrivals.collect().
#pragma once

#include "host/document/process.h"
#include "host/document/processes.h"
#include "viewer/model/arrivals.h"
#include "viewer/model/model.h"

namespace viewer {

struct Session {
  /// Processes answer. Throws HostError if there are no more file descriptors.
  explicit Session(host::Application &app, const host::ProcessOptions &options = {host::documentProgram()})
      : Session(app, options, {}) {}
  /// Services made by a test answer.
  Session(host::Application &app, const ServiceMaker &makeService)
      : Session(app, host::ProcessOptions{}, makeService) {}
  ~Session(); ///< closes the documents
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  Model model() { return {changes, status, documents, opener, moving, tiles, finding, matchCount, screen, listTexts}; }
  /// Asks for the first page of the file that is being opened, as soon as it is open, before the document is taken
  /// over.
  void drawAhead();
  /// Readable when there is something to collect.
  int descriptor() const { return processes_.descriptor(); }

private:
  Session(host::Application &app, const host::ProcessOptions &options, const ServiceMaker &makeService);

  host::Application &app_;
  host::Processes processes_;

public:
  Changes changes;
  StatusLine status{changes};
  Documents documents;
  Opener opener;
  Moving moving{documents, status, changes};
  Tiles tiles{documents, status};
  Finding finding{documents, moving, status, changes};
  MatchCount matchCount{documents, finding, changes};
  Screen screen{app_, documents, tiles, finding, status, changes};
  ListTexts listTexts{app_, documents, tiles, changes};
  Arrivals arrivals;
};

} // namespace viewer
