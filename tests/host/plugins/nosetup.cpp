// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that fails at its set-up.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "nosetup", .setupResult = 0};
