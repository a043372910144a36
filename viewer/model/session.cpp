// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/session.h"

#include <chrono>
#include <memory>

namespace viewer {
namespace {

ServiceMaker servedBy(host::Processes &processes) {
  return [&processes](const std::filesystem::path &file) {
    return std::make_shared<host::Service>(file, processes.backend(file));
  };
}

} // namespace

Session::Session(host::Application &app, const host::ProcessOptions &options, const ServiceMaker &makeService)
    : app_(app), processes_(options), documents(app, status, changes),
      opener(documents, makeService ? makeService : servedBy(processes_), status, changes),
      arrivals(documents, opener, finding, matchCount, listTexts, processes_.waker()) {
  documents.keepers = {&opener, &finding, &screen, &moving, &tiles, &matchCount};
  app_.statusListener = [this] { changes.note(allParts); };
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = [this] { changes.note(allParts); };
}

void Session::drawAhead() {
  Services services;
  opener.addServices(services);
  for (const auto &service : services)
    service->collect();
  if (opener.hasOpened()) processes_.waker().wake(); // it has been collected, and is to be taken over
  const Opening::File *const file = opener.onlyOpened();
  if (file == nullptr || !file->target.parameters.empty()) return; // they may lead to another page
  const auto &opened = std::get<host::Opened>(file->answer->value);
  const auto document = host::Document::of({file->service, std::chrono::milliseconds(0)}, opened);
  tiles.requestFirst(file->number, *file->service, document->pageSize(0), moving.firstDpi(*document));
}

Session::~Session() {
  documents.closeAll();
  app_.statusListener = {};
  if (app_.toolBar() != nullptr) app_.toolBar()->listener = {};
}

} // namespace viewer
