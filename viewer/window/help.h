// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The dialogs of the menu Help: the keys in force, the plug-ins, the program.
#pragma once

#include "host/kernel/loader.h"
#include "viewer/window/information.h"
#include "viewer/window/keysdialog.h"

namespace viewer {

class MenuBar;
class PageArea;
class Toolkit;

class Help {
public:
  Help(Toolkit &toolkit, const host::PluginLoader &plugins)
      : plugins_(plugins), informations_(toolkit), keysDialog_(toolkit) {}
  Help(const Help &) = delete;
  Help &operator=(const Help &) = delete;

  /// The menus must be filled.
  void showKeys(const MenuBar &menuBar, const PageArea &pageArea);
  void showPlugins();
  void showAbout();
  Informations &informations() { return informations_; }

private:
  const host::PluginLoader &plugins_;
  Informations informations_;
  KeysDialog keysDialog_;
};

} // namespace viewer
