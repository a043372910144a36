// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The table of actions, and the translations and resources that belong to it. No test opens a display.
#include <gmock/gmock.h> // before X, whose names are macros

#include "DefaultResources.h"
#include "viewer/window/actions.h"
#include "viewer/window/keylist.h"
#include "viewer/window/options.h"

#include <unistd.h>

#include <algorithm>
#include <map>
#include <set>

#include "host/kernel/runtime.h"
#include "host/view/toolbar.h"

namespace viewer {
namespace {

using test::lines;
using test::resource;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

// Has the toolkit parse a table of translations, without a display, and exits with the number of warnings. For a
// separate process, because the toolkit caches parsed tables.
[[noreturn]] void read(const std::string &table) {
  static int s_warnings;
  XtToolkitInitialize();
  XtAppContext context = XtCreateApplicationContext();
  XtAppSetWarningMsgHandler(context, [](String, String, String, String, String *, Cardinal *) { ++s_warnings; });
  XtParseTranslationTable(table.c_str());
  _exit(s_warnings);
}

std::string translations() { return viewer::pageTranslations(); }

// The actions that have a menu, keys or a button.
std::vector<Action> having(const char *Action::*part) {
  std::vector<Action> result;
  std::ranges::copy_if(actions(), std::back_inserter(result),
                       [part](const Action &one) { return one.*part != nullptr; });
  return result;
}

// The key of an action's entry in its menu; empty: none.
std::string accelerator(const Action &action) {
  return resource(std::string("tavrel.menubar.") + action.menu + "." + action.name + ".accelerator");
}

// Keys of all entries, by the name of the entry.
std::map<std::string, std::string> accelerators() {
  const std::string before = "*menubar*", after = ".accelerator: ";
  std::map<std::string, std::string> result;
  for (const std::string &line : lines(defaultResources()))
    if (const size_t end = line.find(after); line.starts_with(before) && end != std::string::npos)
      result[line.substr(before.size(), end - before.size())] = line.substr(end + after.size());
  return result;
}

// ---- the table ----

TEST(ActionsTest, NamesAreUnique) {
  std::set<std::string> names;
  for (const Action &action : actions())
    EXPECT_TRUE(names.insert(action.name).second) << action.name;
}

TEST(ActionsTest, NamesAreValidInResourcesAndTranslations) {
  for (const Action &action : actions())
    EXPECT_EQ(widgetName(action.name), action.name);
}

TEST(ActionsTest, EveryOneIsACommand) {
  for (const Action &action : actions())
    EXPECT_NE(findCommand(action.name), nullptr) << action.name;
}

TEST(ActionsTest, EveryCommandIsBound) {
  for (const Command &command : commands())
    EXPECT_TRUE(std::ranges::any_of(actions(), [&](const Action &one) { return &one.command() == &command; }))
        << command.name;
}

TEST(ActionsTest, EveryMenuExists) {
  const std::vector<std::string> menus(menuNames().begin(), menuNames().end());
  for (const Action &action : having(&Action::menu))
    EXPECT_THAT(menus, Contains(action.menu)) << action.name;
}

TEST(ActionsTest, TheMenusOfPluginsAndOfDocumentsExist) {
  EXPECT_THAT(menuNames(), Contains(std::string(pluginMenu)));
  EXPECT_THAT(menuNames(), Contains(std::string(windowMenu)));
}

TEST(ActionsTest, AMenusEntriesAreConsecutive) {
  std::vector<std::string> order;
  for (const Action &action : actions()) {
    const std::string menu = action.menu == nullptr ? "" : action.menu;
    if (order.empty() || order.back() != menu) order.push_back(menu);
  }
  EXPECT_EQ(std::set<std::string>(order.begin(), order.end()).size(), order.size());
}

TEST(ActionsTest, ActionsWithoutAMenuHaveKeys) {
  for (const Action &action : actions()) {
    if (action.menu == nullptr) {
      EXPECT_NE(action.keys, nullptr) << action.name;
    }
  }
}

TEST(ActionsTest, NoAcceleratorIsGivenTwice) {
  std::set<std::string> keys;
  for (const auto &[name, key] : accelerators())
    EXPECT_TRUE(keys.insert(key).second) << name;
}

TEST(ActionsTest, NoTranslationIsGivenTwice) {
  std::set<std::string> keys;
  for (const Action &action : having(&Action::keys))

    for (const std::string &line : lines(action.keys))
      EXPECT_TRUE(keys.insert(line.substr(0, line.rfind(": %s"))).second) << line;
}

TEST(ActionsTest, TranslationsAreCompleteLines) {
  for (const Action &action : having(&Action::keys)) {
    EXPECT_EQ(std::string(action.keys).back(), '\n') << action.name;
    for (const std::string &line : lines(action.keys))
      EXPECT_THAT(line, testing::EndsWith(": %s")) << action.name;
  }
}

TEST(ActionsTest, EveryButtonIsOnTheToolBar) {
  host::Runtime runtime;
  const host::ToolBar bar(runtime.atoms);
  for (const Action &action : having(&Action::button))
    EXPECT_NE(bar.find(runtime.atoms.atom(action.button)), nullptr) << action.button;
}

TEST(ActionsTest, EveryButtonOfTheToolBarDoesOneThing) {
  host::Runtime runtime;
  const host::ToolBar bar(runtime.atoms);
  for (const host::ToolButton *button : bar.order()) {
    const std::string name = runtime.atoms.name(button->name);
    EXPECT_EQ(std::ranges::count_if(actions(),
                                    [&](const Action &one) { return one.button != nullptr && name == one.button; }),
              1)
        << name;
  }
}

// ---- names ----

TEST(ActionsTest, AShortLabelIsTheLastPartOfAButtonsNameInWords) {
  EXPECT_EQ(shortLabel("TavrelGLT:Next"), "Next");
  EXPECT_EQ(shortLabel("Plugin:NextPage"), "Next Page");
  EXPECT_EQ(shortLabel("ShowURLs"), "Show URLs");
  EXPECT_EQ(shortLabel("plain text"), "plain text");
  EXPECT_EQ(shortLabel("Plugin:"), "Plugin:");
  EXPECT_EQ(shortLabel("A:\u00DCber"), "\u00DCber");
}

TEST(ActionsTest, NoAcceleratorIsShownAsATranslation) {
  for (const auto &[name, key] : accelerators()) {
    EXPECT_THAT(keyName(key), Not(HasSubstr("osf"))) << name;
    EXPECT_THAT(keyName(key), Not(HasSubstr("<"))) << name;
  }
}

TEST(ActionsTest, AWidgetsNameHasNoSeparatorsOfResources) {
  EXPECT_EQ(widgetName("TavrelGLT:Next"), "TavrelGLT_Next");
  EXPECT_EQ(widgetName("a.b*c d?e"), "a_b_c_d_e");
  EXPECT_EQ(widgetName("\u00E4"), "__");
  EXPECT_EQ(widgetName("Open2"), "Open2");
}

// ---- resources ----

TEST(ActionsTest, EveryAcceleratorIsThatOfAnActionInAMenu) {
  std::map<std::string, std::string> left = accelerators();
  for (const Action &action : having(&Action::menu)) {
    EXPECT_EQ(accelerator(action), left[action.name]) << action.name;
    left.erase(action.name);
  }
  EXPECT_THAT(left, testing::IsEmpty()) << "plug-ins give their buttons keys";
}

TEST(ActionsTest, EveryEntryHasAnAcceleratorButThoseAboutTheProgram) {
  std::vector<std::string> without;
  for (const Action &action : having(&Action::menu))
    if (accelerator(action).empty()) without.emplace_back(action.name);
  EXPECT_THAT(without, testing::ElementsAre("AboutPlugIns", "About"));
}

TEST(ActionsTest, TheDefaultResourcesListThePagesTranslations) {
  std::string listed;
  for (const std::string &line : lines(defaultResources()))
    if (line.starts_with("!   ")) listed += line.substr(4) + "\n";
  EXPECT_EQ(listed, translations()) << "share/Tavrel.ad";
}

TEST(ActionsTest, ThePagesTranslationsAreLines) {
  const std::vector<std::string> all = lines(translations());
  EXPECT_THAT(all, Contains("~Ctrl ~Shift ~Mod1 ~Mod4 ~Mod5<Key>osfDown: do(LineDown)"));
  EXPECT_THAT(all, Contains("Shift ~Ctrl ~Mod1 ~Mod4 ~Mod5<Key>space: do(PageUp)"));
  EXPECT_THAT(all, Contains(":~Ctrl ~Mod1 ~Mod4 ~Mod5<Key>slash: do(FindDialog)"));
  EXPECT_THAT(all, Contains(":Ctrl ~Mod1 ~Mod4 ~Mod5<Key>equal: do(ZoomIn)"));
  EXPECT_THAT(all, Contains("<Btn1Motion>: drag(move)"));
}

TEST(ActionsTest, EveryTranslationInvokesItsAction) {
  const std::vector<std::string> all = lines(translations());
  for (const Action &action : having(&Action::keys))
    for (const std::string &line : lines(action.keys)) {
      const std::string event = line.substr(line.find('<'), line.find("%s") - line.find('<'));
      EXPECT_THAT(all, Contains(testing::EndsWith(event + "do(" + action.name + ")")));
    }
}

TEST(ActionsTest, TheToolkitReadsAllTranslations) {
  EXPECT_EXIT(read(translations()), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(
      read(translations() + "<Key>nonesuch: do(Open)\n"),
      [](int status) { return !testing::ExitedWithCode(0)(status); }, "");
}

TEST(ActionsTest, TheToolkitReadsAllAccelerators) {
  std::string table;
  for (const auto &[name, key] : accelerators())
    table += key + ": do(" + name + ")\n";
  EXPECT_EXIT(read(table), testing::ExitedWithCode(0), "");
}

TEST(ActionsTest, EveryNameInATranslationIsAnAction) {
  for (const std::string &line : lines(translations())) {
    const size_t call = line.find("do(");
    if (call == std::string::npos) continue;
    EXPECT_NE(findCommand(line.substr(call + 3, line.find(')', call) - call - 3)), nullptr) << line;
  }
}

} // namespace
} // namespace viewer
