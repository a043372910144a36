// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The table of actions, and the translations made from it.
#include "viewer/window/actions.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "viewer/window/mainwindow.h"

namespace viewer {
namespace {

bool hasDocument(const MainWindow &window) { return window.session().documents.front() != nullptr; }
bool hasSomethingToFind(const MainWindow &window) {
  return hasDocument(window) && !window.session().finding.request().text.empty();
}
bool hasPageBefore(const MainWindow &window) { return window.session().documents.page() > 0; }
bool hasPageAfter(const MainWindow &window) {
  return window.session().documents.page() + 1 < window.session().documents.pageCount();
}

// The distances that arrow keys and the wheel scroll, in pixels at 96 dots per inch.
constexpr double line = 48, wheel = 90;

Session &of(MainWindow &window) { return window.session(); }

// Scrolls sideways; turns the page if there is nothing to scroll.
void sideways(MainWindow &window, int direction) {
  const host::PageView *view = of(window).documents.view();
  const int before = view->scrollX();
  of(window).moving.drag(direction * window.pixels(line), 0);
  if (view->scrollX() == before) of(window).moving.turn(direction);
}

constexpr const char *menus[] = {"File", "Edit", "View", "Go", pluginMenu, windowMenu, "Help"};

// clang-format off
constexpr Action table[] = {
    {"Open", "File", "Open\u2026", nullptr, "Open", [](MainWindow &w) { w.askForFile(); }, nullptr},
    {"Reload", "File", "Reload", nullptr, nullptr, [](MainWindow &w) { of(w).documents.reload(); }, hasDocument},
    {"Close", "File", "Close", nullptr, nullptr, [](MainWindow &w) { of(w).documents.closeFront(); }, hasDocument, true},
    {"Quit", "File", "Quit", nullptr, nullptr, [](MainWindow &w) { w.quit(); }, nullptr},

    {"FindDialog", "Edit", "Find\u2026", ":<Key>slash: %s\n", "FindDialog", [](MainWindow &w) { w.askForText(); }, hasDocument},
    {"FindAgainDialog", "Edit", "Find Again", nullptr, "FindAgainDialog", [](MainWindow &w) { w.findAgain(false); }, hasDocument},
    {"FindPrevious", "Edit", "Find Previous", nullptr, nullptr, [](MainWindow &w) { w.findAgain(true); }, hasSomethingToFind},

    {"ZoomIn", "View", "Larger", ":<Key>plus: %s\n<Key>KP_Add: %s\nCtrl<Key>equal: %s\n<Key>equal: %s\nCtrl<Btn4Down>: %s\n", "ZoomIn", [](MainWindow &w) { of(w).moving.zoomBy(1); }, hasDocument},
    {"ZoomOut", "View", "Smaller", ":<Key>minus: %s\n<Key>KP_Subtract: %s\nCtrl<Btn5Down>: %s\n", "ZoomOut", [](MainWindow &w) { of(w).moving.zoomBy(-1); }, hasDocument},
    {"ActualSize", "View", "Actual Size", nullptr, nullptr, [](MainWindow &w) { of(w).moving.setZoom(1); }, hasDocument, true},
    {"FitWidth", "View", "Fit Width", ":<Key>w: %s\n", "FitWidth", [](MainWindow &w) { of(w).moving.setFit(host::Fit::width); }, hasDocument},
    {"FitPage", "View", "Fit Page", ":<Key>p: %s\n", "FitPage", [](MainWindow &w) { of(w).moving.setFit(host::Fit::page); }, hasDocument},

    {"PreviousPage", "Go", "Previous Page", nullptr, "PreviousPage", [](MainWindow &w) { of(w).moving.turn(-1); }, hasPageBefore},
    {"NextPage", "Go", "Next Page", nullptr, "NextPage", [](MainWindow &w) { of(w).moving.turn(1); }, hasPageAfter},
    {"FirstPage", "Go", "First Page", "<Key>Home: %s\n<Key>osfBeginLine: %s\n", nullptr, [](MainWindow &w) { of(w).moving.goToPage(0); }, hasPageBefore, true},
    {"LastPage", "Go", "Last Page", "<Key>End: %s\n<Key>osfEndLine: %s\n", nullptr, [](MainWindow &w) { of(w).moving.goToPage(of(w).documents.pageCount() - 1); }, hasPageAfter},
    {"GoToPage", "Go", "Go to Page\u2026", nullptr, nullptr, [](MainWindow &w) { w.askForPage(); }, hasDocument, true},

    {"Keys", "Help", "Keys", nullptr, nullptr, [](MainWindow &w) { w.showKeys(); }, nullptr},
    {"AboutPlugIns", "Help", "About Plug-Ins", nullptr, nullptr, [](MainWindow &w) { w.showPlugins(); }, nullptr, true},
    {"About", "Help", "About Tavrel", nullptr, nullptr, [](MainWindow &w) { w.showAbout(); }, nullptr},

    {"PageDown", nullptr, "A page of the window down", "~Ctrl<Key>osfPageDown: %s\n~Shift<Key>space: %s\n", nullptr, [](MainWindow &w) { of(w).moving.scrollWindow(1); }, hasDocument},
    {"PageUp", nullptr, "A page of the window up", "~Ctrl<Key>osfPageUp: %s\nShift<Key>space: %s\n<Key>osfBackSpace: %s\n", nullptr, [](MainWindow &w) { of(w).moving.scrollWindow(-1); }, hasDocument},
    {"LineDown", nullptr, "A little down", "<Key>osfDown: %s\n", nullptr, [](MainWindow &w) { of(w).moving.scroll(0, w.pixels(line)); }, hasDocument},
    {"LineUp", nullptr, "A little up", "<Key>osfUp: %s\n", nullptr, [](MainWindow &w) { of(w).moving.scroll(0, -w.pixels(line)); }, hasDocument},
    {"Right", nullptr, "To the right, or the next page", "<Key>osfRight: %s\n", nullptr, [](MainWindow &w) { sideways(w, 1); }, hasDocument},
    {"Left", nullptr, "To the left, or the page before", "<Key>osfLeft: %s\n", nullptr, [](MainWindow &w) { sideways(w, -1); }, hasDocument},
    {"WheelDown", nullptr, "Scrolls down", "~Ctrl ~Shift<Btn5Down>: %s\n", nullptr, [](MainWindow &w) { of(w).moving.scroll(0, w.pixels(wheel)); }, hasDocument},
    {"WheelUp", nullptr, "Scrolls up", "~Ctrl ~Shift<Btn4Down>: %s\n", nullptr, [](MainWindow &w) { of(w).moving.scroll(0, -w.pixels(wheel)); }, hasDocument},
    {"ScrollRight", nullptr, "Scrolls to the right", "Shift<Btn5Down>: %s\n", nullptr, [](MainWindow &w) { of(w).moving.drag(w.pixels(line), 0); }, hasDocument},
    {"ScrollLeft", nullptr, "Scrolls to the left", "Shift<Btn4Down>: %s\n", nullptr, [](MainWindow &w) { of(w).moving.drag(-w.pixels(line), 0); }, hasDocument},
    {"Escape", nullptr, "Ends a search, takes its marks away", "<Key>osfCancel: %s\n", nullptr, [](MainWindow &w) { w.escape(); }, nullptr},
};
// clang-format on

std::string with(std::string text, const std::string &mark, const std::string &value) {
  for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + value.size()))
    text.replace(at, mark.size(), value);
  return text;
}

} // namespace

std::span<const Action> actions() { return table; }

std::span<const char *const> menuNames() { return menus; }

const Action *findAction(const std::string &name) {
  const auto *const found =
      std::find_if(std::begin(table), std::end(table), [&](const Action &one) { return name == one.name; });
  return found == std::end(table) ? nullptr : found;
}

std::string pageTranslations() {
  std::string keys;
  for (const Action &action : table)
    if (action.keys != nullptr) keys += with(action.keys, "%s", std::string("do(") + action.name + ")");
  return keys + "<Btn1Down>: drag(begin)\n<Btn1Motion>: drag(move)\n<Btn1Up>: drag(end)\n";
}

std::string keyName(const std::string &translation) {
  const size_t open = translation.find('<'), close = translation.find('>');
  if (open == std::string::npos || close == std::string::npos) return translation;
  std::string name;
  std::string modifier;
  for (const char c : translation.substr(0, open) + ' ') {
    if (c != ' ' && c != ':') {
      modifier += c;
    } else if (!modifier.empty()) {
      if (modifier[0] != '~') name += modifier + "+";
      modifier.clear();
    }
  }
  std::string key = translation.substr(close + 1);
  constexpr struct {
    const char *key, *shown;
  } names[] = {{"plus", "+"},         {"minus", "-"},        {"osfPageUp", "Page Up"},     {"osfPageDown", "Page Down"},
               {"Prior", "Page Up"},  {"Next", "Page Down"}, {"osfCancel", "Esc"},         {"slash", "/"},
               {"equal", "="},        {"osfUp", "Up"},       {"osfDown", "Down"},          {"osfLeft", "Left"},
               {"osfRight", "Right"}, {"space", "Space"},    {"osfBackSpace", "Backspace"}};
  const auto *const known =
      std::find_if(std::begin(names), std::end(names), [&](const auto &one) { return key == one.key; });
  if (known != std::end(names))
    key = known->shown;
  else if (key.size() == 1)
    key[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(key[0])));
  return name + key;
}

std::string widgetName(const std::string &button) {
  std::string name = button;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
}

} // namespace viewer
