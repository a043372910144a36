// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The list of all keys, and the manual page, which has the same. No test opens a display.
#include <gmock/gmock.h> // before X, whose names are macros

#include "DefaultResources.h"
#include "viewer/window/actions.h"
#include "viewer/window/findkeys.h"
#include "viewer/window/keylist.h"
#include "viewer/window/openkeys.h"
#include "viewer/window/rowskeys.h"
#include "viewer/window/textediting.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

namespace viewer {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// The key of an entry in a menu, by default.
std::string accelerator(const std::string &command) {
  for (const Action &action : actions())
    if (command == action.name && action.menu != nullptr)
      return keyName(test::resource(std::string("tavrel.menubar.") + action.menu + "." + command + ".accelerator"));
  return {};
}

std::string noAccelerator(const std::string & /*command*/) { return {}; }

// The keys of a command, with a user's translations; empty: it has no row.
std::string keysOf(const std::string &command, const std::string &users = {}) {
  for (const KeyRow &row : keyRows(noAccelerator, users))
    if (row.command == command) return row.keys;
  return {};
}

// The keys of the row with that sentence.
std::string keysThat(const std::string &sentence, const std::string &users) {
  for (const KeyRow &row : keyRows(noAccelerator, users))
    if (row.sentence == sentence) return row.keys;
  return {};
}

TEST(KeyListTest, AKeyIsWrittenForUsers) {
  const std::map<std::string, std::string> written{{"Ctrl<Key>o", "Ctrl+O"},
                                                   {"Ctrl Shift<Key>g", "Ctrl+Shift+G"},
                                                   {"<Key>F3", "F3"},
                                                   {"Shift<Key>F3", "Shift+F3"},
                                                   {"Ctrl<Key>plus", "Ctrl++"},
                                                   {"Ctrl<Key>minus", "Ctrl+-"},
                                                   {"Ctrl<Key>Prior", "Ctrl+Page Up"},
                                                   {"Ctrl<Key>Next", "Ctrl+Page Down"},
                                                   {"Ctrl<Key>1", "Ctrl+1"},
                                                   {"Ctrl<Key>Home", "Ctrl+Home"},
                                                   {"<Key>osfCancel", "Esc"},
                                                   {":<Key>slash", "/"},
                                                   {"~Shift<Key>space", "Space"},
                                                   {"~Ctrl ~Shift<Key>osfUp", "Up"},
                                                   {"<Key>osfInsert", "Insert"},
                                                   {"Mod1<Key>x", "Alt+X"},
                                                   {"!Ctrl Mod4<Key>F2", "Ctrl+Super+F2"},
                                                   {"<Key>KP_Add", "Keypad +"},
                                                   {"Ctrl ~Shift<Btn4Down>", "Ctrl+Wheel up"},
                                                   {"<Btn1Down>", "Left button"}};
  for (const auto &[translation, name] : written)
    EXPECT_EQ(keyName(translation), name);
}

TEST(KeyListTest, OtherTextsAreNotChanged) {
  EXPECT_EQ(keyName("F3"), "F3");
  EXPECT_EQ(keyName(""), "");
}

// ---- rows ----

TEST(KeyListTest, ARowHasTheAcceleratorAndThePagesKeys) {
  const std::vector<KeyRow> rows = keyRows(accelerator, {});
  const auto row = std::ranges::find(rows, "FindDialog", &KeyRow::command);
  ASSERT_NE(row, rows.end());
  EXPECT_EQ(row->group, "Edit");
  EXPECT_EQ(row->keys, "Ctrl+F, /");
  EXPECT_EQ(row->sentence, findCommand("FindDialog")->sentence);
}

TEST(KeyListTest, EveryCommandThatHasAKeyHasOneRow) {
  std::map<std::string, int> count;
  for (const KeyRow &row : keyRows(accelerator, {}))
    ++count[row.command];
  for (const Action &action : actions()) {
    const bool hasKey = action.keys != nullptr || !accelerator(action.name).empty();
    EXPECT_EQ(count[action.name], hasKey ? 1 : 0) << action.name;
  }
}

TEST(KeyListTest, AKeyUnderTwoNamesIsListedOnce) { EXPECT_EQ(keysOf("FirstPage"), "Home"); }

TEST(KeyListTest, AChangedAcceleratorIsListed) {
  const std::vector<KeyRow> rows =
      keyRows([](const std::string &command) { return command == "Quit" ? "Ctrl+X" : ""; }, {});
  EXPECT_EQ(std::ranges::find(rows, "Quit", &KeyRow::command)->keys, "Ctrl+X");
}

TEST(KeyListTest, TheRowsAreInTheOrderOfTheMenus) {
  std::vector<std::string> groups;
  for (const KeyRow &row : keyRows(accelerator, {}, {{"Tools", "F3", "Steps", ""}}))
    if (groups.empty() || groups.back() != row.group) groups.push_back(row.group);
  EXPECT_THAT(groups, ElementsAre("File", "Edit", "View", "Go", "Tools", "Help", pageGroup, "Side Panel", "Text Fields",
                                  "Find Dialog", "Open Dialog"));
}

TEST(KeyListTest, DraggingIsOneRow) { EXPECT_EQ(keysThat("Drags the page", {}), "Left button"); }

TEST(KeyListTest, TheKeysOfOtherPartsOfTheWindowAreThoseOfTheirTranslations) {
  EXPECT_EQ(keysThat("Copies the selected text", {}), "Ctrl+C, Ctrl+Insert, Copy");
  EXPECT_EQ(keysThat("Finds the next match", {}), "Ctrl+G, F3");
  EXPECT_EQ(keysThat("Completes the name", {}), "Tab");
  EXPECT_EQ(keysThat("The folder above", {}), "Alt+Up, Backspace");
  EXPECT_EQ(keysThat("Goes to the hit", {}), "Return, Keypad Enter");
}

// Without a meaning in the list a key would be left out.
TEST(KeyListTest, EveryKeyOfOtherPartsOfTheWindowIsListed) {
  std::string all;
  for (const KeyRow &row : keyRows(accelerator, {}))
    if (row.group != pageGroup) all += ", " + row.keys + ",";
  for (const std::string &table : {rowsTranslations(), fieldTranslations(), findTranslations(), openTranslations()})
    for (const std::string &line : test::lines(table))
      if (line.find("deselect-all()") == std::string::npos) {
        EXPECT_THAT(all, testing::HasSubstr(", " + keyName(line.substr(0, line.find(": "))) + ",")) << line;
      }
}

// ---- a user's translations ----

TEST(KeyListTest, AnAddedKeyIsListedFirst) {
  EXPECT_EQ(keysOf("LineDown", "#override\n<Key>j: do(LineDown)"), "J, Down");
  EXPECT_EQ(keysOf("LineDown", "#override <Key>j: do(LineDown)"), "J, Down");
}

TEST(KeyListTest, AKeyThatAUserHasTakenIsNotListed) {
  const std::string users = "<Key>space: do(LineDown)\n";
  EXPECT_EQ(keysOf("PageDown", users), "Page Down");
  EXPECT_EQ(keysOf("PageUp", users), "Page Up, Backspace"); // also with Shift, which the user's line does not exclude
  EXPECT_EQ(keysOf("LineDown", users), "Space, Down");
}

TEST(KeyListTest, AKeyWithOtherModifiersStaysListed) {
  EXPECT_EQ(keysOf("PageDown", "Ctrl<Key>space: do(LineDown)"), "Page Down, Space");
  EXPECT_EQ(keysOf("PageUp", "~Shift<Key>space: do(LineDown)"), "Page Up, Shift+Space, Backspace");
  EXPECT_EQ(keysOf("PageDown", "<Key>Space: do(LineDown)"), "Page Down, Space");
}

TEST(KeyListTest, ACommandWithoutAKeyLeftHasNoRow) {
  EXPECT_THAT(keysOf("Escape", "<Key>osfCancel: do(Quit)"), IsEmpty());
}

TEST(KeyListTest, ACommandWithAnArgumentHasARowForIt) {
  EXPECT_EQ(keysThat("Go to Page 12", "<Key>t: do(GoToPage,12)\n<Key>u: do( GoToPage , 12 )"), "T, U");
}

TEST(KeyListTest, AnotherActionIsShownAsItIs) { EXPECT_EQ(keysThat("Fly", "<Key>t: do(Fly)"), "T"); }

TEST(KeyListTest, LinesThatAreNoTranslationsAreIgnored) {
  EXPECT_EQ(keyRows(noAccelerator, "#override\n\n   \nnonsense\n<Key>\n: do(Quit)\n<Key>x\n#").size(),
            keyRows(noAccelerator, {}).size());
}

// ---- the manual page ----

std::string manual() {
  std::ifstream stream(MANUAL);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

// The lines of a section, without its heading.
std::string section(const std::string &name) {
  const std::string text = manual(), heading = "\n.SH " + name + "\n";
  const size_t begin = text.find(heading);
  if (begin == std::string::npos) return {};
  const size_t start = begin + heading.size();
  return text.substr(start, text.find("\n.SH ", start) + 1 - start);
}

// A text as a manual page has it.
std::string roff(const std::string &text) {
  std::string result = text;
  for (const auto &[from, to] : {std::pair{"-", "\\-"}, std::pair{"\u2026", ""}})
    for (size_t at = result.find(from); at != std::string::npos; at = result.find(from, at + std::string(to).size()))
      result.replace(at, std::string(from).size(), to);
  return result;
}

TEST(ManualTest, TheKeysAreThoseOfTheTables) {
  std::string expected, group;
  for (const KeyRow &row : keyRows(accelerator, {})) {
    if (row.group != group) expected += ".SS " + (group = row.group) + "\n";
    expected += ".TP\n.B " + roff(row.keys) + "\n" + roff(row.sentence);
    expected += row.command.empty() ? "\n" : " (\\fI" + row.command + "\\fR)\n";
  }
  const std::string text = section("KEYS");
  EXPECT_EQ(text.substr(std::min(text.find(".SS "), text.size())), expected) << "docs/tavrel.1";
}

// The resources without those of keys.
std::vector<std::string> resourceLines() {
  std::vector<std::string> all = test::lines(defaultResources());
  std::erase_if(all, [](const std::string &line) {
    return !line.starts_with('*') || line.find(".accelerator:") != std::string::npos;
  });
  return all;
}

TEST(ManualTest, EveryResourceIsListedWithItsDefault) {
  const std::string text = section("RESOURCES");
  for (const std::string &line : resourceLines())
    EXPECT_THAT(text, testing::HasSubstr("\n.B " + roff(line) + "\n")) << "docs/tavrel.1";
}

TEST(ManualTest, EveryResourceListedExists) {
  const std::vector<std::string> known = resourceLines();
  std::vector<std::string> listed;
  for (const std::string &line : test::lines(section("RESOURCES")))
    if (line.starts_with(".B *") && line.find(": ") != std::string::npos) listed.push_back(line.substr(3));
  for (const std::string &line : listed)
    EXPECT_TRUE(std::ranges::any_of(known, [&](const std::string &one) { return roff(one) == line; })) << line;
  EXPECT_EQ(listed.size(), known.size());
}

} // namespace
} // namespace viewer
