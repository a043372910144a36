// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that returns a function that it did not make a callback.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "unknowncallback", .unknownCallback = true};
