// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/edithistory.h"

#include <utility>

namespace viewer {

void EditHistory::note(State before, Kind kind) {
  future_.clear();
  if (kind != Kind::other && std::exchange(last_, kind) == kind) return;
  last_ = kind;
  if (past_.size() == longest) past_.erase(past_.begin());
  past_.push_back(std::move(before));
}

std::optional<EditHistory::State> EditHistory::step(std::vector<State> &from, std::vector<State> &to, State now) {
  separate();
  if (from.empty()) return std::nullopt;
  to.push_back(std::move(now));
  State state = std::move(from.back());
  from.pop_back();
  return state;
}

void EditHistory::clear() {
  past_.clear();
  future_.clear();
  separate();
}

} // namespace viewer
