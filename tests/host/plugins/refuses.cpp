// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that fails at its entry point.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "refuses", .mainResult = 0};
