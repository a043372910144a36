// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/opening.h"

#include <utility>

namespace viewer {

void Opening::request(File file) {
  files_.reserve(files_.size() + 1);
  file.service = makeService_(file.target.file);
  file.ticket = file.service->ask(host::OpenRequest{file.target.file, file.password}, host::Urgency::shown,
                                  [this, number = file.number](host::Answer &answer) {
                                    const auto found = std::find_if(files_.begin(), files_.end(), [=](const File &one) {
                                      return one.number == number;
                                    });
                                    if (found != files_.end()) found->answer = std::move(answer);
                                  });
  files_.push_back(std::move(file));
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
    services.push_back(file.service);
}

} // namespace viewer
