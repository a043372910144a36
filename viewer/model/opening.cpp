// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/opening.h"

#include <utility>

namespace viewer {

void Opening::request(File file) {
  files_.push_back(std::move(file));
  try {
    proceed();
  } catch (...) {
    files_.pop_back();
    throw;
  }
}

void Opening::proceed() {
  const host::Time since = std::chrono::steady_clock::now() - countedFor;
  const auto isUnderWay = [=](const File &file) {
    return file.service != nullptr && !isAnswered(file) && file.begun > since;
  };
  const auto underWay = std::count_if(files_.begin(), files_.end(), isUnderWay);
  auto next = files_.begin();
  for (int64_t count = underWay; count < atOnce; ++count) {
    next = std::find_if(next, files_.end(), [](const File &file) { return file.service == nullptr; });
    if (next == files_.end()) return;
    ask(*next);
  }
}

void Opening::ask(File &file) {
  auto service = makeService_(file.target.file);
  file.ticket = service->ask(host::OpenRequest{file.target.file, file.password}, host::Urgency::shown,
                             [this, number = file.number](host::Answer &answer) {
                               const auto found = std::find_if(files_.begin(), files_.end(),
                                                               [=](const File &one) { return one.number == number; });
                               if (found != files_.end()) found->answer = std::move(answer);
                             });
  file.service = std::move(service);
  file.begun = std::chrono::steady_clock::now();
}

std::optional<Opening::File> Opening::take() {
  const auto found = std::find_if(files_.begin(), files_.end(), isAnswered);
  if (found == files_.end()) return std::nullopt;
  std::optional<File> taken = std::move(*found);
  files_.erase(found);
  return taken;
}

const Opening::File *Opening::onlyOpened() const {
  const bool isOpened =
      files_.size() == 1 && isAnswered(files_[0]) && std::holds_alternative<host::Opened>(files_[0].answer->value);
  return isOpened ? files_.data() : nullptr;
}

void Opening::dropReload(uint64_t document) {
  std::erase_if(files_, [=](const File &file) { return file.replaces == document; });
}

void Opening::addServices(Services &services) const {
  for (const File &file : files_)
    if (file.service != nullptr) services.push_back(file.service);
}

} // namespace viewer
