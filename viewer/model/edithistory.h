// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The states of a text field that a user can go back to, and forth again.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace viewer {

class EditHistory {
public:
  struct State {
    std::string text; ///< UTF-8
    int cursor = 0;   ///< in characters
    bool operator==(const State &) const = default;
  };
  /// Successive changes of one of the first two kinds are undone together.
  enum class Kind { typing, deleting, other };
  static constexpr size_t longest = 100; ///< steps; older ones are forgotten

  /// Notes the state before a change by the user.
  void note(State before, Kind kind);
  /// The next change is undone separately, whatever its kind.
  void separate() { last_ = Kind::other; }
  /// What to go back to, from the state that the field has now; nothing at the oldest one.
  std::optional<State> undo(State now) { return step(past_, future_, std::move(now)); }
  /// What the last undo went back from.
  std::optional<State> redo(State now) { return step(future_, past_, std::move(now)); }
  void clear();

private:
  std::optional<State> step(std::vector<State> &from, std::vector<State> &to, State now);

  std::vector<State> past_, future_;
  Kind last_ = Kind::other;
};

} // namespace viewer
