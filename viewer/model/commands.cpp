// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/commands.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace viewer {
namespace {

bool hasDocument(const Model &model) { return model.documents.front() != nullptr; }
bool hasSomethingToFind(const Model &model) { return hasDocument(model) && !model.finding.request().text.empty(); }
bool hasPageBefore(const Model &model) { return model.documents.page() > 0; }
bool hasPageAfter(const Model &model) { return model.documents.page() + 1 < model.documents.pageCount(); }

// The distances that arrow keys and the wheel scroll, in pixels at 96 dots per inch.
constexpr double line = 48, wheel = 90;

void openFile(const Model &model, Frontend &frontend, const std::string &file) {
  if (file.empty()) return frontend.askForFile();
  try {
    model.opener.open(targetOf(file));
  } catch (const host::DocumentError &error) {
    model.status.report(error.what());
  }
}

void goToPage(const Model &model, Frontend &frontend, const std::string &page) {
  if (page.empty())
    frontend.askForPage();
  else
    goToTypedPage(model, page);
}

void findText(const Model &model, Frontend &frontend, const std::string &text) {
  if (text.empty())
    frontend.askForText();
  else
    model.finding.find({text, {}}, false);
}

void findAgain(const Model &model, Frontend &frontend, bool backwards) {
  if (model.finding.request().text.empty())
    frontend.askForText();
  else
    model.finding.findAgain(backwards);
}

void escape(const Model &model, Frontend &frontend) {
  model.finding.end();
  frontend.leaveFields();
}

// Scrolls sideways; turns the page if there is nothing to scroll.
void sideways(const Model &model, const Frontend &frontend, int direction) {
  const PageWindow *window = model.documents.window();
  const int before = window->scrollX();
  model.moving.drag(direction * frontend.pixels(line), 0);
  if (window->scrollX() == before) model.moving.turn(direction);
}

using Text = const std::string &;

// clang-format off
constexpr Command table[] = {
    {"Open", "Open\u2026", "file", [](const Model &m, Frontend &f, Text a) { openFile(m, f, a); }, nullptr},
    {"Reload", "Reload", nullptr, [](const Model &m, Frontend &, Text) { m.opener.reload(); }, hasDocument},
    {"Close", "Close", nullptr, [](const Model &m, Frontend &, Text) { m.documents.closeFront(); }, hasDocument},
    {"Quit", "Quit", nullptr, [](const Model &, Frontend &f, Text) { f.quit(); }, nullptr},
    {"FindDialog", "Find\u2026", "text", [](const Model &m, Frontend &f, Text a) { findText(m, f, a); }, hasDocument},
    {"FindAgainDialog", "Find Again", nullptr, [](const Model &m, Frontend &f, Text) { findAgain(m, f, false); }, hasDocument},
    {"FindPrevious", "Find Previous", nullptr, [](const Model &m, Frontend &f, Text) { findAgain(m, f, true); }, hasSomethingToFind},
    {"ZoomIn", "Larger", nullptr, [](const Model &m, Frontend &, Text) { m.moving.zoomBy(1); }, hasDocument},
    {"ZoomOut", "Smaller", nullptr, [](const Model &m, Frontend &, Text) { m.moving.zoomBy(-1); }, hasDocument},
    {"ActualSize", "Actual Size", nullptr, [](const Model &m, Frontend &, Text) { m.moving.setZoom(1); }, hasDocument},
    {"FitWidth", "Fit Width", nullptr, [](const Model &m, Frontend &, Text) { m.moving.setFit(Fit::width); }, hasDocument},
    {"FitPage", "Fit Page", nullptr, [](const Model &m, Frontend &, Text) { m.moving.setFit(Fit::page); }, hasDocument},
    {"SidePanel", "Side Panel", nullptr, [](const Model &, Frontend &f, Text) { f.toggleSidePanel(); }, nullptr},
    {"PreviousPage", "Previous Page", nullptr, [](const Model &m, Frontend &, Text) { m.moving.turn(-1); }, hasPageBefore},
    {"NextPage", "Next Page", nullptr, [](const Model &m, Frontend &, Text) { m.moving.turn(1); }, hasPageAfter},
    {"FirstPage", "First Page", nullptr, [](const Model &m, Frontend &, Text) { m.moving.goToPage(0); }, hasPageBefore},
    {"LastPage", "Last Page", nullptr, [](const Model &m, Frontend &, Text) { m.moving.goToPage(m.documents.pageCount() - 1); }, hasPageAfter},
    {"GoToPage", "Go to Page\u2026", "page", [](const Model &m, Frontend &f, Text a) { goToPage(m, f, a); }, hasDocument},
    {"Keys", "Keys", nullptr, [](const Model &, Frontend &f, Text) { f.showKeys(); }, nullptr},
    {"AboutPlugIns", "About Plug-Ins", nullptr, [](const Model &, Frontend &f, Text) { f.showPlugins(); }, nullptr},
    {"About", "About Tavrel", nullptr, [](const Model &, Frontend &f, Text) { f.showAbout(); }, nullptr},
    {"PageDown", "A page of the window down", nullptr, [](const Model &m, Frontend &, Text) { m.moving.scrollWindow(1); }, hasDocument},
    {"PageUp", "A page of the window up", nullptr, [](const Model &m, Frontend &, Text) { m.moving.scrollWindow(-1); }, hasDocument},
    {"LineDown", "A little down", nullptr, [](const Model &m, Frontend &f, Text) { m.moving.scroll(0, f.pixels(line)); }, hasDocument},
    {"LineUp", "A little up", nullptr, [](const Model &m, Frontend &f, Text) { m.moving.scroll(0, -f.pixels(line)); }, hasDocument},
    {"Right", "To the right, or the next page", nullptr, [](const Model &m, Frontend &f, Text) { sideways(m, f, 1); }, hasDocument},
    {"Left", "To the left, or the page before", nullptr, [](const Model &m, Frontend &f, Text) { sideways(m, f, -1); }, hasDocument},
    {"WheelDown", "Scrolls down", nullptr, [](const Model &m, Frontend &f, Text) { m.moving.scroll(0, f.pixels(wheel)); }, hasDocument},
    {"WheelUp", "Scrolls up", nullptr, [](const Model &m, Frontend &f, Text) { m.moving.scroll(0, -f.pixels(wheel)); }, hasDocument},
    {"ScrollRight", "Scrolls to the right", nullptr, [](const Model &m, Frontend &f, Text) { m.moving.drag(f.pixels(line), 0); }, hasDocument},
    {"ScrollLeft", "Scrolls to the left", nullptr, [](const Model &m, Frontend &f, Text) { m.moving.drag(-f.pixels(line), 0); }, hasDocument},
    {"Escape", "Ends a search, takes its marks away", nullptr, [](const Model &m, Frontend &f, Text) { escape(m, f); }, nullptr},
};
// clang-format on

} // namespace

std::span<const Command> commands() { return table; }

const Command *findCommand(const std::string &name) {
  const auto *const found =
      std::find_if(std::begin(table), std::end(table), [&](const Command &one) { return name == one.name; });
  return found == std::end(table) ? nullptr : found;
}

void run(const Command &command, const Model &model, Frontend &frontend, const std::string &argument) {
  if (!isPossible(command, model)) return;
  if (!argument.empty() && command.argument == nullptr)
    return model.status.set(std::string(command.name) + " takes no argument");
  command.run(model, frontend, argument);
  model.changes.note(allParts);
}

void goToTypedPage(const Model &model, const std::string &text) {
  char *end = nullptr;
  const long page = std::strtol(text.c_str(), &end, 10), last = model.documents.pageCount();
  if (end == text.c_str() || *end != '\0') {
    model.status.set("\u201C" + text + "\u201D is no page number");
  } else {
    model.moving.goToPage(static_cast<int32_t>(std::clamp(page, 1L, last)) - 1);
    if (page > last)
      model.status.set(last == 1 ? "There is only one page" : "There are only " + std::to_string(last) + " pages");
    if (page < 1) model.status.set("The first page is page 1");
  }
  model.changes.note(allParts);
}

} // namespace viewer
