// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include <gmock/gmock.h> // before X, whose names are macros

#include "viewer/window/keycolumns.h"

namespace viewer {
namespace {

using testing::ElementsAre;

const std::vector<KeyRow> rows{{"File", "Ctrl+O", "Open", ""},
                               {"File", "Ctrl+Q", "Quit", ""},
                               {"Go", "Home", "First Page", ""},
                               {"Page", "Up", "A little up", ""},
                               {"Page", "Down", "A little down", ""}};

TEST(KeyColumnsTest, AGroupHasAHeadingAndAnEmptyLineBeforeIt) {
  const std::vector<KeyColumn> columns = keyColumns(rows, 1);
  ASSERT_EQ(columns.size(), 1U);
  EXPECT_THAT(columns[0].keys,
              ElementsAre("File", "   Ctrl+O", "   Ctrl+Q", "", "Go", "   Home", "", "Page", "   Up", "   Down"));
  EXPECT_THAT(columns[0].sentences,
              ElementsAre("", "Open", "Quit", "", "", "First Page", "", "", "A little up", "A little down"));
}

TEST(KeyColumnsTest, GroupsStayTogetherInColumnsOfTheSameHeight) {
  const std::vector<KeyColumn> columns = keyColumns(rows, 2);
  ASSERT_EQ(columns.size(), 2U);
  EXPECT_THAT(columns[0].keys, ElementsAre("File", "   Ctrl+O", "   Ctrl+Q", "", "Go", "   Home"));
  EXPECT_THAT(columns[1].keys, ElementsAre("Page", "   Up", "   Down", "", "", ""));
  EXPECT_EQ(columns[1].sentences.size(), 6U);
}

TEST(KeyColumnsTest, ManyKeysAreOnSeveralLines) {
  const std::vector<KeyColumn> columns =
      keyColumns({{"View", "Ctrl++, +, Keypad +, Ctrl+=, =, Ctrl+Wheel up", "Larger", ""}}, 1);
  EXPECT_THAT(columns[0].keys, ElementsAre("View", "   Ctrl++, +, Keypad +, Ctrl+=, =,", "   Ctrl+Wheel up"));
  EXPECT_THAT(columns[0].sentences, ElementsAre("", "Larger", ""));
}

} // namespace
} // namespace viewer
