// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/help.h"

#include <string>
#include <vector>

#include "viewer/window/actions.h"
#include "viewer/window/menubar.h"
#include "viewer/window/pagearea.h"

namespace viewer {

void Help::showKeys(const MenuBar &menuBar, const PageArea &pageArea) {
  const auto accelerator = [&menuBar](const std::string &command) { return menuBar.keyOf(command); };
  std::vector<KeyRow> ofPlugins;
  for (const KeyOfButton &button : menuBar.pluginKeys())
    ofPlugins.push_back({pluginMenu, button.key, button.label, ""});
  keysDialog_.show(keyRows(accelerator, pageArea.usersTranslations(), ofPlugins));
}

void Help::showPlugins() {
  std::string text;
  for (const host::Plugin &plugin : plugins_.plugins())
    text += (text.empty() ? "" : "\n") + plugin.name + (plugin.version.empty() ? "" : " " + plugin.version) + ":  " +
            host::describe(plugin.state) + (plugin.reason.empty() ? "" : ": " + plugin.reason);
  informations_.show("About Plug-Ins", text.empty() ? "There are no plug-ins." : text);
}

void Help::showAbout() {
  informations_.show("About Tavrel", "Tavrel " TAVREL_VERSION "\nA PDF viewer that shows where a search's hits are.");
}

} // namespace viewer
