// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/failures.h"

#include "viewer/model/statusline.h"
#include "viewer/window/mainwindow.h"

namespace viewer {

Failures::Failures(StatusLine &status) : status_(status) {
  status.listener = [this](const std::string &line) {
    if (++count_ <= most) lines_ += (lines_.empty() ? "" : "\n") + line;
  };
}

Failures::~Failures() { status_.listener = {}; }

void Failures::show(MainWindow &window) {
  status_.listener = {};
  if (count_ > most) lines_ += "\nand " + std::to_string(count_ - most) + " more";
  if (count_ > 0) {
    window.awaitPosition();
    window.informations().showError("Cannot Open", lines_);
  }
  count_ = 0;
}

} // namespace viewer
