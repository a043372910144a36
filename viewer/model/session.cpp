// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/session.h"

#include <memory>

namespace viewer {

Session::Session(host::Application &app, const std::function<void()> &wake, const ServiceMaker &makeService)
    : app_(app), threads(wake),
      documents(
          app,
          makeService ? makeService
                      : [this](const std::filesystem::path
                                   &file) { return std::make_shared<host::Service>(file, threads.backend(file)); },
          status, changes),
      arrivals(documents, finding, wake) {
  documents.keepers = {&finding, &screen, &moving, &tiles};
  app_.statusListener = [this] { changes.note(allParts); };
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = [this] { changes.note(allParts); };
}

Session::~Session() {
  documents.closeAll();
  app_.statusListener = {};
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = {};
}

} // namespace viewer
