// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that speaks a handshake version that there is not.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "otherversion", .version = 0x00030000};
