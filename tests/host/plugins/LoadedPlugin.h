// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What one plug-in of the loader's tests does differently from a good one.
#pragma once

#include "tavrel/plugin.h"

struct LoadedPlugin {
  const char *name;
  uint32_t mainResult = 1;
  uint32_t version = tavrel::handshakeVersion;
  uint32_t setupResult = 1;
  bool noHandshake = false;     ///< its set-up creates no handshake callback
  bool unknownCallback = false; ///< returns a function that is no callback
  // What it does in its callbacks, apart from noting them.
  void (*exportTables)() = nullptr;
  void (*importTables)() = nullptr;
  void (*initialise)() = nullptr;
  void (*unload)() = nullptr;
};

extern const LoadedPlugin loadedPlugin;

/// Records in the journal what the plug-in does.
void noteCall(const char *what);
/// The plug-in's number, from its set-up on.
extern tavrel::ExtensionID self;
