// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What undo goes back to.
#include "viewer/model/edithistory.h"

#include <gtest/gtest.h>

namespace viewer {
namespace {

using State = EditHistory::State;
using Kind = EditHistory::Kind;

TEST(EditHistoryTest, WithoutAChangeThereIsNothingToUndo) {
  EditHistory history;
  EXPECT_FALSE(history.undo({"a", 1}));
  EXPECT_FALSE(history.redo({"a", 1}));
}

TEST(EditHistoryTest, AChangeIsUndoneAndRepeated) {
  EditHistory history;
  history.note({"old", 1}, Kind::other);
  EXPECT_EQ(history.undo({"new", 2}), (State{"old", 1}));
  EXPECT_EQ(history.redo({"old", 1}), (State{"new", 2}));
  EXPECT_EQ(history.undo({"new", 2}), (State{"old", 1}));
}

TEST(EditHistoryTest, WhatIsTypedInARowIsUndoneTogether) {
  EditHistory history;
  history.note({"", 0}, Kind::typing);
  history.note({"a", 1}, Kind::typing);
  EXPECT_EQ(history.undo({"ab", 2}), (State{"", 0}));
  EXPECT_FALSE(history.undo({"", 0}));
}

TEST(EditHistoryTest, TypingAndDeletingAreUndoneSeparately) {
  EditHistory history;
  history.note({"", 0}, Kind::typing);
  history.note({"ab", 2}, Kind::deleting);
  history.note({"a", 1}, Kind::deleting);
  EXPECT_EQ(history.undo({"", 0}), (State{"ab", 2}));
  EXPECT_EQ(history.undo({"ab", 2}), (State{"", 0}));
}

TEST(EditHistoryTest, OtherChangesAreUndoneOneByOne) {
  EditHistory history;
  history.note({"", 0}, Kind::other);
  history.note({"a", 1}, Kind::other);
  EXPECT_EQ(history.undo({"ab", 2}), (State{"a", 1}));
}

TEST(EditHistoryTest, WhatIsTypedElsewhereIsUndoneSeparately) {
  EditHistory history;
  history.note({"", 0}, Kind::typing);
  history.separate();
  history.note({"a", 0}, Kind::typing);
  EXPECT_EQ(history.undo({"ba", 1}), (State{"a", 0}));
}

TEST(EditHistoryTest, WhatIsTypedAfterAnUndoIsUndoneSeparately) {
  EditHistory history;
  history.note({"", 0}, Kind::typing);
  history.note({"a", 1}, Kind::other);
  EXPECT_EQ(history.undo({"a b", 3}), (State{"a", 1}));
  history.note({"a", 1}, Kind::typing);
  EXPECT_EQ(history.undo({"ac", 2}), (State{"a", 1}));
}

TEST(EditHistoryTest, AChangeEndsWhatCouldBeRepeated) {
  EditHistory history;
  history.note({"old", 1}, Kind::other);
  history.undo({"new", 2});
  history.note({"old", 1}, Kind::other);
  EXPECT_FALSE(history.redo({"other", 2}));
}

TEST(EditHistoryTest, TheOldestStatesAreForgotten) {
  EditHistory history;
  for (size_t i = 0; i <= EditHistory::longest; ++i)
    history.note({std::to_string(i), 0}, Kind::other);
  State last;
  size_t steps = 0;
  while (const auto state = history.undo(last)) {
    last = *state;
    ++steps;
  }
  EXPECT_EQ(steps, EditHistory::longest);
  EXPECT_EQ(last.text, "1");
}

TEST(EditHistoryTest, NothingIsLeftWhenItIsCleared) {
  EditHistory history;
  history.note({"a", 0}, Kind::other);
  history.note({"b", 0}, Kind::other);
  history.undo({"c", 0});
  history.clear();
  EXPECT_FALSE(history.undo({"b", 0}));
  EXPECT_FALSE(history.redo({"b", 0}));
}

} // namespace
} // namespace viewer
