// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/session.h"

#include <algorithm>

namespace viewer {

Session::Session(host::Application &app, const std::function<void()> &wake)
    : app_(app), renderer_(wake), searcher_(wake), documents(app, renderer_, status, changes),
      arrivals(renderer_, documents, tiles, finding, wake) {
  documents.keepers = {&finding, &screen, &moving, &tiles};
  app_.statusListener = [this] { changes.note(allParts); };
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = [this] { changes.note(allParts); };
}

Session::~Session() {
  documents.closeAll();
  app_.statusListener = {};
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = {};
}

bool Session::finish(std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  const bool rendered = renderer_.finish(timeout);
  const auto left = deadline - std::chrono::steady_clock::now();
  const bool searched = searcher_.finish(
      std::max(std::chrono::milliseconds(0), std::chrono::duration_cast<std::chrono::milliseconds>(left)));
  return rendered && searched;
}

} // namespace viewer
