// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/keylist.h"

#include <algorithm>
#include <iterator>

#include "viewer/window/actions.h"
#include "viewer/window/findkeys.h"
#include "viewer/window/openkeys.h"
#include "viewer/window/rowskeys.h"
#include "viewer/window/textediting.h"
#include "viewer/window/translations.h"

namespace viewer {
namespace {

// Whether the user's translation is invoked by the key of the program's, with its modifiers and no others.
bool hides(const Translation &users, const Translation &programs) {
  const auto held = [&](const std::string &modifier) { return programs.held.contains(modifier); };
  return users.key == programs.key && std::all_of(users.held.begin(), users.held.end(), held) &&
         std::none_of(users.forbidden.begin(), users.forbidden.end(), held);
}

std::vector<Translation> inForce(const std::string &usersTranslations) {
  std::vector<Translation> result = parsedTranslations(usersTranslations);
  const size_t users = result.size();
  for (const Translation &one : parsedTranslations(pageTranslations()))
    if (std::none_of(result.begin(), result.begin() + static_cast<std::ptrdiff_t>(users),
                     [&](const Translation &user) { return hides(user, one); }))
      result.push_back(one);
  return result;
}

// Adds a key to a row, once.
void add(KeyRow &row, const std::string &key) {
  if (key.empty() || (", " + row.keys + ", ").find(", " + key + ", ") != std::string::npos) return;
  row.keys += (row.keys.empty() ? "" : ", ") + key;
}

// What a translation does that calls no command, or one with an argument.
std::string sentenceOf(const Translation &translation) {
  if (translation.action == "drag(begin)") return "Drags the page";
  const Command *command = findCommand(translation.action);
  if (command == nullptr) return translation.action;
  const std::string sentence = command->sentence, dots = "\u2026";
  return (sentence.ends_with(dots) ? sentence.substr(0, sentence.size() - dots.size()) : sentence) + " " +
         translation.argument;
}

// What the keys of other parts of the window do, by the calls of their translations. Those that do what they do in
// every program are not listed.
struct Meaning {
  std::vector<std::string> calls;
  std::string sentence;
};
struct Part {
  const char *group;
  std::string (*translations)();
  std::vector<Meaning> meanings;
};

const std::vector<Part> &otherParts() {
  static const std::vector<Part> s_parts{
      {"Side Panel",
       rowsTranslations,
       {{{"rows(choose)"}, "Goes to the hit"},
        {{"rows(up)", "rows(down)", "rows(pageUp)", "rows(pageDown)", "rows(first)", "rows(last)"}, "Moves the cursor"},
        {{"rows(leave)"}, "Gives the keyboard to the page"}}},
      {"Text Fields",
       fieldTranslations,
       {{{"edit(copy)"}, "Copies the selected text"},
        {{"edit(cut)"}, "Cuts it"},
        {{"edit(paste)"}, "Inserts the copied text"},
        {{"edit(selectAll)"}, "Selects all"},
        {{"edit(undo)"}, "Undoes a change"},
        {{"edit(redo)"}, "Repeats it"},
        {{"delete-previous-word()", "delete-next-word()"}, "Deletes a word"}}},
      {"Find Dialog",
       findTranslations,
       {{{"findDialog(next)"}, "Finds the next match"}, {{"findDialog(previous)"}, "Finds the one before"}}},
      {"Open Dialog",
       openTranslations,
       {{{"openDialog(complete)"}, "Completes the name"},
        {{"openDialog(select, -1)", "openDialog(select, 1)", "openDialog(select, -10)", "openDialog(select, 10)"},
         "Selects another file"},
        {{"openDialog(up)", "openDialog(erase)"}, "The folder above"}}}};
  return s_parts;
}

void addOtherParts(std::vector<KeyRow> &rows) {
  for (const Part &part : otherParts()) {
    const std::vector<Translation> translations = parsedTranslations(part.translations());
    for (const Meaning &meaning : part.meanings) {
      KeyRow row{part.group, "", meaning.sentence, ""};
      for (const std::string &call : meaning.calls)
        for (const Translation &one : translations)
          if (one.action == call) add(row, keyName(one.event));
      rows.push_back(std::move(row));
    }
  }
}

} // namespace

std::vector<KeyRow> keyRows(const std::function<std::string(const std::string &)> &accelerator,
                            const std::string &usersTranslations, const std::vector<KeyRow> &others) {
  std::vector<KeyRow> rows;
  for (const Action &action : actions()) {
    rows.push_back({action.menu == nullptr ? pageGroup : action.menu, "", action.command().sentence, action.name});
    if (action.menu != nullptr) add(rows.back(), accelerator(action.name));
  }
  for (const Translation &one : inForce(usersTranslations)) {
    if (one.action == "drag(move)" || one.action == "drag(end)") continue; // parts of what drag(begin) begins
    const bool plain = findCommand(one.action) != nullptr && one.argument.empty();
    const std::string sentence = plain ? "" : sentenceOf(one);
    const auto known = std::find_if(rows.begin(), rows.end(), [&](const KeyRow &row) {
      return plain ? row.command == one.action : row.sentence == sentence;
    });
    KeyRow &row = known != rows.end() ? *known : rows.emplace_back(KeyRow{pageGroup, "", sentence, ""});
    add(row, keyName(one.event));
  }
  rows.push_back({pageGroup, "F10", "Opens the menus", ""}); // the toolkit's keys, as the one with the first letter
  for (const std::string menu : menuNames())
    add(rows.back(), "Alt+" + menu.substr(0, 1));
  addOtherParts(rows);
  rows.insert(rows.end(), others.begin(), others.end());
  std::erase_if(rows, [](const KeyRow &row) { return row.keys.empty(); });
  const auto rank = [](const KeyRow &row) { return std::ranges::find(menuNames(), row.group) - menuNames().begin(); };
  std::ranges::stable_sort(rows, {}, rank);
  return rows;
}

} // namespace viewer
